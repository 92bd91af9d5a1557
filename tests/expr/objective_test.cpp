// Objectives of one expression and of several criteria.

#include "vorlane/expr/objective.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "support/recording.h"
#include "support/support.h"
#include "vorlane/expr/objective_change.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylObjectives : public EnvTest {
 protected:
  using Coefs = std::map<std::string, double>;
  template <class T>
  static Coefs coefs(const T& sum) {
    Coefs result;
    for (auto it = sum.getLinearIterator(); it.ok(); ++it)
      result[it.getVar().getName()] += it.getCoef();
    return result;
  }
  ZylExpr sum() {
    ZylExpr e(env);
    e += 2 * x;
    e += 3 * y;
    e += 1.0;
    return e;
  }
  ZylMultiCriterionExpr several(long n) {
    ZylNumExprArray criteria(env);
    for (long i = 0; i < n; ++i) criteria.add(x);
    return ZylStaticLex(env, criteria);
  }

  ZylNumVar x{env, 0, 10, "x"};
  ZylNumVar y{env, 0, 10, "y"};
  ZylNumVar z{env, 0, 10, "z"};
};

TEST_F(ZylObjectives, DisplayOfCriteria) {
  const std::string one = displayed(x);
  EXPECT_TRUE(DisplaysAs(ZylStaticLex(env, ZylNumExprArray(env)), "{MultiCriterion}, StaticLex()"));
  EXPECT_TRUE(DisplaysAs(ZylStaticLex(env, x), "{MultiCriterion}, StaticLex([" + one + "])"));
  ZylNumExprArray criteria(env);
  std::string list;
  for (long i = 0; i < 12; ++i) {
    criteria.add(x);
    list += i == 0 ? one : (i == 10 ? ",\n" : ", ") + one;
  }
  EXPECT_TRUE(DisplaysAs(ZylDynamicLex(env, criteria, "all"), "all, DynamicLex([" + list + "])"));
  ZylObjective objective = ZylMinimize(env, ZylStaticLex(env, x, y), "o");
  EXPECT_TRUE(DisplaysAs(objective, "o = ({MultiCriterion}, StaticLex([" + one + ", " +
                                        displayed(y) + "]), ZylObjective, Minimize);\n"));
}

TEST_F(ZylObjectives, ASharedExpressionIsCopiedBeforeAnEdit) {
  ZylExpr shared = sum();
  ZylRange range(env, 0, shared, 100);
  ZylObjective objective = ZylMinimize(env, shared);
  const Coefs before = coefs(shared);
  const std::string rangeText = displayed(range);

  objective.setLinearCoef(x, 9);
  EXPECT_EQ(coefs(objective), (Coefs{{"x", 9}, {"y", 3}}));
  EXPECT_EQ(coefs(shared), before);
  objective.setConst(50);
  EXPECT_EQ(objective.getConst(), 50);
  EXPECT_EQ(shared.getNumConstant(), 1);
  EXPECT_TRUE(DisplaysAs(range, rangeText));

  ZylExpr own = sum();
  ZylObjective second = ZylMinimize(env, own);
  own.setLinearCoef(y, 77);
  EXPECT_EQ(coefs(second), (Coefs{{"x", 2}, {"y", 3}})) << "nor does the client's edit reach it";
}

TEST_F(ZylObjectives, CoefficientsMergeAndVanish) {
  ZylExpr e = sum();
  e += 5 * x;
  ZylObjective objective = ZylMinimize(env, e);
  objective.setLinearCoef(x, 1);
  EXPECT_EQ(coefs(objective), (Coefs{{"x", 1}, {"y", 3}})) << "terms of one variable count as one";
  objective.setLinearCoef(y, 0);
  EXPECT_EQ(coefs(objective), (Coefs{{"x", 1}}));
  objective.setLinearCoef(z, 4);
  EXPECT_EQ(coefs(objective), (Coefs{{"x", 1}, {"z", 4}}));
  objective.setLinearCoefs(ZylNumVarArray(env, 2, x, y), ZylNumArray(env, 2, 6.0, 7.0));
  EXPECT_EQ(coefs(objective), (Coefs{{"x", 6}, {"y", 7}, {"z", 4}}));
  objective.setLinearCoefs(ZylNumVarArray(env), ZylNumArray(env));
  EXPECT_EQ(coefs(objective).size(), 3U);
}

