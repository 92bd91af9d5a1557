#include <gtest/gtest.h>

#include <thread>

#include "vorlane/cbc.h"

namespace {

// An equality knapsack whose tree is far too large: only the interruption ends the search.
TEST(ZylCbcThreads, AnotherThreadInterruptsTheSearch) {
  ZylEnv env;
  ZylModel model(env);
  ZylBoolVarArray items(env, 60L, 0L, 1L);
  ZylExpr weight(env);
  for (long i = 0; i < items.getSize(); ++i) {
    weight += static_cast<double>(2 * (1000000007L * (i + 17) % 99999989L)) * items[i];
  }
  model.add(weight == 1234567891.0);
  ZylCbc engine(model);
  engine.setLogLevel(0);

  struct Started : ZylCbcListener {
    std::atomic<bool> value{false};
    void onProgress(const ZylCbcProgress&) override { value = true; }
  } started;
  engine.setListener(&started);
  std::atomic<bool> done{false};
  std::thread interrupter([&] {
    while (!done && !started.value) std::this_thread::yield();
    engine.interrupt();
  });
  engine.solve();
  done = true;
  interrupter.join();
  const ZylAlgorithm::Status status = engine.getStatus();
  // An even sum never meets an odd one; a clever solver may prove that before it is stopped.
  EXPECT_TRUE(status == ZylAlgorithm::Unknown || status == ZylAlgorithm::Infeasible) << status;
  env.end();
}

}  // namespace
