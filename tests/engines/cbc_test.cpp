#include "vorlane/cbc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
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

// The solver ends the process on some of these where it sees the largest integers as bounds.
TEST_F(CbcTest, SearchesIntegersWithoutBounds) {
  ZylIntVar i(env, 3, ZylIntMax);
  ZylIntVar j(env, -ZylIntMax, ZylIntMax);
  ZylNumVar x(env, -0.375, ZylInfinity);
  model.add(-2.75 * j - 4.625 * x + 1.125 * i >= -21.640625);
  model.add(ZylMinimize(env, 0.625 * i - 4.375 * j));
  EXPECT_EQ(solve(), ZylAlgorithm::InfeasibleOrUnbounded);
  i.setUB(8);
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_EQ(engine.getIntValue(i), 7);
  EXPECT_EQ(engine.getIntValue(j), 11);
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
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { engine.solve(); }, "ZylCbc::solve: no model is loaded"));
}

// What it could not follow leaves it behind the model; a fresh load decides at the next solve.
TEST_F(CbcTest, LoadsAfreshAfterAnEditItCouldNotFollow) {
  ZylNumVar x(env, 0, 10);
  ZylNumVar y(env, 0, 10);
  ZylRange range = x + y <= 3;
  model.add(range);
  model.add(ZylMaximize(env, x));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_THROW(range.setExpr(x * y), ZylAlgorithm::CannotChangeException);
  range.setExpr(x - y);
  y.setUB(2);
  engine.solve();
  EXPECT_NEAR(engine.getObjValue(), 5.0, 1e-9);
  EXPECT_THROW(range.setLinearCoef(x, ZylInfinity), ZylAlgorithm::CannotChangeException);
  EXPECT_THROW(engine.solve(), ZylAlgorithm::CannotExtractException);
}

TEST_F(CbcTest, RefusesNumbersThatNoProgramHolds) {
  ZylNumVar x(env, 0, 10);
  for (const double bad : {std::nan(""), ZylInfinity}) {
    ZylModel broken(env);
    broken.add(bad * x <= 3);
    EXPECT_THROW(engine.extract(broken), ZylAlgorithm::CannotExtractException);
  }
  ZylModel broken(env);
  broken.add(ZylNumVar(env, ZylNumArray(env, 2L, 1.0, ZylInfinity)));
  EXPECT_THROW(engine.extract(broken), ZylAlgorithm::CannotExtractException);
}

// Programs on which the simplex answers wrongly: a direction of unlimited gain in a column of no
// row.
TEST_F(CbcTest, TellsUnboundedFromInfeasible) {
  ZylNumVar y(env, -1, ZylInfinity);
  ZylNumVar z(env, 0, 5);
  ZylIntVar q(env, -1, 2);
  ZylIntVar r(env, -2, 0);
  model.add(-9 <= 2 * q + r - 3 * z <= 29);
  model.add(ZylMinimize(env, 2 * q - 2 * r - 3 * y - 4 * z));
  EXPECT_EQ(solve(), ZylAlgorithm::InfeasibleOrUnbounded);
  model.add(ZylConversion(env, ZylNumVarArray(env, 2L, q, r), ZylNumVar::Float));
  engine.solve();
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Unbounded);
  y.setUB(0);
  engine.solve();
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Optimal);
}

// Gains of no limit, but little at a time.
TEST_F(CbcTest, TellsUnboundedByTheFaintestRay) {
  ZylNumVar x(env, 0, ZylInfinity);
  ZylIntVar i(env, 0, ZylIntMax);
  model.add(x - i == 0);
  model.add(ZylMinimize(env, x - (1 + 5e-7) * i));
  EXPECT_EQ(solve(), ZylAlgorithm::InfeasibleOrUnbounded);
  // No ray, but an optimum beyond what is searched.
  ZylModel far(env);
  ZylIntVar j(env, -ZylIntMax, ZylIntMax);
  far.add(3 * i - 1.5 * j <= 0.5);
  far.add(j <= 3e9);
  far.add(2 * i >= 3);
  far.add(ZylMaximize(env, i + 1e-3 * j));
  engine.clear();
  engine.extract(far);
  engine.solve();
  EXPECT_NE(engine.getStatus(), ZylAlgorithm::Infeasible);
  if (engine.getStatus() == ZylAlgorithm::Optimal) {
    EXPECT_NEAR(engine.getObjValue(), 1.5e9 + 3e6, 1.0);
  }
}

