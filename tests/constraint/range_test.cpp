#include "vorlane/constraint/range.h"

#include <gmock/gmock.h>

#include "expr/fixture.h"
#include "vorlane/constraint/range_change.h"
#include "vorlane/expr/objective.h"
#include "vorlane/model/model.h"

namespace zyl::test {
namespace {

using ZylRangeTest = ExprTest;

TEST_F(ZylRangeTest, ConstantsMoveToTheBounds) {
  const ZylRange atMost = x + 2 <= 5;
  EXPECT_EQ(atMost.getUB(), 3.0);
  EXPECT_EQ(atMost.getLB(), -ZylInfinity);
  EXPECT_EQ(atMost.getExpr().getNumConstant(), 0.0);
  const ZylRange between = 0 <= x + 2 <= 10;
  EXPECT_EQ(between.getLB(), -2.0);
  EXPECT_EQ(between.getUB(), 8.0);
  // A range without bounds has nowhere to move a constant to.
  const ZylRange free(env, -ZylInfinity, x + 2, ZylInfinity);
  EXPECT_EQ(free.getExpr().getNumConstant(), 2.0);
  const ZylRange late = -ZylInfinity <= x + 2 <= 10;
  EXPECT_EQ(late.getUB() - late.getExpr().getNumConstant(), 8.0);
}

// The constant is moved on a copy where somebody else holds the expression.
TEST_F(ZylRangeTest, LeavesASharedExpressionAlone) {
  ZylExpr e = x + y + 1;
  const ZylRange range = e <= 4;
  EXPECT_NE(range.getExpr().getImpl(), e.getImpl());
  EXPECT_EQ(e.getConstant(), 1.0);
  ZylExpr f = x + y;
  ZylRange sharing = f <= 4;
  EXPECT_EQ(sharing.getExpr().getImpl(), f.getImpl());
  sharing.setLinearCoef(x, 7);
  EXPECT_NE(sharing.getExpr().getImpl(), f.getImpl());
  EXPECT_TRUE(DisplaysAs(f, "x  + y "));
  EXPECT_TRUE(DisplaysAs(sharing, "7 * x  + y  <= 4 "));
}

TEST_F(ZylRangeTest, ShowsItsBounds) {
  EXPECT_TRUE(DisplaysAs(ZylRange(env, 1, x + y, 1), "x  + y  == 1 "));
  EXPECT_TRUE(DisplaysAs(ZylRange(env, 1, x + y, 4, "r"), "r: 1 <= x  + y  <= 4 "));
  EXPECT_TRUE(DisplaysAs(ZylRange(env, 1, x, ZylInfinity), "1 <= x  "));
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(ZylRange(env, 1, x + y, 4), "( 1 <= ( x  + y )  <= 4) "));
  EXPECT_TRUE(DisplaysAs(ZylRange(env, 1, x + y, 1), "( ( x  + y )  == 1) "));
}

TEST_F(ZylRangeTest, EditsReachWhoeverHasExtractedIt) {
  ZylModel model(env);
  ZylRange range = x + y <= 4;
  ZylRange other = x - y >= 1;
  model.add(range);
  model.add(other);
  RecordingAlgorithm engine(impl);
  engine.load(model.getImpl());
  engine.log.clear();
  range.setUB(3);
  range.setBounds(1, 2);
  range.setLinearCoef(y, 5);
  ZylNumVarArray vars(env, 2L, x, y);
  ZylNumArray coefs(env, 2L, 0.0, 9.0);
  range.setLinearCoefs(vars, coefs);
  range.getImpl()->setExpr(2 * x);
  ZylRangeArray both(env, 2L, range, other);
  both.setBounds(ZylNumArray(env, 2L, 0.0, 0.5), ZylNumArray(env, 2L, 6.0, 7.0));
  EXPECT_EQ(range.getUB(), 6.0);
  EXPECT_EQ(other.getLB(), 0.5);
  for (const char* expected : {"ZylSetRangeBounds", "ZylSetRangeCoef", "ZylSetRangeCoefs",
                               "ZylSetRangeExpr", "ZylSetRangeArrayBounds"}) {
    EXPECT_THAT(engine.log, testing::Contains(std::string("apply ") + expected));
  }
  engine.clear();
}

TEST_F(ZylRangeTest, RefusesCoefficientsOfNonLinearSums) {
  ZylRange range = x * y + x <= 4;
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { range.setLinearCoef(x, 2); },
                                "You can not change the coefficient of a nonlinear expression"));
  EXPECT_TRUE(DisplaysAs(range, "x  + x[0..10]  * y[0..10]  <= 4 "));
}

class AggregateVar final : public ZylNumVarI {
  ZYL_EXTRACTABLE(AggregateVar, ZylNumVarI)
 public:
  using ZylNumVarI::ZylNumVarI;

 private:
  bool isAggregate() const override { return true; }
};
ZYL_EXTRACTABLE_DEF(AggregateVar, ZylNumVarI)

TEST_F(ZylRangeTest, RefusesCoefficientsOfAggregates) {
  EXPECT_FALSE(impl->mayHoldAggregates());
  const ZylNumVar many(new (env) AggregateVar(impl, "many"));
  const ZylRange range = x + many <= 4;
  const ZylObjective objective(env, x + ZylNumVar(range));
  ExpectEachRaises<ZylWrongUsage>(
      "You can not change the coefficient of an aggregate expression",
      {[&] { range.setLinearCoef(x, 2); }, [&] { objective.setLinearCoef(x, 2); }});
  ZylRange plain = x + y <= 4;
  plain.setLinearCoef(x, 2);
  EXPECT_TRUE(DisplaysAs(plain, "2 * x  + y  <= 4 "));
}

TEST_F(ZylRangeTest, BulkConstructorsFollowTheFirstArray) {
  const ZylNumArray lower(env, 3L, 1.0, 2.0, 3.0);
  const ZylIntArray upper(env, 2L, 7L, 8L);
  const ZylNumExprArray sums(env, 2L, x + y, x - y);
  EXPECT_EQ(ZylRangeArray(env, lower, 9.0).getSize(), 3);
  EXPECT_EQ(ZylRangeArray(env, lower, 9.0)[2].getLB(), 3.0);
  EXPECT_EQ(ZylRangeArray(env, -1.0, upper)[1].getUB(), 8.0);
  EXPECT_TRUE(DisplaysAs(ZylRangeArray(env, 0.0, sums, upper)[1], "0 <= x  + -1 * y  <= 8 "));
  EXPECT_EQ(ZylRangeArray(env, 4L)[3].getImpl(), nullptr);
  EXPECT_TRUE(RaisesWith<ZylEmptyHandleException>([&] { ZylRangeArray(env, ZylNumArray(), 1.0); },
                                                  "Using empty ZylNumArray handle."));
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { ZylRangeArray(env, 3L, x <= 1, y <= 1); },
                                        "ZylRangeArray::ZylRangeArray: n !=2"));
}

}  // namespace
}  // namespace zyl::test
