#include "vorlane/expr/variable_change.h"

#include "vorlane/expr/conversion.h"
#include "vorlane/model/algorithm_handle.h"

ZYL_CHANGE_DEF(ZylSetNumVarBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetNumVarPossibleValues, ZylChange)
ZYL_CHANGE_DEF(ZylSetNumVarArrayBounds, ZylChange)
ZYL_CHANGE_DEF(ZylSetSemiContBound, ZylChange)
ZYL_CHANGE_DEF(ZylConversionRemoveVar, ZylChange)
ZYL_TYPE_DEF(ZylAddNumVar, ZylAddExtractable)

ZYL_CHANGE_VISITS_NOTHING(ZylSetNumVarBounds)
ZYL_CHANGE_VISITS_NOTHING(ZylSetNumVarPossibleValues)
ZYL_CHANGE_VISITS_NOTHING(ZylSetNumVarArrayBounds)
ZYL_CHANGE_VISITS_NOTHING(ZylSetSemiContBound)

ZylExtractableI* ZylConversionRemoveVar::getChangedExtractable() const { return _variable; }

void ZylConversionRemoveVar::visitChange(ZylEnvI*, ZylExtractableI*,
                                         ZylChangeVisitor* visitor) const {
  visitor->removeSubExtractable(_conversion, _variable);
}

ZylNumVarI* ZylAddNumVar::getVarI() const noexcept {
  return const_cast<ZylNumVarI*>(static_cast<const ZylNumVarI*>(_obj));  // NOLINT: handed out
}
