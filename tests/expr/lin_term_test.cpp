#include "vorlane/expr/lin_term.h"

#include <algorithm>
#include <random>

#include "expr/fixture.h"

namespace zyl::test {
namespace {

class LinTermTest : public ExprTest {
 protected:
  using Terms = std::vector<std::pair<ZylNumVarI*, double>>;
  static Terms terms(const ZylNumLinTermI* node) {
    Terms result;
    for (const auto* term = node->getTermHead(); term != nullptr; term = term->_next) {
      result.emplace_back(term->_var, term->_coef);
    }
    return result;
  }
};

TEST_F(LinTermTest, NormalFormStandsAtTheLastOccurrence) {
  ZylExpr e(env);
  e += x;
  e += y;
  e += x;
  e -= z;
  EXPECT_EQ(e.getImpl()->normalize(), 1);
  EXPECT_TRUE(DisplaysAs(e, "y  + 2 * x  + -1 * z "));
  std::ostringstream terms;
  terms << 2 * x << 1 * x << 0 * x;
  EXPECT_EQ(terms.str(), "2 * x x 0 ");
  EXPECT_EQ(e.getImpl()->normalize(), 0);
}

// What joins two terms goes by whether the one before it was written.
TEST_F(LinTermTest, ShortFormGoesByTheTermBefore) {
  struct Tagged : ZylNumLinTermI {
    using ZylNumLinTermI::ZylNumLinTermI;
    long displayTerm(std::ostream& stream, const ZylNumLinExprTermI* term) const override {
      if (term->_coef < 0.0) return 0;
      stream << "<" << term->_coef << ">";
      return 1;
    }
  };
  Tagged own(impl, 1.0);
  ZylNumLinTermI plain(impl, 0.0);
  for (const double coef : {0.0, 1.0, 0.0, 2.0, -3.0}) {
    for (ZylNumLinTermI* sum : {&plain, static_cast<ZylNumLinTermI*>(&own)}) {
      sum->append(impl->newTerm(x.getImpl(), coef));
    }
  }
  EXPECT_TRUE(DisplaysAs(&plain, "x  + 2 * x  + -3 * x "));
  plain.append(impl->newTerm(y.getImpl(), 0.0));
  EXPECT_TRUE(DisplaysAs(&plain, "x  + 2 * x  + -3 * x  + "));
  EXPECT_TRUE(DisplaysAs(&own, "<0> + <1> + <0> + <2> +  + 1 "));
}

// Both kinds of marks, with zeros and with terms at either end going.
TEST_F(LinTermTest, NormalFormAgreesWithMap) {
  const ZylNumVarArray vars(env, 12, 0.0, 1.0);
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    impl->useMTSafeNormalization(seed % 2);
    std::mt19937 random(seed);
    ZylExpr e(env);
    Terms expected;
    for (auto n = random() % 40; n > 0; --n) {
      const ZylNumVar variable = vars[static_cast<long>(random() % 12)];
      double coef = static_cast<int>(random() % 5) - 2;
      e += coef * variable;
      const auto isSame = [&](const auto& term) { return term.first == variable.getImpl(); };
      const auto earlier = std::find_if(expected.begin(), expected.end(), isSame);
      if (earlier != expected.end()) {
        coef += earlier->second;
        expected.erase(earlier);
      }
      expected.emplace_back(variable.getImpl(), coef);
    }
    std::erase_if(expected, [](const auto& term) { return term.second == 0.0; });
    e.normalize();
    EXPECT_EQ(terms(e.getImpl()), expected);
    e += x;
    EXPECT_EQ(terms(e.getImpl()).back().first, x.getImpl());
    e.end();
  }
}

// A sum may have been appended to since it was normal.
TEST_F(LinTermTest, CopiesAreNormalisedAnew) {
  ZylExpr e = x + y;
  e.normalize();
  e += x;
  ZylExpr copy = e.copy();
  copy.setLinearCoef(x, 5);
  EXPECT_TRUE(DisplaysAs(copy, "y  + 5 * x "));
}

TEST_F(LinTermTest, NormalisationCanBeInhibited) {
  impl->inhibitNormalization(1);
  ZylExpr e(env);
  e += x;
  e += x;
  EXPECT_TRUE(e.normalize());
  EXPECT_EQ(terms(e.getImpl()).size(), 2U);
  impl->inhibitNormalization(0);
  EXPECT_FALSE(e.normalize());
}

// --- coefficients

class CoefTest : public LinTermTest {
 protected:
  CoefTest() {
    e += 2 * x;
    e += 3 * y;
    node = e.getImpl();
    values->extract(node);
    values->log.clear();
  }
  Log take() { return std::exchange(values->log, {}); }

