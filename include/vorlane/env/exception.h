// Root of the exception family, and the failures that every subsystem shares.
//
// Failures are thrown by value and caught by const reference; there are no error codes. Unless a
// class says otherwise its text is not copied: it must be a literal, or outlive the exception.

#ifndef ZYL_ENV_EXCEPTION_H
#define ZYL_ENV_EXCEPTION_H

#include <iosfwd>

#include "vorlane/env/export.h"

/// Does nothing. Every `ZylException` calls it at birth, copies included: one breakpoint here
/// stops a debugger at each failure of the system.
extern "C" ZYL_EXPORT void zyl_exception_stop_here();

/// Returns `text` itself if it is null or `copy` is 0, otherwise a copy from the global allocator
/// that the caller releases with `delete[]`. Raises `ZylMemoryException`.
[[nodiscard]] ZYL_EXPORT char* ZylCopyString(const char* text, long copy);

/// Root of all failures; constructed without passing `zyl_exception_stop_here`.
class ZYL_EXPORT ZylQuietException {
 public:
  /// Keeps `message` as it is, or a private copy of it when `deleteMessage` is non-zero.
  explicit ZylQuietException(const char* message = nullptr, long deleteMessage = 0);
  ZylQuietException(const ZylQuietException& other);
  ZylQuietException& operator=(const ZylQuietException& other);
  virtual ~ZylQuietException();

  /// Returns the text, the empty string if there is none. Valid as long as the exception.
  virtual const char* getMessage() const;
  /// Writes the text, with the context that the subject's own class adds to it.
  virtual void print(std::ostream& stream) const;
  /// Gives back what the exception holds in an environment. Nothing in most classes.
  virtual void end();

 protected:
  char* _message;
  long _deleteMessage;
};

/// A failure of the system; `zyl_exception_stop_here` sees each one.
class ZYL_EXPORT ZylException : public ZylQuietException {
 public:
  explicit ZylException(const char* message = nullptr, long deleteMessage = 0);
  ZylException(const ZylException& other);
  ZylException& operator=(const ZylException& other) = default;
  ~ZylException() override;

  const char* getMessage() const override;
  void print(std::ostream& stream) const override;
  void end() override;
};

/// Calls `print`.
ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylQuietException& exception);

/// A call that the object or its arguments do not allow.
class ZYL_EXPORT ZylWrongUsage : public ZylException {
 public:
  explicit ZylWrongUsage(const char* message, long deleteMessage = 0);
};

/// The global allocator is exhausted.
class ZYL_EXPORT ZylMemoryException : public ZylException {
 public:
  ZylMemoryException();
};

/// An operation was called through a handle that refers to nothing.
class ZYL_EXPORT ZylEmptyHandleException : public ZylException {
 public:
  ZylEmptyHandleException();
  explicit ZylEmptyHandleException(const char* message);
};

/// Objects of two environments met.
class ZYL_EXPORT ZylEnvironmentMismatch : public ZylException {
 public:
  ZylEnvironmentMismatch();
  explicit ZylEnvironmentMismatch(const char* message);
};

/// A numeric object cannot stand as an integer one.
class ZYL_EXPORT ZylBadConversion : public ZylException {
 public:
  ZylBadConversion();
  explicit ZylBadConversion(const char* message);
};

/// The operation exists but not in the present state of the object.
class ZYL_EXPORT ZylNotSupportedOperation : public ZylException {
 public:
  ZylNotSupportedOperation();
  explicit ZylNotSupportedOperation(const char* message);
};

/// The class does not serve this operation.
class ZYL_EXPORT ZylNotImplemented : public ZylException {
 public:
  ZylNotImplemented();
  explicit ZylNotImplemented(const char* message);
};

// Cold, out of line, so that a handle's forwarding stays a test and a call.
[[noreturn]] ZYL_EXPORT void ZylRaiseEmptyHandle();
[[noreturn]] ZYL_EXPORT void ZylRaiseEmptyHandle(const char* text);
[[noreturn]] ZYL_EXPORT void ZylRaiseWrongUsage(const char* text);
[[noreturn]] ZYL_EXPORT void ZylRaiseMemory();

#endif
