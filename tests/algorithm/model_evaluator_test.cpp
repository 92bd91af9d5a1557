// The library's own evaluator and expander.

#include "vorlane/algorithm/model_evaluator.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/support.h"
#include "vorlane/algorithm/expander.h"
#include "vorlane/algorithm/label_callback.h"
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

// Terms may leave 64 bits on the way to a sum that does not.
TEST_F(ZylEvaluator, IntegersAreExactOrRefused) {
  const ZylIntVar big(env, 9000000000000000, 9000000000000000);
  ZylNumVar half(env, 2.5, 2.5);
  EXPECT_EQ(evaluator.evaluate(2000 * big - 1999 * big), 9000000000000000);
  ExpectEachRaises<ZylIntExpr::ZylOverflowOccurred>(
      "overflow occurred during the evaluation",
      {[&] { evaluator.evaluate(2000 * big); }, [&] { evaluator.evaluate(-2000 * big); },
       [&] { evaluator.evaluate(1024 * big + 7000 * big); }});
  EXPECT_EQ(evaluator.evaluate(half), 2.5);
  ZylIntExprI* const asInteger = half.getImpl();
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { evaluator.getImpl()->evaluate(asInteger); },
                                        "can not call evaluator"));
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

// An expander, its evaluator and one that only names it go in any order, by hand or with the
// environment; whoever asks meets none that is gone.
TEST_F(ZylEvaluator, PartsEndInAnyOrder) {
  int order[] = {0, 1, 2};
  do {
    for (int byHand = 0; byHand <= 3; ++byHand) {
      EnvFixture other;
      ZylExpanderI* expander = other->getExpander();
      auto* own = new ZylModelEvaluatorI(other.impl);
      auto* named = new ZylModelEvaluatorI(expander);
      expander->setEvaluator(own);
      EXPECT_EQ(other->getModelEvaluator(), own);
      bool owned = true;
      for (int i = 0; i < byHand; ++i) {
        if (order[i] == 0) owned = false, delete expander;  // with its own
        if (order[i] == 1) delete named;
        if (order[i] == 2 && owned) delete own;
        EXPECT_FALSE(other->getModelEvaluator()->isGround(nullptr));
        EXPECT_EQ(other->getModelEvaluator()->getAlgorithm(), other->getExpander());
      }
    }
  } while (std::next_permutation(order, order + 3));
}

TEST_F(ZylEvaluator, AnExpanderTakesNoOthersEvaluator) {
  ZylExpanderI* expander = impl->getExpander();
  ZylModelEvaluatorI* before = evaluator.getImpl();
  auto* engine = new ZylExpanderI(impl);
  EnvFixture other;
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>(
      [&] { expander->setEvaluator(engine->getModelEvaluator()); },
      "ZylExpanderI::setEvaluator: the evaluator is another algorithm's"));
  EXPECT_THROW(expander->setEvaluator(other->getModelEvaluator()), ZylEnvironmentMismatch);
  EXPECT_EQ(impl->getModelEvaluator(), before);
  expander->setEvaluator(nullptr);
  EXPECT_EQ(impl->getModelEvaluator()->getAlgorithm(), expander);
}

TEST_F(ZylEvaluator, NoFactoryIsARefusal) {
  for (const bool answersNull : {false, true}) {
    EnvFixture other;
    other->setExpanderPop(answersNull ? [](ZylEnvI*) -> ZylExpanderI* { return nullptr; }
                                      : ZylEnvI::ExpanderFactory());
    EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { other->getExpander(); }, "can not call expander"));
    other->setExpanderPop(&defaultExpander);
    other->setModelEvaluatorPop(answersNull
                                ? [](ZylEnvI*) -> ZylModelEvaluatorI* { return nullptr; }
                                : ZylEnvI::ModelEvaluatorFactory());
    EXPECT_TRUE(
        RaisesWith<ZylWrongUsage>([&] { other->getModelEvaluator(); }, "can not call expander"));
  }
}

TEST_F(ZylEvaluator, LabelCallbacksRunOneAtATime) {
  struct Callback : ZylLabelCallbackI {
    using ZylLabelCallbackI::ZylLabelCallbackI;
    void main(const char* label) override {
      EXPECT_EQ(getLabel(), label);
      EXPECT_TRUE(isRunning());
      callmain("nested");
    }
  };
  auto* callback = new (env) Callback(impl);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { callback->callmain("row"); },
                                        "ZylLabelCallbackI::callmain: the callback is running"));
  EXPECT_EQ(callback->getLabel(), nullptr);
  EXPECT_FALSE(callback->isRunning());
}

TEST_F(ZylEvaluator, UnboundShowsTheExpression) {
  ZylNumExprArg node = ZylMax(fixed, open);
  EXPECT_EQ(printed(ZylModelEvaluator::Unbound(node.getImpl())),
            "Access unbound expression: " + displayed(node));
  EXPECT_EQ(ZylModelEvaluator::Unbound(node.getImpl()).getExpr(), node.getImpl());
}

}  // namespace
}  // namespace zyl::test
