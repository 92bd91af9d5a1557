#include "vorlane/expr/special_variable.h"

#include <ostream>

#include "expr/list_display.h"
#include "vorlane/algorithm/algorithm.h"
#include "vorlane/constraint/constraint.h"
#include "vorlane/expr/variable_change.h"
#include "vorlane/model/visitor.h"

ZYL_TYPE_DEF(ZylSemiContVarI, ZylNumVarI)
ZYL_CP_HOOKS_DEF(ZylSemiContVarI)
ZYL_TYPE_DEF(ZylConstraintIndVarI, ZylNumVarI)
ZYL_CP_HOOKS_DEF(ZylConstraintIndVarI)

ZylSemiContVarI::ZylSemiContVarI(ZylEnvI* env, double threshold, double upper, Type type,
                                 const char* name)
    : ZylNumVarI(env, 0.0, upper, type, name), _threshold(threshold) {}

ZylSemiContVarI::ZylSemiContVarI(ZylEnvI* env, double threshold)
    : ZylNumVarI(env), _threshold(threshold) {}

ZylExtractableI* ZylSemiContVarI::makeClone(ZylEnvI* env) const {
  return new (env) ZylSemiContVarI(env, _threshold);
}

void ZylSemiContVarI::display(std::ostream& stream) const {
  zyl::detail::displayHead(stream, "ZylSemiContI", this);
  ZylNumVarI::display(stream);
  stream << "  _threshold " << _threshold << std::endl;
}

void ZylSemiContVarI::setBd(double threshold) {
  if (threshold == _threshold) return;
  const double before = _threshold;
  _threshold = threshold;
  notify(ZylSetSemiContBound(this, before, threshold));
}

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