TEST_F(ZylObjectives, ChangesCarryOldAndNew) {
  ZylObjective objective = ZylMinimize(env, sum());
  RecordingAlgorithm a(impl);
  a.extract(objective.getImpl());
  a.log.clear();
  static double oldValue;
  static double newValue;
  static ZylNumExprI* oldExpr;
  static bool oldAlive;
  a.onApply = [](const ZylChange& change) {
    if (const auto* coef = zyl::as<ZylSetObjCoef>(&change)) {
      oldValue = coef->getOldValue();
      newValue = coef->getNewValue();
    } else if (const auto* several = zyl::as<ZylSetObjCoefs>(&change)) {
      oldValue = several->getOldValues()[1];
      newValue = several->getNewValues()[1];
    } else if (const auto* expr = zyl::as<ZylSetObjExpr>(&change)) {
      oldExpr = expr->getOldExpr().getImpl();
      oldAlive = oldExpr->getId() >= 0 && oldExpr->getCount() == 1;
    }
  };
  objective.setLinearCoef(x, 8);
  EXPECT_EQ(oldValue, 2);
  EXPECT_EQ(newValue, 8);
  objective.setLinearCoefs(ZylNumVarArray(env, 2, z, y), ZylNumArray(env, 2, 1.0, 5.0));
  EXPECT_EQ(oldValue, 3);
  EXPECT_EQ(newValue, 5);
  ZylNumExprI* before = objective.getExpr().getImpl();
  const long id = before->getId();
  objective.setExpr(x + y);
  EXPECT_EQ(oldExpr, before);
  EXPECT_TRUE(oldAlive) << "receivers may still read it";
  EXPECT_NE(impl->getIdManager()->getLive(id), before) << "and then it goes";
  objective.setSense(ZylObjective::Maximize);
  objective.setConst(4);
  EXPECT_EQ(a.log, (Log{"apply ZylSetObjCoef", "apply ZylSetObjCoefs", "apply ZylSetObjExpr",
                        "apply ZylSetObjSense", "apply ZylSetObjConst"}));
  a.onApply = nullptr;
}

TEST_F(ZylObjectives, ARefusedExpressionIsInPlaceAllTheSame) {
  ZylObjective objective = ZylMinimize(env, 2 * x + 3 * y);
  RecordingAlgorithm a(impl);
  a.extract(objective.getImpl());
  a.refuse("ZylSetObjExpr");
  const long id = objective.getExpr().getImpl()->getId();
  EXPECT_THROW(objective.setExpr(z), ZylAlgorithm::CannotChangeException);
  EXPECT_EQ(coefs(objective), (Coefs{{"z", 1}}));
  EXPECT_TRUE(impl->getIdManager()->isFree(id)) << "the old one is released";
}

TEST_F(ZylObjectives, SettingTheExpressionItHasKeepsIt) {
  ZylObjective objective = ZylMinimize(env, 2 * x + 3 * y);
  const Coefs before = coefs(objective);
  objective.setExpr(objective.getExpr());
  EXPECT_EQ(coefs(objective), before);
  EXPECT_EQ(objective.getExpr().getImpl()->getCount(), 1);
}

TEST_F(ZylObjectives, ACoefficientsVisitNeedsADeleter) {
  ChildLog visitor;
  ZylObjective objective = ZylMinimize(env, sum());
  ZylSetObjCoef(objective.getImpl(), x.getImpl(), 0, 1)
      .visitChange(impl, objective.getImpl(), &visitor);
  EXPECT_TRUE(visitor.added.empty());
  ZylSetObjExpr(objective.getImpl(), x.getImpl(), y.getImpl())
      .visitChange(impl, objective.getImpl(), &visitor);
  ZylSetObjConst(objective.getImpl(), 1).visitChange(impl, objective.getImpl(), &visitor);
  EXPECT_EQ(visitor.removed, (ChildLog::Edges{{objective.getImpl(), x.getImpl()}}));
  EXPECT_EQ(visitor.added, (ChildLog::Edges{{objective.getImpl(), y.getImpl()}}));
}

