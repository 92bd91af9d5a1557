// What the tests share: matchers that print what differs, and the failing allocator.

#ifndef ZYL_TESTS_SUPPORT_SUPPORT_H
#define ZYL_TESTS_SUPPORT_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>

#include "vorlane/env.h"
#include "vorlane/expr/term_list.h"

namespace zyl::test {

/// What `print` writes.
inline std::string printed(const ZylQuietException& exception) {
  std::ostringstream stream;
  exception.print(stream);
  return stream.str();
}

/// What `display` writes.
template <class T>
std::string displayed(const T& object) {
  std::ostringstream stream;
  if constexpr (std::is_pointer_v<T>) {
    object->display(stream);
  } else {
    object.display(stream);
  }
  return stream.str();
}

template <class T>
testing::AssertionResult DisplaysAs(const T& object, const std::string& text) {
  const std::string actual = displayed(object);
  if (actual == text) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << "displays as \"" << actual << "\", not as \"" << text << '"';
}

/// Whether the call raises exactly a `T` whose message, or whose printed form, is `text`.
template <class T, class Callable>
testing::AssertionResult RaisesWith(Callable&& callable, const std::string& text) {
  try {
    callable();
  } catch (ZylQuietException& exception) {
    const std::string message = exception.getMessage();
    const std::string form = printed(exception);
    const bool sameType = typeid(exception) == typeid(T);
    exception.end();
    if (!sameType) return testing::AssertionFailure() << "raises another type, with: " << form;
    if (message == text || form == text) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "raises with message \"" << message << "\", printed \""
                                       << form << "\", not \"" << text << '"';
  }
  return testing::AssertionFailure() << "raises nothing";
}

/// Expects that each of the calls raises exactly a `T` with the text.
template <class T>
void ExpectEachRaises(const std::string& text, std::initializer_list<std::function<void()>> calls) {
  long number = 0;
  for (const auto& call : calls) EXPECT_TRUE(RaisesWith<T>(call, text)) << "call " << number++;
}

/// The same where each call has a text of its own.
template <class T>
void ExpectEachRaises(
    std::initializer_list<std::pair<std::string, std::function<void()>>> textsAndCalls) {
  for (const auto& [text, call] : textsAndCalls) EXPECT_TRUE(RaisesWith<T>(call, text));
}

/// An environment variable for the length of a scope; then it is as it was.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : _name(name) {
    const char* before = std::getenv(name);
    _wasSet = before != nullptr;
    if (_wasSet) _before = before;
    setenv(name, value, 1);
  }
  ~ScopedVariable() { _wasSet ? setenv(_name, _before.c_str(), 1) : unsetenv(_name); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* _name;
  bool _wasSet;
  std::string _before;
};

/// An environment for the length of a scope.
struct EnvFixture {
  EnvFixture() = default;
  ~EnvFixture() { env.end(); }
  EnvFixture(const EnvFixture&) = delete;
  EnvFixture& operator=(const EnvFixture&) = delete;
  ZylEnvI* operator->() const { return env.getImpl(); }

  ZylEnv env;
  ZylEnvI* impl = env.getImpl();
};

/// A test with an environment.
class EnvTest : public testing::Test {
 protected:
  ~EnvTest() override { env.end(); }

  ZylEnv env;
  ZylEnvI* impl = env.getImpl();
};

namespace detail {
inline long allocationsLeft = 0;
inline bool failWhenUsedUp() { return --allocationsLeft < 0; }
}  // namespace detail

/// Makes the n-th request to the global allocator fail, and all behind it, for the length of a
/// scope.
class FailingAllocator {
 public:
  explicit FailingAllocator(long n) {
    detail::allocationsLeft = n - 1;
    zyl::detail::failAllocation = &detail::failWhenUsedUp;
  }
  ~FailingAllocator() { zyl::detail::failAllocation = nullptr; }
  FailingAllocator(const FailingAllocator&) = delete;
  FailingAllocator& operator=(const FailingAllocator&) = delete;
};

/// Takes every free cell of the pools and of the term records, so that the next request of each
/// size goes to the global allocator. With the pools off each request does so anyway.
inline void useUpPools(ZylEnvI* env) {
  if (!env->usesMemoryManager()) return;
  const auto takeAll = [](auto take) {
    try {
      for (;;) static_cast<void>(take());
    } catch (const ZylMemoryException&) {
    }
  };
  // Large cells first: they use up what is left of a slab, and rests of blocks go to smaller cells.
  const FailingAllocator failing(1);
  ZylMemory* memory = env->getMemory();
  for (long i = memory->getClassCount() - 1; i >= 0; --i) {
    takeAll([&] { return memory->getClass(i)->alloc(memory); });
  }
  takeAll([&] { return env->newTerm(nullptr, 0.0); });
}

/// Runs `operation(state)` on a fresh `setup()` with the first request failing, then the second,
/// and so on until it succeeds. Each failure must be a `ZylMemoryException`; `check(state)` runs
/// after each, with the allocator whole again. Returns the number of failures, at least 1: an
/// operation that requests nothing has no business here.
template <class Setup, class Operation, class Check>
long FailEachAllocation(Setup setup, Operation operation, Check check) {
  for (long n = 1; n < 1000; ++n) {
    SCOPED_TRACE(testing::Message() << "request " << n << " fails");
    auto state = setup();
    try {
      FailingAllocator failing(n);
      operation(*state);
      EXPECT_GT(n, 1) << "no request reaches the global allocator";
      return n - 1;
    } catch (const ZylMemoryException& exception) {
      EXPECT_STREQ(exception.getMessage(), "not enough memory");
    } catch (const ZylException& exception) {
      ADD_FAILURE() << "another exception: " << printed(exception);
    }
    check(*state);
  }
  ADD_FAILURE() << "does not succeed";
  return -1;
}

/// The same without a state: each round begins with the pools of `env` used up.
template <class Operation, class Check>
long FailEachAllocation(ZylEnvI* env, Operation operation, Check check) {
  return FailEachAllocation(
      [env] {
        useUpPools(env);
        return env;
      },
      [&](ZylEnvI&) { operation(); }, [&](ZylEnvI&) { check(); });
}

}  // namespace zyl::test

#endif
