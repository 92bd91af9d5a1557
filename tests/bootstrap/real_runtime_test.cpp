// The whole way with the runtime of an installed JDK, which checks each call that it gets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <list>
#include <string>
#include <thread>
#include <vector>

#include "bootstrap/child.h"
#include "jace/stub.h"
#include "vorlane/bootstrap.h"

namespace helper = jace::helper;
using testing::HasSubstr;
using testing::Not;
using zyl::test::failureOf;
using zyl::test::Outcome;

namespace {

const std::string library = "/lib/server/libjvm.so";

class RealRuntime : public testing::Test {
 protected:
  RealRuntime() { _directory.touch("kvl/lib/kvlall.jar"); }

  [[nodiscard]] Outcome run(const std::function<void()>& body) const {
    Outcome outcome = zyl::test::inChild({{"JAVA_HOME", TEST_JAVA_HOME},
                                          {"VTQS_JVM_LIBRARY_OVERRIDE", library},
                                          {"KVLROOT_OVERRIDE", _directory.path("kvl")},
                                          {"VTQS_JAVA_ARGS", "-Xcheck:jni -cp " TEST_CLASSES}},
                                         [&body] {
                                           body();
                                           // Its own checks get in the way of the process's end.
                                           helper::getJavaVM()->DestroyJavaVM();
                                         });
    for (const std::string& text : {outcome.out, outcome.err}) {
      EXPECT_THAT(text, Not(HasSubstr("in native method")));  // how the runtime complains
    }
    return outcome;
  }

  zyl::test::TemporaryDirectory _directory;
};

bool launch(ZylKvlMessageHandler& handler, const std::list<std::string>& arguments) {
  return ZylKvlLaunchJavaMain("Demo", "demo/Main", handler, arguments, false, false);
}

TEST_F(RealRuntime, RunsMainWithItsArguments) {
  const Outcome outcome = run([] {
    std::string words[] = {"p", "-debug", "a b", "", "\xC3\xA9", "\xF0\x9F\x99\x82", "\xFF"};
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    parseArgumentsAndExec(static_cast<int>(argv.size()), argv.data(), "Demo", "demo/Main",
                          /*redirectJavaOutput=*/true, /*requireGenerationalGC=*/true);
  });
  EXPECT_EQ(outcome.out, "redirect true\n6 6\n3 3\n0 0\n1 1\n2 1\n1 1\n");
  EXPECT_THAT(outcome.err, HasSubstr("redirecting Java System.out and System.err on "
                                     "stdout/stderr: success\n"));
}

TEST_F(RealRuntime, BringsExceptionsOfMainBackAndGoesOn) {
  const Outcome outcome = run([] {
    ZylKvlDefaultMessageHandler handler;
    EXPECT_FALSE(launch(handler, {"throw"}));
    EXPECT_FALSE(ZylKvlLaunchJavaMain("Demo", "demo/None", handler, {}, false, false));
    EXPECT_TRUE(ZylKvlCreateJVM(handler, false, false));
    EXPECT_TRUE(launch(handler, {"x"}));
    EXPECT_TRUE(launch(handler, {std::string(1 << 20, 'x')}));
    handler.getReportedMessages().pop_front();
    EXPECT_THAT(handler.getReportedMessages(),
                testing::ElementsAre(
                    "ERROR: Error launching Demo: java.lang.IllegalStateException: on demand",
                    "ERROR: Error launching Demo: ?"));
  });
  EXPECT_EQ(outcome.out, "1 1\n1048576 1048576\n");
}

void JNICALL callback(JNIEnv* env, jclass type) {
  env->CallStaticVoidMethod(type, env->GetStaticMethodID(type, "fail", "()V"));
  std::cout << ZylCatchAndThrowFromJVM().substr(0, 41) << std::endl;
}

TEST_F(RealRuntime, LetsJavaCatchWhatACallbackWrapped) {
  const Outcome outcome = run([] {
    ZylKvlNullMessageHandler handler;
    ASSERT_TRUE(ZylKvlCreateJVM(handler, false, false));
    JNIEnv* env = ZylKvlGetJVM(handler);
    std::string name = "callback";
    std::string signature = "()V";
    const JNINativeMethod method = {name.data(), signature.data(),
                                    reinterpret_cast<void*>(callback)};
    env->RegisterNatives(env->FindClass("demo/Main"), &method, 1);
    EXPECT_TRUE(launch(handler, {"callback"}));
  });
  EXPECT_EQ(outcome.out,
            "java.lang.IllegalArgumentException: inner\n"
            "caught java.lang.IllegalArgumentException: inner\n");
}

TEST_F(RealRuntime, ServesThreadsUntilShutdown) {
  const Outcome outcome = run([] {
    ZylKvlNullMessageHandler handler;
    ASSERT_TRUE(ZylKvlCreateJVM(handler, false, false));
    helper::onProcessCreation();
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([] {
        JNIEnv* env = helper::attach();
        EXPECT_EQ(env, helper::attach());
        helper::setClassLoader(env->NewStringUTF("own"));
        EXPECT_EQ(helper::toString(helper::getClassLoader()), "own");
        jclass type = env->FindClass("demo/Main");
        env->CallStaticVoidMethod(type, env->GetStaticMethodID(type, "fail", "()V"));
        EXPECT_EQ(failureOf(helper::catchAndThrow),
                  "Can't find any linked in parent exception for "
                  "marz.sembla.ZylSembla$CallbackRethrowException\n");
        helper::detach();
      });
    }
    for (std::thread& thread : threads) thread.join();
    JNIEnv* env = ZylKvlGetJVM(handler);
    helper::print(env->NewStringUTF("printed"));
    helper::printClass(env->NewStringUTF(""));
    jobject reference = helper::newGlobalRef(env, env->NewStringUTF(""));
    helper::shutdown();
    helper::deleteGlobalRef(env, reference);
    EXPECT_EQ(failureOf(helper::attach), "The VM has already been shutdown.");
    EXPECT_FALSE(launch(handler, {}));
  });
  EXPECT_EQ(outcome.out, "printed\nclass java.lang.String\n");
}

}  // namespace
