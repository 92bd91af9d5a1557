// Counting of expressions, and the handles that count or only pass on.

#include "vorlane/expr/num_expr.h"

#include <optional>
#include <ostream>

#include "common/build.h"
#include "common/handle_check.h"
#include "vorlane/expr/expression.h"
#include "vorlane/expr/operators.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/recycle_bin.h"

ZYL_EXTRACTABLE_DEF(ZylNumExprI, ZylExtractableI)
ZYL_EXTRACTABLE_DEF(ZylIntExprI, ZylNumExprI)

using zyl::detail::NodeClass;
using zyl::detail::Unfinished;

bool ZylNumExprI::isRefCountedExpr() const { return true; }

void ZylNumExprI::end() {
  if (getId() == -1) return;
  if (--_count >= 1) return;
  if (_env->getDeleter() != nullptr) {
    _env->removeAndDelete(this, 1);
  } else if (_env->getRecycleBin() != nullptr) {
    _env->removeFromAllAndDestroy(this, 0);
  } else {
    _env->destroy(this, /*keep=*/0, /*notify=*/1);
  }
}

ZylNumExprI* ZylNumExprI::copy() { return this; }

void ZylNumExprI::release() {
  if (!_env->isTearingDown()) end();
}

ZylNumLinTermI* ZylNumExprI::toNumLinTermI() {
  Unfinished sum(new (_env) ZylNumLinTermI(_env, 0.0));
  sum->append(this);
  return sum.finish();
}

bool ZylNumExprI::isInteger() const { return false; }
double ZylNumExprI::getNumConstant() const { return 0.0; }

ZylNumExprI* ZylIntExprI::copy() { return intCopy(); }
bool ZylIntExprI::isInteger() const { return true; }
ZylIntExprI* ZylIntExprI::intCopy() { return this; }

ZylIntLinTermI* ZylIntExprI::toIntLinTermI() {
  Unfinished sum(new (_env) ZylIntLinTermI(_env, 0));
  sum->append(this);
  return sum.finish();
}

void ZylEnvI::release(ZylNumExprI* expr) {
  if (expr == nullptr || _tearingDown != 0) return;
  if (_recycleBin != nullptr && _recycleBin->contains(expr)) {
    _recycleBin->released(expr);
    return;
  }
  expr->release();
}

// --- argument handles ----------------------------------------------------------------------------

namespace {

bool hasTermsOnly(const ZylNumExprI* expr) {
  if (const auto* sum = zyl::as<ZylNumLinTermI>(expr)) return !sum->hasNonLinearPart();
  if (const auto* sum = zyl::as<ZylIntLinTermI>(expr)) return !sum->hasNonLinearPart();
  return false;
}

}  // namespace

void ZylTestIsLinear(const ZylNumExprI* expr) {
  if (!hasTermsOnly(zyl::detail::checked(expr))) throw ZylNumExpr::NonLinearExpression(expr);
}

ZylNumExprArg::ZylNumExprArg(const ZylNumLinExprTerm& term)
    : ZylExtractable(new (term.getEnvI()) ZylNumLinTermI(term)) {}

ZylNumExprArg::ZylNumExprArg(const ZylIntLinExprTerm& term)
    : ZylExtractable(new (term.getEnvI()) ZylIntLinTermI(term)) {}

ZylIntExprArg::ZylIntExprArg(const ZylIntLinExprTerm& term) : ZylNumExprArg(term) {}

bool ZylExtractable::isNumExpr() const { return checked()->isType(ZylNumExprI::GetTypeInfo()); }
bool ZylExtractable::isIntExpr() const { return checked()->isType(ZylIntExprI::GetTypeInfo()); }
ZylNumExprArg ZylExtractable::asNumExpr() const {
  return ZylNumExprArg(zyl::as<ZylNumExprI>(checked()));
}
ZylIntExprArg ZylExtractable::asIntExpr() const {
  return ZylIntExprArg(zyl::as<ZylIntExprI>(checked()));
}

bool ZylNumExprArg::isConstant() const {
  const ZylNumExprI* expr = zyl::detail::checked(*this);
  if (const auto* sum = zyl::as<ZylNumLinTermI>(expr)) return sum->isConstant();
  if (const auto* sum = zyl::as<ZylIntLinTermI>(expr)) return sum->isConstant();
  return false;
}

double ZylNumExprArg::getNumConstant() const {
  ZylTestIsLinear(getImpl());
  return getImpl()->getNumConstant();
}

ZylNumExprArg ZylNumExprArg::getClone(const ZylEnv& env) const {
  return ZylNumExprArg(zyl::detail::cloneIn(env, *this));
}

