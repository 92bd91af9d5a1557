// Comparisons: `<=`, `>=`, `==`, `<`, `>` between expressions and numbers.
//
// An expression against a number gives a range; two expressions give a binary constraint, unless
// one of them is a constant. Strict inequalities exist between integer expressions only.

#ifndef ZYL_CONSTRAINT_COMPARISON_H
#define ZYL_CONSTRAINT_COMPARISON_H

#include "vorlane/constraint/range.h"
#include "vorlane/expr/operand.h"

/// A strict inequality whose sides are not both integer.
class ZYL_EXPORT ZylInvalidInequalityException : public ZylException {
 public:
  explicit ZylInvalidInequalityException(const char* message);
};

/// The comparison of two expressions. Its operands, held, are variables or linear nodes: an operand
/// that is neither is replaced by its linear node. Immutable.
class ZYL_EXPORT ZylBinaryNumConstraintI : public ZylConstraintI {
  ZYL_EXTRACTABLE(ZylBinaryNumConstraintI, ZylConstraintI)
 public:
  ZylBinaryNumConstraintI(ZylEnvI* env, ZylNumExprI* left, ZylNumExprI* right,
                          const char* name = nullptr);
  ~ZylBinaryNumConstraintI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void display(std::ostream& stream) const override;

  ZylNumExprI* getLeft() const noexcept { return _left; }
  ZylNumExprI* getRight() const noexcept { return _right; }
  /// 1 if the left operand was replaced by its linear node, plus 2 if the right one was.
  long getConversionFlags() const noexcept { return _flags; }

 protected:
  // The right operand's value by the evaluator; `otherwise` if it has none.
  double rightValue(ZylModelEvaluatorI* evaluator, double otherwise) const;
  void displayAs(std::ostream& stream, const char* relation) const;

  auto fields() { return zyl::fields("left", _left, "right", _right); }
  zyl::Held<ZylNumExprI> _left;
  zyl::Held<ZylNumExprI> _right;
  long _flags;

 private:
  struct Operands;
  ZylBinaryNumConstraintI(ZylEnvI* env, const Operands& operands, const char* name);
};

// A comparison class: its name, and the bounds that its right operand gives its left one.
#define ZYL_COMPARISON_CLASS(Class, Bounds)                                           \
  class ZYL_EXPORT Class final : public zyl::Record<Class, ZylBinaryNumConstraintI> { \
    ZYL_RECORD(Class, ZylBinaryNumConstraintI)                                        \
   public:                                                                            \
    using Record::Record;                                                             \
    void display(std::ostream& stream) const override;                                \
    double eval(const ZylAlgorithm algorithm) const override;                         \
    Bounds                                                                            \
  };
#define ZYL_GETS_LB \
  double getLb(ZylModelEvaluatorI* evaluator) const { return rightValue(evaluator, -ZylInfinity); }
#define ZYL_GETS_UB \
  double getUb(ZylModelEvaluatorI* evaluator) const { return rightValue(evaluator, ZylInfinity); }

/// left == right
ZYL_COMPARISON_CLASS(ZylNumEqI, ZYL_GETS_LB ZYL_GETS_UB)
/// left <= right
ZYL_COMPARISON_CLASS(ZylNumLeI, ZYL_GETS_UB)
/// left >= right
ZYL_COMPARISON_CLASS(ZylNumGeI, ZYL_GETS_LB)
/// left < right
ZYL_COMPARISON_CLASS(ZylNumLTI, ZYL_GETS_UB)
/// left > right
ZYL_COMPARISON_CLASS(ZylNumGTI, ZYL_GETS_LB)

#undef ZYL_COMPARISON_CLASS
#undef ZYL_GETS_LB
#undef ZYL_GETS_UB