  ZylExpr e{env};
  ZylNumLinTermI* node;
  const Log added{"apply ZylNumLinTermAddVar"};
  const Log removed{"apply ZylNumLinTermRemoveVar"};
};

TEST_F(CoefTest, OneIsSetFoundOrNot) {
  EXPECT_EQ(node->setCoef(z, 0.0), 0.0);
  EXPECT_EQ(take(), Log());
  EXPECT_EQ(node->setCoef(z, 4.0), 0.0);
  EXPECT_EQ(take(), added);
  EXPECT_EQ(node->setCoef(x, 5.0), 2.0);
  EXPECT_EQ(take(), removed);
  EXPECT_EQ(node->setCoef(z, 0.0), 4.0);
  EXPECT_EQ(take(), removed);
  e += i;  // behind the term that was last
  EXPECT_TRUE(DisplaysAs(e, "5 * x  + 3 * y  + i "));
}

TEST_F(CoefTest, ArraysKeepZerosAndReportWhatChangedItsPresence) {
  const ZylNumArray old(env, 4);
  node->setCoef(ZylNumVarArray(env, 4, x, y, z, i), ZylNumArray(env, 4, 7.0, 0.0, 1.5, 0.0), old);
  EXPECT_EQ(take(), (Log{removed[0], added[0]}));
  EXPECT_TRUE(ZylNumArray2::equal(old, ZylNumArray(env, 4, 2.0, 3.0, 0.0, 0.0)));
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(e, "( 7 * x  + 0  + 1.5 * z ) "));
  env.setLongDisplay(false);
  EXPECT_TRUE(DisplaysAs(e, "7 * x  + 1.5 * z "));
  // The zero term comes back to life; a variable that stands in the array twice has one term.
  e.setLinearCoefs(ZylNumVarArray(env, 3, y, i, i), ZylNumArray(env, 3, 1.0, 2.0, 3.0));
  EXPECT_TRUE(DisplaysAs(e, "7 * x  + y  + 1.5 * z  + 3 * i "));
}

TEST_F(CoefTest, RefusalsAndWrongUse) {
  values->refuse("ZylNumLinTermAddVar");
  EXPECT_THROW(e.setLinearCoefs(ZylNumVarArray(env, 2, z, x), ZylNumArray(env, 2, 1.0, 0.0)),
               ZylAlgorithm::CannotChangeException);
  EXPECT_EQ(take(), (Log{added[0], removed[0]})) << "all is told before the refusal is raised";
  EXPECT_THROW(e.setLinearCoefs(ZylNumVarArray(env, 1, z), ZylNumArray(env)), ZylArrayError);
  const EnvFixture other;
  EXPECT_THROW(e.setLinearCoef(ZylNumVar(other.env), 1.0), ZylEnvironmentMismatch);
  e += ZylSin(x);
  ExpectEachRaises<ZylWrongUsage>(
      {{"You can not change the coefficient of a nonlinear expression",
        [&] { e.setLinearCoef(x, 1); }},
       {"You can not use change the coefficient of a nonlinear expression",
        [&] { e.setLinearCoefs(ZylNumVarArray(env, 1, x), ZylNumArray(env, 1, 1.0)); }}});
  EXPECT_TRUE(RaisesWith<ZylNumExpr::NonLinearExpression>(
      [&] { e.setNumConstant(1); },
      "Expression " + displayed(e) +
          " is non linear, setting or querying the constant part is forbidden"));
}

// --- other edits

