// The arithmetic of formulas: `x + 2 * y`, `a * b / 3`, `i % 5`.
//
// What can stay a linear sum stays in one linear node; a multiplication by a constant is folded
// into the sum or into the constant of a times node; all else makes a new node. Results are
// argument handles on temporaries: the next operator changes a temporary in place, and works on a
// copy of what somebody holds. Among integers the result is integer, otherwise numeric.
//
// Each raises `ZylWrongUsage` if the operands are of two environments, before it builds anything,
// and `ZylEmptyHandleException` for an empty handle. Terms and temporaries given to an operator
// that raises are lost until the environment ends.

#ifndef ZYL_EXPR_OPERATORS_H
#define ZYL_EXPR_OPERATORS_H

#include "vorlane/expr/operand.h"

/// The results of checked integer arithmetic on doubles, truncated to an integer. Raise
/// `ZylIntExpr::ZylOverflowOccurred` beyond `ZylIntMax` or below `ZylIntMin`.
ZYL_EXPORT long ZylSumOverflow(double a, double b);
ZYL_EXPORT long ZylSubOverflow(double a, double b);
ZYL_EXPORT long ZylTimesOverflow(double a, double b);
ZYL_EXPORT long ZylDivOverflow(double a, double b);

namespace zyl::detail {

// The classes that the texts of `+` name; variables stand as expressions.
enum class SumClass : int { NumExpr, IntExpr, NumTerm, IntTerm };

template <ExprOperand T>
inline constexpr SumClass SumClassOf = KindOf<T> == OperandKind::NumTerm   ? SumClass::NumTerm
                                       : KindOf<T> == OperandKind::IntTerm ? SumClass::IntTerm
                                       : IntExprOperand<T>                 ? SumClass::IntExpr
                                                                           : SumClass::NumExpr;

[[noreturn]] ZYL_EXPORT void raiseSumMismatch(SumClass a, SumClass b);

// Bodies. Those with two expressions test nothing; `sum` with a class pair tests and raises in the
// name of those classes.
ZYL_EXPORT ZylNumLinTermI* addNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylNumLinTermI* addNum(ZylNumLinExprTermI* a, ZylNumExprI* b);
ZYL_EXPORT ZylNumLinTermI* addNum(ZylNumExprI* a, ZylNumLinExprTermI* b);
ZYL_EXPORT ZylNumLinTermI* addNum(ZylNumLinExprTermI* a, ZylNumLinExprTermI* b);
ZYL_EXPORT ZylIntLinTermI* addInt(ZylIntExprI* a, ZylIntExprI* b);
ZYL_EXPORT ZylIntLinTermI* addInt(ZylNumLinExprTermI* a, ZylIntExprI* b);
ZYL_EXPORT ZylIntLinTermI* addInt(ZylIntExprI* a, ZylNumLinExprTermI* b);
ZYL_EXPORT ZylIntLinTermI* addInt(ZylNumLinExprTermI* a, ZylNumLinExprTermI* b);
ZYL_EXPORT ZylNumLinTermI* addNumConstant(ZylNumExprI* a, double constant);
ZYL_EXPORT ZylNumLinTermI* addNumConstant(ZylNumLinExprTermI* a, double constant);
ZYL_EXPORT ZylIntLinTermI* addIntConstant(ZylIntExprI* a, long constant);
ZYL_EXPORT ZylIntLinTermI* addIntConstant(ZylNumLinExprTermI* a, long constant);
ZYL_EXPORT ZylNumExprI* scaleNum(ZylNumExprI* a, double factor);
ZYL_EXPORT ZylIntExprI* scaleInt(ZylIntExprI* a, long factor);
ZYL_EXPORT ZylNumExprI* timesNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylIntExprI* timesInt(ZylIntExprI* a, ZylIntExprI* b);
ZYL_EXPORT ZylNumExprI* divideNum(ZylNumExprI* a, double divisor);
ZYL_EXPORT ZylNumExprI* divideNum(double dividend, ZylNumExprI* b);
ZYL_EXPORT ZylNumExprI* divideNum(ZylNumExprI* a, ZylNumExprI* b);
ZYL_EXPORT ZylIntExprI* moduloInt(ZylIntExprI* a, long b);
ZYL_EXPORT ZylIntExprI* moduloInt(long a, ZylIntExprI* b);
ZYL_EXPORT ZylIntExprI* moduloInt(ZylIntExprI* a, ZylIntExprI* b);

// An operand of a sum: terms stay records, the rest are expressions.
template <ExprOperand T>
auto sumOperand(const T& operand) {
  if constexpr (TermOperand<T>) {
    return operand.getImpl();
  } else if constexpr (IntExprOperand<T>) {
    return toIntExpr(operand);
  } else {
    return toNumExpr(operand);
  }
}
template <ExprOperand T>
ZylEnvI* envOf(const T& operand) {
  if constexpr (TermOperand<T>) {
    return operand.getEnvI();
  } else {
    return toNumExpr(operand)->getEnv();
  }
}

template <ExprOperand A, ExprOperand B>
void checkSum(const A& a, const B& b) {
  if (ZYL_UNLIKELY(envOf(a) != envOf(b))) {
    raiseSumMismatch(SumClassOf<A>, SumClassOf<B>);
  }
}

// The negative of a long, wrapping around.
constexpr long negated(long value) noexcept {
  return static_cast<long>(0UL - static_cast<unsigned long>(value));
}

template <class Term, VariableOperand T>
Term makeTerm(const T& variable, double coefficient) {
  if (ZYL_UNLIKELY(variable.getImpl() == nullptr)) ZylRaiseEmptyHandle();
  return Term(variable.getImpl(), coefficient);
}

template <ExprOperand A, NumberOperand N>
auto scaled(const A& a, N factor) {
  if constexpr (KindOf<A> == OperandKind::IntVar && IntegerOperand<N>) {
    return makeTerm<ZylIntLinExprTerm>(a, toNum(toInt(factor)));
  } else if constexpr (VariableOperand<A>) {
    return makeTerm<ZylNumLinExprTerm>(a, toNum(factor));
  } else if constexpr (IntExprOperand<A> && IntegerOperand<N>) {
    return ZylIntExprArg(scaleInt(toIntExpr(a), toInt(factor)));
  } else {
    return ZylNumExprArg(scaleNum(toNumExpr(a), toNum(factor)));
  }
}

template <ExprOperand A, NumberOperand N>
auto shifted(const A& a, N constant) {
  if constexpr (IntExprOperand<A> && IntegerOperand<N>) {
    return ZylIntExprArg(addIntConstant(sumOperand(a), toInt(constant)));
  } else {
    return ZylNumExprArg(addNumConstant(sumOperand(a), toNum(constant)));
  }
}

// Raises `text` unless the operands are of one environment.
template <ExprOperand A, ExprOperand B>
void checkPair(const A& a, const B& b, const char* text) {
  if (ZYL_UNLIKELY(envOf(a) != envOf(b))) ZylRaiseWrongUsage(text);
}

}  // namespace zyl::detail