namespace zyl::detail {

// The bodies of the operators, on arguments and numbers. All raise `ZylWrongUsage` "Using empty
// handle" on an empty argument.
ZYL_EXPORT ZylRange atMost(const ZylNumExprArg& expr, double upper);
ZYL_EXPORT ZylRangeBase atLeast(const ZylNumExprArg& expr, double lower);
ZYL_EXPORT ZylRange equalTo(const ZylNumExprArg& expr, double value);
ZYL_EXPORT ZylRange below(const ZylNumExprArg& expr, double upper);
ZYL_EXPORT ZylRange above(const ZylNumExprArg& expr, double lower);
ZYL_EXPORT ZylConstraint lessOrEqual(const ZylNumExprArg& left, const ZylNumExprArg& right);
ZYL_EXPORT ZylConstraint greaterOrEqual(const ZylNumExprArg& left, const ZylNumExprArg& right);
ZYL_EXPORT ZylConstraint equal(const ZylNumExprArg& left, const ZylNumExprArg& right);
// Strict: both sides must be integer; the environments are compared last.
ZYL_EXPORT ZylConstraint less(const ZylNumExprArg& left, const ZylNumExprArg& right);
ZYL_EXPORT ZylConstraint greater(const ZylNumExprArg& left, const ZylNumExprArg& right);
// Strict, of integer expressions; the environments are compared first.
ZYL_EXPORT ZylConstraint less(const ZylIntExprArg& left, const ZylIntExprArg& right);
ZYL_EXPORT ZylConstraint greater(const ZylIntExprArg& left, const ZylIntExprArg& right);

}  // namespace zyl::detail

namespace zyl::detail {
// The operand as an argument handle of its own kind; a term becomes a linear node.
template <ExprOperand T>
auto asArg(const T& operand) {
  if constexpr (IntExprOperand<T>) {
    if constexpr (TermOperand<T>) return ZylIntExprArg(toIntExpr(operand));
    else return ZylIntExprArg(static_cast<ZylIntExprI*>(operand.getImpl()));
  } else {
    if constexpr (TermOperand<T>) return ZylNumExprArg(toNumExpr(operand));
    else return ZylNumExprArg(static_cast<ZylNumExprI*>(operand.getImpl()));
  }
}
}  // namespace zyl::detail

// One template for each operator, constrained to one model operand at least, so that no mix of
// variables, terms, expressions and literals is ever ambiguous. Expressions of two environments,
// and empty handles, raise `ZylWrongUsage`.

/// `expr <= c` is a range; `c <= expr` too, and may go on: `0 <= x + 2 <= 10`.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator<=(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) return atLeast(asArg(b), toNum(a));
  else if constexpr (std::derived_from<A, ZylRangeBase> && NumberOperand<B>)
    return bounded(a, toNum(b));
  else if constexpr (NumberOperand<B>) return atMost(asArg(a), toNum(b));
  else return lessOrEqual(asArg(a), asArg(b));
}

template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator>=(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) return atMost(asArg(b), toNum(a));
  else if constexpr (NumberOperand<B>) return ZylRange(atLeast(asArg(a), toNum(b)));
  else return greaterOrEqual(asArg(a), asArg(b));
}

template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator==(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) return equalTo(asArg(b), toNum(a));
  else if constexpr (NumberOperand<B>) return equalTo(asArg(a), toNum(b));
  else return equal(asArg(a), asArg(b));
}

/// Strict inequalities raise `ZylInvalidInequalityException` unless both sides are integer; against
/// a number the bound is moved by one.
template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator<(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) return above(asArg(b), toNum(a));
  else if constexpr (NumberOperand<B>) return below(asArg(a), toNum(b));
  else if constexpr (IntOperandPair<A, B>) return less(asArg(a), asArg(b));
  else
    return less(static_cast<const ZylNumExprArg&>(asArg(a)),
                static_cast<const ZylNumExprArg&>(asArg(b)));
}

template <class A, class B>
requires zyl::detail::OperandPair<A, B>
auto operator>(const A& a, const B& b) {
  using namespace zyl::detail;
  if constexpr (NumberOperand<A>) return below(asArg(b), toNum(a));
  else if constexpr (NumberOperand<B>) return above(asArg(a), toNum(b));
  else if constexpr (IntOperandPair<A, B>) return greater(asArg(a), asArg(b));
  else
    return greater(static_cast<const ZylNumExprArg&>(asArg(a)),
                   static_cast<const ZylNumExprArg&>(asArg(b)));
}

#endif