TEST_F(LinTermTest, RemovesAsManyAsTheArrayHolds) {
  ZylExpr e(env);
  e += x;
  e += y;
  e += ZylSin(z);
  e += z;
  ZylExtractableArray gone(env, 3, z, x, ZylExtractable(e.getImpl()->getNonLinearHead()->_expr));
  e.remove(gone);
  EXPECT_TRUE(DisplaysAs(e, "y "));
  EXPECT_FALSE(impl->isMarked(x.getImpl()));
  e += x;
  EXPECT_TRUE(DisplaysAs(e, "y  + x ")) << "the tail is mended";
  e.remove(ZylNumVarArray(env, 1, x));
  EXPECT_TRUE(DisplaysAs(e, "y "));
}

TEST_F(LinTermTest, ScalesPartsAndHoldsThem) {
  ZylExpr e(x + ZylSin(y) + 3);
  e *= 2;
  EXPECT_TRUE(DisplaysAs(e, "2 * x  + sin(y[0..10] ) * 2 + 6 "));
  e /= 4;
  EXPECT_TRUE(DisplaysAs(e, "0.5 * x  + sin(y[0..10] ) * 2/ 4 + 1.5 "));
  EXPECT_EQ(e.getImpl()->getNonLinearHead()->_expr->getCount(), 1);
  const double value = eval(e);
  EXPECT_DOUBLE_EQ(value, (2.5 + std::sin(4.0) + 3) / 2);
  e.clear();
  EXPECT_TRUE(DisplaysAs(e, "0 "));
}

TEST_F(LinTermTest, IntegerSumsCheckTheirArithmetic) {
  ZylIntExpr e(3 * i + 2);
  ZylIntExpr big(i + ZylIntMax);
  ExpectEachRaises<ZylIntExpr::ZylOverflowOccurred>(
      {{"overflow occurred in multiplication", [&] { e *= ZylIntMax; }},
       {"overflow occurred in addition", [&] { big += j + 1; }},
       {"overflow occurred in substraction", [] { ZylSubOverflow(-1, 1e16); }},
       {"overflow occurred in division", [] { ZylDivOverflow(1, 0); }}});
  EXPECT_EQ(intSum(big)->getConstant(), ZylIntMax) << "the failed addition changed nothing";
  big += LONG_MAX;  // unchecked: wraps around
  EXPECT_LT(intSum(big)->getConstant(), 0);
  EXPECT_EQ(ZylDivOverflow(-7, 2), -3);
  EXPECT_NO_THROW(ZylDivOverflow(0, 0));
}

TEST_F(LinTermTest, IntegerSumsBecomeNumericOnes) {
  ZylIntExpr held(2 * i + ZylAbs(j) + 5);
  ZylNumLinTermI* copy = held.getImpl()->toNumLinTermI();
  EXPECT_TRUE(DisplaysAs(held, displayed(copy)));
  const ZylIntExprArg temporary = 2 * i + ZylAbs(j) + 5;
  const ZylNumLinExprTermI* head = intSum(temporary)->getTermHead();
  const long id = temporary.getId();
  const ZylNumLinTermI* taken = temporary.getImpl()->toNumLinTermI();
  EXPECT_EQ(taken->getTermHead(), head) << "a temporary's records move";
  EXPECT_FALSE(isAlive(id));
  EXPECT_TRUE(taken->isInteger());
}

TEST_F(LinTermTest, FoldsWhatTheEvaluatorKnows) {
  static const ZylNumExprI* known;
  class Folding : public ZylModelEvaluatorI {
   public:
    using ZylModelEvaluatorI::ZylModelEvaluatorI;
    ZylNumExpr evaluateToNumExpr(const ZylNumExprArg expr) override {
      return expr.getImpl() == known ? ZylNumExpr(ZylEnv(getEnvI()), 42.0) : ZylNumExpr();
    }
  };
  impl->setModelEvaluatorPop(
      [](ZylEnvI* owner) -> ZylModelEvaluatorI* { return new Folding(owner); });
  ZylExpr e(x + ZylSin(y) + ZylCos(z));
  known = e.getImpl()->getNonLinearHead()->_expr;
  const long knownId = known->getId();
  e.getImpl()->kvlNormalization();
  EXPECT_TRUE(DisplaysAs(e, "x  + cos(z[-5..5] ) + 42 "));
  EXPECT_FALSE(isAlive(knownId));
  EXPECT_EQ(e.getImpl()->getNonLinearHead()->_expr->getCount(), 1);
}

}  // namespace
}  // namespace zyl::test
