// The handles: copy on write, counting, who takes over what.

#include "vorlane/expr/expression.h"

#include "expr/fixture.h"

namespace zyl::test {
namespace {

using ExpressionTest = ExprTest;

TEST_F(ExpressionTest, SharedNodesAreCopiedByEveryEdit) {
  const ZylNumArray nine(env, 1, 9.0);
  const std::function<void(ZylExpr&)> edits[] = {
      [](ZylExpr& e) { e += 1; },
      [](ZylExpr& e) { e -= 1; },
      [](ZylExpr& e) { e *= 2; },
      [](ZylExpr& e) { e /= 2; },
      [this](ZylExpr& e) { e += x; },
      [this](ZylExpr& e) { e -= i; },
      [this](ZylExpr& e) { e += 2 * x; },
      [this](ZylExpr& e) { e -= 2 * i; },
      [this](ZylExpr& e) { e += ZylSin(x); },
      [this](ZylExpr& e) { e -= x + y; },
      [this](ZylExpr& e) { e.setLinearCoef(x, 9); },
      [&](ZylExpr& e) { e.setLinearCoefs(ZylNumVarArray(env, 1, x), nine); },
      [this](ZylExpr& e) { e.remove(ZylNumVarArray(env, 1, y)); },
      [](ZylExpr& e) { e.clear(); },
      [](ZylExpr& e) { e.setNumConstant(7); },
  };
  int number = 0;
  for (const auto& edit : edits) {
    SCOPED_TRACE(testing::Message() << "edit " << number++);
    ZylExpr first(2 * x + y + 3);
    ZylExpr second = first;
    EXPECT_EQ(first.getImpl()->getCount(), 2);
    edit(first);
    EXPECT_TRUE(DisplaysAs(second, "2 * x  + y  + 3 "));
    EXPECT_NE(displayed(first), displayed(second));
    EXPECT_EQ(first.getImpl()->getCount(), 1);
    EXPECT_EQ(second.getImpl()->getCount(), 1);
    const ZylNumLinTermI* own = first.getImpl();
    edit(first);
    EXPECT_EQ(first.getImpl(), own) << "an unshared node is edited in place";
  }
}

TEST_F(ExpressionTest, AssignmentLeavesNoReferenceBehind) {
  ZylExpr e(env);
  const long before = liveObjects();
  for (int round = 0; round < 5; ++round) e = e + x;
  EXPECT_EQ(e.getImpl()->getCount(), 1);
  EXPECT_EQ(liveObjects(), before);
  ZylExpr copy;
  copy = e;
  EXPECT_EQ(e.getImpl()->getCount(), 2);
  copy = std::move(e);
  EXPECT_EQ(copy.getImpl()->getCount(), 1);
  EXPECT_EQ(e.getImpl(), nullptr);
  copy = *&copy;
  EXPECT_EQ(copy.getImpl()->getCount(), 1);
  copy.end();
  EXPECT_EQ(liveObjects(), before - 1);
}

TEST_F(ExpressionTest, TakesTemporariesOverAndCopiesTheRest) {
  const ZylNumExprArg temporary = x + y;
  ZylExpr e(temporary);
  EXPECT_EQ(e.getImpl(), temporary.getImpl());
  ZylNumExpr other(e);
  ZylExpr copy{ZylNumExprArg(other)};
  EXPECT_NE(copy.getImpl(), e.getImpl());
  ZylNumExpr wave(ZylSin(x));
  ZylExpr wrapped(wave);
  EXPECT_EQ(wave.getImpl()->getCount(), 2);
  wave.end();
  EXPECT_TRUE(DisplaysAs(wrapped, "sin(x[0..10] )"));
  wrapped.end();
}

// 2 * x + y * y + 3, step by step.
TEST_F(ExpressionTest, OneNodeCarriesAWholeFormula) {
  const long before = liveObjects();
  ZylExpr e = 2 * x + y * y + 3;
  EXPECT_EQ(liveObjects(), before + 2) << "the product and the sum";
  EXPECT_EQ(e.getImpl()->getCount(), 1);
  EXPECT_EQ(e.getImpl()->getNonLinearHead()->_expr->getCount(), 1);
  EXPECT_TRUE(DisplaysAs(e, "2 * x  + y[0..10]  * y[0..10]  + 3 "));
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(e, "( 2 * x  + ( y[0..10] * y[0..10] )  + 3 ) "));
  e.end();
  EXPECT_EQ(liveObjects(), before);
}

TEST_F(ExpressionTest, AddsAndSubtractsItself) {
  const auto test = [this](auto e, const auto& same) {
    const double value = eval(e);
    e += same(e);
    EXPECT_EQ(eval(e), 2 * value);
    e -= same(e);
    EXPECT_EQ(eval(e), 0);
  };
  const auto asNum = [](const ZylNumExprArg& e) -> const ZylNumExprArg& { return e; };
  test(ZylExpr(x + 2 * y + 1), asNum);
  test(ZylNumExpr(x + 2 * y + 1), asNum);
  test(ZylIntExpr(2 * i + 1), [](const ZylIntExprArg& e) -> const ZylIntExprArg& { return e; });
}

TEST_F(ExpressionTest, CountedHandlesEditInPlaceWhatTheyAloneHold) {
  ZylNumExpr n(x + 1);
  const ZylNumExprI* node = n.getImpl();
  n += 2;
  n -= y;
  n *= 3;
  EXPECT_EQ(n.getImpl(), node);
  EXPECT_EQ(node->getCount(), 1);
  const ZylNumExpr shared = n;
  n /= 2;
  EXPECT_NE(n.getImpl(), node);
  EXPECT_TRUE(DisplaysAs(shared, "3 * x  + -3 * y  + 9 "));
  // A product is folded by its constant, which makes another node.
  ZylIntExpr k(ZylAbs(i));
  k *= 3;
  k *= -2;
  EXPECT_TRUE(DisplaysAs(k, "abs(i[0..5] ) * -6"));
  // An integer sum in a numeric handle becomes a numeric one.
  ZylNumExpr mixed(2 * i + 1);
  mixed += 0.5;
  EXPECT_NE(numSum(mixed), nullptr);
  EXPECT_TRUE(DisplaysAs(mixed, "2 * i  + 1.5 "));
}

TEST_F(ExpressionTest, HoldersKeepEachOtherAlive) {
  ZylNumExpr inner(ZylSin(x));
  const long id = inner.getId();
  ZylNumExpr first(ZylAbs(inner));
  ZylNumExpr second(ZylSquare(inner));
  inner.end();
  EXPECT_EQ(inner.getImpl(), nullptr);
  first.end();
  EXPECT_TRUE(isAlive(id));
  second.end();
  EXPECT_FALSE(isAlive(id));
  ZylNumExpr variable(x);
  variable.end();
  EXPECT_TRUE(isAlive(x.getId())) << "a variable goes by itself only";
}

TEST_F(ExpressionTest, EmptyHandlesRaise) {
  ZylExpr e;
  EXPECT_THROW(e += 1, ZylEmptyHandleException);
  EXPECT_THROW(e += x, ZylEmptyHandleException);
  EXPECT_THROW(e.normalize(), ZylEmptyHandleException);
  EXPECT_THROW(ZylNumExprArg().isConstant(), ZylEmptyHandleException);
  EXPECT_THROW(ZylNumExpr() += 1, ZylEmptyHandleException);
  EXPECT_THROW(x + ZylNumVar(), ZylEmptyHandleException);
  EXPECT_THROW(2 * ZylIntVar(), ZylEmptyHandleException);
  EXPECT_THROW(ZylSin(e), ZylEmptyHandleException);
  EXPECT_THROW(ZylTestIsLinear(nullptr), ZylEmptyHandleException);
}

TEST_F(ExpressionTest, KnowsItsConstant) {
  EXPECT_TRUE(ZylExpr(env, 5).isConstant());
  EXPECT_TRUE(ZylIntExpr(env, 5).isConstant());
  EXPECT_FALSE(ZylNumExprArg(x).isConstant());
  EXPECT_EQ((i + 4).getNumConstant(), 4.0);
  EXPECT_TRUE(RaisesWith<ZylNumExpr::NonLinearExpression>(
      [&] { ZylSin(x).getNumConstant(); }, "Constant part cannot be set or queried"));
}

TEST_F(ExpressionTest, ArraysOfExpressionsHoldTheirElements) {
  ZylExpr e(2 * x);
  ZylExprArray array(env, 2, e, x + y);
  EXPECT_EQ(e.getImpl()->getCount(), 2);
  EXPECT_EQ(array[1].getImpl()->getCount(), 1);
  array[0] += y;
  EXPECT_TRUE(DisplaysAs(e, "2 * x "));
  EXPECT_TRUE(DisplaysAs(array[0], "2 * x  + y "));
  array.add(e);
  EXPECT_EQ(e.getImpl()->getCount(), 2);
  set(2.5, 4, 0, 1, 0);
  EXPECT_EQ(eval(array[i]), 6.5);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { ZylExprArray(env, 3, e, e); },
                                        "ZylExprArray::ZylExprArray: n !=2"));
}

