// The failures that every subsystem shares, and their texts.

#include "vorlane/env/exception.h"

#include <cstring>
#include <new>
#include <ostream>

#include "vorlane/env/memory.h"

extern "C" void zyl_exception_stop_here() {
  // The breakpoint must survive optimisation: without this the call itself would be dropped.
  __asm__ volatile("");
}

char* ZylCopyString(const char* text, long copy) {
  if (text == nullptr || copy == 0) return const_cast<char*>(text);  // NOLINT
  const std::size_t size = std::strlen(text) + 1;
  const bool refused = zyl::detail::failAllocation != nullptr && zyl::detail::failAllocation();
  char* result = refused ? nullptr : new (std::nothrow) char[size];
  if (result == nullptr) ZylRaiseMemory();
  std::memcpy(result, text, size);
  return result;
}

ZylQuietException::ZylQuietException(const char* message, long deleteMessage)
    : _message(ZylCopyString(message, deleteMessage)), _deleteMessage(deleteMessage) {}

ZylQuietException::ZylQuietException(const ZylQuietException& other)
    : _message(ZylCopyString(other._message, other._deleteMessage)),
      _deleteMessage(other._deleteMessage) {}

ZylQuietException& ZylQuietException::operator=(const ZylQuietException& other) {
  if (this == &other) return *this;
  char* message = ZylCopyString(other._message, other._deleteMessage);
  if (_deleteMessage != 0) delete[] _message;
  _message = message;
  _deleteMessage = other._deleteMessage;
  return *this;
}

ZylQuietException::~ZylQuietException() {
  if (_deleteMessage != 0) delete[] _message;
}

const char* ZylQuietException::getMessage() const { return _message == nullptr ? "" : _message; }

void ZylQuietException::print(std::ostream& stream) const { stream << getMessage(); }

void ZylQuietException::end() {}

ZylException::ZylException(const char* message, long deleteMessage)
    : ZylQuietException(message, deleteMessage) {
  zyl_exception_stop_here();
}

ZylException::ZylException(const ZylException& other) : ZylQuietException(other) {
  zyl_exception_stop_here();
}

ZylException::~ZylException() = default;

const char* ZylException::getMessage() const { return ZylQuietException::getMessage(); }
void ZylException::print(std::ostream& stream) const { ZylQuietException::print(stream); }
void ZylException::end() { ZylQuietException::end(); }

std::ostream& operator<<(std::ostream& stream, const ZylQuietException& exception) {
  exception.print(stream);
  return stream;
}

ZylWrongUsage::ZylWrongUsage(const char* message, long deleteMessage)
    : ZylException(message, deleteMessage) {}

ZylMemoryException::ZylMemoryException() : ZylException("not enough memory") {}

ZylEmptyHandleException::ZylEmptyHandleException() : ZylException("Using empty handle.") {}
ZylEmptyHandleException::ZylEmptyHandleException(const char* message) : ZylException(message) {}

ZylEnvironmentMismatch::ZylEnvironmentMismatch() : ZylException("Environment mismatch") {}
ZylEnvironmentMismatch::ZylEnvironmentMismatch(const char* message) : ZylException(message) {}

ZylBadConversion::ZylBadConversion()
    : ZylException("Bad Conversion between an integer object and a numeric object.") {}
ZylBadConversion::ZylBadConversion(const char* message) : ZylException(message) {}

ZylNotSupportedOperation::ZylNotSupportedOperation() : ZylException("Operation Not Supported.") {}
ZylNotSupportedOperation::ZylNotSupportedOperation(const char* message) : ZylException(message) {}

ZylNotImplemented::ZylNotImplemented() : ZylException("Feature Not Implemented.") {}
ZylNotImplemented::ZylNotImplemented(const char* message) : ZylException(message) {}

ZYL_COLD void ZylRaiseEmptyHandle() { throw ZylEmptyHandleException(); }
ZYL_COLD void ZylRaiseEmptyHandle(const char* text) { throw ZylEmptyHandleException(text); }
ZYL_COLD void ZylRaiseWrongUsage(const char* text) { throw ZylWrongUsage(text, 0); }
ZYL_COLD void ZylRaiseMemory() { throw ZylMemoryException(); }