/// The sum. Variables and terms give a linear node of two terms that is not normalised yet;
/// appending to a linear node normalises it.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator+(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return shifted(b, a);
  } else if constexpr (NumberOperand<B>) {
    return shifted(a, b);
  } else {
    checkSum(a, b);
    if constexpr (IntOperandPair<A, B>) {
      return ZylIntExprArg(addInt(sumOperand(a), sumOperand(b)));
    } else {
      return ZylNumExprArg(addNum(sumOperand(a), sumOperand(b)));
    }
  }
}

/// The negative: of a variable a term, of a term the same term, else the expression times -1.
template <zyl::detail::ExprOperand A>
auto operator-(const A& a) {
  using namespace zyl::detail;
  if constexpr (TermOperand<A>) {
    A negative = a;
    negative.negate();
    return negative;
  } else {
    return scaled(a, -1);
  }
}

/// `a + (-b)`.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator-(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return -b + a;
  } else if constexpr (IntegerOperand<B>) {
    return a + negated(toInt(b));
  } else if constexpr (NumberOperand<B>) {
    return a + (-toNum(b));
  } else {
    // Tested before the negation, which changes a temporary.
    checkSum(a, b);
    return a + (-b);
  }
}

/// The product. With a number, a term for a variable, and folded in where possible; of two
/// expressions, folded in if one is constant, else a times node.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator*(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return scaled(b, a);
  } else if constexpr (NumberOperand<B>) {
    return scaled(a, b);
  } else {
    if constexpr (IntOperandPair<A, B>) {
      checkPair(a, b,
                "ZylIntExprArg operator * const ZylIntExprArg const ZylIntExprArg: "
                "mixing mismatch Environments");
      return ZylIntExprArg(timesInt(toIntExpr(a), toIntExpr(b)));
    } else {
      checkPair(a, b,
                "ZylNumExprArg operator * const ZylNumExprArg const ZylNumExprArg: "
                "mixing mismatch Environments");
      return ZylNumExprArg(timesNum(toNumExpr(a), toNumExpr(b)));
    }
  }
}

/// The quotient, numeric also among integers (see `ZylDiv`). Division by 0 is no error here.
template <class A, class B>
requires zyl::detail::OperandPair<A, B> ZylNumExprArg operator/(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return ZylNumExprArg(divideNum(toNum(a), toNumExpr(b)));
  } else if constexpr (NumberOperand<B>) {
    return ZylNumExprArg(divideNum(toNumExpr(a), toNum(b)));
  } else {
    checkPair(a, b,
              "ZylNumExprArg operator / const ZylNumExprArg const ZylNumExprArg: "
              "mixing mismatch Environments");
    return ZylNumExprArg(divideNum(toNumExpr(a), toNumExpr(b)));
  }
}

/// The remainder among integers, with the sign of the dividend. A zero divisor traps at evaluation.
template <class A, class B>
requires zyl::detail::IntOperandPair<A, B> ZylIntExprArg operator%(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) {
    return ZylIntExprArg(moduloInt(toInt(a), toIntExpr(b)));
  } else if constexpr (NumberOperand<B>) {
    return ZylIntExprArg(moduloInt(toIntExpr(a), toInt(b)));
  } else {
    checkPair(a, b,
              "ZylIntExprArg operator % const ZylIntExprArg const ZylIntExprArg: "
              "mixing mismatch Environments");
    return ZylIntExprArg(moduloInt(toIntExpr(a), toIntExpr(b)));
  }
}

#endif
