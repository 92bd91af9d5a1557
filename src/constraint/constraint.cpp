// What all constraints share: no counting, hooks for joining and leaving, constant truths.

#include "vorlane/constraint/constraint.h"

#include <ostream>

#include "common/handle_check.h"
#include "vorlane/model/algorithm_handle.h"

ZYL_EXTRACTABLE_DEF(ZylConstraintI, ZylIntExprI)
ZYL_RECORD_DEF(ZylConstConstraintI, ZylConstraintI)

void (*ZylConstraintI::_addToCP)(ZylAlgorithm, const ZylConstraintI*, void*) = nullptr;
void (*ZylConstraintI::_removeFromCP)(ZylAlgorithm, const ZylConstraintI*, void*) = nullptr;

bool ZylConstraintI::isRefCountedExpr() const { return false; }
// Not counted, so nothing outlives its end. NOLINTNEXTLINE(bugprone-parent-virtual-call)
void ZylConstraintI::end() { ZylExtractableI::end(); }
void ZylConstraintI::release() {}
ZylConstraintI* ZylConstraintI::getInnerConstraint() { return this; }

void ZylConstraintI::whenAddedToCP(ZylAlgorithm algorithm, void* handle) const {
  if (_addToCP == nullptr) zyl::detail::raiseExtractFailure();
  _addToCP(algorithm, this, handle);
}

void ZylConstraintI::whenRemovedFromCP(ZylAlgorithm algorithm, void* handle) const {
  if (_removeFromCP == nullptr) zyl::detail::raiseRemoveFailure();
  _removeFromCP(algorithm, this, handle);
}

ZylConstraint ZylConstraint::getClone(const ZylEnv& env) const {
  using zyl::detail::emptyHandle;
  return ZylConstraint(zyl::detail::cloneIn(env, *this, emptyHandle("Using empty Handle")));
}

bool ZylExtractable::isConstraint() const {
  return checked()->isType(ZylConstraintI::GetTypeInfo());
}
ZylConstraint ZylExtractable::asConstraint() const {
  return ZylConstraint(zyl::as<ZylConstraintI>(checked()));
}

void ZylConstConstraintI::display(std::ostream& stream) const {
  stream << (isTrue() ? "TrueConstraint " : "FalseConstraint ");
}

double ZylConstConstraintI::eval(const ZylAlgorithm) const { return isTrue() ? 1.0 : 0.0; }
bool ZylConstConstraintI::isTrue() const { return _isTrue != 0; }
