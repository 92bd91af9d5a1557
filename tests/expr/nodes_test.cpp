// The table of node classes: value, integrality, both texts, children, copy, life.

#include "vorlane/expr/nodes.h"

#include <cmath>
#include <functional>

#include "expr/fixture.h"
#include "vorlane/model/visitor.h"

namespace zyl::test {
namespace {

struct Operands {
  ZylNumVar x, y;
  ZylIntVar i, j;
  ZylNumExprArray nums;
  ZylIntExprArray ints;
  ZylNumArray numbers;
  ZylIntArray integers;
};

enum class Integer { No, Yes, IfOperands };
using enum Integer;

// In the texts {x} stands for the variable's own text, {nums}, {ints}, {numbers} for the lists.
// Values are for x = 2.5, y = 4, i = 7, j = -3.
struct NodeRow {
  const char* name;
  std::function<ZylNumExprArg(const Operands&)> make;
  double value;
  Integer integer;
  const char* longText;
  const char* shortText;
};

void PrintTo(const NodeRow& row, std::ostream* stream) { *stream << row.name; }

#define MAKE(expr) [](const Operands& o) -> ZylNumExprArg { return expr; }

const NodeRow Rows[] = {
    {"ZylNumAbsI", MAKE(ZylAbs(-3.0 * o.x / 1.0)), 7.5, IfOperands, "ZylAbs(( -3 * x ) ) ",
     "abs(-3 * x )"},
    {"ZylIntAbsI", MAKE(ZylAbs(o.j)), 3, Yes, "ZylAbs({j}) ", "abs({j})"},
    {"ZylNumSquareI", MAKE(ZylSquare(o.x)), 6.25, IfOperands, "ZylSquare({x}) ", "square({x})"},
    {"ZylIntSquareI", MAKE(ZylSquare(o.j)), 9, Yes, "ZylSquare({j}) ", "square({j})"},
    {"ZylSgnI", MAKE(ZylSgn(o.j)), -1, Yes, "ZylSgn({j}) ", "sgn({j})"},
    {"ZylSinI", MAKE(ZylSin(o.x)), std::sin(2.5), No, "ZylSin({x}) ", "sin({x})"},
    {"ZylCosI", MAKE(ZylCos(o.x)), std::cos(2.5), No, "ZylCos({x}) ", "cos({x})"},
    {"ZylTanI", MAKE(ZylTan(o.x)), std::tan(2.5), No, "ZylTan({x}) ", "tan({x})"},
    {"ZylArcSinI", MAKE(ZylArcSin(0.2 * o.x)), std::asin(0.5), No, "ZylArcSin(( 0.2 * x ) ) ",
     "arc-sin(0.2 * x )"},
    {"ZylArcCosI", MAKE(ZylArcCos(0.2 * o.x)), std::acos(0.5), No, "ZylArcCos(( 0.2 * x ) ) ",
     "arc-cos(0.2 * x )"},
    {"ZylArcTanI", MAKE(ZylArcTan(o.x)), std::atan(2.5), No, "ZylArcTan({x}) ", "arc-tan({x})"},
    {"ZylLogI", MAKE(ZylLog(o.x)), std::log(2.5), No, "ZylLog({x}) ", "log({x})"},
    {"ZylExponentI", MAKE(ZylExponent(o.x)), std::exp(2.5), No, "ZylExponent({x}) ", "exp({x})"},
    {"ZylNumFloorI", MAKE(ZylFloor(o.x)), 2, IfOperands, "ZylFloor({x}) ", "floor({x})"},
    {"ZylNumCeilI", MAKE(ZylCeil(o.x)), 3, IfOperands, "ZylCeil({x}) ", "ceil({x})"},
    {"ZylNumTruncI", MAKE(ZylTrunc(o.x)), 2, IfOperands, "ZylTrunc({x}) ", "trunc({x})"},
    {"ZylNumRoundI", MAKE(ZylKvlRound(o.x)), 3, IfOperands, "ZylKvlRound({x}) ", "round({x})"},
    {"ZylNumFractI", MAKE(ZylFract(o.x)), 0.5, IfOperands, "ZylFract({x}) ", "fract({x})"},
    {"ZylDistToIntI", MAKE(ZylDistToInt(o.x)), 0.5, IfOperands, "ZylDistToInt({x}) ",
     "distToInt({x})"},
    {"ZylNumToIntI", MAKE(ZylNumToInt(o.y)), 4, Yes, "ZylNumToInt({y}) ", "numToInt({y})"},

    {"ZylNumTimesI", MAKE(o.x* o.y), 10, IfOperands, "( {x}* {y}) ", "{x} * {y}"},
    {"ZylIntTimesI", MAKE(o.i* o.j), -21, Yes, "( {i}* {j}) ", "{i} * {j}"},
    {"ZylNumDivI", MAKE(o.x / o.y), 0.625, No, "( {x}/ {y}) ", "{x} / {y}"},
    {"ZylIntDivI", MAKE(ZylDiv(o.i, o.j)), -2, Yes, "( {i}/ {j}) ", "{i} / {j}"},
    {"ZylIntModuloI", MAKE(o.i % o.j), 1, Yes, "( {i}% {j}) ", "{i} % {j}"},
    {"ZylNumPowerI", MAKE(ZylPower(o.x, o.y)), std::pow(2.5, 4), IfOperands, "( {x}^ {y}) ",
     "{x} ^ {y}"},
    {"ZylNumMinI", MAKE(ZylMin(o.x, o.y)), 2.5, IfOperands, "ZylMin( {x}, {y}) ", "min({x}, {y})"},
    {"ZylIntMinI", MAKE(ZylMin(o.i, o.j)), -3, Yes, "ZylMin( {i}, {j}) ", "min({i}, {j})"},
    {"ZylNumMaxI", MAKE(ZylMax(o.x, o.y)), 4, IfOperands, "ZylMax( {x}, {y}) ", "max({x}, {y})"},
    {"ZylIntMaxI", MAKE(ZylMax(o.i, o.j)), 7, Yes, "ZylMax( {i}, {j}) ", "max({i}, {j})"},

    {"ZylNumTimesCstI", MAKE(ZylSquare(o.x) * 2), 12.5, IfOperands, "( ZylSquare({x}) * 2) ",
     "square({x}) * 2"},
    {"ZylIntTimesCstI", MAKE(ZylSquare(o.j) * 2), 18, Yes, "( ZylSquare({j}) * 2) ",
     "square({j}) * 2"},
    {"ZylNumDivCstI", MAKE(ZylSquare(o.x) / 2), 3.125, No, "( ZylSquare({x}) / 2) ",
     "square({x})/ 2"},
    {"ZylNumRecDivCstI", MAKE(5.0 / o.x), 2, No, "( 5/ {x}) ", "5 / {x}"},
    {"ZylIntDivCstI", MAKE(ZylDiv(o.i, 2)), 3, Yes, "( {i}/ 2) ", "{i} / 2"},
    {"ZylIntRecDivCstI", MAKE(ZylDiv(20L, o.j)), -6, Yes, "( 20/ {j}) ", "20 / {j}"},
    {"ZylIntModuloCstI", MAKE(o.j % 2), -1, Yes, "( {j}% 2) ", "{j}% 2"},
    {"ZylIntRecModuloCstI", MAKE(20 % o.j), 2, Yes, "(20% {j})", "20 % {j}"},
    {"ZylNumPowerCstI", MAKE(ZylPower(o.x, 2)), 6.25, IfOperands, "( {x}^ 2) ", "{x} ^ 2"},
    {"ZylNumRecPowerCstI", MAKE(ZylPower(2, o.y)), 16, IfOperands, "( 2^ {y}) ", "2 ^ {y}"},
    {"ZylNumMinCstI", MAKE(ZylMin(o.x, 2)), 2, IfOperands, "ZylMin( {x}, 2) ", "min( {x}, 2)"},
    {"ZylIntMinCstI", MAKE(ZylMin(2, o.i)), 2, Yes, "( {i}, 2) ", "min({i}, 2)"},
    {"ZylNumMaxCstI", MAKE(ZylMax(3.0, o.x)), 3, IfOperands, "ZylMax( {x}, 3) ", "max({x}, 3)"},
    {"ZylIntMaxCstI", MAKE(ZylMax(o.i, 9)), 9, Yes, "( {i}, 9) ", "max({i}, 9)"},

    {"ZylIntMinArrayI", MAKE(ZylMin(o.ints)), -3, Yes, "ZylMin( {ints}) ", "min({ints})"},
    {"ZylNumMinArrayI", MAKE(ZylMin(o.nums)), 2.5, IfOperands, "ZylMin( {nums}) ", "min( {nums})"},
    {"ZylIntMaxArrayI", MAKE(ZylMax(o.ints)), 7, Yes, "ZylMax( {ints}) ", "max({ints})"},
    {"ZylNumMaxArrayI", MAKE(ZylMax(o.nums)), 4, IfOperands, "ZylMax( {nums}) ", "max({nums})"},
    {"ZylNumArrayElementI", MAKE(o.numbers[o.i - 5]), 30.5, No,
     "ZylNumArrayIndex(( i  + -5 ) , [10.5, 20.5, 30.5]) ", "nums[i  + -5 ]"},
    {"ZylIntArrayElementI", MAKE(o.integers[o.i - 6]), 20, Yes,
     "ZylIntArrayIndex(( i  + -6 ) , [10, 20, 30]) ", "ints[i  + -6 ]"},
    {"ZylNumExprArrayElementI", MAKE(o.nums[o.i - 6]), 4, IfOperands,
     "ZylNumExprArrayIndex(( i  + -6 ) , {nums}) ", "num-exprs[i  + -6 ]"},
    {"ZylIntExprArrayElementI", MAKE(o.ints[o.i - 6]), -3, Yes,
     "ZylIntExprArrayIndex(( i  + -6 ) , {ints}) ", "int-exprs[i  + -6 ]"},

    {"ZylCountI", MAKE(ZylCount(o.ints, -3)), 1, Yes, "ZylCount( {ints}, -3) ",
     "count({ints}, -3)"},
    {"ZylStandardDeviationI", MAKE(ZylStandardDeviation(o.ints)), 5, No,
     "ZylStandardDeviation( {ints}) ", "stddev({ints})"},
    {"ZylMonotonicNumExprI", MAKE(ZylMonotonicIncreasingNumExpr(o.x, std::cbrt, nullptr)),
     std::cbrt(2.5), No, "ZylMonotonicIncreasingNumExpr({x})",
     "ZylMonotonicIncreasingNumExpr({x})"},
};

#undef MAKE

class NodeTest : public ExprTest, public testing::WithParamInterface<NodeRow> {
 protected:
  NodeTest() {
    operands = {x,
                y,
                i,
                j,
                ZylNumExprArray(env, 2, x, y),
                ZylIntExprArray(env, 2, i, j),
                ZylNumArray(env, 3, 10.5, 20.5, 30.5),
                ZylIntArray(env, 3, 10, 20, 30)};
    node = GetParam().make(operands);
  }
  static void replace(std::string* text, const std::string& what, const std::string& by) {
    for (auto at = text->find(what); at != std::string::npos; at = text->find(what)) {
      text->replace(at, what.size(), by);
    }
  }
  std::string expanded(std::string text) const {
    replace(&text, "{nums}", "[{x}, {y}]");
    replace(&text, "{ints}", "[{i}, {j}]");
    replace(&text, "{x}", displayed(x));
    replace(&text, "{y}", displayed(y));
    replace(&text, "{i}", displayed(i));
    replace(&text, "{j}", displayed(j));
    return text;
  }

