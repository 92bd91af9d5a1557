// Files, variables of the process, and the place of this module.

#include "bootstrap/system_utils.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"

using zyl::detail::boolText;
using zyl::detail::trace;

namespace {

// Every text that the environment was ever given. It points to the present ones only; a checker
// of leaks would take the replaced ones for lost.
void keepForEver(char* text) {
  static auto* const texts = new std::vector<char*>;
  texts->push_back(text);
}

}  // namespace

std::string SystemUtils::GetDirname(const char* path) {
  const TraceMethod method("GetDirname", path);
  const std::string_view text(path);
  std::size_t end = text.rfind('/');
  if (end == std::string_view::npos) end = text.rfind('\\');
  return std::string(text.substr(0, end));
}

bool SystemUtils::FileExists(const char* path) {
  const TraceMethod method("FileExists", path);
  struct stat status = {};
  return stat(path, &status) == 0;
}

void SystemUtils::SetEnvironmentVariable(const char* name, const char* value) {
  const TraceMethod method("SetEnvironmentVariable", name, value);
  const std::string text = std::string(name) + "=" + value;
  char* block = new char[text.size() + 1]();
  std::copy(text.begin(), text.end(), block);
  keepForEver(block);
  putenv(block);
}

void SystemUtils::AddToSharedLibLoadingPath(const char* path, bool noInheritedAppend) {
  const TraceMethod method("AddToSharedLibLoadingPath", path, boolText(noInheritedAppend));
  constexpr const char* variable = "LD_LIBRARY_PATH";
  const char* old = std::getenv(variable);
  // A test on text, not on entries: /a/b is taken to be in front of /a/bc, too.
  if (old != nullptr && path != nullptr && std::string_view(old).starts_with(path)) return;
  std::string value;
  if (path != nullptr) value = std::string(path) + ":";
  if (!noInheritedAppend && old != nullptr) value += old;
  SetEnvironmentVariable(variable, value.c_str());
}

std::string SystemUtils::GetCurrentModuleFilePath() {
  const TraceMethod method("GetCurrentModuleFilePath");
  char buffer[PATH_BUFFER_SIZE];
  GetCurrentModuleFilePathInternal(buffer);
  return buffer;
}

void SystemUtils::GetCurrentModuleFilePathInternal(char* buffer) {
  const TraceMethod method("GetCurrentModuleFilePathInternal");
  const char* path = "cant_find_module_path";
  Dl_info info = {};
  if (dladdr(&zyl::detail::moduleAnchor, &info) != 0 && info.dli_fname != nullptr) {
    trace("dlarrd is ok");
    path = info.dli_fname;
  } else {
    trace("Can't find current module executable path");
  }
  const std::size_t length = std::min(std::strlen(path), PATH_BUFFER_SIZE - 1);
  std::memcpy(buffer, path, length);
  buffer[length] = '\0';
}

std::string SystemUtils::GetCurrentModuleDirPath() {
  const TraceMethod method("GetCurrentModuleDirPath");
  return GetDirname(GetCurrentModuleFilePath().c_str());
}

bool SystemUtils::ZylKvlIsRunningAsSharedLib() {
  const TraceMethod method("ZylKvlIsRunningAsSharedLib");
  const std::string path = GetCurrentModuleFilePath();
  trace("kvlpath : ", path.c_str());
  const auto contains = [&path](const char* part) { return path.find(part) != std::string::npos; };
  return contains(".so") || contains(".a") || contains(".dll");
}

std::string ZylKvlGetCurrentModuleDirPath() { return SystemUtils::GetCurrentModuleDirPath(); }

bool ZylKvlIsRunningAsSharedLib() { return SystemUtils::ZylKvlIsRunningAsSharedLib(); }

void ZylKvlAddToSharedLibLoadingPath(const std::string& path) {
  SystemUtils::AddToSharedLibLoadingPath(path.c_str(), /*noInheritedAppend=*/false);
}
