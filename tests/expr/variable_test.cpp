#include "vorlane/expr/variable.h"

#include "support/recording.h"
#include "support/support.h"
#include "vorlane/collection/range.h"
#include "vorlane/expr/conversion.h"
#include "vorlane/expr/domain.h"
#include "vorlane/expr/variable_change.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

using ZylVariableTest = EnvTest;

TEST_F(ZylVariableTest, PlainBoundsShareOneDomain) {
  ZylIntVar a(env, 0, 7);
  ZylIntVar b(env, 0, 7);
  EXPECT_EQ(a.getImpl()->getDomain(), b.getImpl()->getDomain());
  a.setMin(2);
  EXPECT_EQ(b.getMin(), 0);
  EXPECT_TRUE(a.getImpl()->getDomain()->isShared());
  a.setBounds(3, 4);
  EXPECT_FALSE(a.getImpl()->getDomain()->isShared());
  EXPECT_EQ(ZylNumVar(env, 0, ZylInfinity).getImpl()->getDomain(), nullptr);
  EXPECT_EQ(ZylNumVar(env, 1.5, 2.5).getImpl()->getDomain(),
            ZylNumVar(ZylNumRange(env, 1.5, 2.5)).getImpl()->getDomain());
  // Many different domains: the tables grow and still find each.
  for (long i = 0; i < 500; ++i) ZylIntVar(env, i, i + 1);
  for (long i = 0; i < 500; ++i) {
    EXPECT_EQ(ZylIntVar(env, i, i + 1).getImpl()->getDomain(),
              ZylIntVar(ZylIntRange(env, i, i + 1)).getImpl()->getDomain());
  }
}

TEST_F(ZylVariableTest, TypesFollowTheDomain) {
  EXPECT_EQ(ZylIntVar(env, 0, 1).getType(), ZylNumVar::Bool);
  EXPECT_EQ(ZylBoolVar(env, 0, 0).getType(), ZylNumVar::Int);
  EXPECT_EQ(ZylNumVar(env, 0, 1).getType(), ZylNumVar::Float);
  ZylBoolVar b(env);
  b.setMin(2);
  EXPECT_EQ(b.getType(), ZylNumVar::Int);
  EXPECT_EQ(b.getMin(), 2);
  EXPECT_EQ(b.getMax(), 1) << "bounds are never compared";
}

// Construction rounds up, edits round inward; the boolean forms differ for half bounds.
TEST_F(ZylVariableTest, RoundsBounds) {
  ZylNumVar i(env, 0.2, 3.2, ZylNumVar::Int);
  EXPECT_EQ(i.getLB(), 1.0);
  EXPECT_EQ(i.getUB(), 4.0);
  i.setUB(3.2);
  EXPECT_EQ(i.getUB(), 3.0);
  EXPECT_EQ(ZylNumVar(env, 0, 0.5, ZylNumVar::Bool).getUB(), 1.0);
  ZylNumVarI* strict = new (impl) ZylNumVarI(impl, ZylNumVar::Bool, 0.0, 0.5);
  EXPECT_EQ(strict->getUB(), 0.0);
  EXPECT_EQ(ZylNumVar(env, -1e300, 1e300, ZylNumVar::Int).getUB(), static_cast<double>(ZylIntMax));
}

TEST_F(ZylVariableTest, EnumeratedValuesKeepInStepWithBounds) {
  ZylIntVar i(env, ZylIntArray(env, 3L, 2L, 9L, 4L));
  EXPECT_TRUE(DisplaysAs(i, "ZylIntVar(" + std::to_string(i.getId()) + ")[2, 9, 4]"));
  i.setMax(6);
  i.setMin(0);
  EXPECT_TRUE(DisplaysAs(i, "ZylIntVar(" + std::to_string(i.getId()) + ")[2, 4, 0, 1]"));
  ZylNumVar x(env, ZylNumArray(env, 2L, 1.5, -2.0), ZylNumVar::Float, "x");
  EXPECT_EQ(x.getLB(), -2.0);
  const ZylNumArray doubles(env, 1L, 2.0);
  ExpectEachRaises<ZylNotSupportedOperation>(
      {{"SetLB is not supported on a discrete floating point variable", [&] { x.setUB(1); }},
       {"You cannot change the domain of an integer variable by giving it a floating point "
        "variable",
        [&] { i.getImpl()->setPossibleValues(doubles); }},
       {"You cannot create a integer variable by giving it an array of double",
        [&] { ZylNumVar(env, doubles, ZylNumVar::Int); }}});
  EXPECT_EQ(x.getUB(), 1.0) << "the bound stays";
  ExpectEachRaises<ZylArrayError>(
      "Array of size 0 in call to ZylMin",
      {[&] { i.getImpl()->setPossibleValues(ZylIntArray(env)); },
       [&] { x.getImpl()->setPossibleValues(ZylNumArray(env)); },
       [&] { ZylNumVar(env).getImpl()->setPossibleValues(ZylNumArray(env)); },
       [&] { ZylIntVar(env, ZylIntArray(env)); }});
  ZylIntArray values(env);
  i.getPossibleValues(values);
  EXPECT_EQ(values.getSize(), 4);
  // Eleven values: a line end stands after the tenth comma.
  ZylIntArray eleven(env, 11L);
  EXPECT_TRUE(DisplaysAs(ZylIntVar(env, eleven, "e"), "e[0, 0, 0, 0, 0, 0, 0, 0, 0, 0,\n0]"));
}