TEST_F(ZylObjectives, SeveralCriteria) {
  ZylNumExprArray criteria(env, 2);
  criteria[0] = x;
  criteria[1] = y;
  ZylMultiCriterionExpr lex = ZylStaticLex(env, criteria, "lex");
  ZylObjective objective = ZylMinimize(env, lex);
  criteria.clear();
  lex.end();
  EXPECT_EQ(objective.getNumCriteria(), 2);
  EXPECT_EQ(objective.getCriterion(1).getImpl(), y.getImpl()) << "a duplicate of what was given";
  EXPECT_EQ(objective.getConst(), 0);
  objective.setConst(0);
  const auto text = [](const std::string& operation) {
    return "ZylObjective::" + operation + " - not allowed with multi-criterion models";
  };
  ExpectEachRaises<ZylNotAllowedWithMultiCriterionException>(
      {{text("getExpr"), [&] { objective.getExpr(); }},
       {text("setExpr"), [&] { objective.setExpr(x); }},
       {text("setCoef"),
        [&] { objective.setLinearCoefs(ZylNumVarArray(env, 1, x), ZylNumArray(env, 1, 1.0)); }},
       {text("setConst"), [&] { objective.setConst(1); }},
       {text("addVar"), [&] { objective.getImpl()->addVar(x.getImpl(), 1); }}});
  ZylObjective single = ZylMinimize(env, sum());
  EXPECT_EQ(single.getCriterion(0).getImpl(), single.getExpr().getImpl());
  ExpectEachRaises<ZylWrongUsage>(
      "ZylObjectiveI: Criterion index out of range",
      {[&] { single.getCriterion(-1); }, [&] { single.getCriterion(1); },
       [&] { objective.getCriterion(-1); }, [&] { objective.getCriterion(2); }});
  objective.normalize();
  objective.end();
}

TEST_F(ZylObjectives, CriteriaAreHeld) {
  ZylNumExprArg node = ZylMax(x, y);
  ZylMultiCriterionExpr lex = ZylStaticLex(env, node);
  ZylObjective objective = ZylMinimize(env, lex);
  EXPECT_EQ(node.getImpl()->getCount(), 2);
  lex.end();
  const long id = objective.getId();
  x.end();
  EXPECT_TRUE(impl->getIdManager()->isFree(id)) << "it goes with what a criterion refers to";
}

TEST_F(ZylObjectives, CriteriaAreCloned) {
  ZylEnv other;
  ZylObjective lex = ZylMinimize(env, several(2)).getClone(other);
  EXPECT_EQ(lex.getNumCriteria(), 2);
  EXPECT_EQ(lex.getCriterion(0).getEnv().getImpl(), other.getImpl());
  EXPECT_EQ(lex.getCriterion(0).getImpl(), lex.getCriterion(1).getImpl());
  other.end();
}

TEST_F(ZylObjectives, Texts) {
  const ZylEnv none(static_cast<ZylEnvI*>(nullptr));
  const EnvFixture other;
  ZylNumVar foreign(other.env);
  ExpectEachRaises<ZylWrongUsage>(
      "mixing mismatch Environments",
      {[&] { ZylMinimize(env, foreign); }, [&] { ZylStaticLex(env, x, foreign); },
       [&] { ZylDynamicLex(env, ZylNumExprArray(env, 2, x, foreign)); },
       [&] { ZylMinimize(env, ZylStaticLex(other.env, foreign)); }});
  ExpectEachRaises<ZylWrongUsage>(
      {{"Using empty handle", [&] { ZylMinimize(none, several(1)); }},
       {"Using empty handle", [&] { ZylMaximize(env, ZylMultiCriterionExpr()); }},
       {"Array of criteria has size 0", [&] { ZylMinimize(env, several(0)); }},
       {"ZylEnv: using empty handle", [&] {
          ZylMultiCriterionExpr(none, ZylNumExprArray(env), ZylMultiCriterionExpr::Type::StaticLex);
        }}});
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"Using empty ZylObjective handle.", [] { ZylObjective().getSense(); }},
       {"ZylMultiCriterionExpr: using empty handle",
        [] { ZylMultiCriterionExpr().getNumCriteria(); }}});
  EXPECT_THROW(ZylMinimize(env, ZylMax(x, y)).getImpl()->extractToCP(ZylAlgorithm()),
               ZylAlgorithm::ExtractFailure);
}

}  // namespace
}  // namespace zyl::test
