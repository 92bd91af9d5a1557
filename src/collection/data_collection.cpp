#include "vorlane/collection/data_collection.h"

#include <ostream>

ZYL_TYPE_DEF(ZylDataCollectionI, ZylKvlBaseObjectI)
ZYL_TYPE_DEF(ZylDiscreteDataCollectionI, ZylDataCollectionI)
ZYL_TYPE_DEF(ZylContinuousDataI, ZylDataCollectionI)
ZYL_TYPE_DEF(ZylIntCollectionI, ZylDiscreteDataCollectionI)
ZYL_TYPE_DEF(ZylIntAbstractSetI, ZylIntCollectionI)

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

bool ZylDiscreteDataCollectionI::isKvlRefCounted() const { return true; }
bool ZylIntCollectionI::isIntCollection() const { return true; }

// --- handle ---------------------------------------------------------------------------------------

ZylDataCollection::ImmutableException::ImmutableException(const ZylDataCollectionI* collection)
    : ZylException("the Collection is referenced by another and is immutable"),
      _collection(collection) {}

void ZylDataCollection::ImmutableException::print(std::ostream& stream) const {
  stream << "the Collection ";
  if (_collection->getName() != nullptr) {
    stream << " " << _collection->getName();
  } else {
    stream << "unamed collection";
  }
  stream << " is referenced by another and is immutable";
}

namespace {
constexpr const char* EmptyText = "ZylDataCollection: Using empty handle";
}

long ZylDataCollection::getDataType() const { return checked(EmptyText)->getDataType(); }
const char* ZylDataCollection::getName() const { return checked(EmptyText)->getName(); }
void ZylDataCollection::setName(const char* name) const { checked(EmptyText)->setName(name); }
void ZylDataCollection::display(std::ostream& stream) const { checked(EmptyText)->display(stream); }

void ZylDataCollection::end() {
  delete _impl;
  _impl = nullptr;
}

std::ostream& operator<<(std::ostream& stream, const ZylDataCollection& collection) {
  collection.display(stream);
  return stream;
}
