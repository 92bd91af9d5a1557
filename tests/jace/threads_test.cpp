#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "jace/stub.h"

namespace helper = jace::helper;

namespace {

TEST(JaceThreads, AttachAnywhereAndKeepAClassLoaderEach) {
  setenv("STUB_RUNTIME", "machines=1", 1);
  zyl::test::installStub();
  helper::onProcessCreation();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      for (int round = 0; round < 50; ++round) {
        JNIEnv* env = helper::attach();
        jobject loader = env->NewStringUTF(std::to_string(i).c_str());
        EXPECT_EQ(helper::getClassLoader() == nullptr, round == 0);
        helper::setClassLoader(loader);
        EXPECT_EQ(helper::getClassLoader(), loader);
        EXPECT_EQ(helper::toString(loader), "java.lang.String: " + std::to_string(i));
        helper::deleteLocalRef(env, loader);
        helper::detach();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  // What the threads left behind went at their end, although they were detached by then.
  EXPECT_EQ(zyl::test::openGlobalRefs(), 0);
  EXPECT_EQ(zyl::test::openLocalRefs(), 0);
  EXPECT_EQ(helper::getClassLoader(), nullptr);
  helper::onProcessDestruction();
}

}  // namespace
