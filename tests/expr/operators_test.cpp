// Which node an operation becomes, and what it refuses.

#include "vorlane/expr/operators.h"

#include "expr/fixture.h"

namespace zyl::test {
namespace {

using OperatorsTest = ExprTest;

class SumTest : public ExprTest,
                public testing::WithParamInterface<std::tuple<int, int, bool, bool>> {
 protected:
  ZylNumExprArg make(int kind) {
    if (kind == 0) return x;
    if (kind == 1) return 2 * y + 1;
    if (kind == 2) return 3 * i + 2;
    return ZylSin(z);
  }
};

// The table of `+` on numeric expressions: any class with any, held or temporary.
TEST_P(SumTest, FollowsTheTable) {
  const auto [left, right, holdLeft, holdRight] = GetParam();
  const ZylNumExprArg a = make(left);
  const ZylNumExprArg b = make(right);
  const double expected = eval(a) + eval(b);
  const std::string textA = displayed(a);
  const std::string textB = displayed(b);
  if (holdLeft) a.getImpl()->hold();
  if (holdRight) b.getImpl()->hold();
  const bool keepsLeft = left == 1 && !holdLeft;
  const bool keepsRight = !keepsLeft && (left == 0 || left == 3) && right == 1 && !holdRight;
  // A temporary may be gone afterwards.
  const void* const nodeA = a.getImpl();
  const void* const nodeB = b.getImpl();
  const ZylNumExprArg sum = a + b;
  ASSERT_NE(numSum(sum), nullptr);
  EXPECT_DOUBLE_EQ(eval(sum), expected);
  EXPECT_EQ(sum.getImpl() == nodeA, keepsLeft);
  EXPECT_EQ(sum.getImpl() == nodeB, keepsRight);
  EXPECT_EQ(sum.getImpl()->getCount(), 0);
  EXPECT_TRUE(!holdLeft || DisplaysAs(a, textA));
  EXPECT_TRUE(!holdRight || DisplaysAs(b, textB));
}

INSTANTIATE_TEST_SUITE_P(Table, SumTest,
                         testing::Combine(testing::Range(0, 4), testing::Range(0, 4),
                                          testing::Bool(), testing::Bool()));

TEST_F(OperatorsTest, SumsKeepTheirOrder) {
  EXPECT_TRUE(DisplaysAs(x + (2 * y + z), "x  + 2 * y  + z "));
  EXPECT_TRUE(DisplaysAs((2 * y + z) + x, "2 * y  + z  + x "));
  EXPECT_TRUE(DisplaysAs(ZylSin(x) + ZylCos(y), "sin(x[0..10] ) + cos(y[0..10] )"));
  EXPECT_TRUE(DisplaysAs(i + (2 * j + 3) + 4, "i  + 2 * j  + 7 "));
  EXPECT_TRUE(DisplaysAs(5 - x, "-1 * x  + 5 "));
  EXPECT_TRUE(DisplaysAs(5 - (i + 2), "-1 * i  + 3 "));
  EXPECT_TRUE(DisplaysAs(x - 2.5, "x  + -2.5 "));
  EXPECT_TRUE(DisplaysAs(ZylNumExprArg(-(2 * x)), "-2 * x "));
}

// Two terms are not merged before something normalises; an integer sum never is.
TEST_F(OperatorsTest, SumsNormaliseOnlyWhenAppendedTo) {
  EXPECT_TRUE(DisplaysAs(x + x, "x  + x "));
  EXPECT_TRUE(DisplaysAs(x - x, "x  + -1 * x "));
  EXPECT_TRUE(DisplaysAs(x + (x + y), "2 * x  + y "));
  EXPECT_TRUE(DisplaysAs((x + x) + ZylSin(y), "2 * x  + sin(y[0..10] )"));
  EXPECT_TRUE(DisplaysAs((i + i) + (i + j), "i  + i  + i  + j "));
  EXPECT_FALSE(numSum(x + x)->isNormalized());
}

TEST_F(OperatorsTest, ATemporaryOnBothSidesIsTakenOnce) {
  const ZylNumExprArg t = 2 * x + 1;
  EXPECT_EQ(eval(t + t), 12.0);
  const ZylIntExprArg k = 2 * i + 1;
  EXPECT_EQ(eval(k + k), 30.0);
}

TEST_F(OperatorsTest, ProductsFold) {
  EXPECT_TRUE(DisplaysAs(2 * (3 * ZylSin(x)), "sin(x[0..10] ) * 6"));
  EXPECT_TRUE(DisplaysAs(2.5 * (2 * ZylAbs(i)), "abs(i[0..5] ) * 5"));
  EXPECT_TRUE(DisplaysAs(2 * (3 * x + y), "6 * x  + 2 * y "));
  EXPECT_NE(intSum(2 * (3 * i)), nullptr);
  EXPECT_NE(numSum(0.5 * (3 * i + 1)), nullptr);
  EXPECT_TRUE(DisplaysAs(ZylNumExprArg(x * 0), "0 ")) << "a term of coefficient 0";
  EXPECT_EQ(numSum(ZylNumExprArg(x * 0))->getTermHead()->_coef, 0.0);
  // A sum without terms and parts is a constant, on either side.
  EXPECT_TRUE(DisplaysAs(ZylExpr(env, 5) * ZylSin(x), "sin(x[0..10] ) * 5"));
  EXPECT_TRUE(DisplaysAs(ZylSin(x) * ZylIntExpr(env, 5), "sin(x[0..10] ) * 5"));
  EXPECT_TRUE(DisplaysAs(ZylIntExpr(env, 5) * i, "5 * i "));
  // Other sums are not multiplied out.
  EXPECT_TRUE(DisplaysAs((x + 1) * (y + 2), "x  + 1  * y  + 2 "));
}

TEST_F(OperatorsTest, QuotientsFoldIntoSums) {
  EXPECT_TRUE(DisplaysAs(x / 4, "0.25 * x "));
  EXPECT_TRUE(DisplaysAs((2 * x + 1) / 4, "0.5 * x  + 0.25 "));
  EXPECT_TRUE(DisplaysAs((2 * i + 1) / 4, "0.5 * i  + 0.25 "));
  EXPECT_TRUE(DisplaysAs(ZylSin(x) / 4, "sin(x[0..10] )/ 4"));
  EXPECT_TRUE(DisplaysAs(x / ZylExpr(env, 4), "x[0..10]  / 4 ")) << "no folding";
}

TEST_F(OperatorsTest, HeldOperandsAreNotChanged) {
  ZylNumExpr a(x + 1);
  ZylNumExpr b(y + 2);
  const ZylNumExprArg first = a + b;
  const ZylNumExprArg second = a - b;
  a * 3;
  b / 2;
  -a;
  a + 1;
  EXPECT_TRUE(DisplaysAs(first, "x  + y  + 3 "));
  EXPECT_TRUE(DisplaysAs(second, "x  + -1 * y  + -1 "));
  EXPECT_TRUE(DisplaysAs(a, "x  + 1 "));
  EXPECT_TRUE(DisplaysAs(b, "y  + 2 "));
}

TEST_F(OperatorsTest, ConstraintsAreOperands) {
  const ZylConstraint c = x >= 2;
  const ZylConstraint d = y <= 2;
  EXPECT_EQ(eval(c + d), 1.0);
  EXPECT_EQ(eval(2 * c + i), 9.0);
  EXPECT_EQ(eval(ZylMax(c, d) - d), 1.0);
}

// Each row and column of the table of texts, and subtraction with them; nothing is built before
// the test.
TEST_F(OperatorsTest, EnvironmentsMustAgree) {
  EnvFixture other;
  const ZylNumVar a(other.env);
  const ZylIntVar k(other.env);
  const ZylNumExprArg numExpr = ZylSin(a);
  const ZylIntExprArg intExpr = ZylAbs(k);
  ZylExpr e(env);
  ZylIntExpr n(env);
#define NUM(Op, A, B) "ZylNumExprArg operator " Op " const " A " const " B
#define INT(Op, A, B) "ZylIntExprArg operator " Op " const " A " const " B
  const std::pair<std::string, std::function<void()>> rows[] = {
      {NUM("+", "ZylNumExprArg", "ZylNumExprArg"), [&] { x + numExpr; }},
      {NUM("+", "ZylNumExprArg", "ZylNumExprArg"), [&] { i + numExpr; }},
      {NUM("+", "ZylNumExprArg", "ZylIntLinExprTerm"), [&] { x + 2 * k; }},
      {INT("+", "ZylIntExprArg", "ZylIntExprArg"), [&] { i + intExpr; }},
      {INT("+", "ZylIntExprArg", "ZylIntLinExprTerm"), [&] { i + 2 * k; }},
      {NUM("+", "ZylNumLinExprTerm", "ZylNumExprArg"), [&] { 2 * x + intExpr; }},
      {NUM("+", "ZylNumLinExprTerm", "ZylIntLinExprTerm"), [&] { 2 * x - 2 * k; }},
      {INT("+", "ZylIntLinExprTerm", "ZylIntExprArg"), [&] { 2 * i + intExpr; }},
      {NUM("+", "ZylIntLinExprTerm", "ZylNumLinExprTerm"), [&] { 2 * i + 2 * a; }},
      {NUM("*", "ZylNumExprArg", "ZylNumExprArg"), [&] { x* a; }},
      {INT("*", "ZylIntExprArg", "ZylIntExprArg"), [&] { i* k; }},
      {NUM("/", "ZylNumExprArg", "ZylNumExprArg"), [&] { x / a; }},
      {INT("%", "ZylIntExprArg", "ZylIntExprArg"), [&] { i % k; }},
      {"ZylMin", [&] { ZylMin(x, a); }},
      {"ZylMax", [&] { ZylMax(i, k); }},
      {"ZylDiv", [&] { ZylDiv(i, k); }},
      {"ZylExpr& ZylNumExpr::operator += const ZylNumExprArg arg ", [&] { e += a; }},
      {"ZylExpr& ZylExpr::operator -= const ZylNumExprArg arg ", [&] { e -= numExpr; }},
      {"ZylNumExpr& ZylNumExpr::operator -= const ZylNumExprArg arg ", [&] { n -= k; }},
  };
#undef NUM
#undef INT
  for (const auto& [text, operation] : rows) {
    const long before = liveObjects();
    EXPECT_TRUE(RaisesWith<ZylWrongUsage>(operation, text + ": mixing mismatch Environments"));
    EXPECT_EQ(liveObjects(), before) << text;
  }
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { ZylPower(x, a); }, "ZylPower: mixing mismatch environments"));
  EXPECT_TRUE(DisplaysAs(e, "0 ")) << "as it was";
}

}  // namespace
}  // namespace zyl::test
