#include "bootstrap/child.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace zyl::test {
namespace {

constexpr unsigned timeLimit = 60;
constexpr int failedExpectation = 99;

void setEnvironment(const Environment& environment) {
  for (const char* name :
       {"KVLROOT_OVERRIDE", "VTQROOT_OVERRIDE", "JAVA_HOME", "VTQS_JVM_LIBRARY_OVERRIDE",
        "VTQS_JVM_NO_INHERITED_LIBPATH_APPEND", "VTQS_JAVA_ARGS", "VTQS_JAVA_NO_DEFAULT_MEMORY",
        "LD_LIBRARY_PATH", "STUB_RUNTIME", "STUB_RECORD", "JAVA_TOOL_OPTIONS"}) {
    unsetenv(name);
  }
  for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
}

int failureCount() {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  return test == nullptr ? 0 : test->result()->total_part_count();
}

void redirect(int descriptor, const std::string& file) {
  const int opened = open(file.c_str(), O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0600);
  dup2(opened, descriptor);
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "vorlane-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no directory " + name);
  _path = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(_path, ignored);
}

std::string TemporaryDirectory::path(const std::string& name) const {
  return name.empty() ? _path.string() : (_path / name).string();
}

std::string TemporaryDirectory::touch(const std::string& name) const {
  std::filesystem::create_directories((_path / name).parent_path());
  std::ofstream(_path / name).flush();
  return path(name);
}

std::string TemporaryDirectory::copy(const std::string& source, const std::string& name) const {
  std::filesystem::create_directories((_path / name).parent_path());
  std::filesystem::copy_file(source, _path / name);
  return path(name);
}

std::vector<std::string> Outcome::errorLines() const { return linesOf(err); }

Outcome inChild(const Environment& environment, const std::function<void()>& body, int status) {
  const TemporaryDirectory directory;
  std::cout.flush();
  std::fflush(nullptr);
  const int earlierFailures = failureCount();
  const pid_t child = fork();
  if (child == 0) {
    redirect(STDOUT_FILENO, directory.path("out"));
    redirect(STDERR_FILENO, directory.path("err"));
    alarm(timeLimit);
    setEnvironment(environment);
    body();
    std::cout.flush();
    std::exit(failureCount() > earlierFailures ? failedExpectation : 0);
  }
  int ended = 0;
  waitpid(child, &ended, 0);
  Outcome outcome;
  outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 1000 + WTERMSIG(ended);
  outcome.out = readFile(directory.path("out"));
  outcome.err = readFile(directory.path("err"));
  EXPECT_EQ(outcome.status, status) << outcome.out << outcome.err;
  return outcome;
}

std::string readFile(const std::string& path) {
  std::ifstream stream(path);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace zyl::test
