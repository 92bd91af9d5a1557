#include "vorlane/expr/objective_change.h"

#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/plug_in.h"

ZYL_CHANGE_DEF(ZylSetObjExpr, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjCoef, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjCoefs, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjConst, ZylChange)
ZYL_CHANGE_DEF(ZylSetObjSense, ZylChange)
ZYL_CHANGE_DEF(ZylAddValueToObj, ZylAddNumVar)

ZYL_CHANGE_VISITS_NOTHING(ZylSetObjCoefs)
ZYL_CHANGE_VISITS_NOTHING(ZylSetObjConst)
ZYL_CHANGE_VISITS_NOTHING(ZylSetObjSense)

void ZylSetObjExpr::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  visitor->removeSubExtractable(_objective, _oldExpr);
  visitor->addSubExtractable(_objective, _newExpr);
}

// Only a deleter knows whether it counts the variable as a child of the objective itself.
void ZylSetObjCoef::visitChange(ZylEnvI* env, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  const ZylBaseDeleterI* deleter = env->getDeleter();
  if (deleter == nullptr || !deleter->isChild(_variable, _objective)) return;
  if (_newValue == 0.0) {
    visitor->removeSubExtractable(_objective, _variable);
  } else {
    visitor->addSubExtractable(_objective, _variable);
  }
}

// The variable stands as both arguments.
void ZylAddValueToObj::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  visitor->addSubExtractable(getVarI(), getVarI());
}

ZylAddExtractable* ZylAddValueToObj::getCopy(ZylEnvI* env) const {
  return ::new (env->alloc(sizeof(ZylAddValueToObj))) ZylAddValueToObj(*this);
}

void ZylAddValueToObj::destroy(ZylEnvI* env) {
  this->~ZylAddValueToObj();
  env->free(this, sizeof(ZylAddValueToObj));
}

void ZylAddValueToObj::apply() const { _objective->addVar(getVarI(), _value); }

ZylAddValueToObj ZylObjective::operator()(double value) const {
  return ZylAddValueToObj(checkedObjective(), value);
}
