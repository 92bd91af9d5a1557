#include "vorlane/constraint/comparison.h"

#include "expr/fixture.h"
#include "vorlane/algorithm/model_evaluator.h"

namespace zyl::test {
namespace {

class ZylComparisonTest : public ExprTest {
 protected:
  ZylBoolVar b{env, "b"};
};

// Each resolves without a cast, literals of any type and reversed operands too.
TEST_F(ZylComparisonTest, NumbersGiveRanges) {
  EXPECT_TRUE(DisplaysAs(ZylRange(3.0 == x), "x  == 3 "));
  EXPECT_TRUE(DisplaysAs(x == 3, "x  == 3 "));
  EXPECT_TRUE(DisplaysAs(3L == i, "i  == 3 "));
  EXPECT_TRUE(DisplaysAs(2.5 * i <= 4L, "2.5 * i  <= 4 "));
  EXPECT_TRUE(DisplaysAs(x + 1 >= 4, "3 <= x  "));
  EXPECT_TRUE(DisplaysAs(7 >= b, "b  <= 7 "));
  EXPECT_TRUE(DisplaysAs(ZylRange(1 <= 2 * i + b), "1 <= 2 * i  + b  "));
  EXPECT_TRUE(DisplaysAs((x <= 3) + (y >= 1) <= 1, "x  <= 3  + 1 <= y   <= 1 "));
  const ZylExtractable asExtractable = 1 <= x;
  EXPECT_TRUE(asExtractable.isConstraint());
}

TEST_F(ZylComparisonTest, StrictOnesMoveTheBoundByOne) {
  EXPECT_TRUE(DisplaysAs(i < 3, "i  <= 2 "));
  EXPECT_TRUE(DisplaysAs(i > 3.0, "4 <= i  "));
  EXPECT_TRUE(DisplaysAs(3 > i, "i  <= 2 "));
  EXPECT_TRUE(DisplaysAs(3 < i + b, "4 <= i  + b  "));
  ExpectEachRaises<ZylInvalidInequalityException>(
      "Strict Inequality is defined only on Integer Expressions",
      {[&] { static_cast<void>(x < 3.0); }, [&] { static_cast<void>(i < 2.5); },
       [&] { static_cast<void>(x > i); }});
}

TEST_F(ZylComparisonTest, TwoExpressionsGiveABinaryConstraintUnlessOneIsConstant) {
  EXPECT_TRUE(zyl::isExactly<ZylNumEqI>((x + 2 == y + 2).getImpl()));
  EXPECT_TRUE(DisplaysAs(x + 2 == y + 2, "x  + 2  == y  + 2 "));
  EXPECT_TRUE(zyl::isExactly<ZylRangeI>((ZylExpr(env, 3) <= x).getImpl()));
  EXPECT_TRUE(DisplaysAs(ZylExpr(env, 3) <= x, "3 <= x  "));
  EXPECT_TRUE(DisplaysAs(x >= ZylIntExpr(env, 4), "4 <= x  "));
  EXPECT_TRUE(DisplaysAs(i < ZylIntExpr(env, 4), "i  <= 3 "));
  EXPECT_TRUE(zyl::isExactly<ZylNumLTI>((i < b).getImpl()));
  EXPECT_TRUE(zyl::isExactly<ZylNumGTI>((i + 1 > 2 * b).getImpl()));
  // Variables are held as they are, everything else as its linear node.
  const auto* comparison = static_cast<ZylBinaryNumConstraintI*>((x <= y + 1).getImpl());
  EXPECT_EQ(comparison->getConversionFlags(), 2);
  EXPECT_EQ(comparison->getLeft(), x.getImpl());
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(i < b, "(i[0..5]  < b[0..1] )"));
}

TEST_F(ZylComparisonTest, RefusesEmptyHandlesAndStrangers) {
  EnvFixture other;
  const ZylNumVar stranger(other.env, 0, 1);
  ExpectEachRaises<ZylWrongUsage>(
      {{"mixing mismatch Environments", [&] { static_cast<void>(x + 1 <= stranger + 1); }},
       {"Using empty handle", [] { static_cast<void>(ZylNumExpr() <= 3); }},
       {"Using empty handle", [&] { static_cast<void>(x == ZylNumVar()); }}});
}

// A comparison goes with a variable that is its operand; its bounds come from the evaluator.
TEST_F(ZylComparisonTest, DependsOnItsVariables) {
  ZylModel model(env);
  model.add(x <= y);
  model.add(2 * x <= y + 1);
  y.setBounds(4, 4);
  const auto* le = static_cast<ZylNumLeI*>((*ZylModel::Iterator(model)).getImpl());
  EXPECT_EQ(le->getUb(impl->getModelEvaluator()), 4.0);
  x.end();
  EXPECT_TRUE(DisplaysAs(
      model, "ZylModel model" + std::to_string(model.getId()) + " = {\n0  <= y  + 1 \n}\n"));
}

TEST_F(ZylComparisonTest, ConstraintsAreOperands) {
  EXPECT_TRUE(zyl::isExactly<ZylNumEqI>(((0 <= x) == (0 <= y)).getImpl()));
  EXPECT_STREQ(((0 <= x) + 3 * (1 <= y)).getImpl()->getRttiTypeName(),
               ((x >= 0) + 3 * (y >= 1)).getImpl()->getRttiTypeName());
  const ZylConstraint yes(new (impl) ZylConstConstraintI(impl, 1));
  EXPECT_TRUE(DisplaysAs(yes, "TrueConstraint "));
  EXPECT_EQ(yes.getImpl()->eval(ZylAlgorithm()), 1.0);
}

TEST_F(ZylComparisonTest, ATemporaryOnBothSidesIsTakenOnce) {
  const ZylIntExprArg sum = i + 1;
  const ZylConstraint constraint = sum <= sum;
  const auto* both = zyl::as<ZylBinaryNumConstraintI>(constraint.getImpl());
  ASSERT_NE(both, nullptr);
  EXPECT_EQ(both->getLeft(), both->getRight());
  constraint.getImpl()->end();
}

}  // namespace
}  // namespace zyl::test
