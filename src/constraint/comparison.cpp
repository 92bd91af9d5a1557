// The comparison operators: which of them give a range, a binary constraint or a constant truth.

#include "vorlane/constraint/comparison.h"

#include <ostream>

#include "common/build.h"
#include "common/handle_check.h"
#include "vorlane/env/number.h"
#include "vorlane/model/algorithm_handle.h"

ZylInvalidInequalityException::ZylInvalidInequalityException(const char* message)
    : ZylException(message) {}

// --- ZylBinaryNumConstraintI ---------------------------------------------------------------------

ZYL_EXTRACTABLE_DEF(ZylBinaryNumConstraintI, ZylConstraintI)

namespace {

bool isVariable(const ZylNumExprI* expr) { return expr->isType(ZylNumVarI::GetTypeInfo()); }

// Variables are held as they are, everything else as its linear node.
ZylNumExprI* operandOf(ZylNumExprI* expr) {
  return isVariable(expr) ? expr : static_cast<ZylNumExprI*>(expr->toNumLinTermI());
}

using zyl::detail::classOf;
using zyl::detail::NodeClass;

constexpr long LeftConverted = 1;
constexpr long RightConverted = 2;

}  // namespace

// What the operands are replaced by; asked first whether they are, as the conversion of a temporary
// ends it. What was made here goes again, unless the constraint came to hold it.
struct ZylBinaryNumConstraintI::Operands {
  Operands(ZylNumExprI* leftExpr, ZylNumExprI* rightExpr)
      : flags((isVariable(leftExpr) ? 0 : LeftConverted) +
              (isVariable(rightExpr) ? 0 : RightConverted)),
        left(leftExpr), right(leftExpr == rightExpr ? left.expr : rightExpr) {}

  struct Operand {
    explicit Operand(ZylNumExprI* given)
        : part(classOf(given) == NodeClass::Other ? given : nullptr), expr(operandOf(given)),
          isMade(expr != given) {
      if (isMade) expr->hold();
    }
    ~Operand() {
      if (!isMade) return;
      // A part of a sum that goes again is the client's still, as it was.
      const bool isUndone = part != nullptr && expr->getCount() == 1;
      if (isUndone) part->hold();
      expr->getEnv()->release(expr);
      if (isUndone) part->unhold();
    }
    Operand(const Operand&) = delete;
    Operand& operator=(const Operand&) = delete;
    ZylNumExprI* part;
    ZylNumExprI* expr;
    bool isMade;
  };
  long flags;
  Operand left;
  Operand right;
};

ZylBinaryNumConstraintI::ZylBinaryNumConstraintI(ZylEnvI* env, ZylNumExprI* left,
                                                 ZylNumExprI* right, const char* name)
    : ZylBinaryNumConstraintI(env, Operands(left, right), name) {}

ZylBinaryNumConstraintI::ZylBinaryNumConstraintI(ZylEnvI* env, const Operands& operands,
                                                 const char* name)
    : ZylConstraintI(env, name), _left(operands.left.expr), _right(operands.right.expr),
      _flags(operands.flags) {}

ZylBinaryNumConstraintI::~ZylBinaryNumConstraintI() { zyl::detail::giveBack(_env, fields()); }

ZylExtractableI* ZylBinaryNumConstraintI::makeClone(ZylEnvI*) const {
  throw ZylNotImplemented("This code should never be called");
}

void ZylBinaryNumConstraintI::display(std::ostream&) const {
  throw ZylNotImplemented("This code should never be called");
}

void ZylBinaryNumConstraintI::displayAs(std::ostream& stream, const char* relation) const {
  const bool isLong = _env->isLongDisplay();
  if (isLong) stream << "(";
  _left->display(stream);
  stream << relation;
  _right->display(stream);
  if (isLong) stream << ")";
}

// --- the five relations --------------------------------------------------------------------------

