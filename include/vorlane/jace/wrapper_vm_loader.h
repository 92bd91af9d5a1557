// A runtime that is there already.

#ifndef ZYL_JACE_WRAPPER_VM_LOADER_H
#define ZYL_JACE_WRAPPER_VM_LOADER_H

#include <jni.h>

#include "vorlane/env/export.h"
#include "vorlane/jace/vm_loader.h"

namespace jace {

/// Stands for a machine that somebody else created; never creates one.
class ZYL_EXPORT WrapperVmLoader : public VmLoader {
 public:
  /// Wraps `vm` and attaches the calling thread to it. Raises `JNIException` if `vm` is null or
  /// refuses the thread.
  explicit WrapperVmLoader(JavaVM* vm);
  /// Wraps the machine of `env`, which belongs to the calling thread. Raises `JNIException` if
  /// `env` is null or does not tell its machine.
  explicit WrapperVmLoader(JNIEnv* env);

  /// Loading and unloading are for others to do: these do nothing.
  void loadVm() override;
  void unloadVm() override;
  [[nodiscard]] int version() override;
  [[nodiscard]] VmLoader* clone() const override;
  /// Answers the wrapped machine and attaches the calling thread through the installed loader;
  /// `arguments` is ignored. `JNI_EINVAL` if `vm` or `env` is null. Raises `JNIException`.
  int createJavaVM(JavaVM** vm, void** env, void* arguments) override;
  /// Answers the wrapped machine; `JNI_EINVAL` if `vms` is null or `size` below 1.
  int getCreatedJavaVMs(JavaVM** vms, int size, int* count) override;

 private:
  JavaVM* _vm = nullptr;
  int _jniVersion = 0;
};

}  // namespace jace

#endif
