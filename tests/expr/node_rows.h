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

// Values are for x = 2.5, y = 4, i = 7, j = -3.
struct NodeRow {
  const char* name;
  std::function<ZylNumExprArg(const Operands&)> make;
  double value;
  Integer integer;
};

inline void PrintTo(const NodeRow& row, std::ostream* stream) { *stream << row.name; }

#define MAKE(expr) [](const Operands& o) -> ZylNumExprArg { return expr; }

inline const NodeRow NodeRows[] = {
    {"ZylNumAbsI", MAKE(ZylAbs(-3.0 * o.x / 1.0)), 7.5, IfOperands},
    {"ZylIntAbsI", MAKE(ZylAbs(o.j)), 3, Yes},
    {"ZylNumSquareI", MAKE(ZylSquare(o.x)), 6.25, IfOperands},
    {"ZylIntSquareI", MAKE(ZylSquare(o.j)), 9, Yes},
    {"ZylSgnI", MAKE(ZylSgn(o.j)), -1, Yes},
    {"ZylSinI", MAKE(ZylSin(o.x)), std::sin(2.5), No},
    {"ZylCosI", MAKE(ZylCos(o.x)), std::cos(2.5), No},
    {"ZylTanI", MAKE(ZylTan(o.x)), std::tan(2.5), No},
    {"ZylArcSinI", MAKE(ZylArcSin(0.2 * o.x)), std::asin(0.5), No},
    {"ZylArcCosI", MAKE(ZylArcCos(0.2 * o.x)), std::acos(0.5), No},
    {"ZylArcTanI", MAKE(ZylArcTan(o.x)), std::atan(2.5), No},
    {"ZylLogI", MAKE(ZylLog(o.x)), std::log(2.5), No},
    {"ZylExponentI", MAKE(ZylExponent(o.x)), std::exp(2.5), No},
    {"ZylNumFloorI", MAKE(ZylFloor(o.x)), 2, IfOperands},
    {"ZylNumCeilI", MAKE(ZylCeil(o.x)), 3, IfOperands},
    {"ZylNumTruncI", MAKE(ZylTrunc(o.x)), 2, IfOperands},
    {"ZylNumRoundI", MAKE(ZylKvlRound(o.x)), 3, IfOperands},
    {"ZylNumFractI", MAKE(ZylFract(o.x)), 0.5, IfOperands},
    {"ZylDistToIntI", MAKE(ZylDistToInt(o.x)), 0.5, IfOperands},
    {"ZylNumToIntI", MAKE(ZylNumToInt(o.y)), 4, Yes},

    {"ZylNumTimesI", MAKE(o.x* o.y), 10, IfOperands},
    {"ZylIntTimesI", MAKE(o.i* o.j), -21, Yes},
    {"ZylNumDivI", MAKE(o.x / o.y), 0.625, No},
    {"ZylIntDivI", MAKE(ZylDiv(o.i, o.j)), -2, Yes},
    {"ZylIntModuloI", MAKE(o.i % o.j), 1, Yes},
    {"ZylNumPowerI", MAKE(ZylPower(o.x, o.y)), std::pow(2.5, 4), IfOperands},
    {"ZylNumMinI", MAKE(ZylMin(o.x, o.y)), 2.5, IfOperands},
    {"ZylIntMinI", MAKE(ZylMin(o.i, o.j)), -3, Yes},
    {"ZylNumMaxI", MAKE(ZylMax(o.x, o.y)), 4, IfOperands},
    {"ZylIntMaxI", MAKE(ZylMax(o.i, o.j)), 7, Yes},

    {"ZylNumTimesCstI", MAKE(ZylSquare(o.x) * 2), 12.5, IfOperands},
    {"ZylIntTimesCstI", MAKE(ZylSquare(o.j) * 2), 18, Yes},
    {"ZylNumDivCstI", MAKE(ZylSquare(o.x) / 2), 3.125, No},
    {"ZylNumRecDivCstI", MAKE(5.0 / o.x), 2, No},
    {"ZylIntDivCstI", MAKE(ZylDiv(o.i, 2)), 3, Yes},
    {"ZylIntRecDivCstI", MAKE(ZylDiv(20L, o.j)), -6, Yes},
    {"ZylIntModuloCstI", MAKE(o.j % 2), -1, Yes},
    {"ZylIntRecModuloCstI", MAKE(20 % o.j), 2, Yes},
    {"ZylNumPowerCstI", MAKE(ZylPower(o.x, 2)), 6.25, IfOperands},
    {"ZylNumRecPowerCstI", MAKE(ZylPower(2, o.y)), 16, IfOperands},
    {"ZylNumMinCstI", MAKE(ZylMin(o.x, 2)), 2, IfOperands},
    {"ZylIntMinCstI", MAKE(ZylMin(2, o.i)), 2, Yes},
    {"ZylNumMaxCstI", MAKE(ZylMax(3.0, o.x)), 3, IfOperands},
    {"ZylIntMaxCstI", MAKE(ZylMax(o.i, 9)), 9, Yes},

    {"ZylIntMinArrayI", MAKE(ZylMin(o.ints)), -3, Yes},
    {"ZylNumMinArrayI", MAKE(ZylMin(o.nums)), 2.5, IfOperands},
    {"ZylIntMaxArrayI", MAKE(ZylMax(o.ints)), 7, Yes},
    {"ZylNumMaxArrayI", MAKE(ZylMax(o.nums)), 4, IfOperands},
    {"ZylNumArrayElementI", MAKE(o.numbers[o.i - 5]), 30.5, No},
    {"ZylIntArrayElementI", MAKE(o.integers[o.i - 6]), 20, Yes},
    {"ZylNumExprArrayElementI", MAKE(o.nums[o.i - 6]), 4, IfOperands},
    {"ZylIntExprArrayElementI", MAKE(o.ints[o.i - 6]), -3, Yes},

    {"ZylCountI", MAKE(ZylCount(o.ints, -3)), 1, Yes},
    {"ZylStandardDeviationI", MAKE(ZylStandardDeviation(o.ints)), 5, No},
    {"ZylMonotonicNumExprI", MAKE(ZylMonotonicIncreasingNumExpr(o.x, std::cbrt, nullptr)),
     std::cbrt(2.5), No},
};

#undef MAKE

}  // namespace zyl::test

#endif
