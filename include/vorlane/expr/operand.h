// What may stand on either side of an operator, classified at compile time.
//
// Operators between model objects are one constrained template each, which reads the classes below
// and calls an out-of-line body. There is no set of overloads to choose from, so literals of any
// type, variables, terms, expressions and constraints mix freely, in either order, and nothing is
// ever ambiguous. Classes derived from the handles count as what they derive from.

#ifndef ZYL_EXPR_OPERAND_H
#define ZYL_EXPR_OPERAND_H

#include <concepts>
#include <type_traits>

#include "vorlane/expr/lin_term.h"

class ZylRangeBase;

namespace zyl::detail {

// Plain numbers and no enumeration: comparing these must not look for an operator, as that would
// ask for the classification again.
struct OperandKind {
  static constexpr int None = 0;
  static constexpr int Integer = 1;  // a number
  static constexpr int Real = 2;     // a number
  static constexpr int NumVar = 3;
  static constexpr int IntVar = 4;
  static constexpr int NumTerm = 5;
  static constexpr int IntTerm = 6;
  static constexpr int NumExpr = 7;
  static constexpr int IntExpr = 8;
};

template <class T>
consteval int classify() {
  if constexpr (std::integral<T>) return OperandKind::Integer;
  else if constexpr (std::floating_point<T>) return OperandKind::Real;
  // Named constants of unscoped enumerations are integers.
  else if constexpr (std::is_enum_v<T>)
    return std::convertible_to<T, long> ? OperandKind::Integer : OperandKind::None;
  else if constexpr (!std::is_class_v<T>)
    return OperandKind::None;  // NOLINT(bugprone-branch-clone): decided here, else last
  else if constexpr (std::derived_from<T, ZylNumVar>) return OperandKind::NumVar;
  else if constexpr (std::derived_from<T, ZylIntVar>) return OperandKind::IntVar;
  else if constexpr (std::derived_from<T, ZylNumLinExprTerm>) return OperandKind::NumTerm;
  else if constexpr (std::derived_from<T, ZylIntLinExprTerm>) return OperandKind::IntTerm;
  else if constexpr (std::derived_from<T, ZylIntExprArg> || std::derived_from<T, ZylRangeBase>)
    return OperandKind::IntExpr;
  else if constexpr (std::derived_from<T, ZylNumExprArg>) return OperandKind::NumExpr;
  else return OperandKind::None;
}

template <class T>
inline constexpr int KindOf = classify<std::remove_cvref_t<T>>();

template <class T, int... Kinds>
concept OfKind = ((KindOf<T> == Kinds) || ...);

/// A number that is integral, any number.
template <class T>
concept IntegerOperand = OfKind<T, OperandKind::Integer>;
template <class T>
concept NumberOperand = IntegerOperand<T> || OfKind<T, OperandKind::Real>;

template <class T>
concept VariableOperand = OfKind<T, OperandKind::NumVar, OperandKind::IntVar>;
template <class T>
concept TermOperand = OfKind<T, OperandKind::NumTerm, OperandKind::IntTerm>;
/// A variable, term or expression; one of integers.
template <class T>
concept ExprOperand = !OfKind<T, OperandKind::None> && !NumberOperand<T>;
template <class T>
concept IntExprOperand = OfKind<T, OperandKind::IntVar, OperandKind::IntTerm, OperandKind::IntExpr>;

template <class T>
concept Operand = ExprOperand<T> || NumberOperand<T>;
template <class T>
concept IntOperand = IntExprOperand<T> || IntegerOperand<T>;
template <class A, class B>
concept AnyExprOperand = ExprOperand<A> || ExprOperand<B>;
/// Two operands of which one at least is no number.
template <class A, class B>
concept OperandPair = Operand<A> && Operand<B> && AnyExprOperand<A, B>;
/// The same where both are integer: the operation stays among the integers.
template <class A, class B>
concept IntOperandPair = OperandPair<A, B> && IntOperand<A> && IntOperand<B>;

/// The expression of an operand. A term becomes a new linear node. Raises
/// `ZylEmptyHandleException` for an empty handle.
template <ExprOperand T>
ZylNumExprI* toNumExpr(const T& operand) {
  if constexpr (TermOperand<T>) {
    return new (operand.getEnvI()) ZylNumLinTermI(operand);
  } else {
    ZylNumExprI* expr = operand.getImpl();
    if (ZYL_UNLIKELY(expr == nullptr)) ZylRaiseEmptyHandle();
    return expr;
  }
}

/// The same among the integers.
template <IntExprOperand T>
ZylIntExprI* toIntExpr(const T& operand) {
  if constexpr (TermOperand<T>) {
    return new (operand.getEnvI()) ZylIntLinTermI(operand);
  } else {
    ZylIntExprI* expr = operand.getImpl();
    if (ZYL_UNLIKELY(expr == nullptr)) ZylRaiseEmptyHandle();
    return expr;
  }
}

template <NumberOperand T>
constexpr double toNum(T number) noexcept {
  return static_cast<double>(number);
}
template <IntegerOperand T>
constexpr long toInt(T number) noexcept {
  return static_cast<long>(number);
}

}  // namespace zyl::detail

#endif
