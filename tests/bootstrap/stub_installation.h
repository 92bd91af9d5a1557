// An installation whose runtime is the stub.

#ifndef ZYL_TESTS_BOOTSTRAP_STUB_INSTALLATION_H
#define ZYL_TESTS_BOOTSTRAP_STUB_INSTALLATION_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "bootstrap/child.h"

namespace zyl::test {

inline const std::string serverLayout = "/lib/amd64/server/libjvm.so";
inline const std::string tavornLayout = "/lib/amd64/t4vm/libjvm.so";

/// A home with the stub for a runtime, and both roots.
class StubInstallation : public testing::Test {
 protected:
  StubInstallation() {
    _directory.touch("kvl/lib/kvlall.jar");
    _directory.touch("vtq/lib/vtqall.jar");
    addRuntime(serverLayout);
  }

  void addRuntime(const std::string& layout) const {
    _directory.copy(STUB_RUNTIME_LIBRARY, "home" + layout);
  }

  /// Runs `body` with the variables for all that is there but the decision-support product, and
  /// with others on top; keeps what reached the runtime.
  Outcome run(Environment environment, const std::function<void()>& body, int status = 0) {
    environment.insert({{"JAVA_HOME", _home},
                        {"KVLROOT_OVERRIDE", _kvl},
                        {"STUB_RECORD", _directory.path("record")}});
    Outcome outcome = inChild(environment, body, status);
    _record = readFile(_directory.path("record"));
    std::filesystem::remove(_directory.path("record"));
    return outcome;
  }

  /// What follows `word` in the lines of the record that begin with it.
  [[nodiscard]] std::vector<std::string> recorded(const std::string& word) const {
    std::vector<std::string> result;
    for (const std::string& line : linesOf(_record)) {
      if (line.starts_with(word + " ")) result.push_back(line.substr(word.size() + 1));
    }
    return result;
  }
  [[nodiscard]] bool wasDescribed() const { return !recorded("ExceptionDescribe").empty(); }

  TemporaryDirectory _directory;
  std::string _home = _directory.path("home");
  std::string _kvl = _directory.path("kvl");
  std::string _vtq = _directory.path("vtq");
  std::string _record;
};

inline void expectAll(const std::string& text, std::initializer_list<std::string> parts) {
  for (const std::string& part : parts) EXPECT_THAT(text, testing::HasSubstr(part));
}

}  // namespace zyl::test

#endif
