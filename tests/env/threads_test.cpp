// What may be done by several threads at once.

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {

// Classes that nobody else asks.
#define FRESH_(Class)                      \
  class Class : public ZylRttiEnvObjectI { \
    ZYL_TYPE(Class, ZylRttiEnvObjectI)     \
  };                                       \
  ZYL_TYPE_DEF(Class, ZylRttiEnvObjectI)
FRESH_(Fresh0)
FRESH_(Fresh1)
FRESH_(Fresh2)
FRESH_(Fresh3)
FRESH_(Fresh4)
FRESH_(Fresh5)
FRESH_(Fresh6)
FRESH_(Fresh7)
#undef FRESH_

namespace {

constexpr int Threads = 4;

template <class Body>
void together(Body body) {
  std::atomic<int> waiting{Threads};
  std::vector<std::thread> threads;
  for (int t = 0; t < Threads; ++t) {
    threads.emplace_back([&, t] {
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      body(t);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(ZylThreads, AgreeOnTypeIndices) {
  const long before = ZylRtti::_counter;
  std::vector<std::vector<long>> seen(Threads);
  together([&](int t) {
    seen[static_cast<std::size_t>(t)] = {Fresh0::GetTypeIndex(), Fresh1::GetTypeIndex(),
                                         Fresh2::GetTypeIndex(), Fresh3::GetTypeIndex(),
                                         Fresh4::GetTypeIndex(), Fresh5::GetTypeIndex(),
                                         Fresh6::GetTypeIndex(), Fresh7::GetTypeIndex()};
  });
  for (const auto& indices : seen) EXPECT_EQ(indices, seen[0]);
  EXPECT_EQ(std::set<long>(seen[0].begin(), seen[0].end()).size(), 8U);
  EXPECT_GE(ZylRtti::_counter, before + 8);
}

TEST(ZylThreads, MakeEnvironmentsTogether) {
  ZylInfinityValue = 0.0;
  together([](int) { EnvFixture(); });
  EXPECT_EQ(ZylGetInfinity(), ZylInfinity);
}

TEST(ZylThreads, AllocateAndNumberTogether) {
  EnvFixture env;
  env->useMTSafeAllocation(1);
  const long idsBefore = env->getIdManager()->getMaxId();
  together([&](int t) {
    std::vector<unsigned char*> blocks;
    for (int i = 0; i < 2000; ++i) {
      const auto size = static_cast<unsigned long>(8 + i % 200);
      auto* block = static_cast<unsigned char*>(env->alloc(size));
      std::memset(block, t, size);
      blocks.push_back(block);
      if (i % 3 == 0) ZylNumVar(env.env).setName(i % 2 == 0 ? "even" : "odd");
      ASSERT_STREQ(env->intern("text"), "text");
    }
    for (int i = 0; i < 2000; ++i) {
      const auto size = static_cast<unsigned long>(8 + i % 200);
      auto* block = blocks[static_cast<std::size_t>(i)];
      for (unsigned long k = 0; k < size; ++k) ASSERT_EQ(block[k], t);
      env->free(block, size);
    }
  });
  EXPECT_EQ(env->getIdManager()->getMaxId() - idsBefore, Threads * 667);
}

TEST(ZylThreads, NormaliseTogether) {
  EnvFixture env;
  env->useMTSafeAllocation(1);
  env->useMTSafeNormalization(1);
  constexpr int Variables = 50;
  std::vector<ZylNumVar> x;
  for (int i = 0; i < Variables; ++i) x.emplace_back(env.env);
  std::vector<std::vector<double>> found(Threads);
  together([&](int t) {
    for (int round = 0; round < 20; ++round) {
      ZylExpr sum(env.env);
      for (int i = 0; i < 3 * Variables; ++i)
        sum += (t + 1) * x[static_cast<std::size_t>(i % Variables)];
      sum.normalize();
      std::vector<double>& coefs = found[static_cast<std::size_t>(t)];
      coefs.clear();
      for (auto it = sum.getLinearIterator(); it.ok(); ++it) coefs.push_back(it.getCoef());
      sum.end();
    }
  });
  for (int t = 0; t < Threads; ++t) {
    EXPECT_EQ(found[static_cast<std::size_t>(t)], std::vector<double>(Variables, 3.0 * (t + 1)));
  }
}

// Each `+=` asks whose a variable is while the others make the pools grow.
TEST(ZylThreads, StateSumsTogether) {
  EnvFixture env;
  env->useMTSafeAllocation(1);
  std::vector<ZylNumVarArray> x;
  for (int t = 0; t < Threads; ++t) x.emplace_back(env.env, 10, 0.0, 1.0);
  together([&](int t) {
    ZylExpr sum(env.env);
    for (int i = 0; i < 30'000; ++i) sum += 2 * x[static_cast<std::size_t>(t)][i % 10];
  });
  EXPECT_GT(env->getMemoryUsage(), Threads * 30'000L * 24);
}

}  // namespace
}  // namespace zyl::test