// Where variables lie in slabs, the test of the environment goes by their addresses.
TEST(ZylExpr, KnowsTheVariablesOfALargeEnvironment) {
  EnvFixture env;
  EnvFixture other;
  const ZylNumVarArray x(env.env, 50'000, 0.0, 1.0);
  const ZylNumVarArray y(other.env, 50'000, 0.0, 1.0);
  ZylExpr e(env.env);
  for (const long i : {0L, 49'999L}) {
    e += 2 * x[i];
    e -= x[i];
    EXPECT_THROW(e += 2 * y[i], ZylWrongUsage);
    EXPECT_THROW(e -= y[i], ZylWrongUsage);
    EXPECT_THROW(ZylScalProd(ZylNumVarArray(env.env, 1, y[i]), ZylNumArray(env.env, 1, 1.0)),
                 ZylWrongUsage);
  }
  e.normalize();
  EXPECT_EQ(e.getLinearIterator().getCoef(), 1.0);
  e.end();
}

// A term that no operator took over costs nothing; each that did has a record of its own.
TEST(ZylNumLinExprTerm, MakesItsRecordWhenItIsTaken) {
  EnvFixture env;
  const ZylNumVar x(env.env, 0, 1);
  const long before = env->getMemoryUsage();
  const ZylNumLinExprTerm term = 3 * x;
  EXPECT_EQ((-term).getCoef(), -3.0);
  EXPECT_EQ(term.getCoef(), 3.0);
  EXPECT_EQ(env->getMemoryUsage(), before);
  EXPECT_EQ(term.getImpl(), term.getImpl());
  EXPECT_EQ((-term).getImpl(), term.getImpl());
  EXPECT_EQ(term.getCoef(), -3.0);
  ZylExpr e(env.env);
  e -= term;
  EXPECT_EQ(e.getLinearIterator().getImpl(), term.getImpl());
  EXPECT_EQ(e.getLinearIterator().getCoef(), 3.0);
  e.end();
}

}  // namespace
}  // namespace zyl::test
