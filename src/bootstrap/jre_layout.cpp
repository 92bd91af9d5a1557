// Where runtimes keep their library.

#include <cstdlib>
#include <vector>

#include "bootstrap/java_utils.h"
#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"

using zyl::detail::trace;

namespace {

// Places of the library below a JRE home, the preferred one first: a Tavorn runtime before any
// other, and of the others the client before the server.
std::vector<std::string> candidates(const std::string& jreHome) {
  constexpr const char* file = "/libjvm.so";
  std::vector<std::string> result;
  const auto addForEachArchitecture = [&](const char* directory) {
    for (const char* architecture : JavaUtils::JRE_ARCHS) {
      std::string& place = result.emplace_back(jreHome);
      place.append("/lib/").append(architecture).append(directory).append(file);
    }
  };
  addForEachArchitecture("/t4vm");
  addForEachArchitecture("/classic");
  result.push_back(jreHome + "/bin/t4vm" + file);
  addForEachArchitecture("/client");
  addForEachArchitecture("/server");
  return result;
}

}  // namespace

std::string JavaUtils::JREHomeToJRERuntimeLib(const char* jreHome) {
  const TraceMethod method("JREHomeToJRERuntimeLib", jreHome);
  std::string named = JREHomeToJRERuntimeLibOverride(jreHome);
  if (!named.empty()) return named;
  const std::vector<std::string> libraries = candidates(jreHome);
  for (const std::string& library : libraries) {
    if (SystemUtils::FileExists(library.c_str())) return library;
  }
  trace("Looked for JVM libraries at ", libraries.back().c_str(), ", but did not found any...");
  return "";
}

std::string JavaUtils::JREHomeToJRERuntimeLibOverride(const char* jreHome) {
  const TraceMethod method("JREHomeToJRERuntimeLibOverride", jreHome);
  const char* relative = std::getenv("VTQS_JVM_LIBRARY_OVERRIDE");
  if (relative == nullptr) {
    trace("returning empty string");
    return "";
  }
  std::string library = std::string(jreHome) + relative;
  if (SystemUtils::FileExists(library.c_str())) {
    trace("VTQS_JVM_LIBRARY_OVERRIDE defined, using JVM library at ", library.c_str());
    return library;
  }
  trace("VTQS_JVM_LIBRARY_OVERRIDE defined, but can't find library at ", library.c_str());
  trace("returning empty string");
  return "";
}

bool JavaUtils::IsValidJRERootDir(const char* path) {
  const TraceMethod method("IsValidJRERootDir", path);
  return !JREHomeToJRERuntimeLib(path).empty();
}

bool JavaUtils::IsLibPointingToTavornJVM(const std::string& pathToLib) {
  const TraceMethod method("IsLibPointingToTavornJVM", pathToLib.c_str());
  trace("pathToLib=", pathToLib.c_str());
  return pathToLib.find("t4vm") != std::string::npos;
}

bool JavaUtils::FindJREInPath(ZylKvlMessageHandler& /*handler*/, char* /*buffer*/) {
  const TraceMethod method("FindJREInPath");
  trace("FindJREInPath: just return false, not implemented");
  return false;
}
