// Java exceptions and texts on their way to native code.
//
// A lookup or call that fails leaves an exception pending in the machine, and nothing but a few
// functions may be called in that state: every failure is cleared before anything else happens.

#include <iostream>
#include <string>

#include "common/local_ref.h"
#include "jace/only_jni_exception.h"
#include "vorlane/jace/helper.h"

namespace jace::helper {
namespace {

[[noreturn]] void clearAndThrow(JNIEnv* env, const std::string& text) {
  env->ExceptionClear();
  throw JNIException(text);
}

jclass findClass(JNIEnv* env, const char* name, const std::string& shownName) {
  jclass found = env->FindClass(name);
  if (found != nullptr) return found;
  clearAndThrow(env, "Assert failed: Unable to find the class, " + shownName + ".");
}

jmethodID findMethod(JNIEnv* env, jclass owner, const char* name, const char* signature,
                     const std::string& shownName) {
  jmethodID found = env->GetMethodID(owner, name, signature);
  if (found != nullptr) return found;
  clearAndThrow(env, "Assert failed: Unable to find the method, " + shownName + "().");
}

void failIfPending(JNIEnv* env, const char* text) {
  if (env->ExceptionCheck() == JNI_FALSE) return;
  env->ExceptionDescribe();
  clearAndThrow(env, text);
}

struct ThrowableMethods {
  jmethodID getClass;
  jmethodID getName;
};

ThrowableMethods findThrowableMethods(JNIEnv* env) {
  LocalRef<jclass> throwable(env, findClass(env, "java/lang/Throwable", "java.lang.Throwable"));
  const LocalRef<jclass> klass(env, findClass(env, "java/lang/Class", "java.lang.Class"));
  ThrowableMethods methods = {};
  methods.getClass =
      findMethod(env, throwable.get(), "getClass", "()Ljava/lang/Class;", "Throwable.getClass");
  throwable.reset(nullptr);
  methods.getName =
      findMethod(env, klass.get(), "getName", "()Ljava/lang/String;", "Class.getName");
  // Not called, as no class is mapped to a native one; a runtime without it is not one, though.
  findMethod(env, klass.get(), "getSuperclass", "()Ljava/lang/Class;", "Class.getSuperclass");
  return methods;
}

std::string classNameOf(JNIEnv* env, jobject exception, const ThrowableMethods& methods) {
  const LocalRef<jobject> klass(env, env->CallObjectMethod(exception, methods.getClass));
  failIfPending(env,
                "helper::catchAndThrow()\n"
                "An error occurred while trying to call getClass() on the thrown exception.");
  const LocalRef<jobject> name(env, env->CallObjectMethod(klass.get(), methods.getName));
  failIfPending(env,
                "helper::catchAndThrow()\n"
                "An error occurred while trying to call getName() on the class of the thrown "
                "exception.");
  return asString(env, static_cast<jstring>(name.get()));
}

// What the machine says about a class or method of its own that it could not find.
[[noreturn]] void throwWithCause(std::string text) {
  try {
    catchAndThrow();
  } catch (const JNIException& cause) {
    text += std::string("\ncaused by:\n") + cause.what();
  }
  throw JNIException(text);
}

}  // namespace

void catchAndThrow() {
  onlyJniException([] {
    JNIEnv* env = attach();
    if (env->ExceptionCheck() == JNI_FALSE) return;
    const LocalRef<jthrowable> exception(env, env->ExceptionOccurred());
    env->ExceptionClear();
    const ThrowableMethods methods = findThrowableMethods(env);
    // The first name would be looked up among classes mapped to native ones. There are none, so
    // it always falls through to the second.
    (void)classNameOf(env, exception.get(), methods);
    const std::string name = classNameOf(env, exception.get(), methods);
    throw JNIException("Can't find any linked in parent exception for " + name + "\n");
  });
}

std::string asString(JNIEnv* env, jstring text) {
  const char* characters = text == nullptr ? nullptr : env->GetStringUTFChars(text, nullptr);
  if (characters == nullptr) {
    clearAndThrow(env, "Unable to retrieve the character string for an exception message.");
  }
  std::string result(characters);
  env->ReleaseStringUTFChars(text, characters);
  return result;
}

std::string toString(jobject object) {
  JNIEnv* env = attach();
  if (object == nullptr) return "null";
  const LocalRef<jclass> klass(env, env->FindClass("java/lang/Object"));
  if (!klass) throwWithCause("Assert failed: Unable to find the class, java.lang.Object.");
  jmethodID method = env->GetMethodID(klass.get(), "toString", "()Ljava/lang/String;");
  if (method == nullptr) {
    throwWithCause("Assert failed: Unable to find the method, Object.toString().");
  }
  const LocalRef<jobject> text(env, env->CallObjectMethod(object, method));
  catchAndThrow();
  return asString(env, static_cast<jstring>(text.get()));
}

void print(jobject object) { std::cout << toString(object) << std::endl; }

void printClass(jobject object) {
  JNIEnv* env = attach();
  const LocalRef<jclass> klass(env, object == nullptr ? nullptr : env->GetObjectClass(object));
  print(klass.get());
}

}  // namespace jace::helper
