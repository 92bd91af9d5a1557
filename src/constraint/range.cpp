// Ranges own their sum: each edit makes it theirs, changes it, and tells the engines.

#include "vorlane/constraint/range.h"

#include <ostream>

#include "common/handle_check.h"
#include "common/own_linear.h"
#include "vorlane/constraint/range_change.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylRangeI, ZylConstraintI)

namespace {

bool isInfinite(double bound) { return bound < -ZylNumMax || bound > ZylNumMax; }
bool isFree(double lower, double upper) { return lower < -ZylNumMax && upper > ZylNumMax; }

}  // namespace

ZylRangeI::ZylRangeI(ZylEnvI* env, double lower, double upper, const char* name)
    : ZylConstraintI(env, name), _expr(new (env) ZylNumLinTermI(env, 0.0)), _lower(lower),
      _upper(upper) {
  _expr->hold();
}

ZylRangeI::ZylRangeI(ZylEnvI* env, double lower, ZylNumExprI* expr, double upper, const char* name)
    : ZylConstraintI(env, name), _expr(expr->toNumLinTermI()), _lower(lower), _upper(upper) {
  const double constant = _expr->getConstant();
  if (constant != 0.0 && !isInfinite(constant) && !isFree(lower, upper)) {
    if (_expr->getCount() > 0) _expr = static_cast<ZylNumLinTermI*>(_expr->copy());
    _expr->setConstant(0.0);
    if (!isInfinite(lower)) _lower -= constant;
    if (!isInfinite(upper)) _upper -= constant;
  }
  // Held last: nothing can fail any more.
  _expr->hold();
}

ZylRangeI::~ZylRangeI() { _env->release(_expr); }

ZylExtractableI* ZylRangeI::makeClone(ZylEnvI* env) const {
  auto* expr = static_cast<ZylNumExprI*>(env->getClone(_expr));
  return new (env) ZylRangeI(env, _lower, expr, _upper);
}

void ZylRangeI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _expr);
  visitor->endVisit(this);
}

void ZylRangeI::display(std::ostream& stream) const {
  const bool isLong = _env->isLongDisplay();
  const char* close = isLong ? ") " : " ";
  if (getName() != nullptr) stream << getName() << ": ";
  if (isLong) stream << "( ";
  if (_lower != _upper && _lower >= -ZylNumMax) stream << _lower << " <= ";
  _expr->display(stream);
  if (_lower == _upper) {
    stream << " == " << _upper << close;
    return;
  }
  if (_upper <= ZylNumMax) stream << " <= " << _upper;
  stream << close;
}

double ZylRangeI::eval(const ZylAlgorithm algorithm) const {
  const double value = _expr->eval(algorithm);
  return value >= _lower && value <= _upper ? 1.0 : 0.0;
}

void ZylRangeI::setBounds(double lower, double upper) {
  writeBounds(lower, upper);
  notify(ZylSetRangeBounds(this, lower, upper));
}

void ZylRangeI::setExpr(const ZylNumExprArg& expr) {
  zyl::detail::replaceLinear<ZylSetRangeExpr>(this, &_expr, expr.getImpl());
}

void ZylRangeI::setCoef(const ZylNumVar& variable, double coefficient) {
  zyl::detail::prepareCoefs(&_expr);
  const double before = _expr->setCoef(variable, coefficient);
  notify(ZylSetRangeCoef(this, variable.getImpl(), coefficient, before));
}

void ZylRangeI::setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs) {
  if (variables.getSize() == 0) return;
  zyl::detail::prepareCoefs(&_expr);
  const zyl::detail::ScopedNumArray before(_env, variables.getSize());
  _expr->setCoef(variables, coefs, before);
  notify(ZylSetRangeCoefs(this, variables, coefs, before));
}

void ZylRangeI::addVar(ZylNumVarI* variable, double coefficient) {
  zyl::detail::addNewVariable(&_expr, variable, coefficient);
}

long ZylRangeI::normalize() {
  _expr->normalize();
  return 0;
}

// --- handle --------------------------------------------------------------------------------------

namespace {

using zyl::detail::argument;
using zyl::detail::checked;
using zyl::detail::wrongUsage;

constexpr const char* Mixing = "mixing mismatch Environments";

ZylRangeI* make(const ZylEnv& env, double lower, const ZylNumExprArg& expr, double upper,
                const char* name) {
  static_cast<void>(checked(expr, wrongUsage("Using empty handle")));
  ZylEnvI* owner = checked(env);
  zyl::detail::requireEnv(owner, expr, Mixing);
  return new (owner) ZylRangeI(owner, lower, expr.getImpl(), upper, name);
}

}  // namespace

ZylRange::ZylRange(const ZylEnv& env, double lower, const ZylNumExprArg& expr, double upper,
                   const char* name)
    : ZylConstraint(make(env, lower, expr, upper, name)) {}

ZylRange::ZylRange(const ZylEnv& env, const ZylNumExprArg& expr, double upper, const char* name)
    : ZylConstraint(make(env, -ZylInfinity, expr, upper, name)) {}

ZylRange::ZylRange(const ZylEnv& env, double lower, const ZylNumExprArg& expr, const char* name)
    : ZylConstraint(make(env, lower, expr, ZylInfinity, name)) {}

ZylRange::ZylRange(const ZylEnv& env, double lower, double upper, const char* name) {
  ZylEnvI* owner = zyl::detail::checked(env);
  _impl = new (owner) ZylRangeI(owner, lower, upper, name);
}

void ZylRange::setExpr(const ZylNumExprArg& expr) const {
  ZylRangeI* range = checkedRange();
  zyl::detail::require(range->getEnv(), Mixing, argument(expr));
  range->setExpr(expr);
}

void ZylRange::setLinearCoef(const ZylNumVar& variable, double coefficient) const {
  ZylRangeI* range = checkedRange();
  zyl::detail::requireHandle(variable);
  range->setCoef(variable, coefficient);
}

void ZylRange::setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs) const {
  ZylRangeI* range = checkedRange();
  zyl::detail::requireHandles(variables, coefs);
  range->setCoef(variables, coefs);
}

ZylRange ZylRange::getClone(const ZylEnv& env) const {
  ZylEnvI* target = zyl::detail::checked(env);
  return ZylRange(static_cast<ZylRangeI*>(target->getClone(checkedRange())));
}

ZylRange operator<=(const ZylRangeBase& range, double upper) {
  if (range.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty handle");
  const double bound = upper - range.getConstant();
  if (bound != range.getImpl()->getUB()) range.getImpl()->setUB(bound);
  return ZylRange(range.getImpl());
}

std::ostream& operator<<(std::ostream& stream, const ZylRangeBase& range) {
  return stream << ZylRange(range.getImpl());
}
