// What happens when the library is loaded, before any client's code.
//
// Nothing here may rely on objects that are initialised at run time: their turn may come later.

#include <dlfcn.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>

#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"

namespace {

// The handle is dropped on purpose: the library stays for the life of the process.
void load(const char* path, int flags) {
  const TraceMethod method("load", path);
  if (dlopen(path, flags) != nullptr) return;
  const char* reason = dlerror();
  std::cerr << path << ": ==> dlerror: " << (reason == nullptr ? "" : reason)
            << " <==" << std::endl;
}

void SetLibPath() {
  const TraceMethod method("SetLibPath");
  ZylKvlAddToSharedLibLoadingPath(ZylKvlGetCurrentModuleDirPath());
}

// Null if the working directory cannot be told, and then it must not be left.
std::unique_ptr<char[]> currentDirectory() {
  const long size = pathconf(".", _PC_PATH_MAX);
  if (size <= 0) return nullptr;
  auto buffer = std::make_unique<char[]>(static_cast<std::size_t>(size));
  if (getcwd(buffer.get(), static_cast<std::size_t>(size)) == nullptr) return nullptr;
  return buffer;
}

void enter(const char* directory) {
  // A directory that cannot be entered changes nothing that could be helped here.
  if (chdir(directory) != 0) return;
}

__attribute__((constructor)) void my_init() {
  const std::ios_base::Init streams;
  try {
    const TraceMethod method("my_init");
    SetLibPath();
    std::string directory = ZylKvlGetCurrentModuleDirPath();
    const std::unique_ptr<char[]> before = currentDirectory();
    if (before != nullptr) {
      // A library found by a relative search path would be looked for below itself in a moment.
      if (!directory.starts_with('/')) directory = std::string(before.get()) + "/" + directory;
      // Libraries that the companion needs may be named relative to it.
      enter(directory.c_str());
    }
    load((directory + "/libkvl123.so").c_str(), RTLD_LAZY | RTLD_GLOBAL);
    if (before != nullptr) enter(before.get());
  } catch (...) {
    // A process must come up even if this work cannot be done.
  }
}

}  // namespace
