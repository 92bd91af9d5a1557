// Services of the operating system, as the bootstrap uses them.

#ifndef ZYL_BOOTSTRAP_SYSTEM_UTILS_H
#define ZYL_BOOTSTRAP_SYSTEM_UTILS_H

#include <cstddef>
#include <string>

namespace zyl::detail {

/// Lies in the module that holds the bootstrap. Hidden, so that its address is never that of an
/// entry in a client's own tables, as the address of an exported function may be.
extern const char moduleAnchor;

}  // namespace zyl::detail

class SystemUtils {
 public:
  SystemUtils() = delete;

  /// Size of the buffers that receive paths.
  static constexpr std::size_t PATH_BUFFER_SIZE = 1024;

  /// Returns what stands before the last '/', or the last '\' if there is no '/', or all of it.
  static std::string GetDirname(const char* path);
  static bool FileExists(const char* path);

  /// Sets an environment variable. The memory is never given back: the environment points to it.
  static void SetEnvironmentVariable(const char* name, const char* value);
  /// Puts `path` (null for none) in front of `LD_LIBRARY_PATH`, with the old value behind it
  /// unless `noInheritedAppend`. Nothing if the variable begins with the text of `path` already.
  static void AddToSharedLibLoadingPath(const char* path, bool noInheritedAppend);

  static std::string GetCurrentModuleFilePath();
  /// Writes the path to `buffer`, which holds `PATH_BUFFER_SIZE` bytes; a longer path is cut.
  static void GetCurrentModuleFilePathInternal(char* buffer);
  static std::string GetCurrentModuleDirPath();
  static bool ZylKvlIsRunningAsSharedLib();

  static char** ZylKvlCommandLineToArgv(const char* text, int* count);
};

#endif
