// The runtime without Java, as tests use it; see stub_runtime.cpp for its rules.

#ifndef ZYL_TESTS_JACE_STUB_H
#define ZYL_TESTS_JACE_STUB_H

#include <dlfcn.h>
#include <jni.h>

#include <string>

#include "vorlane/jace.h"

namespace zyl::test {

/// References of a kind that were not given back.
inline int openReferences(const char* counter) {
  return reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, counter))();
}
inline int openLocalRefs() { return openReferences("stubLocalRefs"); }
inline int openGlobalRefs() { return openReferences("stubGlobalRefs"); }

/// Loads the stub and installs its loader.
inline void installStub() {
  jace::UnixVmLoader loader(STUB_RUNTIME_LIBRARY, JNI_VERSION_1_2);
  loader.loadVm();
  jace::helper::setVmLoader(loader);
}

/// Returns what the operation raises as `JNIException`, "" if nothing.
template <class Operation>
std::string failureOf(Operation&& operation) {
  try {
    operation();
  } catch (const jace::JNIException& exception) {
    return exception.what();
  }
  return "";
}

}  // namespace zyl::test

#endif
