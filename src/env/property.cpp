// Properties and their sets: lookup by name, cloning, and refusal while one is in use.

#include "vorlane/env/property.h"

#include <cstring>
#include <ostream>

ZYL_TYPE_DEF(ZylNamedPropertyI, ZylRttiMemoryManagerObjectI)
ZYL_TYPE_DEF(ZylPreNamedPropertyI, ZylNamedPropertyI)
ZYL_TYPE_DEF(ZylNamedIntPropertyI, ZylPreNamedPropertyI)
ZYL_TYPE_DEF(ZylNamedNumPropertyI, ZylPreNamedPropertyI)
ZYL_TYPE_DEF(ZylNamedAnyPropertyI, ZylPreNamedPropertyI)
ZYL_TYPE_DEF(ZylNamedStringPropertyI, ZylPreNamedPropertyI)

ZylNamedPropertyI::~ZylNamedPropertyI() noexcept(false) {
  if (_useCount != 0) throw ZylWrongUsage("Dangerous deletion of named property");
}

namespace {
const char* shown(const char* text) { return text != nullptr ? text : ""; }
}  // namespace

void ZylNamedPropertyI::display(std::ostream& stream) const { stream << shown(getName()); }

ZylNamedPropertyI* ZylNamedPropertyI::makeClone(const ZylMemoryManager&) const {
  throw Exception("Cloning of ZylNamedProperty forbidden - makeClone(ZylEnv) has not been defined");
}

char* ZylNamedPropertyI::cloneString(const char* text) const {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(_manager->alloc(size));
  std::memcpy(copy, text, size);
  return copy;
}

void ZylNamedPropertyI::freeString(char* text) const {
  if (text != nullptr) _manager->free(text, std::strlen(text) + 1);
}

const char* ZylPreNamedPropertyI::getName() const { return _name; }

ZylNamedPropertyI* ZylPreNamedPropertyI::makeClone(const ZylMemoryManager& manager) const {
  return new (manager.getImpl()) ZylPreNamedPropertyI(manager.getImpl(), _name);
}

namespace {
template <class P>
void displayValue(std::ostream& stream, const P& property) {
  stream << shown(property.getName()) << "(" << property.getValue() << ")";
}
template <class P>
ZylNamedPropertyI* cloneOf(const P& property, const ZylMemoryManager& manager) {
  return new (manager.getImpl()) P(manager.getImpl(), property.getName(), property.getValue());
}
}  // namespace

void ZylNamedIntPropertyI::display(std::ostream& stream) const { displayValue(stream, *this); }
void ZylNamedNumPropertyI::display(std::ostream& stream) const { displayValue(stream, *this); }
void ZylNamedAnyPropertyI::display(std::ostream& stream) const { displayValue(stream, *this); }
void ZylNamedStringPropertyI::display(std::ostream& stream) const {
  stream << shown(getName()) << "(" << shown(_value) << ")";
}

ZylNamedPropertyI* ZylNamedIntPropertyI::makeClone(const ZylMemoryManager& manager) const {
  return cloneOf(*this, manager);
}
ZylNamedPropertyI* ZylNamedNumPropertyI::makeClone(const ZylMemoryManager& manager) const {
  return cloneOf(*this, manager);
}
ZylNamedPropertyI* ZylNamedAnyPropertyI::makeClone(const ZylMemoryManager& manager) const {
  return cloneOf(*this, manager);
}
ZylNamedPropertyI* ZylNamedStringPropertyI::makeClone(const ZylMemoryManager& manager) const {
  return cloneOf(*this, manager);
}

ZylNamedStringPropertyI::~ZylNamedStringPropertyI() noexcept(false) { freeString(_value); }

void ZylNamedStringPropertyI::setValue(const char* value) {
  char* copy = cloneString(value);
  freeString(_value);
  _value = copy;
}

// --- sets ----------------------------------------------------------------------------------------

ZylNamedPropertySetI::~ZylNamedPropertySetI() { removeAllProperties(); }

ZylNamedPropertySetI::PropertyList* ZylNamedPropertySetI::getElem(const char* name) const {
  if (name == nullptr) return nullptr;
  for (PropertyList* cell = _first; cell != nullptr; cell = cell->next) {
    const char* other = cell->property->getName();
    if (other == name || (other != nullptr && std::strcmp(other, name) == 0)) return cell;
  }
  return nullptr;
}

ZylNamedPropertySetI::PropertyList* ZylNamedPropertySetI::getElem(
    const ZylNamedPropertyI* property) const {
  for (PropertyList* cell = _first; cell != nullptr; cell = cell->next) {
    if (cell->property == property) return cell;
  }
  return nullptr;
}

