// A variable over a constraint, on whose life it depends.

#include "vorlane/constraint/indicator_variable.h"

#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylConstraintIndVarI, ZylNumVarI)

ZylConstraintIndVarI::ZylConstraintIndVarI(ZylEnvI* env, ZylConstraintI* constraint)
    : ZylNumVarI(env, 0.0, 1.0, zyl::Int), _constraint(constraint) {}

ZylExtractableI* ZylConstraintIndVarI::makeClone(ZylEnvI* env) const {
  auto* constraint = static_cast<ZylConstraintI*>(env->getClone(_constraint));
  return new (env) ZylConstraintIndVarI(env, constraint);
}

void ZylConstraintIndVarI::atRemove(ZylExtractableI* removed, void* extra) {
  // Other variables depend on nothing. NOLINTNEXTLINE(bugprone-parent-virtual-call)
  ZylExtractableI::atRemove(removed, extra);
}

void ZylConstraintIndVarI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _constraint);
  visitor->endVisit(this);
}

void ZylConstraintIndVarI::display(std::ostream& stream) const { _constraint->display(stream); }

ZylNumVar::ZylNumVar(const ZylConstraint& constraint) {
  if (constraint.getImpl() == nullptr) ZylRaiseEmptyHandle();
  ZylEnvI* env = constraint.getImpl()->getEnv();
  _impl = new (env) ZylConstraintIndVarI(env, constraint.getImpl());
}
