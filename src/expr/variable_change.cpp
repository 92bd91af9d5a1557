#include "vorlane/expr/variable_change.h"

#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylSetNumVarBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetNumVarPossibleValues, ZylChange)
ZYL_CHANGE_DEF(ZylSetNumVarArrayBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetSemiContBound, ZylChange)
ZYL_TYPE_DEF(ZylAddNumVar, ZylAddExtractable)

ZylNumVarI* ZylAddNumVar::getVarI() const noexcept {
  return const_cast<ZylNumVarI*>(static_cast<const ZylNumVarI*>(_obj));  // NOLINT: handed out
}
