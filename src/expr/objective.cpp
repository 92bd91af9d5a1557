// Objectives of one expression or several; edits make the sum the objective's own first.

#include "vorlane/expr/objective.h"

#include <ostream>

#include "common/handle_check.h"
#include "common/own_linear.h"
#include "vorlane/expr/objective_change.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylObjectiveI, ZylExtractableI)

void (*ZylObjectiveI::_addToCP)(ZylAlgorithm, const ZylObjectiveI*, void*) = nullptr;
void (*ZylObjectiveI::_removeFromCP)(ZylAlgorithm, const ZylObjectiveI*, void*) = nullptr;

ZylNotAllowedWithMultiCriterionException::ZylNotAllowedWithMultiCriterionException(
    const char* operation)
    : ZylException(operation) {}

void ZylNotAllowedWithMultiCriterionException::print(std::ostream& stream) const {
  stream << getMessage() << " - not allowed with multi-criterion models";
}

ZylObjectiveI::ZylObjectiveI(ZylEnvI* env, ZylNumExprI* expr, Sense sense, const char* name)
    : ZylExtractableI(env, name), _sense(sense), _expr(expr->toNumLinTermI()),
      _multiCriterion(nullptr) {
  _expr->hold();
}

ZylObjectiveI::ZylObjectiveI(ZylEnvI* env, double constant, Sense sense, const char* name)
    : ZylExtractableI(env, name), _sense(sense), _expr(new (env) ZylNumLinTermI(env, constant)),
      _multiCriterion(nullptr) {
  _expr->hold();
}

ZylObjectiveI::ZylObjectiveI(ZylEnvI* env, const ZylMultiCriterionExprI* criteria, Sense sense,
                             const char* name)
    : ZylExtractableI(env, name), _sense(sense), _expr(nullptr),
      _multiCriterion(criteria->duplicate(env)) {}

ZylObjectiveI::~ZylObjectiveI() {
  if (_expr != nullptr) _env->release(_expr);
  delete _multiCriterion;
}

ZylExtractableI* ZylObjectiveI::makeClone(ZylEnvI* env) const {
  if (_multiCriterion == nullptr) {
    return new (env) ZylObjectiveI(env, static_cast<ZylNumExprI*>(env->getClone(_expr)), _sense);
  }
  struct Criteria {
    ZylMultiCriterionExprI* clone;
    ~Criteria() { delete clone; }
  } criteria{_multiCriterion->makeClone(env)};
  return new (env) ZylObjectiveI(env, criteria.clone, _sense);
}

void ZylObjectiveI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  if (_expr != nullptr) visitor->visitChildren(this, _expr);
  if (_multiCriterion != nullptr) visitor->visitChildren(this, _multiCriterion->getExprs());
  visitor->endVisit(this);
}

void ZylObjectiveI::display(std::ostream& stream) const {
  if (getName() != nullptr) {
    stream << getName();
  } else {
    stream << "obj" << getId();
  }
  stream << " = (";
  if (_expr != nullptr) {
    _expr->display(stream);
  } else {
    _multiCriterion->display(stream);
  }
  stream << (_sense != zyl::Maximize ? ", ZylObjective, Minimize);" : ", ZylObjective, Maximize);")
         << std::endl;
}

void ZylObjectiveI::whenAddedToCP(ZylAlgorithm algorithm, void* handle) const {
  if (_addToCP == nullptr) zyl::detail::raiseExtractFailure();
  _addToCP(algorithm, this, handle);
}

void ZylObjectiveI::whenRemovedFromCP(ZylAlgorithm algorithm, void* handle) const {
  if (_removeFromCP == nullptr) zyl::detail::raiseRemoveFailure();
  _removeFromCP(algorithm, this, handle);
}

void ZylObjectiveI::requireSingle(const char* operation) const {
  if (_multiCriterion != nullptr) throw ZylNotAllowedWithMultiCriterionException(operation);
}

void ZylObjectiveI::setSense(Sense sense) {
  _sense = sense;
  notify(ZylSetObjSense(this, sense));
}

ZylNumExprI* ZylObjectiveI::getExpr() const {
  requireSingle("ZylObjective::getExpr");
  return _expr;
}

void ZylObjectiveI::setExpr(const ZylNumExprArg& expr) {
  requireSingle("ZylObjective::setExpr");
  zyl::detail::replaceLinear<ZylSetObjExpr>(this, &_expr, expr.getImpl());
}

void ZylObjectiveI::setCoef(const ZylNumVar& variable, double value) {
  requireSingle("ZylObjective::setCoef");
  zyl::detail::prepareCoefs(&_expr);
  const double before = _expr->setCoef(variable, value);
  notify(ZylSetObjCoef(this, variable.getImpl(), value, before));
}

void ZylObjectiveI::setCoef(const ZylNumVarArray& variables, const ZylNumArray& values) {
  requireSingle("ZylObjective::setCoef");
  if (variables.getSize() == 0) return;
  zyl::detail::prepareCoefs(&_expr);
  const zyl::detail::ScopedNumArray before(_env, variables.getSize());
  _expr->setCoef(variables, values, before);
  notify(ZylSetObjCoefs(this, variables, values, before));
}

void ZylObjectiveI::setConst(double constant) {
  if (_multiCriterion != nullptr && constant == 0.0) return;
  requireSingle("ZylObjective::setConst");
  _expr = zyl::detail::ownLinear(_expr);
  _expr->setConstant(constant);
  notify(ZylSetObjConst(this, constant));
}

