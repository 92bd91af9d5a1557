#include "vorlane/cbc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "support/support.h"

namespace {

using zyl::test::RaisesWith;

/// An environment with a model and a silent engine.
struct CbcTest : testing::Test {
  CbcTest() : model(env), engine(env) { engine.setLogLevel(0); }
  ~CbcTest() override { env.end(); }

  ZylAlgorithm::Status solve() {
    engine.extract(model);
    engine.solve();
    return engine.getStatus();
  }

  ZylEnv env;
  ZylModel model;
  ZylCbc engine;
};

// A product mix: two products, three machines.
TEST_F(CbcTest, SolvesALinearProgramWithDualsAndSlacks) {
  ZylNumVar doors(env, 0, ZylInfinity, "doors");
  ZylNumVar windows(env, 0, ZylInfinity, "windows");
  const ZylRange plant1 = doors <= 4;
  const ZylRange plant2 = 2 * windows <= 12;
  const ZylRange plant3 = 3 * doors + 2 * windows <= 18;
  model.add(ZylRangeArray(env, 3L, plant1, plant2, plant3));
  model.add(ZylMaximize(env, 3 * doors + 5 * windows + 1));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_NEAR(engine.getObjValue(), 37.0, 1e-9);
  EXPECT_NEAR(engine.getValue(doors), 2.0, 1e-9);
  EXPECT_NEAR(engine.getValue(windows), 6.0, 1e-9);
  EXPECT_NEAR(engine.getValue(doors + 2 * windows), 14.0, 1e-9);
  EXPECT_NEAR(engine.getDual(plant1), 0.0, 1e-9);
  EXPECT_NEAR(engine.getDual(plant2), 1.5, 1e-9);
  EXPECT_NEAR(engine.getDual(plant3), 1.0, 1e-9);
  EXPECT_NEAR(engine.getReducedCost(doors), 0.0, 1e-9);
  EXPECT_NEAR(engine.getSlack(plant1), 2.0, 1e-9);
  EXPECT_NEAR(engine.getBestBound(), 37.0, 1e-9);
  EXPECT_NEAR(engine.getGap(), 0.0, 1e-9);
  EXPECT_FALSE(engine.isMip());
}

TEST_F(CbcTest, TellsEachStatusApart) {
  ZylNumVar x(env, -ZylInfinity, ZylInfinity);
  ZylIntVar i(env, -100, 100);
  const ZylRange above = x >= 1;
  model.add(above);
  model.add(ZylMinimize(env, x));
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  const ZylRange below = x <= 0;
  model.add(below);
  EXPECT_EQ(solve(), ZylAlgorithm::Infeasible);
  model.remove(above);
  EXPECT_EQ(solve(), ZylAlgorithm::Unbounded);
  EXPECT_TRUE(RaisesWith<ZylAlgorithm::Exception>([&] { engine.getValue(x); },
                                                  "ZylCbc: no solution is available"));
  model.add(i);
  EXPECT_EQ(solve(), ZylAlgorithm::InfeasibleOrUnbounded);
  x.setLB(-5);
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  // No integer between.
  model.add(0.25 <= i + 0.0 <= 0.75);
  EXPECT_EQ(solve(), ZylAlgorithm::Infeasible);
  // Crossed bounds of a variable that stands nowhere else.
  model.remove(ZylExtractable(i.getImpl()));
  ZylNumVar crossed(env, 2, 1);
  model.add(crossed);
  EXPECT_EQ(solve(), ZylAlgorithm::Infeasible);
}

TEST_F(CbcTest, TakesEnumeratedValues) {
  ZylNumVar x(env, ZylNumArray(env, 3L, -2.5, 0.0, 4.25));
  ZylIntVar y(env, ZylIntArray(env, 3L, 7L, 1L, 3L));
  model.add(x + y <= 9);
  model.add(ZylMaximize(env, 2 * x + y));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_NEAR(engine.getValue(x), 4.25, 1e-9);
  EXPECT_NEAR(engine.getValue(y), 3.0, 1e-9);
  y.setMax(2);
  engine.solve();
  EXPECT_NEAR(engine.getValue(y), 1.0, 1e-9);
  x.setPossibleValues(ZylNumArray(env, 2L, -1.0, 1.5));
  engine.solve();
  EXPECT_NEAR(engine.getValue(x), 1.5, 1e-9);
}

TEST_F(CbcTest, TakesComparisonsStrictOnesAmongIntegersOnly) {
  ZylIntVar a(env, 0, 10);
  ZylIntVar b(env, 0, 10);
  ZylNumVar c(env, 0, 10);
  model.add(a < b);
  model.add(2 * b + 1 <= c + 6);
  model.add(c == 3.5);
  model.add(ZylMaximize(env, a + b));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_EQ(engine.getIntValue(b), 4);
  EXPECT_EQ(engine.getIntValue(a), 3);
}

TEST_F(CbcTest, FollowsConversions) {
  ZylIntVar a(env, 0, 10);
  model.add(2 * a <= 7);
  model.add(ZylMaximize(env, a + 0.0));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_NEAR(engine.getObjValue(), 3.0, 1e-9);
  ZylConversion relaxed(env, a, ZylNumVar::Float);
  model.add(relaxed);
  engine.solve();
  EXPECT_NEAR(engine.getObjValue(), 3.5, 1e-9);
  ZylConversion binary(env, a, ZylNumVar::Bool);
  model.add(binary);
  engine.solve();
  EXPECT_NEAR(engine.getObjValue(), 1.0, 1e-9);
  binary.end();
  relaxed.end();
  engine.solve();
  EXPECT_NEAR(engine.getObjValue(), 3.0, 1e-9);
}

// Each object that is refused is named, and the engine is empty and usable afterwards.
TEST_F(CbcTest, RefusesByNamingEveryCulprit) {
  ZylNumVar x(env, 0, 10);
  ZylNumVar y(env, 0, 10);
  ZylSemiContVar s(env, 2, 5);
  const ZylRange product = x * y <= 3;
  const ZylRange fine = x + y <= 3;
  ZylModel inner(env);
  inner.add(product);
  inner.add(s);
  model.add(fine);
  model.add(inner);
  const ZylObjective first = ZylMinimize(env, x);
  const ZylObjective second = ZylMinimize(env, y);
  model.add(first);
  model.add(second);
  try {
    engine.extract(model);
    FAIL() << "nothing was refused";
  } catch (ZylAlgorithm::CannotExtractException& refusal) {
    std::ostringstream expected;
    expected << "ZylAlgorithm cannot extract extractables " << product.getId() << ", " << s.getId()
             << " and " << second.getId();
    std::ostringstream text;
    refusal.print(text);
    EXPECT_EQ(text.str(), expected.str());
    refusal.end();
  }
  EXPECT_FALSE(engine.isExtracted(fine));
  model.remove(second);
  inner.remove(product);
  inner.remove(s);
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  // An edit that cannot be followed destroys the extraction.
  EXPECT_THROW(model.add(product), ZylAlgorithm::CannotExtractException);
  EXPECT_FALSE(engine.isExtracted(fine));
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { engine.solve(); },
                                        "ZylCbc::solve: no model is loaded"));
}

