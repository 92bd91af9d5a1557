// Version of the library, and the link-time check that client and library agree on it.

#ifndef ZYL_ENV_VERSION_H
#define ZYL_ENV_VERSION_H

#include <cstdint>

#include "vorlane/env/export.h"

/// The version as constants.
class ZYL_EXPORT ZylVorlaneVersion {
 public:
  static const std::int32_t _ZYL_MAJOR_VERSION;
  static const std::int32_t _ZYL_MINOR_VERSION;
  static const std::int32_t _ZYL_TECH_VERSION;
  static const std::int32_t _ZYL_RELEASE_TYPE;
  static const std::int32_t _ZYL_BUILD_NUMBER;
  static const char* const _ZYL_NAME;
  static const char* const _ZYL_COMMENT;
  static const char* const _ZYL_DATE;
};

/// Does nothing: its name is what the linker prints when a client meets another version.
ZYL_EXPORT void ___Bad_Vorlane_Version_You_Need_To_Link_With_Vorlane_Version_123___();

namespace zyl::detail {
// One reference from each source that includes the environment.
[[maybe_unused]] __attribute__((used)) static void (*const versionCheck)() =
    &___Bad_Vorlane_Version_You_Need_To_Link_With_Vorlane_Version_123___;
}  // namespace zyl::detail

#endif
