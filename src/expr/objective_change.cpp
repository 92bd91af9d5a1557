// What changes of objectives tell a visitor, and the column entry of an objective.

#include "vorlane/expr/objective_change.h"

#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/plug_in.h"

ZYL_CHANGE_DEF(ZylSetObjExpr, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjCoef, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjCoefs, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjConst, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjSense, ZylChange)
ZYL_CHANGE_DEF(ZylAddValueToObj, ZylAddNumVar)

// Only a deleter knows whether it counts the variable as a child of the objective itself.
void ZylSetObjCoef::visitChange(ZylEnvI* env, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  const ZylBaseDeleterI* deleter = env->getDeleter();
  ZylExtractableI* const variable = Var::argument();
  ZylExtractableI* const objective = Objective::argument();
  if (deleter == nullptr || !deleter->isChild(variable, objective)) return;
  if (getNewValue() == 0.0) {
    visitor->removeSubExtractable(objective, variable);
  } else {
    visitor->addSubExtractable(objective, variable);
  }
}

void ZylAddValueToObj::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  visitor->addSubExtractable(getVarI(), getVarI());
}

void ZylAddValueToObj::apply() const { getObjective().getImpl()->addVar(getVarI(), getValue()); }

ZylAddValueToObj ZylObjective::operator()(double value) const {
  return ZylAddValueToObj(checkedObjective(), value);
}
