// The named functions of formulas: minimum and maximum, sums and scalar products of arrays, and the
// functions of one argument.
//
// Results are argument handles on temporaries, as those of the operators. An empty handle raises
// `ZylEmptyHandleException`, operands of two environments raise `ZylWrongUsage`, unless told
// otherwise. Arrays are copied; temporaries in them are taken over.

#ifndef ZYL_EXPR_FUNCTIONS_H
#define ZYL_EXPR_FUNCTIONS_H

#include "vorlane/expr/expr_array.h"
#include "vorlane/expr/operators.h"

class ZylMonotonicNumExprI;

/// Two arrays of different size were multiplied.
class ZYL_EXPORT ZylInvalidScalProdArraysException : public ZylException {
 public:
  explicit ZylInvalidScalProdArraysException(const char* message);
};

namespace zyl::detail {

// Arrays of variables or expressions, by the class of their elements.
template <class T>
concept ExprArrayOperand =
    std::derived_from<T, ZylExtractableArray> && ExprOperand<typename T::Element>;
template <class T>
concept VarArrayOperand = ExprArrayOperand<T> && VariableOperand<typename T::Element>;
template <class T>
concept IntExprArrayOperand = ExprArrayOperand<T> && IntExprOperand<typename T::Element>;
template <class T>
concept IntArrayOperand = std::derived_from<T, ZylIntArray>;
template <class T>
concept NumberArrayOperand = IntArrayOperand<T> || std::derived_from<T, ZylNumArray>;
template <class T>
concept IntElementsOperand = IntExprArrayOperand<T> || IntArrayOperand<T>;
template <class A, class B>
concept IntArrayPair = IntElementsOperand<A> && IntElementsOperand<B>;
template <class A, class B>
concept ScalProdPair = (NumberArrayOperand<A> && NumberArrayOperand<B>) ||
                       (VarArrayOperand<A> && NumberArrayOperand<B>) ||
                       (NumberArrayOperand<A> && VarArrayOperand<B>) ||
                       (ExprArrayOperand<A> && ExprArrayOperand<B>);

ZYL_EXPORT ZylNumExprI* minNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylNumExprI* minNum(ZylNumExprI* a, double b);
ZYL_EXPORT ZylIntExprI* minInt(ZylIntExprI* a, ZylIntExprI* b);
ZYL_EXPORT ZylIntExprI* minInt(ZylIntExprI* a, long b);
ZYL_EXPORT ZylNumExprI* maxNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylNumExprI* maxNum(ZylNumExprI* a, double b);
ZYL_EXPORT ZylIntExprI* maxInt(ZylIntExprI* a, ZylIntExprI* b);
ZYL_EXPORT ZylIntExprI* maxInt(ZylIntExprI* a, long b);
ZYL_EXPORT ZylNumExprI* powerNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylNumExprI* powerNum(ZylNumExprI* a, double b);
ZYL_EXPORT ZylNumExprI* powerNum(double a, ZylNumExprI* b);
ZYL_EXPORT ZylIntExprI* divideInt(ZylIntExprI* a, ZylIntExprI* b);
ZYL_EXPORT ZylIntExprI* divideInt(ZylIntExprI* a, long b);
ZYL_EXPORT ZylIntExprI* divideInt(long a, ZylIntExprI* b);
ZYL_EXPORT ZylNumExprI* absNum(ZylNumExprI* a);
ZYL_EXPORT ZylIntExprI* absInt(ZylIntExprI* a);
ZYL_EXPORT ZylNumExprI* squareNum(ZylNumExprI* a);
ZYL_EXPORT ZylIntExprI* squareInt(ZylIntExprI* a);

ZYL_EXPORT ZylNumExprI* minNumArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylIntExprI* minIntArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylNumExprI* maxNumArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylIntExprI* maxIntArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylNumExprI* sumNumArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylIntExprI* sumIntArray(const ZylExtractableArray& array);
ZYL_EXPORT ZylNumExprI* scalProdNum(const ZylExtractableArray& variables, const ZylNumArray& coefs);
ZYL_EXPORT ZylNumExprI* scalProdNum(const ZylExtractableArray& variables, const ZylIntArray& coefs);
ZYL_EXPORT ZylIntExprI* scalProdInt(const ZylExtractableArray& variables, const ZylIntArray& coefs);
ZYL_EXPORT ZylNumExprI* scalProdNum(const ZylExtractableArray& a, const ZylExtractableArray& b);
ZYL_EXPORT ZylIntExprI* scalProdInt(const ZylExtractableArray& a, const ZylExtractableArray& b);
ZYL_EXPORT long scalProd(const ZylIntArray& a, const ZylIntArray& b);
ZYL_EXPORT double scalProd(const ZylIntArray& a, const ZylNumArray& b);
ZYL_EXPORT double scalProd(const ZylNumArray& a, const ZylIntArray& b);
ZYL_EXPORT double scalProd(const ZylNumArray& a, const ZylNumArray& b);

}  // namespace zyl::detail

