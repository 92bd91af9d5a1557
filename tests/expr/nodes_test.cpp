// The table of node classes: value, integrality, both texts (in a file). What every object keeps is
// held by the contract's test.

#include "vorlane/expr/nodes.h"

#include <cmath>
#include <fstream>

#include "expr/fixture.h"
#include "expr/node_rows.h"
#include "vorlane/expr/multi_criterion.h"

namespace zyl::test {
namespace {

class NodeTest : public ExprTest, public testing::WithParamInterface<NodeRow> {
 protected:
  NodeTest() { node = GetParam().make(operands); }

  Operands operands{env, x, y, i, j};
  ZylNumExprArg node;
};

TEST_P(NodeTest, Evaluates) { EXPECT_DOUBLE_EQ(eval(node), GetParam().value); }

TEST_P(NodeTest, IsIntegerByItsRule) {
  EXPECT_EQ(node.getImpl()->isInteger(), GetParam().integer == Yes);
  if (GetParam().integer != IfOperands) return;
  // The same over integer variables, which it meets as numeric ones.
  const ZylNumVar a(i.getImpl());
  const ZylNumVar b(j.getImpl());
  operands.nums = ZylNumExprArray(env, 2, a, b);
  operands.x = a;
  operands.y = b;
  EXPECT_TRUE(GetParam().make(operands).getImpl()->isInteger());
}

INSTANTIATE_TEST_SUITE_P(Table, NodeTest, testing::ValuesIn(NodeRows),
                         [](const auto& row) { return std::string(row.param.name); });

using NodesTest = ExprTest;

TEST_F(NodesTest, ShowAsTheFileHasThem) {
  const Operands operands(env, x, y, i, j);
  std::ostringstream texts;
  for (const NodeRow& row : NodeRows) {
    const ZylNumExprArg node = row.make(operands);
    env.setLongDisplay(false);
    texts << row.name << ": " << displayed(node) << '|';
    env.setLongDisplay(true);
    texts << displayed(node) << "|\n";
  }
  std::ostringstream wanted;
  wanted << std::ifstream(NODES_FILE).rdbuf();
  EXPECT_EQ(texts.str(), wanted.str());
}

TEST_F(NodesTest, EvaluateAtTheEdges) {
  set(-1.25, std::nan(""), 0, 7, -1);
  EXPECT_EQ(eval(ZylFract(x)), 0.25);
  EXPECT_EQ(eval(ZylSgn(y)), 0.0);
  EXPECT_EQ(eval(ZylKvlRound(2.0 * x)), -2.0);
  // The quotient and remainder by -1 of the smallest integer that a node can hold do not trap.
  const ZylIntExprArg smallest(new (impl) ZylIntRecDivCstI(impl, j.getImpl(), LONG_MIN));
  EXPECT_EQ(eval(smallest), static_cast<double>(LONG_MIN));
  EXPECT_EQ(eval(LONG_MIN % j), 0.0);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { eval(ZylNumToInt(x)); },
                                        "ZylNumToIntI::eval : expr is not IntExpr"));
  EXPECT_EQ(eval(ZylStandardDeviation(ZylIntExprArray(env, 1, i))), 0.0);
}

TEST_F(NodesTest, ArraysRaiseWhenEmpty) {
  const ZylIntExprArray ints(env);
  const ZylNumExprArray nums(env);
  const auto* count = new (impl) ZylCountI(impl, ZylIntExprArray(), 4);
  EXPECT_TRUE(DisplaysAs(count, "count(, 4)"));
  EXPECT_TRUE(ZylMax(nums).getImpl()->isInteger());
  const std::string text = "Array of size 0 in evaluation of Zyl";
  ExpectEachRaises<ZylArrayError>({{text + "Min", [&] { eval(ZylMin(ints)); }},
                                   {text + "Max", [&] { eval(ZylMax(nums)); }},
                                   {text + "Count", [&] { count->eval(ZylAlgorithm(values)); }},
                                   {text + "StandardDeviation", [&] {
                                      ZylStandardDeviationI::Eval(ZylAlgorithm(values), ints);
                                    }}});
}

TEST_F(NodesTest, ElementsOutsideTheArrayAreZero) {
  const ZylNumArray numbers(env, 2, 1.5, 2.5);
  const ZylNumExprArg element = numbers[i];
  for (const long index : {-1L, 2L, LONG_MAX, LONG_MIN}) {
    set(0, 0, 0, index, 0);
    EXPECT_EQ(eval(element), 0.0) << index;
  }
  numbers[1] = 7.0;  // the node has its own copy
  set(0, 0, 0, 1, 0);
  EXPECT_EQ(eval(element), 2.5);
}

TEST_F(NodesTest, ArraysGiveBackWhatTheyDrop) {
  ZylExpr part = 2 * x;
  const ZylNumExpr extreme(ZylMax(ZylNumExprArray(env, 3, part, y, part)));
  const ZylNumExpr element(ZylNumExprArray(env, 2, z, part)[i]);
  const long id = part.getId();
  EXPECT_EQ(part.getImpl()->getCount(), 4);
  part.removeFromAll();
  EXPECT_EQ(part.getImpl()->getCount(), 1);
  EXPECT_TRUE(DisplaysAs(extreme, "max([y[0..10] ])"));
  part.end();
  EXPECT_FALSE(isAlive(id));
}

// An array with an empty slot is built by hand alone: who holds it stays when something else goes.
TEST_F(NodesTest, HandlesRefuseEmptyElementsAndNodesBearThem) {
  const ZylNumExprArray nums(env, 2);
  nums[0] = x;
  ExpectEachRaises<ZylEmptyHandleException>(
      "Using empty handle.",
      {[&] { nums[i]; }, [&] { ZylNumVarArray(env, 1)[i]; }, [&] { ZylMax(nums); },
       [&] { ZylConversion(env, ZylIntVarArray(env, 1), ZylNumVar::Int); },
       [&] { ZylStaticLex(env, nums, nullptr); }});
  const long id = (new (impl) ZylNumMaxArrayI(impl, nums))->getId();
  y.end();
  EXPECT_TRUE(isAlive(id));
}

TEST_F(NodesTest, HooksRaiseUntilAnEngineInstallsThem) {
  const ZylNumExprArg node = ZylSin(x);
  EXPECT_THROW(node.getImpl()->extractToCP(ZylAlgorithm(values)), ZylAlgorithm::ExtractFailure);
  ZylSinI::_extractCP = [](ZylAlgorithm, const ZylSinI* object) -> void* {
    return const_cast<ZylSinI*>(object);
  };
  EXPECT_EQ(node.getImpl()->extractToCP(ZylAlgorithm(values)), node.getImpl());
  EXPECT_THROW(ZylCos(x).getImpl()->extractToCP(ZylAlgorithm(values)),
               ZylAlgorithm::ExtractFailure);
  ZylSinI::_extractCP = nullptr;
}

}  // namespace
}  // namespace zyl::test
