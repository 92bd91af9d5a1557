#include "vorlane/expr/functions.h"

#include <cmath>

#include "expr/fixture.h"

namespace zyl::test {
namespace {

using FunctionsTest = ExprTest;

TEST_F(FunctionsTest, LogarithmsOfOtherBasesAreQuotients) {
  EXPECT_STREQ(ZylLog10(x).getImpl()->getRttiTypeName(), "ZylNumDivCstI");
  EXPECT_DOUBLE_EQ(eval(ZylLog10(x)), std::log10(2.5));
  EXPECT_DOUBLE_EQ(eval(ZylLog2(y)), 2.0);
}

TEST_F(FunctionsTest, NumberArrays) {
  const ZylIntArray ints(env, 3, 4, -2, 7);
  const ZylNumArray nums(env, 3, 0.5, 2.0, -1.5);
  const ZylIntArray none(env);
  EXPECT_EQ(ZylMin(ints), -2);
  EXPECT_EQ(ZylMax(nums), 2.0);
  EXPECT_EQ(ZylSum(ints), 9);
  EXPECT_EQ(ZylSum(ZylNumArray(env)), 0.0);
  EXPECT_EQ(ZylScalProd(ints, ints), 69);
  EXPECT_EQ(ZylScalProd(ints, nums), -12.5);
  EXPECT_EQ(ZylScalProd(none, ZylNumArray(env)), 0.0);
  ExpectEachRaises<ZylArrayError>(
      {{"Array of size 0 in call to ZylMin", [&] { ZylMin(none); }},
       {"Array of size 0 in call to ZylMax", [&] { ZylMax(ZylNumArray(env)); }}});
  EXPECT_TRUE(RaisesWith<ZylInvalidScalProdArraysException>(
      [&] { ZylScalProd(ints, none); }, "ZylScalProd: arrays have different size"));
}

TEST_F(FunctionsTest, SumsOfArraysAreOneSum) {
  const ZylNumExprArg sum = ZylSum(ZylNumVarArray(env, 3, x, y, x));
  EXPECT_TRUE(DisplaysAs(sum, "x  + y  + x "));
  EXPECT_EQ(sum.getImpl()->getCount(), 0);
  EXPECT_TRUE(DisplaysAs(ZylSum(ZylIntVarArray(env, 2, i, j)), "i  + j "));
  EXPECT_NE(intSum(ZylSum(ZylIntExprArray(env, 2, i + 1, ZylAbs(j)))), nullptr);
  EXPECT_TRUE(DisplaysAs(ZylSum(ZylNumExprArray(env)), "0 "));
}

// A temporary is taken over at its last place in the array, and copied before; what is held stays.
TEST_F(FunctionsTest, SumsTakeTemporariesOver) {
  const ZylNumExprArg temporary = 2 * x + 1;
  ZylNumExpr held(3 * y + 1);
  const long id = temporary.getId();
  const ZylNumExprArg sum = ZylSum(ZylNumExprArray(env, 4, temporary, held, temporary, ZylSin(z)));
  EXPECT_FALSE(isAlive(id));
  EXPECT_TRUE(DisplaysAs(held, "3 * y  + 1 "));
  EXPECT_EQ(held.getImpl()->getCount(), 1);
  EXPECT_DOUBLE_EQ(eval(sum), 2 * 6 + 13 + std::sin(-1.5));
}

TEST_F(FunctionsTest, SumsRefuseBeforeTheyBuild) {
  const EnvFixture other;
  const ZylNumExprArg temporary = 2 * x + 1;
  const ZylNumExprArray array(env, 2, temporary, ZylNumVar(other.env));
  const std::string operation =
      "::operator += const ZylNumExprArg arg : mixing mismatch Environments";
  ExpectEachRaises<ZylWrongUsage>(
      {{"ZylExpr& ZylNumExpr" + operation, [&] { ZylSum(array); }},
       {"ZylNumExpr& ZylNumExpr" + operation,
        [&] { ZylSum(ZylIntVarArray(env, 1, ZylIntVar(other.env, 0, 1))); }},
       {"using empty handle in ZylSum",
        [&] { ZylSum(ZylNumExprArray(env, 2, temporary, ZylNumExprArg())); }}});
  EXPECT_TRUE(DisplaysAs(temporary, "2 * x  + 1 "));
  EXPECT_EQ(temporary.getImpl()->getCount(), 0);
}

TEST_F(FunctionsTest, ScalarProductsKeepOneTermAnIndex) {
  const ZylNumVarArray vars(env, 3, x, y, x);
  EXPECT_TRUE(
      DisplaysAs(ZylScalProd(vars, ZylNumArray(env, 3, 1.0, 2.5, 3.0)), "x  + 2.5 * y  + 3 * x "));
  const ZylNumExprArg zeros = ZylScalProd(ZylIntArray(env, 3, 0, 0, 1), vars);
  EXPECT_TRUE(DisplaysAs(zeros, "x "));
  EXPECT_EQ(numSum(zeros)->getTermHead()->_coef, 0.0);
  const ZylIntVarArray ints(env, 2, i, j);
  EXPECT_NE(intSum(ZylScalProd(ints, ZylIntArray(env, 2, 2, 3))), nullptr);
  EXPECT_NE(numSum(ZylScalProd(ints, ZylNumArray(env, 2, 2.0, 3.0))), nullptr);
  EXPECT_TRUE(RaisesWith<ZylInvalidScalProdArraysException>(
      [&] { ZylScalProd(vars, ZylNumArray(env)); }, "ZylScalProd: arrays have different size"));
  const EnvFixture other;
  const ZylNumVarArray strangers(env, 1, ZylNumVar(other.env));
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { ZylScalProd(strangers, ZylNumArray(env, 1, 1.0)); },
                                        "ZylScalProd: mixing mismatch environments"));
}

