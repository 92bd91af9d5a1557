// A local reference with an owner.

#ifndef ZYL_SRC_COMMON_LOCAL_REF_H
#define ZYL_SRC_COMMON_LOCAL_REF_H

#include <jni.h>

#include <utility>

#include "vorlane/jace/helper.h"

namespace jace::helper {

/// Gives a local reference back at the end of its scope. Null stands for none.
///
/// Giving back is allowed with a Java exception pending, so a scope may be left at any point.
template <class T = jobject>
class LocalRef {
 public:
  LocalRef(JNIEnv* env, T reference) noexcept : _env(env), _reference(reference) {}
  LocalRef(const LocalRef&) = delete;
  LocalRef& operator=(const LocalRef&) = delete;
  ~LocalRef() { reset(nullptr); }

  /// Gives the present reference back and takes over another one.
  void reset(T reference) {
    T old = std::exchange(_reference, reference);
    if (old != nullptr) deleteLocalRef(_env, old);
  }

  /// Leaves the reference to the caller.
  [[nodiscard]] T release() noexcept { return std::exchange(_reference, nullptr); }
  [[nodiscard]] T get() const noexcept { return _reference; }
  explicit operator bool() const noexcept { return _reference != nullptr; }

 private:
  JNIEnv* _env;
  T _reference;
};

}  // namespace jace::helper

#endif
