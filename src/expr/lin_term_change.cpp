#include "vorlane/expr/lin_term_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylNumLinTermAddVar, ZylChange)
ZYL_CHANGE_DEF(ZylNumLinTermRemoveVar, ZylChange)
ZYL_CHANGE_DEF(ZylIntLinTermRemoveVar, ZylChange)