// A binary that is nearly 0 is no 0 where it is multiplied by much.
TEST_F(CbcTest, SolvesRowsWithLargeCoefficients) {
  for (const double factor : {1e6, 1e8, 1e9}) {
    ZylNumVar x(env, 0, ZylInfinity);
    ZylBoolVar b(env);
    ZylModel switched(env);
    switched.add(x - factor * b <= 0);
    switched.add(x >= 0.05);
    switched.add(ZylMinimize(env, b + 0.0));
    engine.extract(switched);
    ASSERT_TRUE(engine.solve()) << factor;
    EXPECT_EQ(engine.getIntValue(b), 1);
    EXPECT_EQ(engine.getObjValue(), 1.0);
  }
}

// What is told of the objective is what the values told add up to.
TEST_F(CbcTest, TellsAnObjectiveThatThePointHas) {
  ZylIntVarArray v(env, 4L, -2L, 2L);
  v[0].setBounds(0, 2);
  v[1].setBounds(-2, 0);
  v[2].setBounds(-1, 2);
  v[3].setBounds(-2, 1);
  ZylNumVar x(env, 1, ZylInfinity);
  const ZylRange rows[] = {
      -1 <= -300000 * v[1] - 0.004 * v[2] + 2 * v[3] - 5 * x,
      -11 <= -300000 * v[0] - 2 * v[1] - 3 * v[2] + 3 * v[3] - 5 * x,
      -23 <= -5000 * v[0] - 0.001 * v[1] + 1000 * v[2] + 0.005 * v[3] + x <= 3};
  for (const ZylRange& row : rows) model.add(row);
  const ZylObjective cost =
      ZylMinimize(env, -100000 * v[0] - 5 * v[1] + 4 * v[2] + 100000 * v[3] + x - 2);
  model.add(cost);
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_NEAR(engine.getObjValue(), engine.getValue(cost), 1e-6);
  EXPECT_NEAR(engine.getObjValue(), -199996.0, 1e-3);
  for (const ZylRange& row : rows) EXPECT_GE(engine.getSlack(row), -1e-6);
}

// Stopped at once after an edit, it tells a point of the edited model or none.
TEST_F(CbcTest, TellsNoPointThatBreaksRowsWhenStopped) {
  ZylNumVarArray x(env, 30L, 0, 10);
  ZylExpr cost(env);
  for (long i = 0; i < x.getSize(); ++i) cost += static_cast<double>(1 + i * 37 % 11) * x[i];
  for (long k = 0; k < 20; ++k) {
    ZylExpr sum(env);
    for (long i = k % 3; i < x.getSize(); i += 1 + k % 4) {
      sum += static_cast<double>(1 + (i * 31 + k * 17) % 13) * x[i];
    }
    model.add(sum >= 20.0 + static_cast<double>(k));
  }
  model.add(ZylMinimize(env, cost));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  const ZylRange more = x[0] + x[1] + x[2] >= 25;
  model.add(more);
  engine.setTimeLimit(0.0);
  engine.solve();
  if (engine.getStatus() == ZylAlgorithm::Feasible) {
    EXPECT_GE(engine.getSlack(more), -1e-6);
  } else {
    EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Unknown);
  }
  EXPECT_EQ(engine.getBestBound(), -ZylInfinity);
}

// A basis that edits have left is no proof of anything: here a variable stands between its bounds.
TEST_F(CbcTest, FollowsBoundsThatComeAndGo) {
  ZylNumVar x(env, -ZylInfinity, 5);
  ZylNumVar y(env, -ZylInfinity, ZylInfinity);
  ZylNumVar z(env, 2, 5);
  const ZylRange row = -2 <= x + z;
  model.add(row);
  const ZylObjective cost = ZylMinimize(env, -1 * x + 5 * y - z + 2);
  model.add(cost);
  EXPECT_EQ(solve(), ZylAlgorithm::Unbounded);
  y.setUB(7);
  row.setLinearCoef(z, 4);
  cost.setLinearCoef(z, 2);
  engine.solve();
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Unbounded);
  y.setLB(-4);
  row.setLinearCoef(x, 0);
  cost.setLinearCoef(y, 1);
  engine.solve();
  ASSERT_EQ(engine.getStatus(), ZylAlgorithm::Optimal);
  EXPECT_NEAR(engine.getObjValue(), -3.0, 1e-9);
}