TEST_F(ZylVariableTest, Displays) {
  EXPECT_TRUE(DisplaysAs(ZylNumVar(env, 0, ZylInfinity, "x"), "x[0 .. inf] "));
  EXPECT_TRUE(DisplaysAs(ZylNumVar(env, -1, 2.5, "y"), "y[-1..2.5] "));
}

TEST_F(ZylVariableTest, NarrowingIsChecked) {
  ZylNumVar x(env, 0, 1);
  ZylNumVar wide(env, 0, 5, ZylNumVar::Int);
  EXPECT_THROW(ZylIntVar{x}, ZylBadConversion);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { ZylBoolVar{x}; },
                                        "Try to add a float variable to ZylBoolVarArray"));
  EXPECT_THROW(ZylBoolVar{wide}, ZylBadConversion);
  EXPECT_EQ(ZylIntVar(wide).getImpl(), wide.getImpl());
  ZylNumVarArray mixed(env, 2L, wide, x);
  EXPECT_THROW(static_cast<void>(mixed.toIntVarArray()), ZylBadConversion);
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"Using empty ZylNumVar handle.", [] { ZylNumVar().setLB(1); }},
       {"Using empty ZylNumVarArray handle.", [] { ZylNumVarArray().setNames("x"); }}});
}

TEST_F(ZylVariableTest, ArraysAnnounceEachAndAll) {
  ZylNumVarArray vars(env, 3L, 0.0, 1.0);
  RecordingAlgorithm engine(impl);
  for (long i = 0; i < 3; ++i) engine.extract(vars[i].getImpl());
  engine.log.clear();
  vars.setBounds(ZylNumArray(env, 3L, 1.0, 2.0, 3.0), ZylNumArray(env, 3L, 4.0, 5.0, 6.0));
  ASSERT_EQ(engine.log.size(), 4U);
  EXPECT_EQ(engine.log[3], "apply ZylSetNumVarArrayBounds");
  EXPECT_EQ(vars[2].getUB(), 6.0);
  engine.clear();
}

TEST_F(ZylVariableTest, ArraysTakeBoundsForEachOrForAll) {
  const auto bounds = [](auto vars) {
    std::string text;
    for (long i = 0; i < vars.getSize(); ++i) {
      const ZylNumVarI* v = vars[i].getImpl();
      text += std::to_string(static_cast<long>(v->getLB())) + ".." +
              std::to_string(static_cast<long>(v->getUB())) + " ";
    }
    return text;
  };
  const ZylNumArray ones(env, 3, 1, 1, 1);
  const ZylNumArray two(env, 2, 7, 8);
  const ZylIntArray zeros(env, 2L);
  EXPECT_EQ(bounds(ZylNumVarArray(env, ones, two)), "1..7 1..8 1..0 ");
  EXPECT_EQ(bounds(ZylNumVarArray(env, two, 9.0)), "7..9 8..9 ");
  EXPECT_EQ(bounds(ZylNumVarArray(env, -1.0, two)), "-1..7 -1..8 ");
  EXPECT_EQ(bounds(ZylIntVarArray(env, zeros, 4)), "0..4 0..4 ");
  EXPECT_EQ(bounds(ZylBoolVarArray(env, zeros, 1)), "0..1 0..1 ");
  EXPECT_EQ(bounds(ZylBoolVarArray(env, 0, ZylIntArray(env, 1, 1))), "0..1 ");
  EXPECT_EQ(bounds(ZylSemiContVarArray(env, two, 9.0)), "0..9 0..9 ");
  ZylSemiContVarArray semi(env, 2.0, two);
  EXPECT_EQ(bounds(semi), "0..7 0..8 ");
  EXPECT_EQ(semi[1].getSemiContinuousLb(), 2.0);
}

TEST_F(ZylVariableTest, ClonesCopyTheDomainButSemiContinuousOnesDoNot) {
  EnvFixture other;
  ZylIntVar i(env, ZylIntArray(env, 2L, 3L, 5L), "i");
  const ZylIntVar clone = i.getClone(other.env);
  i.setMax(4);
  EXPECT_TRUE(DisplaysAs(clone, "i[3, 5]"));
  ZylSemiContVar s(env, 2, 5, ZylNumVar::Float, "s");
  EXPECT_EQ(s.getClone(other.env).getUB(), ZylInfinity);
  EXPECT_EQ(s.getClone(other.env).getSemiContinuousLb(), 2.0);
}

TEST_F(ZylVariableTest, ObjectValuedArraysShareTheirValues) {
  int object = 0;
  ZylAnyArray values(env, 2L, &object, &object);
  ZylIntVarArray vars(env, 2L, values);
  EXPECT_EQ(vars[1].getAnyDomain().getImpl(), values.getImpl());
  EXPECT_EQ(vars[1].getMax(), 2);
  EXPECT_EQ(ZylIntVar(env).getAnyDomain().getImpl(), nullptr);
}

}  // namespace
}  // namespace zyl::test
