#include "vorlane/constraint/for_all_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylSetForAllRangeBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetForAllRangeLB, ZylChange)
ZYL_CHANGE_DEF(ZylSetForAllRangeUB, ZylChange)
ZYL_CHANGE_DEF(ZylSetForAllRangeLinearCoef, ZylChange)
ZYL_CHANGE_DEF(ZylSetForAllRangeLinearCoefs, ZylChange)
