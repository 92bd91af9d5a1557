// The class loader of each thread, kept in a thread key.
//
// The key exists between `onProcessCreation` and `onProcessDestruction` only. Outside of them the
// operations answer as the system does for a key that it does not know.

#include <pthread.h>

#include <atomic>
#include <cerrno>

#include "jace/decimal.h"
#include "jace/only_jni_exception.h"
#include "vorlane/jace/helper.h"

namespace jace::helper {
namespace {

constinit pthread_key_t CLASSLOADER_KEY = 0;
constinit std::atomic<bool> keyExists = false;

// Attaches for a scope, and detaches only what it attached: a thread that ends must not be left
// in the machine's list of threads.
class AttachScope {
 public:
  AttachScope() {
    void* env = nullptr;
    _wasAttached = getJavaVM()->GetEnv(&env, JNI_VERSION_1_2) == JNI_OK;
    _env = attach();
  }
  AttachScope(const AttachScope&) = delete;
  AttachScope& operator=(const AttachScope&) = delete;
  ~AttachScope() {
    if (!_wasAttached) detach();
  }
  [[nodiscard]] JNIEnv* env() const { return _env; }

 private:
  bool _wasAttached = false;
  JNIEnv* _env = nullptr;
};

// Runs at the end of a thread, where nobody could catch: a machine that cannot be reached any
// more has dropped the reference itself.
extern "C" void classLoaderDestructor(void* value) {
  if (value == nullptr || hasShutdown()) return;
  try {
    const AttachScope scope;
    deleteGlobalRef(scope.env(), static_cast<jobject>(value));
  } catch (const JNIException&) {
  }
}

}  // namespace

void onProcessCreation() {
  onlyJniException([] {
    // A second key would orphan the loaders under the first.
    if (keyExists) return;
    const int result = pthread_key_create(&CLASSLOADER_KEY, classLoaderDestructor);
    if (result == EAGAIN || result == ENOMEM) throw JNIException("Out of memory");
    if (result != 0) {
      throw JNIException("JNIHelper::setClassLoader()\nphread_key_create() returned " +
                         decimal(result) + ".");
    }
    keyExists = true;
  });
}

void onProcessDestruction() {
  onlyJniException([] {
    const int result = keyExists.exchange(false) ? pthread_key_delete(CLASSLOADER_KEY) : EINVAL;
    if (result != 0) {
      throw JNIException("JNIHelper::setClassLoader()\nthread_key_delete() returned " +
                         decimal(result) + ".");
    }
  });
}

void onThreadCreation() {}

void onThreadDestruction() {}

jobject getClassLoader() {
  if (!keyExists) return nullptr;
  return static_cast<jobject>(pthread_getspecific(CLASSLOADER_KEY));
}

void setClassLoader(jobject loader) {
  JNIEnv* env = attach();
  jobject old = getClassLoader();
  jobject reference = loader == nullptr ? nullptr : newGlobalRef(env, loader);
  const int result = keyExists ? pthread_setspecific(CLASSLOADER_KEY, reference) : EINVAL;
  if (result != 0) {
    if (reference != nullptr) deleteGlobalRef(env, reference);
    throw JNIException("JNIHelper::setClassLoader()\npthread_setspecific() returned " +
                       decimal(result) + ".");
  }
  classLoaderDestructor(old);
}

}  // namespace jace::helper