#define ZYL_COMPARISON_DEF(Class, Relation)                                                 \
  ZYL_RECORD_DEF(Class, ZylBinaryNumConstraintI)                                            \
  void Class::display(std::ostream& stream) const { displayAs(stream, " " #Relation " "); } \
  double Class::eval(const ZylAlgorithm algorithm) const {                                  \
    const double left = _left->eval(algorithm);                                             \
    return left Relation _right->eval(algorithm) ? 1.0 : 0.0;                               \
  }

ZYL_COMPARISON_DEF(ZylNumEqI, ==)
ZYL_COMPARISON_DEF(ZylNumLeI, <=)
ZYL_COMPARISON_DEF(ZylNumGeI, >=)
ZYL_COMPARISON_DEF(ZylNumLTI, <)
ZYL_COMPARISON_DEF(ZylNumGTI, >)

#undef ZYL_COMPARISON_DEF

// --- bodies of the operators ---------------------------------------------------------------------

namespace zyl::detail {
namespace {

constexpr auto Empty = wrongUsage("Using empty handle");

ZylNumExprI* checked(const ZylNumExprArg& expr) { return checked(expr, Empty); }

ZylRange makeRange(double lower, const ZylNumExprArg& expr, double upper) {
  ZylNumExprI* impl = checked(expr);
  ZylEnvI* env = impl->getEnv();
  return ZylRange(new (env) ZylRangeI(env, lower, impl, upper));
}

[[noreturn]] void raiseNotInteger() {
  throw ZylInvalidInequalityException("Strict Inequality is defined only on Integer Expressions");
}

void checkStrict(const ZylNumExprArg& expr, double bound) {
  if (!checked(expr)->isInteger() || !ZylNumIsInteger(bound)) raiseNotInteger();
}

void checkEnvironments(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  requireEnv(left.getImpl()->getEnv(), right, "mixing mismatch Environments");
}

bool isIntConstant(const ZylNumExprI* expr) {
  const auto* sum = zyl::as<ZylIntLinTermI>(expr);
  return sum != nullptr && sum->isConstant();
}

bool isNumConstant(const ZylNumExprI* expr) {
  const auto* sum = zyl::as<ZylNumLinTermI>(expr);
  return sum != nullptr && sum->isConstant();
}

// Which side, if any, is a constant: integer sums are asked before numeric ones, left before right.
enum class Side { None, Left, Right };
Side constantSide(const ZylNumExprI* left, const ZylNumExprI* right) {
  if (isIntConstant(left)) return Side::Left;
  if (isIntConstant(right)) return Side::Right;
  if (isNumConstant(left)) return Side::Left;
  if (isNumConstant(right)) return Side::Right;
  return Side::None;
}

template <class Class>
ZylConstraint makeComparison(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  ZylEnvI* env = left.getImpl()->getEnv();
  return ZylConstraint(new (env) Class(env, left.getImpl(), right.getImpl()));
}

// `withLeft(c, right)` and `withRight(left, c)` are the constant forms.
template <class Class, class WithLeft, class WithRight>
ZylConstraint compare(const ZylNumExprArg& left, const ZylNumExprArg& right, WithLeft withLeft,
                      WithRight withRight) {
  const Side side = constantSide(left.getImpl(), right.getImpl());
  if (side == Side::Left) return withLeft(left.getImpl()->getNumConstant(), right);
  if (side == Side::Right) return withRight(left, right.getImpl()->getNumConstant());
  checkEnvironments(left, right);
  return makeComparison<Class>(left, right);
}

ZylRange asRange(const ZylRangeBase& range) { return range; }

template <class Class, class WithLeft, class WithRight>
ZylConstraint compareStrictly(const ZylNumExprArg& left, const ZylNumExprArg& right,
                              WithLeft withLeft, WithRight withRight) {
  if (!checked(left)->isInteger() || !checked(right)->isInteger()) raiseNotInteger();
  return compare<Class>(left, right, withLeft, withRight);
}

void checkBoth(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  checked(left);
  checked(right);
  checkEnvironments(left, right);
}

}  // namespace

ZylRange atMost(const ZylNumExprArg& expr, double upper) {
  return makeRange(-ZylInfinity, expr, upper);
}

ZylRangeBase atLeast(const ZylNumExprArg& expr, double lower) {
  // The range takes the constant into its bounds, unless it has none to take it into.
  const double constant = checked(expr)->getNumConstant();
  const bool moved = lower >= -ZylNumMax && constant >= -ZylNumMax && constant <= ZylNumMax;
  return ZylRangeBase(makeRange(lower, expr, ZylInfinity), moved ? constant : 0.0);
}

ZylRange equalTo(const ZylNumExprArg& expr, double value) { return makeRange(value, expr, value); }

ZylRange below(const ZylNumExprArg& expr, double upper) {
  checkStrict(expr, upper);
  return makeRange(-ZylInfinity, expr, upper - 1.0);
}

ZylRange above(const ZylNumExprArg& expr, double lower) {
  checkStrict(expr, lower);
  return makeRange(lower + 1.0, expr, ZylInfinity);
}

ZylConstraint lessOrEqual(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  checkBoth(left, right);
  return compare<ZylNumLeI>(
      left, right, [](double c, const ZylNumExprArg& e) { return asRange(atLeast(e, c)); },
      [](const ZylNumExprArg& e, double c) { return atMost(e, c); });
}

ZylConstraint greaterOrEqual(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  checkBoth(left, right);
  return compare<ZylNumGeI>(
      left, right, [](double c, const ZylNumExprArg& e) { return atMost(e, c); },
      [](const ZylNumExprArg& e, double c) { return asRange(atLeast(e, c)); });
}

ZylConstraint equal(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  checkBoth(left, right);
  return compare<ZylNumEqI>(
      left, right, [](double c, const ZylNumExprArg& e) { return equalTo(e, c); },
      [](const ZylNumExprArg& e, double c) { return equalTo(e, c); });
}

ZylConstraint less(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  return compareStrictly<ZylNumLTI>(
      left, right, [](double c, const ZylNumExprArg& e) { return above(e, c); },
      [](const ZylNumExprArg& e, double c) { return below(e, c); });
}

ZylConstraint greater(const ZylNumExprArg& left, const ZylNumExprArg& right) {
  return compareStrictly<ZylNumGTI>(
      left, right, [](double c, const ZylNumExprArg& e) { return below(e, c); },
      [](const ZylNumExprArg& e, double c) { return above(e, c); });
}

ZylConstraint less(const ZylIntExprArg& left, const ZylIntExprArg& right) {
  checkBoth(left, right);
  return less(static_cast<const ZylNumExprArg&>(left), static_cast<const ZylNumExprArg&>(right));
}

ZylConstraint greater(const ZylIntExprArg& left, const ZylIntExprArg& right) {
  checkBoth(left, right);
  return greater(static_cast<const ZylNumExprArg&>(left), static_cast<const ZylNumExprArg&>(right));
}

}  // namespace zyl::detail