void ZylNumExprArg::setClone(const ZylEnv& env, const ZylNumExprArg& clone) const {
  zyl::detail::checked(env)->setClone(zyl::detail::checked(*this), clone.getImpl());
}

ZylIntExprArg ZylIntExprArg::getClone(const ZylEnv& env) const {
  return ZylIntExprArg(zyl::detail::cloneIn(env, *this));
}

// --- counted handles -----------------------------------------------------------------------------

ZylNumExpr::NonLinearExpression::NonLinearExpression(const ZylNumExprI* expr)
    : ZylException("Constant part cannot be set or queried"), _expr(expr) {}

void ZylNumExpr::NonLinearExpression::print(std::ostream& stream) const {
  stream << "Expression ";
  if (_expr != nullptr) _expr->display(stream);
  stream << " is non linear, setting or querying the constant part is forbidden";
}

ZylIntExpr::ZylOverflowOccurred::ZylOverflowOccurred(const char* message) : ZylException(message) {}

namespace {

[[noreturn]] void raiseSubtract() {
  ZylRaiseWrongUsage(
      "ZylNumExpr& ZylNumExpr::operator -= const ZylNumExprArg arg : mixing mismatch Environments");
}

void checkPair(const ZylNumExprI* expr, const ZylNumExprI* arg, void (*raise)()) {
  if (zyl::detail::checked(expr)->getEnv() != zyl::detail::checked(arg)->getEnv()) raise();
}

// Takes a handle's own reference back while an operator runs, so that a node held by this handle
// alone counts as a temporary and is changed in place.
class HandleStepsBack {
 public:
  explicit HandleStepsBack(ZylNumExprI* held) noexcept : _held(held) { held->unhold(); }
  ~HandleStepsBack() {
    if (_held != nullptr) _held->hold();
  }
  HandleStepsBack(const HandleStepsBack&) = delete;
  HandleStepsBack& operator=(const HandleStepsBack&) = delete;

  template <class Impl>
  Impl* replacedBy(Impl* result) noexcept {
    _held = nullptr;
    result->hold();
    return result;
  }

 private:
  ZylNumExprI* _held;
};

// An operand that becomes part of a new node; a linear one is copied, or changed in place.
class KeptPart {
 public:
  explicit KeptPart(ZylNumExprI* operand) {
    if (zyl::detail::classOf(operand) == NodeClass::Other) _kept.emplace(operand);
  }

 private:
  std::optional<zyl::detail::KeptOperand> _kept;
};

template <class Impl, class Operation>
Impl* rewritten(Impl* held, Operation operation) {
  HandleStepsBack handle(held);
  return handle.replacedBy(operation(held));
}

// The node to run a numeric operator on. An integer sum is replaced first, as a step of its own:
// the operator would end it before it can fail.
ZylNumExprI* numericSum(ZylNumExprI* held) {
  if (zyl::detail::classOf(zyl::detail::checked(held)) != NodeClass::IntLinear) return held;
  HandleStepsBack handle(held);
  return handle.replacedBy(held->toNumLinTermI());
}

}  // namespace

ZylNumExpr::ZylNumExpr(const ZylNumExprArg& arg) : ZylNumExprArg(arg) {
  zyl::detail::holdExpr(getImpl());
}

ZylNumExpr::ZylNumExpr(const ZylNumLinExprTerm& term) : ZylNumExprArg(term) { getImpl()->hold(); }
ZylNumExpr::ZylNumExpr(const ZylIntLinExprTerm& term) : ZylNumExprArg(term) { getImpl()->hold(); }

ZylNumExpr::ZylNumExpr(const ZylEnv& env, double constant)
    : ZylNumExprArg(new (zyl::detail::checked(env)) ZylNumLinTermI(env.getImpl(), constant)) {
  getImpl()->hold();
}

ZylNumExpr& ZylNumExpr::operator+=(double constant) {
  ZylNumExprI* held = numericSum(getImpl());
  _impl = held;
  _impl = rewritten(held, [constant](ZylNumExprI* expr) -> ZylNumExprI* {
    return zyl::detail::addNumConstant(expr, constant);
  });
  return *this;
}

ZylNumExpr& ZylNumExpr::operator-=(double constant) { return *this += -constant; }

ZylNumExpr& ZylNumExpr::operator*=(double factor) {
  ZylNumExprI* held = numericSum(getImpl());
  _impl = held;
  _impl =
      rewritten(held, [factor](ZylNumExprI* expr) { return zyl::detail::scaleNum(expr, factor); });
  return *this;
}

