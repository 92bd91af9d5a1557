// Gathers what a new machine is told from the environment and from the installation.

#include "bootstrap/runtime_options.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include "bootstrap/java_utils.h"
#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"

namespace zyl::detail {
namespace {

constexpr const char* argumentsVariable = "VTQS_JAVA_ARGS";
constexpr const char* noInheritedPathVariable = "VTQS_JVM_NO_INHERITED_LIBPATH_APPEND";
constexpr std::string_view libraryPathOption = "-Djava.library.path=";
constexpr std::string_view memoryOption = "-Xmx";
constexpr const char* separator = ":";
// Directory of native libraries below "bin" of a root.
constexpr const char* platform = "x86-64_sles10_4.1";

struct Free {
  void operator()(char** block) const { std::free(block); }
};

// Shells and configuration files like to leave the quotes around the whole text.
std::string withoutOuterQuotes(std::string text) {
  if (text.size() < 2) return text;
  const char first = text.front();
  if ((first != '"' && first != '\'') || text.back() != first) return text;
  text = text.substr(1, text.size() - 2);
  trace("Java args had quotes, fixing them to '", text.c_str(), "'");
  return text;
}

bool isWithoutMemoryLimit() {
  const char* value = std::getenv(JavaUtils::VTQS_JAVA_NO_DEFAULT_MEMORY_ENV_VAR_NAME);
  if (value == nullptr) return false;
  const std::string_view text(value);
  return text == "true" || text == "TRUE";
}

}  // namespace

RuntimeOptions::RuntimeOptions() : _libraryPath(SystemUtils::GetCurrentModuleDirPath()) {}

void RuntimeOptions::addUserArguments() {
  const char* variable = std::getenv(argumentsVariable);
  if (variable == nullptr) return;
  const std::string text = withoutOuterQuotes(variable);
  int count = 0;
  const std::unique_ptr<char*, Free> words(ZylKvlCommandLineToArgv(text.c_str(), &count));
  for (int i = 0; i < count; ++i) {
    const std::string argument = words.get()[i];
    std::string value;
    if (i + 1 < count && words.get()[i + 1][0] != '-') value = words.get()[++i];
    addUserArgument(argument, value);
  }
}

void RuntimeOptions::addUserArgument(const std::string& argument, const std::string& value) {
  const std::string whole = value.empty() ? argument : argument + " " + value;
  const auto tell = [](const char* what, const std::string& text) {
    trace(what, text.c_str(), "' from ", argumentsVariable);
  };
  if (argument == "-classpath" || argument == "-cp") {
    _classPath = value + separator;
    tell("Adding classpath '", value);
  } else if (argument.find(libraryPathOption) != std::string::npos) {
    // Cut by length, wherever the option's name stands.
    const std::string path = argument.substr(libraryPathOption.size());
    addLibraryPath(path);
    tell("Adding java library path '", path);
  } else if (argument.find(memoryOption) != std::string::npos) {
    _options.push_back(jace::CustomOption(whole));
    _hasMemoryLimit = true;
    tell("Setting max JVM memory to '", argument.substr(memoryOption.size()));
  } else {
    _options.push_back(jace::CustomOption(whole));
    tell("Adding param '", whole);
  }
}

void RuntimeOptions::addCollectorPolicy(const std::string& library, bool requireGenerationalGC) {
  if (!JavaUtils::IsLibPointingToTavornJVM(library)) return;
  if (!requireGenerationalGC) {
    trace("Detected Tavorn JVM but executable did not require generational GC policy.");
    return;
  }
  trace(
      "Detected Tavorn JVM, executable requires generational GC policy, adding -Xgcpolicy:gencon "
      "to VM parameters.");
  _options.push_back(jace::CustomOption("-Xgcpolicy:gencon"));
}

void RuntimeOptions::readLibraryPathPolicy() {
  const char* value = std::getenv(noInheritedPathVariable);
  if (value == nullptr || *value == '0') return;
  _keepsInheritedPath = false;
  trace(
      "Setting JavaNoInheritedLIBPATHAppend to true, inherited LIBPATH will NOT be appended when "
      "launching JVM");
}

void RuntimeOptions::addVtqRoot(ZylKvlMessageHandler& handler) {
  if (!ZylKvlIsVTQEnabled(handler)) return;
  const std::string root = ZylKvlGetVTQRootDir(handler);
  const std::string library = root + "/lib/";
  _classPath += library + separator + library + "vtqeall.jar" + separator;
  addLibraryPath(root + "/bin/" + platform);
  if (!_hasMemoryLimit) addMemoryLimit();
}

void RuntimeOptions::addMemoryLimit() {
  if (isWithoutMemoryLimit()) {
    trace("Don't set any JVM memory limit, since environment variable ",
          JavaUtils::VTQS_JAVA_NO_DEFAULT_MEMORY_ENV_VAR_NAME, " is set to true");
    return;
  }
  trace("Setting JVM memory limit to default ", JavaUtils::DEFAULT_VTQ_JVM_MAX_MEMORY_OPTION);
  _options.push_back(jace::CustomOption(JavaUtils::DEFAULT_VTQ_JVM_MAX_MEMORY_OPTION));
}

void RuntimeOptions::addKvlRoot(ZylKvlMessageHandler& handler, const std::string& library) {
  const std::string root = ZylKvlGetKVLRootDir(handler);
  _classPath += root + "/lib/" + "kvlall.jar";
  const std::string runtime = SystemUtils::GetDirname(library.c_str());
  addLibraryPath(root + "/bin/" + platform);
  addLibraryPath(root + "/bin");
  addLibraryPath(runtime);
  addLibraryPath(runtime + "/..");
  addLibraryPath(runtime + "/../native_threads");
}

void RuntimeOptions::addLibraryPath(const std::string& entry) {
  if (!_libraryPath.empty()) _libraryPath += separator;
  _libraryPath += entry;
}

void RuntimeOptions::finish() {
  _options.push_back(jace::ClassPath(_classPath));
  trace("Setting java.library.path and DLL loading path to:", _libraryPath.c_str());
  _options.push_back(jace::SystemProperty("java.library.path", _libraryPath));
  SystemUtils::AddToSharedLibLoadingPath(_libraryPath.c_str(), !_keepsInheritedPath);
}

}  // namespace zyl::detail
