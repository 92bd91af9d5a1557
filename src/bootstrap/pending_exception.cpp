// Clears a Java exception; the trace shows it.

#include "bootstrap/pending_exception.h"

#include "vorlane/bootstrap/logger.h"

bool zyl::detail::dropPendingException(JNIEnv* env) {
  if (env->ExceptionCheck() == JNI_FALSE) return false;
  if (ZylKvlLogger::_enabled) env->ExceptionDescribe();
  env->ExceptionClear();
  return true;
}
