// The promise of an operation to raise nothing but `JNIException`.

#ifndef ZYL_JACE_ONLY_JNI_EXCEPTION_H
#define ZYL_JACE_ONLY_JNI_EXCEPTION_H

#include <exception>

#include "vorlane/jace/exception.h"

namespace jace::helper {

/// Calls `body` and lets `JNIException` out; anything else ends the process, since callers of
/// these operations stand in Java's stack frames and are not prepared for it.
template <class Body>
auto onlyJniException(Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const JNIException&) {
    throw;
  } catch (...) {
    std::terminate();
  }
}

}  // namespace jace::helper

#endif