TEST_F(CbcTest, RefusesNumbersThatNoProgramHolds) {
  ZylNumVar x(env, 0, 10);
  for (const double bad : {std::nan(""), ZylInfinity}) {
    ZylModel broken(env);
    broken.add(bad * x <= 3);
    EXPECT_THROW(engine.extract(broken), ZylAlgorithm::CannotExtractException);
  }
}

TEST_F(CbcTest, TellsWhatItWasNotGiven) {
  ZylNumVar x(env, 0, 10);
  const ZylRange range = x <= 3;
  EXPECT_THROW(engine.getValue(x), ZylAlgorithm::NotExtractedException);
  EXPECT_THROW(engine.getSlack(range), ZylAlgorithm::NotExtractedException);
  EXPECT_THROW(engine.getObjValue(), ZylAlgorithm::NoObjectiveException);
  EXPECT_THROW(ZylCbc().getGap(), ZylEmptyHandleException);
}

// A knapsack that is not solved at the root.
struct CbcSearchTest : CbcTest {
  CbcSearchTest() : items(env, 30L, 0L, 1L) {
    ZylExpr weight(env);
    ZylExpr value(env);
    for (long i = 0; i < items.getSize(); ++i) {
      weight += static_cast<double>(37 + (i * 53) % 61) * items[i];
      value += static_cast<double>(40 + (i * 71) % 67) * items[i];
    }
    model.add(weight <= 700);
    model.add(ZylMaximize(env, value));
  }
  ZylBoolVarArray items;
};