TEST_F(FunctionsTest, ScalarProductsOfExpressions) {
  const ZylNumExprArg temporary = x + 1;
  const ZylNumExprArray a(env, 3, temporary, ZylSin(y), ZylExpr(env, 2));
  const ZylNumExprArray b(env, 3, temporary, z, temporary);
  const ZylNumExprArg product = ZylScalProd(a, b);
  EXPECT_DOUBLE_EQ(eval(product), 3.5 * 3.5 + std::sin(4.0) * -1.5 + 2 * 3.5);
  EXPECT_TRUE(DisplaysAs(temporary, "x  + 1 "));
  EXPECT_EQ(temporary.getImpl()->getCount(), 2) << "held by the product of it with itself";
  EXPECT_NE(intSum(ZylScalProd(ZylIntExprArray(env, 1, i), ZylIntExprArray(env, 1, j))), nullptr);
}

TEST_F(FunctionsTest, ArrayFunctionsCheckTheirElements) {
  const std::string mismatch = ": mixing mismatch Environments";
  const EnvFixture other;
  const ZylIntExprArray mixed(env, 2, i, ZylIntVar(other.env));
  ExpectEachRaises<ZylWrongUsage>(
      {{"ZylMin" + mismatch, [&] { ZylMin(mixed); }},
       {"ZylMax" + mismatch, [&] { ZylMax(mixed); }},
       {"ZylCount" + mismatch, [&] { ZylCount(mixed, 1); }},
       {"ZylStandardDeviation" + mismatch, [&] { ZylStandardDeviation(mixed); }}});
  ZylIntExprArray gap(env, 2, i, j);
  gap[1] = ZylIntExprArg();
  ZylIntExprArray none(env, 1, i);
  none.clear();
  ExpectEachRaises<ZylArrayError>(
      {{"ZylCount: empty handle in array", [&] { ZylCount(gap, 1); }},
       {"ZylCount: array of size 0", [&] { ZylCount(none, 1); }},
       {"ZylStandardDeviation: empty handle in array", [&] { ZylStandardDeviation(gap, 0, 1); }},
       {"ZylStandardDeviation: array of size 0", [&] { ZylStandardDeviation(none); }}});
  EXPECT_THROW(ZylMax(gap), ZylEmptyHandleException);
}

TEST_F(FunctionsTest, VariableArraysAreIndexedByExpressions) {
  set(2.5, 4, -1.5, 1, 8);
  EXPECT_EQ(eval(ZylNumVarArray(env, 2, x, y)[i]), 4.0);
  EXPECT_EQ(eval(ZylIntVarArray(env, 2, i, j)[i]), 8.0);
  EXPECT_EQ(eval(ZylMax(ZylIntVarArray(env, 2, i, j))), 8.0);
  const EnvFixture other;
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { ZylNumVarArray(other.env, 1, ZylNumVar(other.env))[i]; },
                                "operator[]: mixing mismatch Environments"));
}

}  // namespace
}  // namespace zyl::test