void ZylObjectiveI::addVar(ZylNumVarI* variable, double value) {
  requireSingle("ZylObjective::addVar");
  zyl::detail::addNewVariable(&_expr, variable, value);
}

long ZylObjectiveI::getNumCriteria() const {
  return _multiCriterion == nullptr ? 1 : _multiCriterion->getExprs().getSize();
}

ZylNumExprI* ZylObjectiveI::getCriterion(long i) const {
  if (i < 0 || i >= getNumCriteria()) {
    ZylRaiseWrongUsage("ZylObjectiveI: Criterion index out of range");
  }
  if (_multiCriterion == nullptr) return _expr;
  return _multiCriterion->getExprs()[i].getImpl();
}

void ZylObjectiveI::normalize() {
  if (_expr != nullptr) _expr->normalize();
}

// --- handle --------------------------------------------------------------------------------------

namespace {

using zyl::detail::argument;
using zyl::detail::checked;

constexpr auto Empty = zyl::detail::wrongUsage("Using empty handle");
constexpr const char* Mixing = "mixing mismatch Environments";

ZylEnvI* checkedEnv(const ZylEnv& env) { return checked(env, Empty); }

ZylNumExprI* checkedExpr(const ZylEnv& env, const ZylNumExprArg& expr) {
  zyl::detail::require(env.getImpl(), Mixing, argument(expr, Empty));
  return expr.getImpl();
}

ZylObjective make(const ZylEnv& env, const ZylMultiCriterionExpr& criteria,
                  ZylObjective::Sense sense, const char* name) {
  checkedEnv(env);
  static_cast<void>(checked(criteria, Empty));
  if (criteria.getNumCriteria() == 0) ZylRaiseWrongUsage("Array of criteria has size 0");
  return ZylObjective(env, criteria, sense, name);
}

}  // namespace

ZylObjective::ZylObjective(const ZylEnv& env, double constant, Sense sense, const char* name) {
  _impl = new (checkedEnv(env)) ZylObjectiveI(env.getImpl(), constant, sense, name);
}

ZylObjective::ZylObjective(const ZylEnv& env, const ZylNumExprArg& expr, Sense sense,
                           const char* name) {
  _impl = new (checkedEnv(env)) ZylObjectiveI(env.getImpl(), checkedExpr(env, expr), sense, name);
}

ZylObjective::ZylObjective(const ZylEnv& env, const ZylMultiCriterionExpr& criteria, Sense sense,
                           const char* name) {
  if (zyl::detail::checked(criteria, Empty)->getEnv() != checkedEnv(env))
    ZylRaiseWrongUsage(Mixing);
  _impl = new (env.getImpl()) ZylObjectiveI(env.getImpl(), criteria.getImpl(), sense, name);
}

void ZylObjective::setExpr(const ZylNumExprArg& expr) const {
  ZylObjectiveI* objective = checkedObjective();
  checkedExpr(getEnv(), expr);
  objective->setExpr(expr);
}

void ZylObjective::setLinearCoef(const ZylNumVar& variable, double value) const {
  ZylObjectiveI* objective = checkedObjective();
  zyl::detail::requireHandle(variable);
  objective->setCoef(variable, value);
}

void ZylObjective::setLinearCoefs(const ZylNumVarArray& variables,
                                  const ZylNumArray& values) const {
  ZylObjectiveI* objective = checkedObjective();
  zyl::detail::requireHandles(variables, values);
  objective->setCoef(variables, values);
}

double ZylObjective::getConst() const {
  const ZylObjectiveI* objective = checkedObjective();
  if (objective->isMultiCriterion()) return 0.0;
  ZylTestIsLinear(objective->getLinear());
  return objective->getLinear()->getNumConstant();
}

ZylExpr::LinearIterator ZylObjective::getLinearIterator() const {
  checkedObjective()->getExpr();
  return ZylExpr::LinearIterator(getImpl()->getLinear()->getTermHead());
}

ZylObjective ZylObjective::getClone(const ZylEnv& env) const {
  return ZylObjective(static_cast<ZylObjectiveI*>(checkedEnv(env)->getClone(checkedObjective())));
}

bool ZylExtractable::isObjective() const { return checked()->isType(ZylObjectiveI::GetTypeInfo()); }
ZylObjective ZylExtractable::asObjective() const {
  return ZylObjective(zyl::as<ZylObjectiveI>(checked()));
}

ZylObjective ZylMinimize(const ZylEnv& env, const ZylNumExprArg& expr, const char* name) {
  return ZylObjective(env, expr, ZylObjective::Minimize, name);
}
ZylObjective ZylMaximize(const ZylEnv& env, const ZylNumExprArg& expr, const char* name) {
  return ZylObjective(env, expr, ZylObjective::Maximize, name);
}
ZylObjective ZylMinimize(const ZylEnv& env, double constant, const char* name) {
  return ZylObjective(env, constant, ZylObjective::Minimize, name);
}
ZylObjective ZylMaximize(const ZylEnv& env, double constant, const char* name) {
  return ZylObjective(env, constant, ZylObjective::Maximize, name);
}
ZylObjective ZylMinimize(const ZylEnv& env, const ZylMultiCriterionExpr& criteria,
                         const char* name) {
  return make(env, criteria, ZylObjective::Minimize, name);
}
ZylObjective ZylMaximize(const ZylEnv& env, const ZylMultiCriterionExpr& criteria,
                         const char* name) {
  return make(env, criteria, ZylObjective::Maximize, name);
}
