// The library's own evaluator: fixed variables, linear sums over them, minimum and maximum.

#include "vorlane/algorithm/model_evaluator.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "common/part.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/nodes.h"

ZYL_TYPE_DEF(ZylModelEvaluatorSolutionGetterBaseI, ZylRttiEnvObjectI)

ZylModelEvaluatorI::ZylModelEvaluatorI(ZylEnvI* env)
    : ZylAlgorithmI(env), _algorithm(nullptr), _solutionGetter(nullptr) {}

ZylModelEvaluatorI::ZylModelEvaluatorI(ZylAlgorithmI* algorithm)
    : ZylModelEvaluatorI(algorithm->getEnvI()) {
  setAlgorithm(algorithm);
}

ZylModelEvaluatorI::~ZylModelEvaluatorI() {
  // A client, or the environment's end, may come to the evaluator before it comes to its owner.
  if (_algorithm != nullptr && _algorithm->_modelEvaluator == this) _algorithm->unlinkEvaluator();
  setAlgorithm(nullptr);
}

void ZylModelEvaluatorI::setAlgorithm(ZylAlgorithmI* algorithm) noexcept {
  if (_algorithm == algorithm) return;
  if (_algorithm != nullptr) {
    ZylModelEvaluatorI** link = &_algorithm->_evaluators;
    while (*link != this) link = &(*link)->_nextEvaluator;
    *link = _nextEvaluator;
  }
  _algorithm = algorithm;
  if (algorithm != nullptr) _nextEvaluator = std::exchange(algorithm->_evaluators, this);
}

bool ZylModelEvaluatorI::doExtract(const ZylExtractableI*, void**) { return true; }
bool ZylModelEvaluatorI::doRemove(const ZylExtractableI*, void*) { return true; }
bool ZylModelEvaluatorI::doApply(const ZylChange*, void**, const ZylExtractableI*) { return true; }

double ZylModelEvaluatorI::getObjValue() const { ZylRaiseWrongUsage("can not call evaluator"); }
double ZylModelEvaluatorI::getValue(const ZylNumVarI*) const {
  ZylRaiseWrongUsage("can not call evaluator");
}
double ZylModelEvaluatorI::getValue(const ZylObjectiveI*) const {
  ZylRaiseWrongUsage("can not call evaluator");
}

bool ZylModelEvaluatorI::isGround(const ZylExtractableI*) { return false; }
bool ZylModelEvaluatorI::isBound(const ZylExtractableI*) {
  ZylRaiseWrongUsage("can not call isBound");
}
bool ZylModelEvaluatorI::isDecisionExpr(const ZylExtractableI* extractable) {
  return extractable->isDecisionExpr();
}
bool ZylModelEvaluatorI::hasSubstitutionExpr(const ZylNumExprI*) const {
  ZylRaiseWrongUsage("can not call hasSubstitutionExpr");
}
ZylNumExprI* ZylModelEvaluatorI::getSubstitutionAsNumExpr(const ZylNumExprI*) const {
  ZylRaiseWrongUsage("can not call getSubstitutionAsNumExpr");
}
void ZylModelEvaluatorI::registerAll() {}

namespace {

double fixedValue(const ZylNumVarI* variable) {
  const double lower = variable->getLB();
  if (lower != variable->getUB()) ZylRaiseWrongUsage("can not call evaluator");
  return lower;
}

// Adds the terms to `sum`; a term of coefficient 0 needs no value.
template <class Value, class Node, class Add>
Value sumOfTerms(const Node* node, Value sum, Add add) {
  if (node->hasNonLinearPart()) ZylRaiseWrongUsage("can not call ZylModelEvaluatorI::evaluate");
  for (const ZylNumLinExprTermI* term = node->getTermHead(); term != nullptr; term = term->_next) {
    if (term->_coef == 0.0) continue;
    add(&sum, term->_coef, fixedValue(term->_var));
  }
  return sum;
}

// Any product of two integers fits, so that terms may leave 64 bits on the way to a sum that does
// not.
__extension__ using Wide = __int128;

[[noreturn]] void raiseOverflow() {
  throw ZylIntExpr::ZylOverflowOccurred("overflow occurred during the evaluation");
}

long integerOf(double value) {
  if (!ZylNumIsInteger(value)) ZylRaiseWrongUsage("can not call evaluator");
  if (value < -0x1p63 || value >= 0x1p63) raiseOverflow();
  return static_cast<long>(value);
}

void addProduct(Wide* sum, double coefficient, double value) {
  const Wide product = Wide{integerOf(coefficient)} * integerOf(value);
  if (__builtin_add_overflow(*sum, product, sum)) raiseOverflow();
}

}  // namespace