/// Edits the model from inside the search.
struct Meddler : ZylCbcListener {
  ZylIntVar variable;
  bool refused = false;
  void onProgress(const ZylCbcProgress&) override {
    try {
      variable.setMax(0);
    } catch (const ZylNoChangeDuringSearchException&) {
      refused = true;
    }
  }
};

TEST_F(CbcSearchTest, RefusesEditsDuringTheSearch) {
  Meddler meddler;
  meddler.variable = items[0];
  engine.setListener(&meddler);
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_TRUE(meddler.refused);
  engine.setListener(nullptr);
  items[1].setMax(0);  // and takes them afterwards
  engine.solve();
  EXPECT_EQ(engine.getIntValue(items[1]), 0);
}

TEST_F(CbcSearchTest, StopsWhenInterruptedBeforeItStarts) {
  engine.extract(model);
  engine.interrupt();
  EXPECT_FALSE(engine.solve());
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Unknown);
  EXPECT_TRUE(engine.solve());
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Optimal);
}

TEST_F(CbcSearchTest, StartsFromAGivenPoint) {
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  const double best = engine.getObjValue();
  ZylNumVarArray variables(env, 0L);
  ZylNumArray values(env, 0L);
  for (long i = 0; i < items.getSize(); ++i) {
    variables.add(items[i]);
    values.add(engine.getValue(items[i]));
  }
  ZylCbc other(model);
  other.setLogLevel(0);
  other.setStart(variables, values);
  other.setTimeLimit(1000.0);
  EXPECT_TRUE(other.solve());
  EXPECT_NEAR(other.getObjValue(), best, 1e-6);
  // A point that violates the model is dropped.
  for (long i = 0; i < values.getSize(); ++i) values[i] = 1.0;
  other.setStart(variables, values);
  EXPECT_TRUE(other.solve());
  EXPECT_NEAR(other.getObjValue(), best, 1e-6);
  values.add(1.0);
  EXPECT_THROW(other.setStart(variables, values), ZylWrongUsage);
}

TEST_F(CbcSearchTest, WritesItsProgressAndCanBeSilenced) {
  std::ostringstream log;
  engine.setOut(log);
  solve();
  EXPECT_EQ(log.str(), "");
  engine.setLogLevel(1);
  items[0].setMax(0);
  engine.solve();
  EXPECT_NE(log.str().find("cbc: nodes "), std::string::npos);
}

TEST_F(CbcTest, LivesBesideOthersInOneEnvironmentAndInTwo) {
  ZylEnv env2;
  ZylNumVar x(env, 0, 4);
  ZylNumVar x2(env2, 0, 9);
  model.add(ZylMaximize(env, x));
  ZylModel model2(env2);
  model2.add(ZylMaximize(env2, x2));
  ZylCbc twin(model);
  ZylCbc other(model2);
  engine.extract(model);
  for (const ZylCbc& each : {engine, twin, other}) {
    each.setLogLevel(0);
    each.solve();
  }
  EXPECT_NEAR(engine.getObjValue() + twin.getObjValue() + other.getObjValue(), 17.0, 1e-9);
  x.setUB(3);
  twin.solve();
  EXPECT_NEAR(twin.getObjValue(), 3.0, 1e-9);
  EXPECT_NEAR(other.getObjValue(), 9.0, 1e-9);
  twin.end();
  env2.end();
}

// The model, cloned into another environment, has the same optimum.
TEST_F(CbcSearchTest, ClonesHaveTheSameOptimum) {
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  ZylEnv env2;
  const ZylModel clone = model.getClone(env2);
  ZylCbc other(clone);
  other.setLogLevel(0);
  other.solve();
  EXPECT_NEAR(other.getObjValue(), engine.getObjValue(), 1e-6);
  env2.end();
}

}  // namespace
