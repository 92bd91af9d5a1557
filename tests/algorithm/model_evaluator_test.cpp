// The library's own evaluator and expander.

#include "vorlane/algorithm/model_evaluator.h"

#include <gtest/gtest.h>

#include "support/support.h"
#include "vorlane/algorithm/expander.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylEvaluator : public EnvTest {
 protected:
  ZylModelEvaluator evaluator{env};
  ZylNumVar fixed{env, 4, 4};
  ZylNumVar open{env, 0, 9};
  ZylIntVar fixedInt{env, 3, 3};
  ZylIntVar openInt{env, 0, 9};
};

TEST_F(ZylEvaluator, SumsOverFixedVariables) {
  EXPECT_EQ(evaluator.evaluate(fixed), 4.0);
  EXPECT_EQ(evaluator.evaluate(2 * fixed + 3), 11.0);
  EXPECT_EQ(evaluator.evaluate(2 * fixedInt + 3), 9);
  EXPECT_EQ(evaluator.evaluate(0.5 * fixed + 2 * fixedInt), 8.0);
  ZylExpr zero(env);
  zero += 0.0 * open;
  zero += 3.0;
  EXPECT_EQ(evaluator.evaluate(zero), 3.0) << "what counts nothing need not be fixed";
  ExpectEachRaises<ZylWrongUsage>(
      "can not call evaluator",
      {[&] { evaluator.evaluate(open); }, [&] { evaluator.evaluate(fixedInt + openInt); }});
}

TEST_F(ZylEvaluator, ExtremesOfTwo) {
  EXPECT_EQ(evaluator.evaluate(ZylMax(fixed, 2 * fixed)), 8.0);
  EXPECT_EQ(evaluator.evaluate(ZylMin(fixed, 2 * fixed - 5)), 3.0);
  EXPECT_EQ(evaluator.evaluate(ZylMax(fixedInt, 2 * fixedInt)), 6);
  EXPECT_EQ(evaluator.evaluate(ZylMin(fixedInt, ZylMax(fixedInt, 2 * fixedInt))), 3);
}

TEST_F(ZylEvaluator, RefusesTheRest) {
  ExpectEachRaises<ZylWrongUsage>("can not call ZylModelEvaluatorI::evaluate",
                                  {[&] { evaluator.evaluate(fixed + ZylSin(fixed)); },
                                   [&] { evaluator.evaluate(ZylAbs(fixedInt)); }});
  ZylModelEvaluatorI* base = evaluator.getImpl();
  ZylNumExprI* expr = fixed.getImpl();
  ExpectEachRaises<ZylWrongUsage>(
      {{"can not call isBound", [&] { base->isBound(expr); }},
       {"can not call evaluator", [&] { base->getValue(fixed.getImpl()); }},
       {"can not call evaluator", [&] { base->evaluateToNumExpr(fixed); }},
       {"can not call hasSubstitutionExpr", [&] { base->hasSubstitutionExpr(expr); }},
       {"can not call getSubstitutionAsNumExpr", [&] { base->getSubstitutionAsNumExpr(expr); }}});
  EXPECT_FALSE(base->isGround(expr));
  EXPECT_TRUE(base->isDecisionExpr(expr));
}

TEST_F(ZylEvaluator, OneGetterAtATime) {
  auto* first = new (impl) ZylModelEvaluatorSolutionGetterBaseI(impl);
  auto* second = new (impl) ZylModelEvaluatorSolutionGetterBaseI(impl);
  ZylModelEvaluatorI* e = evaluator.getImpl();
  e->setSolutionGetter(first);
  ExpectEachRaises<ZylWrongUsage>({{"ZylModelEvaluatorI::setSolutionGetter() getter already set",
                                    [&] { e->setSolutionGetter(second); }},
                                   {"ZylModelEvaluatorI::removeSolutionGetter() getter mismatch",
                                    [&] { e->removeSolutionGetter(second); }}});
  EXPECT_EQ(e->getSolutionGetter(), first);
  e->removeSolutionGetter(first);
  e->setSolutionGetter(second);
  e->removeSolutionGetter(second);
  delete first;
  delete second;
}

TEST_F(ZylEvaluator, TheExpanderExpandsNothing) {
  ZylExpanderI* expander = impl->getExpander();
  ZylModel model(env);
  ExpectEachRaises<ZylWrongUsage>(
      {{"can not call expand",
        [&] { fixed.getImpl()->expandTo(model.getImpl(), nullptr, nullptr); }},
       {"can not call substitute", [&] { expander->substitute(fixed.getImpl()); }},
       {"can not call expander", [&] { expander->getObjValue(); }},
       {"can not call expander", [&] { expander->getValue(fixed.getImpl()); }}});
  expander->load(model.getImpl());
  EXPECT_TRUE(expander->isInUse(model.getImpl()));
}

TEST_F(ZylEvaluator, UnboundShowsTheExpression) {
  ZylNumExprArg node = ZylMax(fixed, open);
  EXPECT_EQ(printed(ZylModelEvaluator::Unbound(node.getImpl())),
            "Access unbound expression: " + displayed(node));
  EXPECT_EQ(ZylModelEvaluator::Unbound(node.getImpl()).getExpr(), node.getImpl());
}

}  // namespace
}  // namespace zyl::test
