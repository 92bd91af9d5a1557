// The guard of handles.

#include "vorlane/env/scoped.h"

#include "support/probe.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

static_assert(!std::is_copy_constructible_v<Scoped<ZylEnv>>);
static_assert(!std::is_constructible_v<Scoped<ZylEnv>, Scoped<ZylEnv>&>);

TEST(ZylScoped, EndsWhatItHoldsHoweverTheScopeIsLeft) {
  long ended = 0;
  const auto onDeath = [&ended] { ++ended; };
  try {
    const Scoped<ZylEnv> env;
    ZylEnv plain = env;
    Scoped model(ZylModel(env, "model"));
    Scoped<ZylExtractable> gone(probe(plain));
    Scoped<ZylExtractable> kept(probe(plain));
    for (const auto* each : {&gone, &kept}) {
      static_cast<Probe*>(each->getImpl())->onDeath = onDeath;
    }
    Scoped<ZylExtractable> moved(std::move(kept));
    EXPECT_EQ(ended, 0);
    kept = std::move(gone);
    moved = std::move(kept);  // ends what it held
    EXPECT_EQ(ended, 1);
    throw ZylWrongUsage("raised");
  } catch (const ZylWrongUsage&) {
  }
  EXPECT_EQ(ended, 2);
}

// The constraint owns its sum alone when the guard is gone, and edits it in place.
TEST(ZylScoped, AWorkingSumIsLeftToItsConstraint) {
  const Scoped<ZylEnv> env;
  const ZylNumVar x(env, 0, 1, "x");
  ZylRange range;
  {
    Scoped<ZylExpr> sum(env);
    sum += 2 * x;
    range = 3 + sum + sum <= 5;
  }
  const ZylNumExprI* const before = range.getExpr().getImpl();
  EXPECT_EQ(before->getCount(), 1);
  range.setLinearCoef(x, 7);
  EXPECT_EQ(range.getExpr().getImpl(), before);
  Scoped<ZylExpr> released(env);
  ZylExpr owned = released.release();
  EXPECT_EQ(owned.getImpl()->getCount(), 1);
}

TEST(ZylScoped, WhatTheEndRaisesIsHeardOnRequestOnly) {
  struct Refusing {
    const void* getImpl() const { return this; }
    [[noreturn]] void end() { throw ZylWrongUsage("refused"); }
  };
  { const Scoped<Refusing> lost; }
  Scoped<Refusing> heard;
  EXPECT_THROW(heard.end(), ZylWrongUsage);
}

}  // namespace
}  // namespace zyl::test