ZylNumExpr& ZylNumExpr::operator/=(double divisor) {
  ZylNumExprI* held = numericSum(getImpl());
  _impl = held;
  _impl = rewritten(held,
                    [divisor](ZylNumExprI* expr) { return zyl::detail::divideNum(expr, divisor); });
  return *this;
}

ZylNumExpr& ZylNumExpr::operator+=(const ZylNumExprArg& arg) {
  checkPair(getImpl(), arg.getImpl(), zyl::detail::raiseNumExprAddMismatch);
  // An expression added to itself: the argument must not be taken for a temporary.
  return add(arg.getImpl() == getImpl() ? arg.getImpl()->copy() : arg.getImpl());
}

// The argument is negated while this handle still holds its node: it may be that node.
ZylNumExpr& ZylNumExpr::operator-=(const ZylNumExprArg& arg) {
  checkPair(getImpl(), arg.getImpl(), raiseSubtract);
  ZylNumExprI* expr = arg.getImpl();
  const KeptPart kept(expr);
  Unfinished negative(zyl::detail::scaleNum(expr, -1.0), expr);
  add(negative.get());
  // The sum has it, or has taken its terms.
  static_cast<void>(negative.finish());
  return *this;
}

ZylNumExpr& ZylNumExpr::add(ZylNumExprI* addend) {
  ZylNumExprI* held = numericSum(getImpl());
  _impl = held;
  _impl = rewritten(held, [addend](ZylNumExprI* expr) -> ZylNumExprI* {
    return zyl::detail::addNum(expr, addend);
  });
  return *this;
}

ZylNumExpr ZylNumExpr::getClone(const ZylEnv& env) const { return ZylNumExprArg::getClone(env); }

void ZylNumExpr::end() {
  checked("Using empty Handle");
  ZylNumExprI* expr = getImpl();
  _impl = nullptr;
  expr->getEnv()->release(expr);
}

ZylIntExpr::ZylIntExpr(const ZylIntExprArg& arg) : ZylIntExprArg(arg) {
  zyl::detail::holdExpr(getImpl());
}

ZylIntExpr::ZylIntExpr(const ZylIntLinExprTerm& term) : ZylIntExprArg(term) { getImpl()->hold(); }

ZylIntExpr::ZylIntExpr(const ZylEnv& env, long constant)
    : ZylIntExprArg(new (zyl::detail::checked(env)) ZylIntLinTermI(env.getImpl(), constant)) {
  getImpl()->hold();
}

ZylIntExpr& ZylIntExpr::operator+=(long constant) {
  _impl = rewritten(zyl::detail::checked(getImpl()), [constant](ZylIntExprI* expr) -> ZylIntExprI* {
    return zyl::detail::addIntConstant(expr, constant);
  });
  return *this;
}

ZylIntExpr& ZylIntExpr::operator-=(long constant) {
  return *this += zyl::detail::negated(constant);
}

ZylIntExpr& ZylIntExpr::operator*=(long factor) {
  _impl = rewritten(zyl::detail::checked(getImpl()),
                    [factor](ZylIntExprI* expr) { return zyl::detail::scaleInt(expr, factor); });
  return *this;
}

ZylIntExpr& ZylIntExpr::operator+=(const ZylIntExprArg& arg) {
  checkPair(getImpl(), arg.getImpl(), zyl::detail::raiseNumExprAddMismatch);
  ZylIntExprI* addend = arg.getImpl() == getImpl() ? arg.getImpl()->intCopy() : arg.getImpl();
  _impl = rewritten(getImpl(), [addend](ZylIntExprI* expr) -> ZylIntExprI* {
    return zyl::detail::addInt(expr, addend);
  });
  return *this;
}

ZylIntExpr& ZylIntExpr::operator-=(const ZylIntExprArg& arg) {
  checkPair(getImpl(), arg.getImpl(), raiseSubtract);
  ZylIntExprI* expr = arg.getImpl();
  const KeptPart kept(expr);
  Unfinished negative(zyl::detail::scaleInt(expr, -1), expr);
  _impl = rewritten(getImpl(), [&negative](ZylIntExprI* held) -> ZylIntExprI* {
    return zyl::detail::addInt(held, negative.get());
  });
  static_cast<void>(negative.finish());
  return *this;
}

ZylIntExpr ZylIntExpr::getClone(const ZylEnv& env) const { return ZylIntExprArg::getClone(env); }

void ZylIntExpr::end() {
  checked("Using empty Handle");
  ZylNumExprI* expr = getImpl();
  _impl = nullptr;
  expr->getEnv()->release(expr);
}
