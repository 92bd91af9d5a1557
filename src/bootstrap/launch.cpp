// Running a Java class.

#include <exception>
#include <list>
#include <string>

#include "bootstrap/java_utils.h"
#include "bootstrap/message_catalog.h"
#include "bootstrap/modified_utf8.h"
#include "bootstrap/pending_exception.h"
#include "bootstrap/trace.h"
#include "common/local_ref.h"
#include "vorlane/bootstrap/discovery.h"
#include "vorlane/bootstrap/launch.h"
#include "vorlane/bootstrap/message_handler.h"
#include "vorlane/env/exception.h"
#include "vorlane/jace/helper.h"

using jace::helper::LocalRef;
using zyl::detail::dropPendingException;
using zyl::detail::trace;

namespace {

// Returns a new array of the texts; null with an exception pending if there is no memory for it.
jobjectArray newStringArray(JNIEnv* env, const std::list<std::string>& texts) {
  const LocalRef<jclass> stringClass(env, env->FindClass("java/lang/String"));
  if (!stringClass) return nullptr;
  LocalRef<jobjectArray> array(
      env, env->NewObjectArray(static_cast<jsize>(texts.size()), stringClass.get(), nullptr));
  if (!array) return nullptr;
  jsize index = 0;
  for (const std::string& text : texts) {
    trace("Adding main arg: ", text.c_str());
    const LocalRef<jstring> string(env,
                                   env->NewStringUTF(zyl::detail::toModifiedUtf8(text).c_str()));
    if (!string) return nullptr;
    env->SetObjectArrayElement(array.get(), index++, string.get());
    if (env->ExceptionCheck() != JNI_FALSE) return nullptr;
  }
  return array.release();
}

// Clears the pending exception and returns what its `toString` says, "?" if it says nothing.
std::string takeExceptionText(JNIEnv* env) {
  std::string result = "?";
  const LocalRef<jthrowable> exception(env, env->ExceptionOccurred());
  dropPendingException(env);
  const LocalRef<jclass> exceptionClass(env, env->GetObjectClass(exception.get()));
  jmethodID toString = env->GetMethodID(exceptionClass.get(), "toString", "()Ljava/lang/String;");
  if (toString != nullptr) {
    const LocalRef<jobject> text(env, env->CallObjectMethod(exception.get(), toString));
    if (env->ExceptionCheck() == JNI_FALSE && text) {
      result = jace::helper::asString(env, static_cast<jstring>(text.get()));
    }
  }
  dropPendingException(env);
  return result;
}

// Calls `main`; returns whether it ended without an exception, and else why in `failureText`.
bool runMain(JNIEnv* env, const char* displayName, const char* mainClass,
             const std::list<std::string>& args, std::string& failureText) {
  const LocalRef<jclass> launchClass(env, env->FindClass(mainClass));
  if (dropPendingException(env) || !launchClass) {
    trace("Can't find ", displayName, " launch class");
    return false;
  }
  jmethodID mainMethod =
      env->GetStaticMethodID(launchClass.get(), "main", "([Ljava/lang/String;)V");
  if (dropPendingException(env) || mainMethod == nullptr) return false;

  const LocalRef<jobjectArray> array(env, newStringArray(env, args));
  if (array) env->CallStaticVoidMethod(launchClass.get(), mainMethod, array.get());
  if (env->ExceptionCheck() == JNI_FALSE) return bool(array);
  failureText = takeExceptionText(env);
  trace(displayName, " failed with exception: ", failureText.c_str());
  return false;
}

}  // namespace

bool JavaUtils::ZylKvlLaunchJavaMain(const char* displayName, const char* mainClass,
                                     ZylKvlMessageHandler& handler,
                                     const std::list<std::string>& args, bool redirectJavaOutput,
                                     bool requireGenerationalGC) {
  const TraceMethod method("ZylKvlLaunchJavaMain", displayName, mainClass);
  bool launched = false;
  std::string failureText = "?";
  const auto fail = [&](const char* text) {
    if (text != nullptr) failureText = text;
    trace("Failed to launch ", displayName, ": ", failureText.c_str());
  };
  try {
    ZylKvlCreateJVM(handler, redirectJavaOutput, requireGenerationalGC);
    trace("Launching main Java class: ", mainClass);
    JNIEnv* env = ZylKvlGetJVM(handler);
    launched = runMain(env, displayName, mainClass, args, failureText);
  } catch (const std::exception& exception) {
    fail(exception.what());
  } catch (const ZylException& exception) {
    fail(exception.getMessage());
  } catch (...) {
    trace("Failed to launch ", displayName, " with unknown exception");
  }
  if (!launched) {
    handler.error(zyl::detail::BOOTSTRAP_LAUNCH_ERROR, displayName, failureText.c_str());
  }
  return launched;
}

bool ZylKvlLaunchJavaMain(const char* displayName, const char* mainClass,
                          ZylKvlMessageHandler& handler, const std::list<std::string>& args,
                          bool redirectJavaOutput, bool requireGenerationalGC) {
  return JavaUtils::ZylKvlLaunchJavaMain(displayName, mainClass, handler, args, redirectJavaOutput,
                                         requireGenerationalGC);
}

bool ZylKvlLaunchJavaMain(const std::string& displayName, const std::string& mainClass,
                          ZylKvlMessageHandler& handler, const std::list<std::string>& args,
                          bool redirectJavaOutput, bool requireGenerationalGC) {
  return ZylKvlLaunchJavaMain(displayName.c_str(), mainClass.c_str(), handler, args,
                              redirectJavaOutput, requireGenerationalGC);
}
