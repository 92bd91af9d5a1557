#include "vorlane/constraint/range_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylSetRangeBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeArrayBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeCoef, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeCoefs, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeExpr, ZylChange)
ZYL_CHANGE_DEF(ZylAddValueToRange, ZylAddNumVar)

ZYL_CHANGE_VISITS_NOTHING(ZylSetRangeBounds)
ZYL_CHANGE_VISITS_NOTHING(ZylSetRangeArrayBounds)
ZYL_CHANGE_VISITS_NOTHING(ZylSetRangeCoef)
ZYL_CHANGE_VISITS_NOTHING(ZylSetRangeCoefs)

void ZylSetRangeExpr::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  visitor->removeSubExtractable(_range, _oldExpr);
  visitor->addSubExtractable(_range, _newExpr);
}

void ZylAddValueToRange::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const {
  visitor->addSubExtractable(_range, getVarI());
}

ZylAddExtractable* ZylAddValueToRange::getCopy(ZylEnvI* env) const {
  return ::new (env->alloc(sizeof(ZylAddValueToRange))) ZylAddValueToRange(*this);
}

void ZylAddValueToRange::destroy(ZylEnvI* env) {
  this->~ZylAddValueToRange();
  env->free(this, sizeof(ZylAddValueToRange));
}

void ZylAddValueToRange::apply() const { _range->addVar(getVarI(), _value); }

ZylAddValueToRange ZylRange::operator()(double value) const {
  return ZylAddValueToRange(checkedRange(), value);
}
