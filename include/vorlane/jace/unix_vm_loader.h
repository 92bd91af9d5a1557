// A runtime in a shared library.

#ifndef ZYL_JACE_UNIX_VM_LOADER_H
#define ZYL_JACE_UNIX_VM_LOADER_H

#include <jni.h>

#include <string>

#include "vorlane/env/export.h"
#include "vorlane/jace/vm_loader.h"

namespace jace {

/// Loads the runtime's library with the dynamic loader.
///
/// Destruction leaves the library loaded: a runtime cannot be taken out of a process.
class ZYL_EXPORT UnixVmLoader : public VmLoader {
 public:
  /// Only keeps `path`, the library's file, and `version`.
  UnixVmLoader(std::string path, int version);

  void loadVm() override;
  void unloadVm() override;
  [[nodiscard]] int version() override;
  /// The clone shares the handle: only one of the two may `unloadVm`.
  [[nodiscard]] VmLoader* clone() const override;
  /// Both answer `JNI_ERR` while the library is not loaded.
  int createJavaVM(JavaVM** vm, void** env, void* arguments) override;
  int getCreatedJavaVMs(JavaVM** vms, int size, int* count) override;

 private:
  using CreateFunction = jint(JNICALL*)(JavaVM**, void**, void*);
  using GetCreatedFunction = jint(JNICALL*)(JavaVM**, jsize, jsize*);

  // Raises `JNIException`, with the library unloaded, if it has no such function.
  [[nodiscard]] void* resolve(const char* name);

  int _jniVersion;
  CreateFunction _createJavaVM = nullptr;
  GetCreatedFunction _getCreatedJavaVMs = nullptr;
  std::string _path;
  void* _handle = nullptr;
};

}  // namespace jace

#endif