/// The smaller or larger of two, of which one may be a number.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto ZylMin(const A& a, const B& b);
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto ZylMax(const A& a, const B& b);
/// The extreme element, over a copy of the array; an empty array is accepted and fails at
/// evaluation.
template <zyl::detail::ExprArrayOperand A>
auto ZylMin(const A& array);
template <zyl::detail::ExprArrayOperand A>
auto ZylMax(const A& array);
/// The extreme number. Raise `ZylArrayError` for an empty array.
ZYL_EXPORT long ZylMin(const ZylIntArray& array);
ZYL_EXPORT double ZylMin(const ZylNumArray& array);
ZYL_EXPORT long ZylMax(const ZylIntArray& array);
ZYL_EXPORT double ZylMax(const ZylNumArray& array);

/// Integer division of integer expressions, toward zero. A zero divisor traps at evaluation.
template <class A, class B>
requires zyl::detail::IntOperandPair<A, B> ZylIntExprArg ZylDiv(const A& a, const B& b);
/// a to the power of b, numeric also among integers.
template <class A, class B>
requires zyl::detail::OperandPair<A, B> ZylNumExprArg ZylPower(const A& a, const B& b);
/// Absolute value and square; integer for integer expressions.
template <zyl::detail::ExprOperand A>
auto ZylAbs(const A& arg);
template <zyl::detail::ExprOperand A>
auto ZylSquare(const A& arg);

