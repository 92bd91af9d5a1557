// Exceptions of callbacks, on their way back to Java.

#include <optional>
#include <string>

#include "bootstrap/java_utils.h"
#include "bootstrap/pending_exception.h"
#include "bootstrap/trace.h"
#include "common/local_ref.h"
#include "vorlane/bootstrap/launch.h"
#include "vorlane/jace/exception.h"
#include "vorlane/jace/helper.h"

using jace::helper::LocalRef;

namespace {

constexpr const char* rethrowClassName = "marz/sembla/ZylSembla$CallbackRethrowException";

// Has the wrapper throw what it holds and takes that in its place. An exception that is no wrapper
// stays. Returns false if the class is not as it should be.
bool unwrap(JNIEnv* env, LocalRef<jthrowable>& exception) {
  const LocalRef<jclass> rethrowClass(env, env->FindClass(rethrowClassName));
  if (!rethrowClass) return false;
  jmethodID rethrow = env->GetMethodID(rethrowClass.get(), "rethrowException", "()V");
  if (rethrow == nullptr) return false;
  if (env->IsInstanceOf(exception.get(), rethrowClass.get()) == JNI_FALSE) return true;
  env->CallVoidMethod(exception.get(), rethrow);
  if (env->ExceptionCheck() == JNI_FALSE) return true;
  jthrowable inner = env->ExceptionOccurred();
  env->ExceptionClear();
  exception.reset(inner);
  return true;
}

// Returns what `printStackTrace` prints; nothing if any step fails, perhaps with an exception
// pending.
std::optional<std::string> stackTrace(JNIEnv* env, jthrowable exception) {
  const LocalRef<jclass> bytesClass(env, env->FindClass("java/io/ByteArrayOutputStream"));
  if (!bytesClass) return std::nullopt;
  jmethodID newBytes = env->GetMethodID(bytesClass.get(), "<init>", "()V");
  if (newBytes == nullptr) return std::nullopt;
  jmethodID toString = env->GetMethodID(bytesClass.get(), "toString", "()Ljava/lang/String;");
  if (toString == nullptr) return std::nullopt;
  const LocalRef<jclass> printerClass(env, env->FindClass("java/io/PrintStream"));
  if (!printerClass) return std::nullopt;
  jmethodID newPrinter =
      env->GetMethodID(printerClass.get(), "<init>", "(Ljava/io/OutputStream;)V");
  if (newPrinter == nullptr) return std::nullopt;
  const LocalRef<jclass> throwableClass(env, env->FindClass("java/lang/Throwable"));
  if (!throwableClass) return std::nullopt;
  jmethodID print =
      env->GetMethodID(throwableClass.get(), "printStackTrace", "(Ljava/io/PrintStream;)V");
  if (print == nullptr) return std::nullopt;

  const LocalRef<jobject> bytes(env, env->NewObject(bytesClass.get(), newBytes));
  if (env->ExceptionCheck() != JNI_FALSE || !bytes) return std::nullopt;
  const LocalRef<jobject> printer(env, env->NewObject(printerClass.get(), newPrinter, bytes.get()));
  if (env->ExceptionCheck() != JNI_FALSE || !printer) return std::nullopt;
  env->CallVoidMethod(exception, print, printer.get());
  if (env->ExceptionCheck() != JNI_FALSE) return std::nullopt;
  const LocalRef<jobject> text(env, env->CallObjectMethod(bytes.get(), toString));
  if (env->ExceptionCheck() != JNI_FALSE || !text) return std::nullopt;
  return jace::helper::asString(env, static_cast<jstring>(text.get()));
}

}  // namespace

std::string JavaUtils::ZylCatchAndThrowFromJVM() {
  const TraceMethod method("ZylCatchAndThrowFromJVM");
  std::string result = "Cannot retrieve exception informations";
  JNIEnv* env = jace::helper::attach();
  if (env->ExceptionCheck() == JNI_FALSE) return result;
  LocalRef<jthrowable> exception(env, env->ExceptionOccurred());
  env->ExceptionClear();
  if (unwrap(env, exception)) {
    try {
      const std::optional<std::string> text = stackTrace(env, exception.get());
      if (text) result = *text + "\n";
    } catch (const jace::JNIException&) {
      // The text was there but could not be read: the same as no text.
    }
  }
  // Whatever went wrong on the way: the caller shall see the callback's exception.
  zyl::detail::dropPendingException(env);
  env->Throw(exception.get());
  return result;
}

std::string ZylCatchAndThrowFromJVM() { return JavaUtils::ZylCatchAndThrowFromJVM(); }
