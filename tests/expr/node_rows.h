// One row for each class of expression nodes.

#ifndef ZYL_TESTS_EXPR_NODE_ROWS_H
#define ZYL_TESTS_EXPR_NODE_ROWS_H

#include <cmath>
#include <functional>
#include <ostream>

#include "vorlane/expr.h"

namespace zyl::test {

/// What the nodes are made of.
struct Operands {
  Operands() = default;
  Operands(const ZylEnv& env, const ZylNumVar& first, const ZylNumVar& second,
           const ZylIntVar& third, const ZylIntVar& fourth)
      : x(first), y(second), i(third), j(fourth), nums(env, 2, x, y), ints(env, 2, i, j),
        numbers(env, 3, 10.5, 20.5, 30.5), integers(env, 3, 10, 20, 30) {}

  ZylNumVar x, y;
  ZylIntVar i, j;
  ZylNumExprArray nums;
  ZylIntExprArray ints;
  ZylNumArray numbers;
  ZylIntArray integers;
};

enum class Integer { No, Yes, IfOperands };
inline constexpr auto No = Integer::No;
inline constexpr auto Yes = Integer::Yes;
inline constexpr auto IfOperands = Integer::IfOperands;

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

inline void PrintTo(const NodeRow& row, std::ostream* stream) { *stream << row.name; }

#define MAKE(expr) [](const Operands& o) -> ZylNumExprArg { return expr; }

inline const NodeRow NodeRows[] = {
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

}  // namespace zyl::test

#endif
