#include "vorlane/jace/wrapper_vm_loader.h"

#include "jace/decimal.h"
#include "vorlane/jace/exception.h"
#include "vorlane/jace/helper.h"

namespace jace {

WrapperVmLoader::WrapperVmLoader(JavaVM* vm) : _vm(vm) {
  if (vm == nullptr) {
    throw JNIException("WrapperVmLoader::WrapperVmLoader\njavaVM must be non-null");
  }
  void* env = nullptr;
  const jint result = vm->AttachCurrentThread(&env, nullptr);
  if (result != JNI_OK) {
    throw JNIException(
        "JNIHelper::attach\n"
        "Unable to attach the current thread. The specific JNI error code is " +
        helper::decimal(result));
  }
  _jniVersion = static_cast<JNIEnv*>(env)->GetVersion();
}

WrapperVmLoader::WrapperVmLoader(JNIEnv* env) {
  const jint result = env == nullptr ? JNI_EINVAL : env->GetJavaVM(&_vm);
  if (result != JNI_OK) {
    throw JNIException(
        "WrapperVmLoader::WrapperVmLoader\n"
        "Unable to retrieve the JVM from the JNIEnv* object. The specific JNI error code is " +
        helper::decimal(result));
  }
  _jniVersion = env->GetVersion();
}

void WrapperVmLoader::loadVm() {}

void WrapperVmLoader::unloadVm() {}

int WrapperVmLoader::version() { return _jniVersion; }

VmLoader* WrapperVmLoader::clone() const { return new WrapperVmLoader(_vm); }

int WrapperVmLoader::createJavaVM(JavaVM** vm, void** env, void* /*arguments*/) {
  if (vm == nullptr || env == nullptr) return JNI_EINVAL;
  *env = helper::attach();
  *vm = _vm;
  return JNI_OK;
}

int WrapperVmLoader::getCreatedJavaVMs(JavaVM** vms, int size, int* count) {
  if (size < 1 || vms == nullptr) return JNI_EINVAL;
  *vms = _vm;
  if (count != nullptr) *count = 1;
  return JNI_OK;
}

}  // namespace jace