double ZylModelEvaluatorI::evaluate(ZylNumExprI* expr) {
  // Variables and every other integer expression go to the integer form, which is virtual.
  if (auto* integer = zyl::as<ZylIntExprI>(expr)) {
    if (const auto* variable = zyl::as<ZylNumVarI>(expr)) {
      if (!variable->isInteger()) return fixedValue(variable);
    }
    return static_cast<double>(evaluate(integer));
  }
  if (const auto* sum = zyl::as<ZylNumLinTermI>(expr)) {
    return sumOfTerms(sum, 0.0, [](double* s, double c, double v) { *s += c * v; }) +
           sum->getNumConstant();
  }
  if (const auto* node = zyl::as<ZylNumMinI>(expr)) {
    return std::min(evaluate(node->getLeft()), evaluate(node->getRight()));
  }
  if (const auto* node = zyl::as<ZylNumMaxI>(expr)) {
    return std::max(evaluate(node->getLeft()), evaluate(node->getRight()));
  }
  ZylRaiseWrongUsage("can not call ZylModelEvaluatorI::evaluate");
}

long ZylModelEvaluatorI::evaluate(ZylIntExprI* expr) {
  if (const auto* variable = zyl::as<ZylNumVarI>(expr)) return integerOf(fixedValue(variable));
  if (const auto* sum = zyl::as<ZylIntLinTermI>(expr)) {
    const Wide total = sumOfTerms(sum, Wide{sum->getConstant()}, addProduct);
    if (total != static_cast<long>(total)) raiseOverflow();
    return static_cast<long>(total);
  }
  if (const auto* node = zyl::as<ZylIntMinI>(expr)) {
    return std::min(evaluate(node->getLeft()), evaluate(node->getRight()));
  }
  if (const auto* node = zyl::as<ZylIntMaxI>(expr)) {
    return std::max(evaluate(node->getLeft()), evaluate(node->getRight()));
  }
  ZylRaiseWrongUsage("can not call ZylModelEvaluatorI::evaluate");
}

ZylNumExpr ZylModelEvaluatorI::evaluateToNumExpr(const ZylNumExprArg) {
  ZylRaiseWrongUsage("can not call evaluator");
}

void ZylModelEvaluatorI::setSolutionGetter(const ZylModelEvaluatorSolutionGetterBaseI* getter) {
  if (_solutionGetter != nullptr) {
    ZylRaiseWrongUsage("ZylModelEvaluatorI::setSolutionGetter() getter already set");
  }
  _solutionGetter = getter;
}

void ZylModelEvaluatorI::removeSolutionGetter(const ZylModelEvaluatorSolutionGetterBaseI* getter) {
  if (_solutionGetter != getter) {
    ZylRaiseWrongUsage("ZylModelEvaluatorI::removeSolutionGetter() getter mismatch");
  }
  _solutionGetter = nullptr;
}

// --- handle --------------------------------------------------------------------------------------

ZylModelEvaluator::Unbound::Unbound(const ZylExtractableI* expr) : _expr(expr) {}

void ZylModelEvaluator::Unbound::print(std::ostream& stream) const {
  stream << "Access unbound expression: ";
  _expr->display(stream);
}

ZylModelEvaluator::ZylModelEvaluator(const ZylEnv& env) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
  _impl = env.getImpl()->getModelEvaluator();
}

ZylModelEvaluatorI* ZylModelEvaluator::checked() const {
  if (_impl == nullptr) ZylRaiseEmptyHandle();
  return _impl;
}

double ZylModelEvaluator::evaluate(const ZylNumExprArg& expr) const {
  if (expr.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return checked()->evaluate(expr.getImpl());
}

long ZylModelEvaluator::evaluate(const ZylIntExprArg& expr) const {
  if (expr.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return checked()->evaluate(expr.getImpl());
}

ZylNumExpr ZylModelEvaluator::evaluateToNumExpr(const ZylNumExprArg& expr) const {
  return checked()->evaluateToNumExpr(expr);
}

ZylModelEvaluatorI* defaultModelEvaluator(ZylEnvI* env) {
  return zyl::detail::makePart<ZylModelEvaluatorI>(env);
}