/// -1, 0 or 1.
ZYL_EXPORT ZylIntExprArg ZylSgn(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylSin(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylCos(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylTan(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylArcSin(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylArcCos(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylArcTan(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylLog(const ZylNumExprArg& arg);
/// The logarithm divided by that of 10 or 2.
ZYL_EXPORT ZylNumExprArg ZylLog10(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylLog2(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylExponent(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylFloor(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylCeil(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylTrunc(const ZylNumExprArg& arg);
ZYL_EXPORT ZylNumExprArg ZylKvlRound(const ZylNumExprArg& arg);
/// The distance from the next integer toward zero.
ZYL_EXPORT ZylNumExprArg ZylFract(const ZylNumExprArg& arg);
/// The distance from the nearest integer.
ZYL_EXPORT ZylNumExprArg ZylDistToInt(const ZylNumExprArg& arg);
/// The expression as an integer one; its evaluation raises `ZylWrongUsage` if the value is none.
ZYL_EXPORT ZylIntExprArg ZylNumToInt(const ZylNumExprArg& arg);
/// A function of the client's. `inverse` is data for an engine.
ZYL_EXPORT ZylNumExprArg ZylMonotonicIncreasingNumExpr(const ZylNumExprArg& arg,
                                                       double (*function)(double),
                                                       double (*inverse)(double));
ZYL_EXPORT ZylNumExprArg ZylMonotonicDecreasingNumExpr(const ZylNumExprArg& arg,
                                                       double (*function)(double),
                                                       double (*inverse)(double));

/// The sum of numbers, 0 for none.
ZYL_EXPORT long ZylSum(const ZylIntArray& array);
ZYL_EXPORT double ZylSum(const ZylNumArray& array);
/// The sum of variables or expressions as one linear node. Raises `ZylWrongUsage` for a missing
/// element; nothing is built then.
template <zyl::detail::ExprArrayOperand A>
auto ZylSum(const A& array);
/// The sum of the products of the elements in order: of numbers a number; of variables with numbers
/// a linear node with one term an index, not normalised, zeros included; of expressions a linear
/// node of products. Raises `ZylInvalidScalProdArraysException` if the sizes differ.
template <class A, class B>
requires zyl::detail::ScalProdPair<A, B>
auto ZylScalProd(const A& a, const B& b);

/// The population standard deviation of the elements, with limits of their mean for an engine.
/// Raise `ZylArrayError` for an empty array or element.
ZYL_EXPORT ZylNumExprArg ZylStandardDeviation(const ZylIntExprArray& array);
ZYL_EXPORT ZylNumExprArg ZylStandardDeviation(const ZylIntExprArray& array, double lowerMean,
                                              double upperMean);
/// The number of elements of this value. Raises `ZylArrayError` for an empty array or element.
ZYL_EXPORT ZylIntExprArg ZylCount(const ZylIntExprArray& array, long value);

// --------------------------------------------------------------------------------------------------

// Minimum and maximum differ in their bodies only.
#define ZYL_EXTREME_FUNCTION_(Function, num, integer, mismatch)    \
  template <class A, class B>                                      \
  requires zyl::detail::OperandPair<A, B>                          \
  auto Function(const A& a, const B& b) {                          \
    using namespace zyl::detail;                                   \
    if constexpr (NumberOperand<A>) {                              \
      return Function(b, a);                                       \
    } else if constexpr (IntOperandPair<A, B>) {                   \
      if constexpr (NumberOperand<B>) {                            \
        return ZylIntExprArg(integer(toIntExpr(a), toInt(b)));     \
      } else {                                                     \
        checkPair(a, b, mismatch);                                 \
        return ZylIntExprArg(integer(toIntExpr(a), toIntExpr(b))); \
      }                                                            \
    } else if constexpr (NumberOperand<B>) {                       \
      return ZylNumExprArg(num(toNumExpr(a), toNum(b)));           \
    } else {                                                       \
      checkPair(a, b, mismatch);                                   \
      return ZylNumExprArg(num(toNumExpr(a), toNumExpr(b)));       \
    }                                                              \
  }                                                                \
  template <zyl::detail::ExprArrayOperand A>                       \
  auto Function(const A& array) {                                  \
    if constexpr (zyl::detail::IntExprArrayOperand<A>) {           \
      return ZylIntExprArg(zyl::detail::integer##Array(array));    \
    } else {                                                       \
      return ZylNumExprArg(zyl::detail::num##Array(array));        \
    }                                                              \
  }

ZYL_EXTREME_FUNCTION_(ZylMin, minNum, minInt, "ZylMin: mixing mismatch Environments")
ZYL_EXTREME_FUNCTION_(ZylMax, maxNum, maxInt, "ZylMax: mixing mismatch Environments")
#undef ZYL_EXTREME_FUNCTION_

template <class A, class B>
requires zyl::detail::IntOperandPair<A, B> ZylIntExprArg ZylDiv(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return ZylIntExprArg(divideInt(toInt(a), toIntExpr(b)));
  } else if constexpr (NumberOperand<B>) {
    return ZylIntExprArg(divideInt(toIntExpr(a), toInt(b)));
  } else {
    checkPair(a, b, "ZylDiv: mixing mismatch Environments");
    return ZylIntExprArg(divideInt(toIntExpr(a), toIntExpr(b)));
  }
}

template <class A, class B>
requires zyl::detail::OperandPair<A, B> ZylNumExprArg ZylPower(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return ZylNumExprArg(powerNum(toNum(a), toNumExpr(b)));
  } else if constexpr (NumberOperand<B>) {
    return ZylNumExprArg(powerNum(toNumExpr(a), toNum(b)));
  } else {
    checkPair(a, b, "ZylPower: mixing mismatch environments");
    return ZylNumExprArg(powerNum(toNumExpr(a), toNumExpr(b)));
  }
}

template <zyl::detail::ExprOperand A>
auto ZylAbs(const A& arg) {
  using namespace zyl::detail;
  if constexpr (IntExprOperand<A>) {
    return ZylIntExprArg(absInt(toIntExpr(arg)));
  } else {
    return ZylNumExprArg(absNum(toNumExpr(arg)));
  }
}

template <zyl::detail::ExprOperand A>
auto ZylSquare(const A& arg) {
  using namespace zyl::detail;
  if constexpr (IntExprOperand<A>) {
    return ZylIntExprArg(squareInt(toIntExpr(arg)));
  } else {
    return ZylNumExprArg(squareNum(toNumExpr(arg)));
  }
}

template <zyl::detail::ExprArrayOperand A>
auto ZylSum(const A& array) {
  if constexpr (zyl::detail::IntExprArrayOperand<A>) {
    return ZylIntExprArg(zyl::detail::sumIntArray(array));
  } else {
    return ZylNumExprArg(zyl::detail::sumNumArray(array));
  }
}

template <class A, class B>
requires zyl::detail::ScalProdPair<A, B>
auto ZylScalProd(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberArrayOperand<A> && NumberArrayOperand<B>) {
    return scalProd(a, b);
  } else if constexpr (NumberArrayOperand<A>) {
    return ZylScalProd(b, a);
  } else if constexpr (IntArrayPair<A, B>) {
    return ZylIntExprArg(scalProdInt(a, b));
  } else {
    return ZylNumExprArg(scalProdNum(a, b));
  }
}

#endif
