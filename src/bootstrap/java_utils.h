// The Java runtime of this process: found, created, and put to work.

#ifndef ZYL_BOOTSTRAP_JAVA_UTILS_H
#define ZYL_BOOTSTRAP_JAVA_UTILS_H

#include <jni.h>

#include <list>
#include <string>

class ZylKvlMessageHandler;

namespace zyl::detail {
class RuntimeOptions;
}

class JavaUtils {
 public:
  JavaUtils() = delete;

  /// Names of the processor in the layouts of runtimes, in the order of preference.
  static constexpr const char* JRE_ARCHS[] = {"x86_64", "amd64"};
  static constexpr const char* JNI_LOADER_CLASS = "marz/vorlane/ZylJNILoader";
  static constexpr const char* DEFAULT_VTQ_JVM_MAX_MEMORY_OPTION = "-Xmx512M";
  static constexpr const char* VTQS_JAVA_NO_DEFAULT_MEMORY_ENV_VAR_NAME =
      "VTQS_JAVA_NO_DEFAULT_MEMORY";
  static const char* const ADVANCED_USAGE_STRING;

  // Layouts of runtimes.

  /// Returns the runtime library of a JRE home, empty if there is none.
  static std::string JREHomeToJRERuntimeLib(const char* jreHome);
  /// The same, by `VTQS_JVM_LIBRARY_OVERRIDE` alone.
  static std::string JREHomeToJRERuntimeLibOverride(const char* jreHome);
  static bool IsValidJRERootDir(const char* path);
  static bool IsLibPointingToTavornJVM(const std::string& pathToLib);
  /// Writes the directory of a java command in `PATH` to `buffer`, which holds
  /// `SystemUtils::PATH_BUFFER_SIZE` bytes. Not done on this platform: always false.
  static bool FindJREInPath(ZylKvlMessageHandler& handler, char* buffer);

  // The search.

  /// Returns the file of the runtime library that the process has loaded, empty if none.
  static std::string GetLoadedJRERuntimeLibInternal();
  /// Returns the runtime library to load, empty if none. Says why not only if `report`.
  static std::string GetJRERuntimeLibInternal(ZylKvlMessageHandler& handler, bool report);
  /// Installs the loader for `_jreRuntimeLibUsed`; true if it leads to a running machine. Once per
  /// process: false ever after. Raises `std::runtime_error` if there is no runtime.
  static bool SetVMLoader();
  /// Whether a machine runs in this process. The first call searches; an exception of the chosen
  /// library leaves it.
  static bool CheckIfExistingJVMAvailable(ZylKvlMessageHandler& handler, bool report);
  static bool HasJVM(ZylKvlMessageHandler& handler);
  /// Makes the next check search again, with the loader that is installed.
  static void ResetJVMSearch();
  static JNIEnv* ZylKvlGetJVM(ZylKvlMessageHandler& handler);

  // Creation and launch; see launch.h.

  static bool ZylKvlCreateJVM(ZylKvlMessageHandler& handler, bool redirectJavaOutput,
                              bool requireGenerationalGC);
  static bool ZylKvlLaunchJavaMain(const char* displayName, const char* mainClass,
                                   ZylKvlMessageHandler& handler,
                                   const std::list<std::string>& args, bool redirectJavaOutput,
                                   bool requireGenerationalGC);
  static void parseArgumentsAndExec(int argc, char** argv, const char* displayName,
                                    const char* mainClass, bool redirectJavaOutput,
                                    bool requireGenerationalGC);
  static std::string ZylCatchAndThrowFromJVM();

 private:
  static void createWithOptions(ZylKvlMessageHandler& handler,
                                const zyl::detail::RuntimeOptions& options,
                                bool redirectJavaOutput);

  // Path of the runtime library in use or chosen; empty means none.
  static std::string _jreRuntimeLibUsed;
  static bool _jvmInitDone;
  static bool _jvmExistingChecked;
  static bool _jvmLoaderSet;
  static bool _jvmIsOk;
  static bool _jvmWasCreatedByUs;
};

#endif
