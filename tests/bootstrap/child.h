// Scenarios in processes of their own: what the tested code keeps is final for a process.

#ifndef ZYL_TESTS_BOOTSTRAP_CHILD_H
#define ZYL_TESTS_BOOTSTRAP_CHILD_H

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zyl::test {

/// A directory that goes with its owner.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  [[nodiscard]] std::string path(const std::string& name = "") const;
  /// Makes an empty file and the directories above it; returns its path.
  std::string touch(const std::string& name) const;
  /// Copies a file to `name`, below directories made for it; returns its path.
  std::string copy(const std::string& source, const std::string& name) const;

 private:
  std::filesystem::path _path;
};

/// How a child ended, and what it wrote.
struct Outcome {
  int status = 0;  ///< Exit status, or the signal's number and 1000.
  std::string out;
  std::string err;

  [[nodiscard]] std::vector<std::string> errorLines() const;
};

using Environment = std::map<std::string, std::string>;

/// Forks and runs `body`, without the variables that the bootstrap reads but for those given.
/// Expectations that fail in the body fail the calling test, as does any other end than the one
/// with `status`. The child is ended after a minute.
Outcome inChild(const Environment& environment, const std::function<void()>& body, int status = 0);

std::string readFile(const std::string& path);
std::vector<std::string> linesOf(const std::string& text);

}  // namespace zyl::test

#endif
