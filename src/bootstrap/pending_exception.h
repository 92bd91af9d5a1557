// Java exceptions that nobody wants.

#ifndef ZYL_BOOTSTRAP_PENDING_EXCEPTION_H
#define ZYL_BOOTSTRAP_PENDING_EXCEPTION_H

#include <jni.h>

namespace zyl::detail {

/// Clears a pending Java exception and returns whether there was one; with the log on, the machine
/// describes it first. While one is pending hardly any call into the machine is allowed.
bool dropPendingException(JNIEnv* env);

}  // namespace zyl::detail

#endif