  Operands operands;
  ZylNumExprArg node;
};

TEST_P(NodeTest, IsOfItsClassAndEvaluates) {
  EXPECT_STREQ(node.getImpl()->getRttiTypeName(), GetParam().name);
  EXPECT_DOUBLE_EQ(eval(node), GetParam().value);
}

TEST_P(NodeTest, DisplaysBothForms) {
  EXPECT_TRUE(DisplaysAs(node, expanded(GetParam().shortText)));
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(node, expanded(GetParam().longText)));
}

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

TEST_P(NodeTest, ClonesWithItsPartsIntoAnotherEnvironment) {
  EnvFixture other;
  ZylNumExprArg clone = node.getClone(other.env);
  EXPECT_EQ(clone.getEnv().getImpl(), other.impl);
  EXPECT_STREQ(clone.getImpl()->getRttiTypeName(), GetParam().name);
  other.env.setLongDisplay(true);
  env.setLongDisplay(true);
  EXPECT_TRUE(DisplaysAs(clone, displayed(node)));
}

// Whoever ends a node gets all back that its making took.
TEST_P(NodeTest, GoesWithItsLastOwner) {
  ZylNumExpr first(node);
  ZylNumExpr second(first);
  const long id = node.getId();
  first.end();
  EXPECT_TRUE(isAlive(id));
  second.end();
  EXPECT_FALSE(isAlive(id));
}

TEST_P(NodeTest, KeepsItsOperandsAlive) {
  struct Children : ZylExtractableVisitor {
    using ZylExtractableVisitor::visitChildren;
    void visitChildren(ZylExtractableI*, ZylExtractableI* child) override {
      list.push_back(static_cast<ZylNumExprI*>(child));
    }
    std::vector<ZylNumExprI*> list;
  } children;
  node.getImpl()->visitSubExtractables(&children);
  ASSERT_FALSE(children.list.empty());
  for (const ZylNumExprI* child : children.list) EXPECT_GT(child->getCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Table, NodeTest, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Nodes, EachClassHasARow) {
  std::set<std::string> tested;
  for (const NodeRow& row : Rows) tested.insert(row.name);
#define ZYL_UNARY_NODE(Class, ...) EXPECT_EQ(tested.count(#Class), 1U) << #Class;
#define ZYL_BINARY_NODE(Class, ...) EXPECT_EQ(tested.count(#Class), 1U) << #Class;
#define ZYL_CONSTANT_NODE(Class, ...) EXPECT_EQ(tested.count(#Class), 1U) << #Class;
#define ZYL_EXTREME_NODE(Class, ...) EXPECT_EQ(tested.count(#Class), 1U) << #Class;
#define ZYL_ELEMENT_NODE(Class, ...) EXPECT_EQ(tested.count(#Class), 1U) << #Class;
#include "vorlane/expr/nodes.inc"
}

using NodesTest = ExprTest;

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

TEST_F(NodesTest, ArraysDropElementsThatAreRemoved) {
  ZylNumExpr extreme(ZylMax(ZylNumExprArray(env, 3, x, y, z)));
  ZylNumExpr element(ZylNumExprArray(env, 2, y, x)[i]);
  ZylNumExpr sum(ZylSquare(x) + 1);
  const long sumId = sum.getId();
  y.end();
  EXPECT_EQ(eval(extreme), 2.5);
  set(2.5, 0, 0, 0, 0);
  EXPECT_EQ(eval(element), 2.5);
  // The element goes with its index, and a sum loses the part that refers to what goes.
  const long elementId = element.getId();
  i.end();
  EXPECT_FALSE(isAlive(elementId));
  x.end();
  EXPECT_TRUE(isAlive(sumId));
  EXPECT_TRUE(DisplaysAs(sum, "1 "));
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
