#include "vorlane/jace/exception.h"

#include <utility>

namespace jace {

BaseException::BaseException(std::string message) : _msg(std::move(message)) {}

BaseException::BaseException(const BaseException& other) = default;

BaseException& BaseException::operator=(const BaseException& other) = default;

BaseException::~BaseException() = default;

const char* BaseException::what() const noexcept { return _msg.c_str(); }

JNIException::JNIException(const std::string& message) : BaseException(message) {}

JNIException::JNIException(const JNIException& other) = default;

JNIException& JNIException::operator=(const JNIException& other) = default;

JNIException::~JNIException() = default;

}  // namespace jace
