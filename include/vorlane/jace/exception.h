// Failures of the JNI binding layer.

#ifndef ZYL_JACE_EXCEPTION_H
#define ZYL_JACE_EXCEPTION_H

#include <exception>
#include <string>

#include "vorlane/env/export.h"

namespace jace {

/// Root of the binding layer's exceptions; carries a text of its own.
class ZYL_EXPORT BaseException : public std::exception {
 public:
  explicit BaseException(std::string message);
  BaseException(const BaseException& other);
  BaseException& operator=(const BaseException& other);
  ~BaseException() override;

  /// Returns the text. Valid as long as the exception.
  const char* what() const noexcept override;

 private:
  std::string _msg;
};

/// A call into the Java runtime, or the search for one, failed.
class ZYL_EXPORT JNIException : public BaseException {
 public:
  explicit JNIException(const std::string& message);
  JNIException(const JNIException& other);
  JNIException& operator=(const JNIException& other);
  ~JNIException() override;
};

}  // namespace jace

#endif
