// The base of all collections: to each kind test it answers no.

#include "vorlane/collection/data_collection.h"

ZYL_TYPE_DEF(ZylDataCollectionI, ZylKvlBaseObjectI)
ZYL_TYPE_DEF(ZylContinuousDataI, ZylDataCollectionI)

ZylDataCollectionI::ZylDataCollectionI(ZylEnvI* env) : ZylKvlBaseObjectI(env) {}

ZylDataCollectionI::~ZylDataCollectionI() {
  if (_extension != nullptr) zyl::detail::Extended::end(extensionAlloc(), &_extension);
}

ZylRttiEnvObjectI* ZylDataCollectionI::makeKvlClone(ZylEnvI* env) const { return makeClone(env); }

void ZylDataCollectionI::setLockable(long on) { _lockCount += on != 0 ? 1 : -1; }

bool ZylDataCollectionI::isIntRange() const { return false; }
bool ZylDataCollectionI::isNumRange() const { return false; }
bool ZylDataCollectionI::isIntSet() const { return false; }
bool ZylDataCollectionI::isNumSet() const { return false; }
bool ZylDataCollectionI::isSymbolSet() const { return false; }
bool ZylDataCollectionI::isAnySet() const { return false; }
bool ZylDataCollectionI::isIntDataColumn() const { return false; }
bool ZylDataCollectionI::isNumDataColumn() const { return false; }
bool ZylDataCollectionI::isAnyDataColumn() const { return false; }
bool ZylDataCollectionI::isTupleCollection() const { return false; }
bool ZylDataCollectionI::isTupleSet() const { return false; }
bool ZylDataCollectionI::isTupleRefColumn() const { return false; }
bool ZylDataCollectionI::isIntCollectionColumn() const { return false; }
bool ZylDataCollectionI::isNumCollectionColumn() const { return false; }
bool ZylDataCollectionI::isAnyCollectionColumn() const { return false; }
bool ZylDataCollectionI::isIntCollection() const { return false; }
bool ZylDataCollectionI::isNumCollection() const { return false; }
bool ZylDataCollectionI::isAnyCollection() const { return false; }
bool ZylDataCollectionI::isMapAsCollection() const { return false; }

void ZylDataCollectionI::testMutable() const {
  if (isImmutable()) throw ZylDataCollection::ImmutableException(this);
}
