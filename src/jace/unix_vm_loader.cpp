#include "vorlane/jace/unix_vm_loader.h"

#include <dlfcn.h>

#include <utility>

#include "vorlane/jace/exception.h"

namespace jace {

VmLoader::~VmLoader() = default;

UnixVmLoader::UnixVmLoader(std::string path, int version)
    : _jniVersion(version), _path(std::move(path)) {}

void UnixVmLoader::loadVm() {
  _handle = dlopen(_path.c_str(), RTLD_NOW | RTLD_GLOBAL);
  if (_handle == nullptr) throw JNIException("Unable to load the library at " + _path);
  _createJavaVM = reinterpret_cast<CreateFunction>(resolve("JNI_CreateJavaVM"));
  _getCreatedJavaVMs = reinterpret_cast<GetCreatedFunction>(resolve("JNI_GetCreatedJavaVMs"));
}

void* UnixVmLoader::resolve(const char* name) {
  void* function = dlsym(_handle, name);
  if (function == nullptr) {
    // What is no runtime must not stay where the search looks for loaded ones.
    unloadVm();
    throw JNIException(std::string("Unable to resolve the function, ") + name + " from library " +
                       _path);
  }
  return function;
}

void UnixVmLoader::unloadVm() {
  if (_handle == nullptr) return;
  dlclose(_handle);
  _handle = nullptr;
  // They may point to nothing from here on.
  _createJavaVM = nullptr;
  _getCreatedJavaVMs = nullptr;
}

int UnixVmLoader::version() { return _jniVersion; }

VmLoader* UnixVmLoader::clone() const { return new UnixVmLoader(*this); }

int UnixVmLoader::createJavaVM(JavaVM** vm, void** env, void* arguments) {
  if (_createJavaVM == nullptr) return JNI_ERR;
  return _createJavaVM(vm, env, arguments);
}

int UnixVmLoader::getCreatedJavaVMs(JavaVM** vms, int size, int* count) {
  if (_getCreatedJavaVMs == nullptr) return JNI_ERR;
  return _getCreatedJavaVMs(vms, size, count);
}

}  // namespace jace