TEST_F(CbcTest, HasNoAnswersForWhatCameAfterTheSolve) {
  ZylNumVar x(env, 0, 10);
  const ZylRange old = x <= 8;
  model.add(old);
  model.add(ZylMaximize(env, x));
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  const ZylRange late = x <= 3;
  ZylNumVar other(env, 0, 1);
  model.add(late);
  model.add(other);
  const auto isMissing = [](const std::function<void()>& query) {
    return RaisesWith<ZylAlgorithm::Exception>(query, "ZylCbc: no solution is available");
  };
  EXPECT_TRUE(isMissing([&] { engine.getSlack(late); }));
  EXPECT_TRUE(isMissing([&] { engine.getDual(late); }));
  EXPECT_TRUE(isMissing([&] { engine.getReducedCost(other); }));
  EXPECT_NEAR(engine.getSlack(old), 0.0, 1e-9);
  engine.solve();
  EXPECT_NEAR(engine.getDual(late), 1.0, 1e-9);
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

/// Does something from inside the search.
struct Meddler : ZylCbcListener {
  std::function<void()> deed;
  void onProgress(const ZylCbcProgress&) override { deed(); }
};

// The edit has changed the model although it raised: the next solve must answer for that.
TEST_F(CbcSearchTest, RefusesEditsDuringTheSearchAndCatchesUpAfterwards) {
  Meddler meddler;
  const ZylRange none = ZylRange(env, 0.0, items[2] + items[3], 0.0);
  meddler.deed = [&] {
    EXPECT_THROW(items[0].setMax(0), ZylNoChangeDuringSearchException);
    EXPECT_THROW(model.add(none), ZylNoChangeDuringSearchException);
  };
  engine.setListener(&meddler);
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  engine.setListener(nullptr);
  items[1].setMax(0);  // and takes them afterwards
  engine.solve();
  for (long i = 0; i < 4; ++i) EXPECT_EQ(engine.getIntValue(items[i]), 0) << i;
  ZylCbc fresh(model);
  fresh.setLogLevel(0);
  fresh.solve();
  EXPECT_NEAR(engine.getObjValue(), fresh.getObjValue(), 1e-6);
}

TEST_F(CbcSearchTest, KeepsItsModelWhatAListenerDoes) {
  Meddler meddler;
  long calls = 0;
  meddler.deed = [&] {
    ++calls;
    EXPECT_THROW(engine.extract(model), ZylNoChangeDuringSearchException);
    EXPECT_THROW(engine.clear(), ZylNoChangeDuringSearchException);
    EXPECT_THROW(engine.solve(), ZylNoChangeDuringSearchException);
  };
  engine.setListener(&meddler);
  EXPECT_EQ(solve(), ZylAlgorithm::Optimal);
  EXPECT_GT(calls, 0);
  const double best = engine.getObjValue();
  items[0].setMax(0);
  items[0].setMax(1);
  meddler.deed = [] { throw 42; };
  EXPECT_THROW(engine.solve(), int);
  EXPECT_EQ(engine.getStatus(), ZylAlgorithm::Unknown);
  EXPECT_THROW(engine.getObjValue(), ZylAlgorithm::Exception);
  engine.setListener(nullptr);
  EXPECT_TRUE(engine.solve());
  EXPECT_NEAR(engine.getObjValue(), best, 1e-6);
}

TEST_F(CbcSearchTest, TellsATrueBoundWhenItStopsAtAGap) {
  ASSERT_EQ(solve(), ZylAlgorithm::Optimal);
  const double best = engine.getObjValue();
  EXPECT_EQ(engine.getBestBound(), best);
  for (const double gap : {0.5, 0.05, 0.01}) {
    ZylCbc other(model);
    other.setLogLevel(0);
    other.setGapLimit(gap);
    ASSERT_TRUE(other.solve());
    EXPECT_EQ(other.getStatus(), ZylAlgorithm::Optimal);
    EXPECT_LE(other.getObjValue(), best + 1e-6);
    EXPECT_GE(other.getBestBound(), best - 1e-6) << gap;
    EXPECT_LE(other.getGap(), gap);
    other.end();
  }
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
