#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bootstrap/child.h"
#include "jace/interposed.h"
#include "jace/stub.h"

namespace helper = jace::helper;
using testing::Contains;
using testing::Not;

namespace zyl::test {
namespace {

// Outlives the library's own static objects, as an object of a client may.
struct Survivor {
  ~Survivor() {
    if (reference == nullptr) return;
    helper::deleteGlobalRef(env, reference);
    std::cout << failureOf(helper::attach) << helper::getVmLoader() << std::endl;
  }
  JNIEnv* env = nullptr;
  jobject reference = nullptr;
};
__attribute__((init_priority(101))) Survivor survivor;

TEST(JaceHelper, CreatesAMachineWithTheOptionsInOrder) {
  const TemporaryDirectory directory;
  inChild({{"STUB_RECORD", directory.path("record")}}, [] {
    const jace::UnixVmLoader loader(STUB_RUNTIME_LIBRARY, JNI_VERSION_1_2);
    jace::OptionList options;
    options.push_back(jace::CustomOption("-x"));
    options.push_back(jace::AbortHook(std::abort));
    helper::createVm(loader, options, /*ignoreUnrecognized=*/true);
    EXPECT_NE(helper::getVmLoader(), &loader);
    // The installed loader as the argument of its own replacement.
    helper::setVmLoader(*helper::getVmLoader());
    EXPECT_NE(helper::attach(), nullptr);
    helper::createVm(*helper::getVmLoader(), jace::OptionList(), /*ignoreUnrecognized=*/false);
  });
  const std::string record = readFile(directory.path("record"));
  EXPECT_EQ(record.substr(record.find("JNI")),
            "JNI_CreateJavaVM 65538 lenient\noption -x\noption abort with pointer\n"
            "AttachCurrentThread\nJNI_CreateJavaVM 65538 strict\n");
}

TEST(JaceHelper, TellsWhyThereIsNoMachine) {
  const struct {
    const char* rules;
    std::function<void()> operation;
    const char* failure;
  } rows[] = {
      {"create=-4", [] { helper::createVm(*helper::getVmLoader(), jace::OptionList(), false); },
       "Unable to create the virtual machine. The error was -4"},
      {"getCreated=-1", helper::getJavaVM,
       "JNIHelper::getJavaVM\nUnable to find the JVM. The specific JNI error code is -1"},
      {"", helper::getJavaVM, "JNIHelper::getJavaVM\nLooking for exactly 1 JVM, but 0 were found."},
      {"machines=2", helper::detach,
       "JNIHelper::getJavaVM\nLooking for exactly 1 JVM, but 2 were found."},
      {"machines=1 attach=-3", helper::attach,
       "JNIHelper::attach\nUnable to attach the current thread. The specific JNI error code is -3"},
  };
  for (const auto& row : rows) {
    inChild({{"STUB_RUNTIME", row.rules}}, [&] {
      installStub();
      EXPECT_EQ(failureOf(row.operation), row.failure);
    });
  }
  EXPECT_EQ(failureOf(helper::getJavaVM), "JNIHelper::getJavaVM\nUnable to find the JVM loader");
}

// Raises what the operations of the helper do not let out.
class ForeignLoader : public jace::UnixVmLoader {
 public:
  ForeignLoader() : UnixVmLoader("", 0) {}
  [[nodiscard]] jace::VmLoader* clone() const override { return new ForeignLoader; }
  void loadVm() override { throw std::runtime_error("foreign"); }
  int getCreatedJavaVMs(JavaVM**, int, int*) override { throw std::runtime_error("foreign"); }
};

TEST(JaceHelper, EndsTheProcessOnAnythingButItsOwnException) {
  constexpr int abortStatus = 1000 + SIGABRT;
  const std::function<void()> operations[] = {
      helper::attach,
      [] { helper::createVm(ForeignLoader(), jace::OptionList(), /*ignoreUnrecognized=*/false); }};
  for (const std::function<void()>& operation : operations) {
    inChild(
        {},
        [&operation] {
          helper::setVmLoader(ForeignLoader());
          try {
            operation();
          } catch (const std::runtime_error&) {
          }
        },
        abortStatus);
  }
}

// Clones itself as the loader that is installed already, and counts.
class LastingLoader : public jace::UnixVmLoader {
 public:
  LastingLoader() : UnixVmLoader("", 0) {}
  ~LastingLoader() override { ++ended; }
  [[nodiscard]] jace::VmLoader* clone() const override {
    jace::VmLoader* installed = helper::getVmLoader();
    return installed == nullptr ? new LastingLoader : installed;
  }
  void unloadVm() override { ++unloaded; }
  int version() override { return 0; }
  inline static int ended = 0;
  inline static int unloaded = 0;
};

TEST(JaceHelper, KeepsALoaderThatIsItsOwnCloneAndUnloadsItAtShutdown) {
  inChild({}, [] {
    const LastingLoader loader;
    for (int i = 0; i < 2; ++i) helper::setVmLoader(loader);
    EXPECT_EQ(LastingLoader::ended, 0);
    helper::shutdown();
    EXPECT_EQ(LastingLoader::unloaded, 1);
  });
}

TEST(JaceHelper, CountsReferencesUntilShutdown) {
  const TemporaryDirectory directory;
  const std::string record = directory.path("record");
  const Outcome outcome = inChild({{"STUB_RUNTIME", "machines=1"}, {"STUB_RECORD", record}}, [] {
    installStub();
    JNIEnv* env = helper::attach();
    jobject text = env->NewStringUTF("text");
    jobject local = helper::newLocalRef(env, text);
    jobject global = helper::newGlobalRef(env, text);
    EXPECT_EQ(openLocalRefs(), 2);
    EXPECT_EQ(openGlobalRefs(), 1);
    helper::deleteLocalRef(env, local);
    helper::deleteLocalRef(env, text);
    EXPECT_EQ(openLocalRefs(), 0);
    setenv("STUB_RUNTIME", "null=NewGlobalRef null=NewLocalRef", 1);
    EXPECT_EQ(failureOf([&] { (void)helper::newGlobalRef(env, text); }),
              "JNIHelper::newGlobalRef\nUnable to create a new global reference.\nIt is likely "
              "that you have exceeded the max heap size of your virtual machine.");
    EXPECT_EQ(failureOf([&] { (void)helper::newLocalRef(env, text); }),
              "JNIHelper::newLocalRef\nUnable to create a new local reference.\nIt is likely "
              "that you have exceeded the maximum local reference count.\nYou can increase the "
              "maximum count with a call to EnsureLocalCapacity().");
    helper::detach();

    EXPECT_FALSE(helper::hasShutdown());
    helper::shutdown();
    EXPECT_TRUE(helper::hasShutdown());
    EXPECT_EQ(failureOf(helper::attach), "The VM has already been shutdown.");
    helper::detach();
    helper::deleteGlobalRef(env, global);
    helper::deleteLocalRef(env, text);
  });
  const std::vector<std::string> lines = linesOf(readFile(record));
  EXPECT_THAT(lines, Contains("DetachCurrentThread").Times(1));
  EXPECT_THAT(lines, Not(Contains("DeleteGlobalRef text")));
}

TEST(JaceHelper, MarksTheMachineAsGoneBeforeItDeletesTheLoaderAtExit) {
  const Outcome outcome = inChild({{"STUB_RUNTIME", "machines=1"}}, [] {
    installStub();
    survivor.env = helper::attach();
    survivor.reference = helper::newGlobalRef(survivor.env, survivor.env->NewStringUTF("text"));
  });
  EXPECT_EQ(outcome.out, "The VM has already been shutdown.0\n");
}

TEST(JaceClassLoader, IsKeptForItsThreadByAGlobalReference) {
  inChild({{"STUB_RUNTIME", "machines=1"}}, [] {
    installStub();
    jobject loader = helper::attach()->NewStringUTF("loader");
    EXPECT_EQ(helper::getClassLoader(), nullptr);
    EXPECT_EQ(failureOf([&] { helper::setClassLoader(loader); }),
              "JNIHelper::setClassLoader()\npthread_setspecific() returned 22.");
    helper::onProcessCreation();
    helper::onThreadCreation();
    helper::setClassLoader(loader);
    EXPECT_EQ(helper::getClassLoader(), loader);
    helper::onProcessCreation();  // a second one forgets nothing
    helper::setClassLoader(loader);
    EXPECT_EQ(openGlobalRefs(), 1);
    threadKeyFailure = 12;
    EXPECT_EQ(failureOf([&] { helper::setClassLoader(loader); }),
              "JNIHelper::setClassLoader()\npthread_setspecific() returned 12.");
    EXPECT_EQ(openGlobalRefs(), 1);
    threadKeyFailure = 0;
    helper::setClassLoader(nullptr);
    EXPECT_EQ(helper::getClassLoader(), nullptr);
    EXPECT_EQ(openGlobalRefs(), 0);
    helper::onThreadDestruction();
    helper::onProcessDestruction();
    EXPECT_EQ(failureOf(helper::onProcessDestruction),
              "JNIHelper::setClassLoader()\nthread_key_delete() returned 22.");
  });
}

TEST(JaceClassLoader, TellsWhyThereIsNoKey) {
  const struct {
    int code;
    const char* failure;
  } rows[] = {{11, "Out of memory"},
              {12, "Out of memory"},
              {22, "JNIHelper::setClassLoader()\nphread_key_create() returned 22."}};
  for (const auto& row : rows) {
    inChild({}, [&] {
      threadKeyFailure = row.code;
      const std::string failure = failureOf(helper::onProcessCreation);
      threadKeyFailure = 0;
      EXPECT_EQ(failure, row.failure);
    });
  }
}

}  // namespace
}  // namespace zyl::test
