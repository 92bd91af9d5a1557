#include <gtest/gtest.h>

#include <thread>

#include "vorlane/cbc.h"

namespace {

// A market to be split in equal parts as well as it can be: a point is found at once, and a proof
// that it is the best takes days.
struct Market {
  Market() : model(env), goods(env, 50L, 0L, 1L) {
    ZylExpr missed(env);
    for (long i = 0; i < 5; ++i) {
      ZylExpr part(env);
      long total = 0;
      for (long j = 0; j < goods.getSize(); ++j) {
        const long amount = (7919 * (i + 3) * (j + 11) * (j + i + 5)) % 101;
        part += static_cast<double>(amount) * goods[j];
        total += amount;
      }
      ZylNumVar more(env, 0, ZylInfinity);
      ZylNumVar less(env, 0, ZylInfinity);
      model.add(part + more - less == static_cast<double>(total / 2));
      missed += more + less;
    }
    model.add(ZylMinimize(env, missed));
  }
  ~Market() { env.end(); }

  ZylEnv env;
  ZylModel model;
  ZylBoolVarArray goods;
};

TEST(ZylCbcThreads, AnotherThreadInterruptsTheSearchWhichKeepsItsBest) {
  Market market;
  ZylCbc engine(market.model);
  engine.setLogLevel(0);
  struct Found : ZylCbcListener {
    std::atomic<bool> value{false};
    void onProgress(const ZylCbcProgress& progress) override {
      if (progress.hasValue) value = true;
    }
  } found;
  engine.setListener(&found);
  std::atomic<bool> done{false};
  std::thread interrupter([&] {
    while (!done && !found.value) std::this_thread::yield();
    engine.interrupt();
  });
  EXPECT_TRUE(engine.solve());
  done = true;
  interrupter.join();
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Feasible);
  EXPECT_LT(engine.getBestBound(), engine.getObjValue());
  // The interruption is spent: the next search is stopped by its own listener again.
  struct Ending : ZylCbcListener {
    ZylCbc engine;
    void onProgress(const ZylCbcProgress& progress) override {
      if (progress.hasValue) engine.interrupt();
    }
  } ending;
  ending.engine = engine;
  engine.setListener(&ending);
  EXPECT_TRUE(engine.solve());
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Feasible);
}

}  // namespace
