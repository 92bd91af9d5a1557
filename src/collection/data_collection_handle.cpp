#include <ostream>

#include "collection/shown_name.h"
#include "env/property_check.h"

using zyl::detail::checkedProperty;
using zyl::detail::checkedSet;
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

const char* checkedName(const char* name) {
  return zyl::detail::checkedName(name, "ZylDataCollection: Using empty string");
}
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
const char* ZylDataCollection::getName() const { return checked(EmptyText)->getName(); }
void ZylDataCollection::setName(const char* name) const { checked(EmptyText)->setName(name); }
void* ZylDataCollection::getObject() const { return checked(EmptyText)->getObject(); }
void ZylDataCollection::setObject(void* object) const { checked(EmptyText)->setObject(object); }
ZylNamedPropertySet ZylDataCollection::getProperties() const {
  return ZylNamedPropertySet(checked(EmptyText)->getProperties());
}
void ZylDataCollection::setProperties(ZylNamedPropertySet properties) const {
  checked(EmptyText)->setProperties(checkedSet(properties));
}
void ZylDataCollection::removeAllProperties() const { checked(EmptyText)->removeAllProperties(); }
void ZylDataCollection::addProperty(ZylNamedProperty property) const {
  checked(EmptyText)->addProperty(checkedProperty(property));
}
void ZylDataCollection::addClonedProperty(ZylNamedProperty property) const {
  checked(EmptyText)->addClonedProperty(checkedProperty(property));
}
void ZylDataCollection::addProperties(ZylNamedPropertySet properties) const {
  checked(EmptyText)->addProperties(checkedSet(properties));
}
bool ZylDataCollection::hasProperty(const char* name) const {
  return checked(EmptyText)->hasProperty(checkedName(name));
}
ZylNamedProperty ZylDataCollection::getProperty(const char* name) const {
  return ZylNamedProperty(checked(EmptyText)->getProperty(checkedName(name)));
}
const char* ZylDataCollection::getStringProperty(const char* name) const {
  return checked(EmptyText)->getStringProperty(checkedName(name));
}
void* ZylDataCollection::getAnyProperty(const char* name) const {
  return checked(EmptyText)->getAnyProperty(checkedName(name));
}
double ZylDataCollection::getNumProperty(const char* name) const {
  return checked(EmptyText)->getNumProperty(checkedName(name));
}
long ZylDataCollection::getIntProperty(const char* name) const {
  return checked(EmptyText)->getIntProperty(checkedName(name));
}
void ZylDataCollection::setStringProperty(const char* name, const char* value) const {
  checked(EmptyText)->setStringProperty(checkedName(name), value);
}
void ZylDataCollection::setAnyProperty(const char* name, void* value) const {
  checked(EmptyText)->setAnyProperty(checkedName(name), value);
}
void ZylDataCollection::setNumProperty(const char* name, double value) const {
  checked(EmptyText)->setNumProperty(checkedName(name), value);
}
void ZylDataCollection::setIntProperty(const char* name, long value) const {
  checked(EmptyText)->setIntProperty(checkedName(name), value);
}
void ZylDataCollection::removeProperty(const char* name) const {
  checked(EmptyText)->removeProperty(checkedName(name));
}

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
