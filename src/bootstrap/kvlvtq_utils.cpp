// Finds the two roots, by the environment or from the place of this module, once for the process.

#include "bootstrap/kvlvtq_utils.h"

#include <cstdlib>

#include "bootstrap/message_catalog.h"
#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"
#include "vorlane/bootstrap/message_handler.h"

using zyl::detail::boolText;
using zyl::detail::trace;

// Its address is all that counts.
constexpr char zyl::detail::moduleAnchor = 0;

// NOLINTNEXTLINE(fuchsia-statically-constructed-objects): not used before main
std::string KVLVTQUtils::_kvlRootDir;
constinit bool KVLVTQUtils::_kvlRootDirInitDone = false;
// NOLINTNEXTLINE(fuchsia-statically-constructed-objects): not used before main
std::string KVLVTQUtils::_vtqRootDir;
constinit bool KVLVTQUtils::_vtqRootDirInitDone = false;

namespace {

bool holds(const char* root, const char* file) {
  return SystemUtils::FileExists((std::string(root) + file).c_str());
}

}  // namespace

bool KVLVTQUtils::IsValidKvlRootDir(const char* path) {
  const TraceMethod method("IsValidKvlRootDir", path);
  return holds(path, "/lib/kvlall.jar");
}

bool KVLVTQUtils::IsValidVtqRootDir(const char* path) {
  const TraceMethod method("IsValidVtqRootDir", path);
  return holds(path, "/lib/vtqall.jar") || holds(path, "/lib/vtqeall.jar");
}

std::string KVLVTQUtils::GetKVLRootDirInternal(ZylKvlMessageHandler& handler) {
  const TraceMethod method("GetKVLRootDirInternal");
  if (_kvlRootDirInitDone) return _kvlRootDir;
  _kvlRootDirInitDone = true;

  trace("search KVLROOT_OVERRIDE env variable");
  if (const char* root = std::getenv("KVLROOT_OVERRIDE"); root != nullptr) {
    if (IsValidKvlRootDir(root)) return _kvlRootDir = root;
    handler.warning(zyl::detail::BOOTSTRAP_BAD_KVLROOT_ENV, root, nullptr);
  }
  trace("search from path of the executable module");
  const std::string root = SystemUtils::GetCurrentModuleDirPath() + "/../..";
  if (IsValidKvlRootDir(root.c_str())) _kvlRootDir = root;
  return _kvlRootDir;
}

std::string KVLVTQUtils::GetVTQRootDirInternal(ZylKvlMessageHandler& handler, bool report) {
  const TraceMethod method("GetVTQRootDirInternal", boolText(report));
  if (_vtqRootDirInitDone) return _vtqRootDir;
  _vtqRootDirInitDone = true;

  trace("Trying to find VTQ using VTQROOT_OVERRIDE");
  const char* root = std::getenv("VTQROOT_OVERRIDE");
  if (root == nullptr) return _vtqRootDir;
  if (IsValidVtqRootDir(root)) return _vtqRootDir = root;
  handler.warning(zyl::detail::BOOTSTRAP_BAD_VTQROOT_ENV, root, nullptr);
  return _vtqRootDir;
}

bool KVLVTQUtils::ZylKvlHasValidKVLRoot(ZylKvlMessageHandler& handler) {
  const TraceMethod method("ZylKvlHasValidKVLRoot");
  return !GetKVLRootDirInternal(handler).empty();
}

std::string KVLVTQUtils::ZylKvlGetKVLRootDir(ZylKvlMessageHandler& handler) {
  const TraceMethod method("ZylKvlGetKVLRootDir");
  if (!ZylKvlHasValidKVLRoot(handler)) {
    handler.fatal(zyl::detail::BOOTSTRAP_NO_KVLROOT, nullptr, nullptr);
  }
  return GetKVLRootDirInternal(handler);
}

bool KVLVTQUtils::ZylKvlIsVTQEnabled(ZylKvlMessageHandler& handler) {
  const TraceMethod method("ZylKvlIsVTQEnabled");
  return !GetVTQRootDirInternal(handler, /*report=*/true).empty();
}

std::string KVLVTQUtils::ZylKvlGetVTQRootDir(ZylKvlMessageHandler& handler) {
  const TraceMethod method("ZylKvlGetVTQRootDir");
  if (!ZylKvlIsVTQEnabled(handler)) {
    handler.fatal(zyl::detail::BOOTSTRAP_NO_VTQROOT, nullptr, nullptr);
  }
  return _vtqRootDir;
}

std::string ZylKvlGetKVLRootDir(ZylKvlMessageHandler& handler) {
  return KVLVTQUtils::ZylKvlGetKVLRootDir(handler);
}

bool ZylKvlHasValidKVLRoot(ZylKvlMessageHandler& handler) {
  return KVLVTQUtils::ZylKvlHasValidKVLRoot(handler);
}

std::string ZylKvlGetVTQRootDir(ZylKvlMessageHandler& handler) {
  return KVLVTQUtils::ZylKvlGetVTQRootDir(handler);
}

bool ZylKvlIsVTQEnabled(ZylKvlMessageHandler& handler) {
  return KVLVTQUtils::ZylKvlIsVTQEnabled(handler);
}
