#include "vorlane/constraint/range_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylSetRangeBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeArrayBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeCoef, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeCoefs, ZylChange)
ZYL_CHANGE_DEF(ZylSetRangeExpr, ZylChange)
ZYL_CHANGE_DEF(ZylAddValueToRange, ZylAddNumVar)

void ZylAddValueToRange::apply() const { getRange().getImpl()->addVar(getVarI(), getValue()); }

ZylAddValueToRange ZylRange::operator()(double value) const {
  return ZylAddValueToRange(checkedRange(), value);
}
