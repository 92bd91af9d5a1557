// In-place edits of a sum: each first gives the handle a node of its own.

#include "vorlane/expr/expression.h"

#include "common/build.h"
#include "vorlane/expr/operators.h"
#include "vorlane/expr/var_array.h"

namespace zyl::detail {

// The operators of ZylNumExpr and ZylIntExpr share a text, those of ZylExpr have their own; clients
// compare them, mixed class names and all.
void raiseNumExprAddMismatch() {
  ZylRaiseWrongUsage(
      "ZylNumExpr& ZylNumExpr::operator += const ZylNumExprArg arg : mixing mismatch Environments");
}

void raiseExprAddMismatch() {
  ZylRaiseWrongUsage(
      "ZylExpr& ZylNumExpr::operator += const ZylNumExprArg arg : mixing mismatch Environments");
}

void raiseExprSubtractMismatch() {
  ZylRaiseWrongUsage(
      "ZylExpr& ZylExpr::operator -= const ZylNumExprArg arg : mixing mismatch Environments");
}

void addTo(ZylNumLinTermI* sum, ZylNumExprI* expr) {
  const NodeClass kind = classOf(expr);
  if (kind == NodeClass::Variable) {
    sum->append(sum->getEnv()->newTerm(asVar(expr), 1.0));
  } else if (kind == NodeClass::Other) {
    sum->append(expr);
  } else {
    sum->append(ownLinearOf(expr, kind));
  }
}

}  // namespace zyl::detail

using zyl::detail::NodeClass;
using zyl::detail::Unfinished;

namespace {

ZylNumLinTermI* newSum(const ZylEnv& env, double constant) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return new (env.getImpl()) ZylNumLinTermI(env.getImpl(), constant);
}

ZylNumLinTermI* independentSum(ZylNumExprI* expr) {
  if (expr == nullptr) return nullptr;
  return (expr->isTemporary() ? expr : expr->copy())->toNumLinTermI();
}

}  // namespace

ZylExpr::ZylExpr(const ZylEnv& env, double constant) : ZylNumExpr(newSum(env, constant)) {
  getImpl()->hold();
}

ZylExpr::ZylExpr(const ZylNumExprArg& arg) : ZylNumExpr(independentSum(arg.getImpl())) {
  zyl::detail::holdExpr(getImpl());
}

ZylExpr::ZylExpr(const ZylNumLinExprTerm& term)
    : ZylNumExpr(new (term.getEnvI()) ZylNumLinTermI(term)) {
  getImpl()->hold();
}

ZylExpr::ZylExpr(const ZylIntLinExprTerm& term)
    : ZylNumExpr(new (term.getEnvI()) ZylNumLinTermI(term)) {
  getImpl()->hold();
}

ZylExpr ZylExpr::copy() const { return ZylExpr(ZylNumExprArg(checkedNode()->copy())); }

ZylExpr ZylExpr::getClone(const ZylEnv& env) const {
  ZylExpr clone;
  clone.assign(ZylNumExprArg::getClone(env).getImpl());
  return clone;
}

ZylNumLinTermI* ZylExpr::unshare() {
  ZylNumLinTermI* shared = getImpl();
  auto* own = static_cast<ZylNumLinTermI*>(shared->copy());
  own->hold();
  shared->unhold();
  _impl = own;
  return own;
}

ZylExpr& ZylExpr::operator+=(double constant) {
  ZylNumLinTermI* node = writable();
  node->setConstant(node->getConstant() + constant);
  return *this;
}

ZylExpr& ZylExpr::operator-=(double constant) {
  ZylNumLinTermI* node = writable();
  node->setConstant(node->getConstant() - constant);
  return *this;
}

ZylExpr& ZylExpr::operator*=(double factor) {
  writable()->multiply(factor);
  return *this;
}

ZylExpr& ZylExpr::operator/=(double divisor) {
  writable()->divide(divisor);
  return *this;
}

ZylExpr& ZylExpr::operator+=(const ZylNumExprArg& arg) {
  if (arg.getImpl() == nullptr) ZylRaiseEmptyHandle();
  if (checkedNode()->getEnv() != arg.getImpl()->getEnv()) zyl::detail::raiseExprAddMismatch();
  ZylNumLinTermI* node = writable();
  zyl::detail::addTo(node, arg.getImpl());
  return *this;
}

ZylExpr& ZylExpr::operator-=(const ZylNumExprArg& arg) {
  if (arg.getImpl() == nullptr) ZylRaiseEmptyHandle();
  if (checkedNode()->getEnv() != arg.getImpl()->getEnv()) zyl::detail::raiseExprSubtractMismatch();
  ZylNumLinTermI* node = writable();
  ZylNumExprI* expr = arg.getImpl();
  const NodeClass kind = zyl::detail::classOf(expr);
  if (kind == NodeClass::Variable) {
    node->append(node->getEnv()->newTerm(zyl::detail::asVar(expr), -1.0));
  } else if (kind == NodeClass::Other) {
    const zyl::detail::KeptOperand kept(expr);
    Unfinished negative(zyl::detail::scaleNum(expr, -1.0));
    node->append(negative.get());
    static_cast<void>(negative.finish());
  } else {
    Unfinished negative(zyl::detail::ownLinearOf(expr, kind), expr);
    negative->multiply(-1.0);
    node->append(negative.finish());
  }
  return *this;
}

void ZylExpr::setLinearCoef(const ZylNumVar& variable, double coefficient) {
  writable()->setCoef(variable, coefficient);
}

void ZylExpr::setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs) {
  writable()->setCoef(variables, coefs, ZylNumArray());
}

void ZylExpr::remove(const ZylExtractableArray& objects) { writable()->remove(objects); }
void ZylExpr::clear() { writable()->clear(); }
bool ZylExpr::normalize() { return checkedNode()->normalize() == 0; }

bool ZylExpr::isNormalized() const {
  ZylNumLinTermI* node = checkedNode();
  if (!node->getEnv()->isNormalizationInhibited() || node->hasNonLinearPart()) return true;
  return node->normalize() == 0;
}

void ZylExpr::setNumConstant(double constant) {
  ZylTestIsLinear(getImpl());
  writable()->setConstant(constant);
}
