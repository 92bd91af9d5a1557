// The handle of collections of any kind.

#include <ostream>

#include "collection/shown_name.h"

using zyl::detail::shownName;

ZylDataCollection::ImmutableException::ImmutableException(const ZylDataCollectionI* collection)
    : ZylException("the Collection is referenced by another and is immutable"),
      _collection(collection) {}

void ZylDataCollection::ImmutableException::print(std::ostream& stream) const {
  // A name stands behind two blanks, the words for its absence behind one.
  stream << "the Collection " << (_collection->getName() != nullptr ? " " : "")
         << shownName(_collection) << " is referenced by another and is immutable";
}

namespace {
constexpr const char* EmptyText = "ZylDataCollection: Using empty handle";
}  // namespace

long ZylDataCollection::getDataType() const { return checked(EmptyText)->getDataType(); }
bool ZylDataCollection::isIntRange() const { return checked(EmptyText)->isIntRange(); }
bool ZylDataCollection::isNumRange() const { return checked(EmptyText)->isNumRange(); }
bool ZylDataCollection::isIntSet() const { return checked(EmptyText)->isIntSet(); }
bool ZylDataCollection::isNumSet() const { return checked(EmptyText)->isNumSet(); }
bool ZylDataCollection::isSymbolSet() const { return checked(EmptyText)->isSymbolSet(); }
bool ZylDataCollection::isAnySet() const { return checked(EmptyText)->isAnySet(); }
bool ZylDataCollection::isIntDataColumn() const { return checked(EmptyText)->isIntDataColumn(); }
bool ZylDataCollection::isNumDataColumn() const { return checked(EmptyText)->isNumDataColumn(); }
bool ZylDataCollection::isAnyDataColumn() const { return checked(EmptyText)->isAnyDataColumn(); }
bool ZylDataCollection::isTupleCollection() const {
  return checked(EmptyText)->isTupleCollection();
}
bool ZylDataCollection::isTupleSet() const { return checked(EmptyText)->isTupleSet(); }
bool ZylDataCollection::isTupleRefColumn() const { return checked(EmptyText)->isTupleRefColumn(); }
bool ZylDataCollection::isIntCollectionColumn() const {
  return checked(EmptyText)->isIntCollectionColumn();
}
bool ZylDataCollection::isNumCollectionColumn() const {
  return checked(EmptyText)->isNumCollectionColumn();
}
bool ZylDataCollection::isAnyCollectionColumn() const {
  return checked(EmptyText)->isAnyCollectionColumn();
}
bool ZylDataCollection::isIntCollection() const { return checked(EmptyText)->isIntCollection(); }
bool ZylDataCollection::isNumCollection() const { return checked(EmptyText)->isNumCollection(); }
bool ZylDataCollection::isAnyCollection() const { return checked(EmptyText)->isAnyCollection(); }
bool ZylDataCollection::isMapAsCollection() const {
  return checked(EmptyText)->isMapAsCollection();
}

void ZylDataCollection::display(std::ostream& stream) const { checked(EmptyText)->display(stream); }

#define ZYL_HANDLE_CLASS ZylDataCollection
#define ZYL_HANDLE_OWNER checked(EmptyText)
#define ZYL_HANDLE_NO_NAME "ZylDataCollection: Using empty string"
#include "common/property_operations.inc"

void ZylDataCollection::end() {
  delete _impl;
  _impl = nullptr;
}

void ZylDataCollection::sort(ZylIntArray array) { ZylDataCollectionI::sortAsc(array); }
void ZylDataCollection::sort(ZylIntArray array, long low, long high) {
  ZylDataCollectionI::sortAsc(array, low, high);
}
void ZylDataCollection::sort(ZylNumArray array) { ZylDataCollectionI::sortAsc(array); }
void ZylDataCollection::sort(ZylNumArray array, long low, long high) {
  ZylDataCollectionI::sortAsc(array, low, high);
}

std::ostream& operator<<(std::ostream& stream, const ZylDataCollection& collection) {
  collection.display(stream);
  return stream;
}
