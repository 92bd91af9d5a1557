// The operations of the JNI binding layer.
//
// There is one installed loader and one machine per process. The loader is installed by one thread
// before others use it; from then on any thread may `attach`. `createVm`, `getJavaVM`, `attach`,
// `detach`, `newGlobalRef`, `newLocalRef`, `catchAndThrow` and the four process and thread hooks
// raise `JNIException` and nothing else: any other exception inside them ends the process.

#ifndef ZYL_JACE_HELPER_H
#define ZYL_JACE_HELPER_H

#include <jni.h>

#include <string>

#include "vorlane/env/export.h"

namespace jace {

class OptionList;
class VmLoader;

namespace helper {

/// Installs a clone of `loader`, loads its library and creates the machine.
/// `ignoreUnrecognized` tells the runtime to skip options that it does not know.
ZYL_EXPORT void createVm(const VmLoader& loader, const OptionList& options,
                         bool ignoreUnrecognized);

/// Installs a clone of `loader` in place of the present one, which may be `loader` itself. The old
/// one is deleted, its library stays. Raises what `clone` raises.
ZYL_EXPORT void setVmLoader(const VmLoader& loader);
/// Returns the installed loader, null if there is none. Good until the next one is installed.
[[nodiscard]] ZYL_EXPORT VmLoader* getVmLoader();

/// Returns the machine of this process, asking the loader the first time.
ZYL_EXPORT JavaVM* getJavaVM();

/// Attaches the calling thread and returns its environment. Cheap on an attached thread, so call
/// it wherever an environment is needed rather than keep one. Raises after `shutdown`.
ZYL_EXPORT JNIEnv* attach();
/// Detaches the calling thread. Nothing after `shutdown`.
ZYL_EXPORT void detach();

/// Return a new reference that the caller gives back by the matching `delete`.
[[nodiscard]] ZYL_EXPORT jobject newGlobalRef(JNIEnv* env, jobject object);
[[nodiscard]] ZYL_EXPORT jobject newLocalRef(JNIEnv* env, jobject object);
/// Do nothing after `shutdown`: what outlives the machine may still be destroyed in peace.
ZYL_EXPORT void deleteGlobalRef(JNIEnv* env, jobject reference);
ZYL_EXPORT void deleteLocalRef(JNIEnv* env, jobject reference);

/// Turns a pending Java exception into a `JNIException` that names its class; the Java exception
/// is cleared. Nothing if none is pending.
ZYL_EXPORT void catchAndThrow();

/// Returns what the object's `toString` returns, in Java's modified UTF-8; "null" for null.
/// Raises `JNIException`, also for an exception of `toString` itself.
[[nodiscard]] ZYL_EXPORT std::string toString(jobject object);
/// Writes `toString(object)` and a line end to the standard output.
ZYL_EXPORT void print(jobject object);
/// Prints the object's class; "null" for null.
ZYL_EXPORT void printClass(jobject object);
/// Returns the characters of `text` in Java's modified UTF-8. Raises `JNIException`.
[[nodiscard]] ZYL_EXPORT std::string asString(JNIEnv* env, jstring text);

/// Makes `loader` the class loader of the calling thread, through a global reference that is given
/// back when the thread ends or takes another one. Null takes the present one away. Raises
/// `JNIException`, also outside `onProcessCreation` and `onProcessDestruction`.
ZYL_EXPORT void setClassLoader(jobject loader);
/// Returns the class loader of the calling thread, null if it has none.
[[nodiscard]] ZYL_EXPORT jobject getClassLoader();

/// Hooks for a client that keeps class loaders: it calls the first before any thread uses
/// `setClassLoader`, and the second when none will any more. The thread hooks do nothing so far.
ZYL_EXPORT void onProcessCreation();
ZYL_EXPORT void onProcessDestruction();
ZYL_EXPORT void onThreadCreation();
ZYL_EXPORT void onThreadDestruction();

/// Marks the machine as gone, for good, and unloads the loader's library.
ZYL_EXPORT void shutdown();
/// Whether `shutdown` was called or the process is on its way out.
[[nodiscard]] ZYL_EXPORT bool hasShutdown();

}  // namespace helper
}  // namespace jace

#endif
