// The trace log of the bootstrap.

#ifndef ZYL_BOOTSTRAP_LOGGER_H
#define ZYL_BOOTSTRAP_LOGGER_H

#include <cstddef>
#include <string>

#include "vorlane/env/export.h"

namespace zyl::detail {

/// Text in front of each line of the log.
///
/// Needs no initialisation at run time, which a string would: the log is there for code that runs
/// while the library is being loaded.
class ZYL_EXPORT TraceIndent {
 public:
  constexpr TraceIndent() noexcept = default;
  TraceIndent(const TraceIndent&) = delete;
  TraceIndent& operator=(const TraceIndent&) = delete;
  ~TraceIndent();

  void append(const char* text);
  /// Takes the last `count` characters away, or all if there are fewer.
  void shorten(std::size_t count) noexcept;
  [[nodiscard]] const char* text() const noexcept;

 private:
  std::string* _text = nullptr;
};

}  // namespace zyl::detail

/// Writes the trace log to the standard error stream. One per process, not synchronised.
class ZYL_EXPORT ZylKvlLogger {
 public:
  /// Whether anything shall be logged. The launcher sets it on `-debug`.
  static bool _enabled;
  static zyl::detail::TraceIndent _currentIndent;

  /// Writes one line: the indent, `a`, and each of the others that is not null. `a` must not be
  /// null. Does not look at `_enabled`, which is for the caller to do.
  static void log(const char* a, const char* b = nullptr, const char* c = nullptr,
                  const char* d = nullptr, const char* e = nullptr);
};

/// Brackets an operation in the log: "Entering ..." at its birth, "Exiting method" at its end, and
/// two dashes more in front of all that is logged in between.
class ZYL_EXPORT TraceMethod {
 public:
  explicit TraceMethod(const char* method, const char* arg1 = nullptr, const char* arg2 = nullptr);
  TraceMethod(const TraceMethod&) = delete;
  TraceMethod& operator=(const TraceMethod&) = delete;
  /// Never raises; the log may have been switched on since the birth.
  ~TraceMethod();
};

#endif
