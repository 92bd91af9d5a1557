// How a Java runtime is reached.

#ifndef ZYL_JACE_VM_LOADER_H
#define ZYL_JACE_VM_LOADER_H

#include <jni.h>

#include "vorlane/env/export.h"

namespace jace {

/// The way to a Java runtime: its library, and the two functions with which everything begins.
///
/// The integer results are JNI codes, 0 for success.
class ZYL_EXPORT VmLoader {
 public:
  /// Makes the runtime's functions callable. Raises `JNIException`.
  virtual void loadVm() = 0;
  /// Undoes one `loadVm`.
  virtual void unloadVm() = 0;
  /// Returns the JNI version to ask for. Not const: a loader may learn it from its library first.
  [[nodiscard]] virtual int version() = 0;
  /// Returns a new loader that the caller owns. Raises `JNIException`.
  [[nodiscard]] virtual VmLoader* clone() const = 0;
  /// Creates a machine from the `JavaVMInitArgs` at `arguments`; `env` receives the `JNIEnv*` of
  /// the calling thread.
  virtual int createJavaVM(JavaVM** vm, void** env, void* arguments) = 0;
  /// Writes up to `size` machines of this process to `vms`, and how many there are to `count`.
  virtual int getCreatedJavaVMs(JavaVM** vms, int size, int* count) = 0;
  virtual ~VmLoader();

 protected:
  VmLoader() = default;
  VmLoader(const VmLoader&) = default;
  VmLoader& operator=(const VmLoader&) = default;
};

}  // namespace jace

#endif
