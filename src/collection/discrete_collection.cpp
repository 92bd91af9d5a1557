// What collections that cannot do better answer, and the handle with type-less access.

#include "vorlane/collection/discrete_collection.h"

#include "collection/not_implemented.h"
#include "common/property_check.h"

ZYL_TYPE_DEF(ZylDiscreteDataCollectionI, ZylDataCollectionI)

bool ZylDiscreteDataCollectionI::isKvlRefCounted() const { return true; }

void ZylDiscreteDataCollectionI::processBeforeFill() {}
void ZylDiscreteDataCollectionI::processAfterFill(long) {}
ZylIntArray ZylDiscreteDataCollectionI::getOldIndexPositions() { return ZylIntArray(); }
void ZylDiscreteDataCollectionI::endOldIndexes() {}
void ZylDiscreteDataCollectionI::clearAllCaches() {}
void ZylDiscreteDataCollectionI::empty() {}
bool ZylDiscreteDataCollectionI::hasReference() const { return false; }

ZYL_NOT_IMPLEMENTED(ZylDataIterator*, ZylDiscreteDataCollectionI, iterator, ZylGenAlloc*,
                    "ZylGenAlloc*")
long ZylDiscreteDataCollectionI::getMapItemIndex(ZylObjectBase) const {
  throw ZylNotImplemented("not Implemented");
}
ZYL_NOT_IMPLEMENTED(long, ZylDiscreteDataCollectionI, getIndex, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(long, ZylDiscreteDataCollectionI, getIndex, double, "ZylNum")
ZYL_NOT_IMPLEMENTED(long, ZylDiscreteDataCollectionI, getIndex, void*, "ZylAny")
ZYL_NOT_IMPLEMENTED(long, ZylDiscreteDataCollectionI, getIndex, ZylSymbol, "ZylSymbol")
ZYL_NOT_IMPLEMENTED(long, ZylDiscreteDataCollectionI, getIntValue, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(double, ZylDiscreteDataCollectionI, getNumValue, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(void*, ZylDiscreteDataCollectionI, getAnyValue, long, "ZylInt")

bool ZylDiscreteDataCollectionI::supportDuplicates() const { return true; }
bool ZylDiscreteDataCollectionI::isSortedAsc() const { return false; }
bool ZylDiscreteDataCollectionI::isSortedDesc() const { return false; }
void ZylDiscreteDataCollectionI::sort(long) {}

long ZylDiscreteDataCollectionI::getSortSense() const {
  if (isSortedAsc()) return Ascending;
  return isSortedDesc() ? Descending : Unsorted;
}

// --- handle --------------------------------------------------------------------------------------

ZylDiscreteDataCollectionI* ZylDiscreteDataCollection::checkedDiscrete() const {
  return static_cast<ZylDiscreteDataCollectionI*>(
      checked("ZylDiscreteDataCollection: Using empty handle"));
}

long ZylDiscreteDataCollection::getSize() const { return checkedDiscrete()->getSize(); }
ZylObjectBase ZylDiscreteDataCollection::getMapItem(long index) const {
  return checkedDiscrete()->getMapItem(index);
}
long ZylDiscreteDataCollection::getIndex(long value) const {
  return checkedDiscrete()->getIndex(value);
}
long ZylDiscreteDataCollection::getIndex(double value) const {
  return checkedDiscrete()->getIndex(value);
}
long ZylDiscreteDataCollection::getIndex(void* value) const {
  return checkedDiscrete()->getIndex(value);
}
long ZylDiscreteDataCollection::getIndex(ZylSymbol value) const {
  return checkedDiscrete()->getIndex(value);
}
long ZylDiscreteDataCollection::getIndex(const char* text) const {
  const ZylDiscreteDataCollectionI* collection = checkedDiscrete();
  text = zyl::detail::checkedName(text, "ZylDataCollection: Using empty string");
  return collection->getIndex(ZylSymbol(collection->getEnv()->makeSymbol(text)));
}
bool ZylDiscreteDataCollection::isSorted() const { return checkedDiscrete()->isSortedAsc(); }
bool ZylDiscreteDataCollection::isReversed() const { return checkedDiscrete()->isSortedDesc(); }
