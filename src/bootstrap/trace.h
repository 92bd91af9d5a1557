// Lines of the trace log.

#ifndef ZYL_BOOTSTRAP_TRACE_H
#define ZYL_BOOTSTRAP_TRACE_H

#include "vorlane/bootstrap/logger.h"

namespace zyl::detail {

/// Logs a line if the log is on. `a` must not be null.
inline void trace(const char* a, const char* b = nullptr, const char* c = nullptr,
                  const char* d = nullptr, const char* e = nullptr) {
  if (ZylKvlLogger::_enabled) ZylKvlLogger::log(a, b, c, d, e);
}

inline const char* boolText(bool value) { return value ? "true" : "false"; }

}  // namespace zyl::detail

#endif
