#include "vorlane/model/model_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylAddOneToModel, ZylChange)
ZYL_CHANGE_DEF(ZylAddToModel, ZylChange)
ZYL_CHANGE_DEF(ZylRemoveFromModel, ZylChange)
