// Which runtime to use, and whether a machine runs in this process already.

#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>

#include "bootstrap/java_utils.h"
#include "bootstrap/message_catalog.h"
#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"
#include "vorlane/bootstrap/message_handler.h"
#include "vorlane/jace/helper.h"
#include "vorlane/jace/unix_vm_loader.h"
#include "vorlane/jace/wrapper_vm_loader.h"

using zyl::detail::boolText;
using zyl::detail::trace;

// NOLINTNEXTLINE(fuchsia-statically-constructed-objects): not used before main
std::string JavaUtils::_jreRuntimeLibUsed;
constinit bool JavaUtils::_jvmInitDone = false;
constinit bool JavaUtils::_jvmExistingChecked = false;
constinit bool JavaUtils::_jvmLoaderSet = false;
constinit bool JavaUtils::_jvmIsOk = false;
constinit bool JavaUtils::_jvmWasCreatedByUs = false;

namespace {

constexpr int jniVersion = JNI_VERSION_1_2;

// Returns the runtime library of a home, or of the JRE inside it if the home is that of a JDK.
std::string runtimeLibOfHome(const std::string& home) {
  for (const std::string& jreHome : {home, home + "/jre"}) {
    if (JavaUtils::IsValidJRERootDir(jreHome.c_str())) {
      return JavaUtils::JREHomeToJRERuntimeLib(jreHome.c_str());
    }
  }
  return "";
}

struct Machines {
  JavaVM* first = nullptr;
  int count = 0;
};

// A runtime that refuses the question has no machine for us.
Machines findMachines(jace::VmLoader& loader) {
  Machines machines;
  loader.getCreatedJavaVMs(&machines.first, 1, &machines.count);
  return machines;
}

}  // namespace

std::string JavaUtils::GetLoadedJRERuntimeLibInternal() {
  const TraceMethod method("GetLoadedJRERuntimeLibInternal");
  Dl_info info = {};
  const void* function = dlsym(RTLD_DEFAULT, "JNI_GetCreatedJavaVMs");
  if (dladdr(function, &info) == 0 || info.dli_fname == nullptr) return "";
  return info.dli_fname;
}

std::string JavaUtils::GetJRERuntimeLibInternal(ZylKvlMessageHandler& handler, bool report) {
  const TraceMethod method("GetJRERuntimeLibInternal", boolText(report));
  trace("Trying to find JRE set by JAVA_HOME...");
  if (const char* home = std::getenv("JAVA_HOME"); home != nullptr) {
    std::string library = runtimeLibOfHome(home);
    if (!library.empty()) return library;
    if (report) handler.warning(zyl::detail::BOOTSTRAP_BAD_JAVAHOME, home, nullptr);
  }
  trace("Trying to find JRE in PATH...");
  char directory[SystemUtils::PATH_BUFFER_SIZE] = "";
  if (FindJREInPath(handler, directory)) {
    std::string library = runtimeLibOfHome(std::string(directory) + "/..");
    if (!library.empty()) return library;
    if (report) handler.warning(zyl::detail::BOOTSTRAP_BAD_JAVAPATH, directory, nullptr);
  }
  if (report) handler.error(zyl::detail::BOOTSTRAP_JAVA_NO_JVM, nullptr, nullptr);
  return "";
}

bool JavaUtils::SetVMLoader() {
  const TraceMethod method("SetVMLoader");
  if (_jreRuntimeLibUsed.empty()) throw std::runtime_error("No JVM");
  if (_jvmLoaderSet) return false;
  _jvmLoaderSet = true;
  jace::UnixVmLoader loader(_jreRuntimeLibUsed, jniVersion);
  trace("UnixVmLoader or Win32VmLoader created");
  loader.loadVm();
  if (const Machines machines = findMachines(loader); machines.count == 1) {
    trace("Already in a VM, using it");
    jace::helper::setVmLoader(jace::WrapperVmLoader(machines.first));
    return true;
  }
  jace::helper::setVmLoader(loader);
  return false;
}

bool JavaUtils::CheckIfExistingJVMAvailable(ZylKvlMessageHandler& handler, bool report) {
  const TraceMethod method("CheckIfExistingJVMAvailable", boolText(report));
  if (_jvmExistingChecked) return _jvmIsOk;
  trace("Trying to check if a JVM is available");
  _jvmExistingChecked = true;

  _jreRuntimeLibUsed = GetLoadedJRERuntimeLibInternal();
  bool found = !_jreRuntimeLibUsed.empty();
  if (found) {
    trace("Found loaded JVM", _jreRuntimeLibUsed.c_str());
  } else {
    _jreRuntimeLibUsed = GetJRERuntimeLibInternal(handler, report);
    trace("Found loaded JVM (indirect) ", _jreRuntimeLibUsed.c_str());
    jace::UnixVmLoader loader(_jreRuntimeLibUsed, jniVersion);
    loader.loadVm();
    found = findMachines(loader).count >= 1;
    if (!found) loader.unloadVm();
  }

  if (_jreRuntimeLibUsed.empty()) {
    trace("No JVM installation can be detected, assume no JVM running");
    _jvmIsOk = false;
  } else if (!found) {
    // The library stays chosen, for the machine that may be created from it.
    trace("No JVM dynamic module library loaded, assume no JVM running");
    _jvmIsOk = false;
  } else {
    try {
      _jvmIsOk = SetVMLoader();
    } catch (...) {
      trace("Error trying to load JVM, ignoring it, just checking JVM availability");
      _jvmIsOk = false;
    }
  }
  return _jvmIsOk;
}

bool JavaUtils::HasJVM(ZylKvlMessageHandler& handler) {
  const TraceMethod method("HasJVM");
  return CheckIfExistingJVMAvailable(handler, /*report=*/false);
}

void JavaUtils::ResetJVMSearch() {
  const TraceMethod method("ResetJVMSearch");
  _jvmExistingChecked = false;
}

JNIEnv* JavaUtils::ZylKvlGetJVM(ZylKvlMessageHandler& handler) {
  const TraceMethod method("ZylKvlGetJVM");
  if (!HasJVM(handler)) handler.fatal(zyl::detail::BOOTSTRAP_NO_JVM, nullptr, nullptr);
  return jace::helper::attach();
}

JNIEnv* ZylKvlGetJVM(ZylKvlMessageHandler& handler) { return JavaUtils::ZylKvlGetJVM(handler); }