ZylNamedPropertyI* ZylNamedPropertySetI::getProperty(const char* name) const {
  PropertyList* cell = getElem(name);
  if (cell == nullptr) throw ZylNamedPropertySet::NotPresent(name);
  return cell->property;
}

void ZylNamedPropertySetI::testAbsent(const char* name) const {
  if (getElem(name) != nullptr) throw ZylNamedPropertySet::AlreadyPresent(name);
}

void ZylNamedPropertySetI::addProperty(ZylNamedPropertyI* property) {
  if (property->getManager() != _manager) throw ZylEnvironmentMismatch();
  testAbsent(property->getName());
  fastAdd(property);
}

void ZylNamedPropertySetI::addClonedProperty(const ZylNamedPropertyI* property) {
  testAbsent(property->getName());
  insertClone(nullptr, property);
}

void ZylNamedPropertySetI::fastAdd(ZylNamedPropertyI* property) { insert(nullptr, property); }

ZylNamedPropertySetI::PropertyList* ZylNamedPropertySetI::insert(PropertyList* before,
                                                                 ZylNamedPropertyI* property) {
  auto* cell = static_cast<PropertyList*>(_manager->alloc(sizeof(PropertyList)));
  PropertyList*& link = before != nullptr ? before->next : _first;
  *cell = PropertyList{property, link, before};
  if (link != nullptr) link->prev = cell;
  link = cell;
  ++property->_useCount;
  return cell;
}

ZylNamedPropertySetI::PropertyList* ZylNamedPropertySetI::insertClone(
    PropertyList* before, const ZylNamedPropertyI* property) {
  ZylNamedPropertyI* clone = property->makeClone(getMemoryManager());
  try {
    return insert(before, clone);
  } catch (...) {
    delete clone;
    throw;
  }
}

void ZylNamedPropertySetI::removeProperty(const char* name) {
  PropertyList* cell = getElem(name);
  if (cell == nullptr) throw ZylNamedPropertySet::NotPresent(name);
  remove(cell);
}

void ZylNamedPropertySetI::removeProperty(const ZylNamedPropertyI* property) {
  PropertyList* cell = getElem(property);
  if (cell == nullptr) throw ZylNamedPropertySet::NotPresent(property);
  remove(cell);
}

void ZylNamedPropertySetI::remove(PropertyList* cell) {
  if (cell->prev != nullptr) {
    cell->prev->next = cell->next;
  } else {
    _first = cell->next;
  }
  if (cell->next != nullptr) cell->next->prev = cell->prev;
  ZylNamedPropertyI* property = cell->property;
  _manager->free(cell, sizeof(PropertyList));
  if (--property->_useCount == 0) delete property;
}

void ZylNamedPropertySetI::removeAllProperties() {
  while (_first != nullptr) remove(_first);
}

ZylNamedPropertySetI* ZylNamedPropertySetI::makeClone(const ZylMemoryManager& manager) const {
  auto* clone = new (manager.getImpl()) ZylNamedPropertySetI(manager.getImpl());
  try {
    PropertyList* last = nullptr;
    for (const PropertyList* cell = _first; cell != nullptr; cell = cell->next) {
      last = clone->insertClone(last, cell->property);
    }
  } catch (...) {
    delete clone;
    throw;
  }
  return clone;
}

// --- handles -------------------------------------------------------------------------------------

std::ostream& operator<<(std::ostream& stream, const ZylNamedProperty& property) {
  property.display(stream);
  return stream;
}

void ZylNamedPropertySet::NameException::printAround(std::ostream& stream,
                                                     const char* behind) const {
  stream << "Named property <" << getMessage() << "> " << behind;
}

void ZylNamedPropertySet::AlreadyPresent::print(std::ostream& stream) const {
  printAround(stream, "already present");
}

void ZylNamedPropertySet::BadType::print(std::ostream& stream) const {
  printAround(stream, "has wrong type");
}

void ZylNamedPropertySet::NotPresent::print(std::ostream& stream) const {
  if (_property == nullptr) {
    printAround(stream, "not present");
    return;
  }
  stream << "Named property <";
  _property->display(stream);
  stream << "> not present";
}

namespace {
ZylNamedPropertyI* checkedProperty(const ZylNamedProperty& property) {
  if (property.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylNamedProperty: Using empty handle");
  return property.getImpl();
}
}  // namespace

void ZylNamedPropertySet::addProperty(const ZylNamedProperty& property) const {
  checked()->addProperty(checkedProperty(property));
}

void ZylNamedPropertySet::addClonedProperty(const ZylNamedProperty& property) const {
  checked()->addClonedProperty(checkedProperty(property));
}
