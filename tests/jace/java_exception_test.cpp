#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "bootstrap/child.h"
#include "jace/stub.h"

namespace helper = jace::helper;

namespace zyl::test {
namespace {

void raise(JNIEnv* env) {
  jclass type = env->FindClass("demo/Failure");
  env->ThrowNew(type, "broken");
  env->DeleteLocalRef(type);
}

// Each way of catching leaves nothing pending and no reference behind.
TEST(JaceCatchAndThrow, TellsTheClassOrWhyItCannot) {
  const std::string mapped = "Can't find any linked in parent exception for ";
  const std::string calling = "helper::catchAndThrow()\nAn error occurred while trying to call ";
  const std::string noClass = "Assert failed: Unable to find the class, ";
  const std::string noMethod = "Assert failed: Unable to find the method, ";
  const struct {
    const char* rules;
    std::string failure;
    std::string record = "";  // how it ends
  } rows[] = {
      {"", mapped + "demo.Failure\n",
       "FindClass java/lang/Class\nCall getClass\nCall getName\nCall getClass\nCall getName\n"},
      {"missing=java/lang/Throwable", noClass + "java.lang.Throwable."},
      {"missing=java/lang/Class", noClass + "java.lang.Class."},
      {"missing=java/lang/Throwable.getClass", noMethod + "Throwable.getClass()."},
      {"missing=java/lang/Class.getName", noMethod + "Class.getName()."},
      {"missing=java/lang/Class.getSuperclass", noMethod + "Class.getSuperclass()."},
      {"throws=getClass", calling + "getClass() on the thrown exception.",
       "Call getClass\nExceptionDescribe java/lang/IllegalStateException\n"},
      {"throws=getName", calling + "getName() on the class of the thrown exception.",
       "Call getName\nExceptionDescribe java/lang/IllegalStateException\n"},
      {"null=GetStringUTFChars",
       "Unable to retrieve the character string for an exception message."},
      {"null=getName", "Unable to retrieve the character string for an exception message."},
  };
  for (const auto& row : rows) {
    const TemporaryDirectory directory;
    const Environment environment = {{"STUB_RUNTIME", std::string("machines=1 ") + row.rules},
                                     {"STUB_RECORD", directory.path("record")}};
    inChild(environment, [&] {
      installStub();
      JNIEnv* env = helper::attach();
      helper::catchAndThrow();
      raise(env);
      EXPECT_EQ(failureOf(helper::catchAndThrow), row.failure);
      EXPECT_FALSE(env->ExceptionCheck());
      EXPECT_EQ(openLocalRefs(), 0);
    });
    EXPECT_THAT(readFile(directory.path("record")), testing::EndsWith(row.record));
  }
}

TEST(JaceToString, CallsTheMethodOrTellsWhyItCannot) {
  const std::string cause =
      "\ncaused by:\nCan't find any linked in parent exception for java.lang.";
  const struct {
    const char* rules;
    std::string failure;
  } rows[] = {
      {"missing=java/lang/Object", "Assert failed: Unable to find the class, java.lang.Object." +
                                       cause + "NoClassDefFoundError\n"},
      {"missing=java/lang/Object.toString",
       "Assert failed: Unable to find the method, Object.toString()." + cause +
           "NoSuchMethodError\n"},
      {"throws=toString",
       "Can't find any linked in parent exception for java.lang.IllegalStateException\n"},
  };
  for (const auto& row : rows) {
    inChild({{"STUB_RUNTIME", std::string("machines=1 ") + row.rules}}, [&] {
      installStub();
      jobject text = helper::attach()->NewStringUTF("text");
      EXPECT_EQ(failureOf([&] { (void)helper::toString(text); }), row.failure);
      EXPECT_EQ(openLocalRefs(), 1);
    });
  }
  const Outcome outcome = inChild({{"STUB_RUNTIME", "machines=1"}}, [] {
    installStub();
    jobject text = helper::attach()->NewStringUTF("text");
    helper::print(text);
    helper::printClass(text);
    helper::print(nullptr);
    helper::printClass(nullptr);
    EXPECT_EQ(openLocalRefs(), 1);
  });
  EXPECT_EQ(outcome.out, "java.lang.String: text\njava.lang.Class: java/lang/String\nnull\nnull\n");
}

}  // namespace
}  // namespace zyl::test
