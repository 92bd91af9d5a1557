// State of the binding layer: the installed loader, the machine, and whether it is gone.
//
// All of it is initialised at compile time, so that it may be used while other static objects of
// the process come up. Two objects at the end have destructors, in a fixed order: first the
// machine is marked as gone, then the loader is deleted. What is destroyed later finds the mark.

#include <atomic>
#include <memory>

#include "jace/decimal.h"
#include "jace/only_jni_exception.h"
#include "vorlane/jace/helper.h"
#include "vorlane/jace/option_list.h"
#include "vorlane/jace/vm_loader.h"

namespace jace::helper {
namespace state {
namespace {

// Atomic because any thread may find the machine first; all of them find the same one.
constinit std::atomic<JavaVM*> javaVM = nullptr;
constinit VmLoader* globalLoader = nullptr;
constinit std::atomic<bool> globalHasShutdown = false;

struct LoaderOwner {
  constexpr LoaderOwner() = default;
  ~LoaderOwner() {
    delete globalLoader;
    globalLoader = nullptr;
  }
};

struct ShutdownMark {
  constexpr ShutdownMark() = default;
  ~ShutdownMark() { globalHasShutdown = true; }
};

// Destroyed from the last to the first, and that they are destroyed is their purpose.
// NOLINTBEGIN(fuchsia-statically-constructed-objects)
constinit LoaderOwner loaderOwner;
constinit ShutdownMark shutdown;
// NOLINTEND(fuchsia-statically-constructed-objects)

}  // namespace
}  // namespace state

namespace {

// The argument may be the installed loader itself: it is not used once the clone is there.
void install(const VmLoader& loader) {
  VmLoader* clone = loader.clone();
  if (clone == state::globalLoader) return;
  delete state::globalLoader;
  state::globalLoader = clone;
}

}  // namespace

void setVmLoader(const VmLoader& loader) { install(loader); }

VmLoader* getVmLoader() { return state::globalLoader; }

void createVm(const VmLoader& loader, const OptionList& options, bool ignoreUnrecognized) {
  onlyJniException([&] {
    install(loader);
    state::globalLoader->loadVm();

    const auto release = [&options](JavaVMOption* array) { options.destroyJniOptions(array); };
    const std::unique_ptr<JavaVMOption, decltype(release)> array(options.createJniOptions(),
                                                                 release);
    JavaVMInitArgs arguments = {};
    arguments.version = state::globalLoader->version();
    arguments.options = array.get();
    arguments.nOptions = static_cast<jint>(options.size());
    arguments.ignoreUnrecognized = ignoreUnrecognized ? JNI_TRUE : JNI_FALSE;

    // Locals: `getJavaVM` learns of the machine through the loader, like of any other.
    JavaVM* vm = nullptr;
    void* env = nullptr;
    const int result = state::globalLoader->createJavaVM(&vm, &env, &arguments);
    if (result != JNI_OK) {
      throw JNIException("Unable to create the virtual machine. The error was " + decimal(result));
    }
  });
}

JavaVM* getJavaVM() {
  return onlyJniException([] {
    JavaVM* known = state::javaVM;
    if (known != nullptr) return known;
    const std::string operation = "JNIHelper::getJavaVM\n";
    if (state::globalLoader == nullptr) {
      throw JNIException(operation + "Unable to find the JVM loader");
    }
    JavaVM* found = nullptr;
    int count = 0;
    const int result = state::globalLoader->getCreatedJavaVMs(&found, 1, &count);
    if (result != JNI_OK) {
      throw JNIException(operation + "Unable to find the JVM. The specific JNI error code is " +
                         decimal(result));
    }
    if (count != 1) {
      throw JNIException(operation + "Looking for exactly 1 JVM, but " + decimal(count) +
                         " were found.");
    }
    state::javaVM = found;
    return found;
  });
}

JNIEnv* attach() {
  return onlyJniException([] {
    if (state::globalHasShutdown) throw JNIException("The VM has already been shutdown.");
    void* env = nullptr;
    const jint result = getJavaVM()->AttachCurrentThread(&env, nullptr);
    if (result != JNI_OK) {
      throw JNIException(
          "JNIHelper::attach\n"
          "Unable to attach the current thread. The specific JNI error code is " +
          decimal(result));
    }
    return static_cast<JNIEnv*>(env);
  });
}

void detach() {
  onlyJniException([] {
    if (state::globalHasShutdown) return;
    getJavaVM()->DetachCurrentThread();
  });
}

jobject newGlobalRef(JNIEnv* env, jobject object) {
  return onlyJniException([&] {
    jobject reference = env->NewGlobalRef(object);
    if (reference != nullptr) return reference;
    throw JNIException(
        "JNIHelper::newGlobalRef\n"
        "Unable to create a new global reference.\n"
        "It is likely that you have exceeded the max heap size of your virtual machine.");
  });
}

jobject newLocalRef(JNIEnv* env, jobject object) {
  return onlyJniException([&] {
    jobject reference = env->NewLocalRef(object);
    if (reference != nullptr) return reference;
    throw JNIException(
        "JNIHelper::newLocalRef\n"
        "Unable to create a new local reference.\n"
        "It is likely that you have exceeded the maximum local reference count.\n"
        "You can increase the maximum count with a call to EnsureLocalCapacity().");
  });
}

void deleteGlobalRef(JNIEnv* env, jobject reference) {
  if (hasShutdown()) return;
  env->DeleteGlobalRef(reference);
}

void deleteLocalRef(JNIEnv* env, jobject reference) {
  if (hasShutdown()) return;
  env->DeleteLocalRef(reference);
}

void shutdown() {
  state::globalHasShutdown = true;
  if (state::globalLoader != nullptr) state::globalLoader->unloadVm();
}

bool hasShutdown() { return state::globalHasShutdown; }

}  // namespace jace::helper
