// Storage of name, user object and properties, and the operations that every owner of them has.

#include "vorlane/env/extension.h"

#include <cstring>
#include <utility>

#include "vorlane/env/property.h"

void ZylObjectExtension::end(ZylGenAlloc*) {
  ZylNamedPropertySetI* properties = _properties;
  _properties = nullptr;
  delete properties;
}

void ZylObjectExtension::createProperties(ZylGenAlloc* alloc) {
  _properties = new (alloc) ZylNamedPropertySetI(alloc);
}

ZylExtension* ZylExtension::getOrMake(ZylGenAlloc* alloc, ZylExtension** extension) {
  if (*extension == nullptr) {
    *extension = ::new (alloc->alloc(sizeof(ZylExtension))) ZylExtension();
  }
  return *extension;
}

ZylExtension* ZylExtension::getOrMake(ZylEnvI* env, ZylExtension** extension) {
  return getOrMake(env->getGenAlloc(), extension);
}

void ZylExtension::setName(ZylGenAlloc* alloc, const char* name) {
  char* copy = nullptr;
  if (name != nullptr) {
    const std::size_t size = std::strlen(name) + 1;
    copy = static_cast<char*>(alloc->alloc(size));
    std::memcpy(copy, name, size);
  }
  if (_name != nullptr) alloc->free(_name, std::strlen(_name) + 1);
  _name = copy;
}

void ZylExtension::setName(ZylEnvI* env, const char* name) { setName(env->getGenAlloc(), name); }

ZylObjectExtension* ZylExtension::getOrMakeObject(ZylGenAlloc* alloc) {
  if (_object == nullptr) {
    _object = ::new (alloc->alloc(sizeof(ZylObjectExtension))) ZylObjectExtension();
  }
  return _object;
}

void ZylExtension::setObject(ZylGenAlloc* alloc, void* object) {
  if (object == nullptr && _object == nullptr) return;
  getOrMakeObject(alloc)->_object = object;
}

void ZylExtension::setObject(ZylEnvI* env, void* object) { setObject(env->getGenAlloc(), object); }

void ZylExtension::setProperties(ZylNamedPropertySetI* properties) {
  ZylNamedPropertySetI* before = getProperties();
  if (before == properties) return;
  if (properties != nullptr) getOrMakeObject(properties->getManager());
  _object->_properties = properties;
  delete before;
}

ZylNamedPropertySetI* ZylExtension::getOrMakeProperties(ZylGenAlloc* alloc) {
  ZylObjectExtension* object = getOrMakeObject(alloc);
  if (object->_properties == nullptr) object->createProperties(alloc);
  return object->_properties;
}

void ZylExtension::end(ZylGenAlloc* alloc) {
  if (_object != nullptr) {
    _object->end(alloc);
    alloc->free(_object, sizeof(ZylObjectExtension));
    _object = nullptr;
  }
  setName(alloc, nullptr);
}

void ZylExtension::end(ZylEnvI* env) { end(env->getGenAlloc()); }

// --- owners --------------------------------------------------------------------------------------

namespace zyl::detail {
namespace {

// An owner as the property templates see it.
struct Owner {
  ZylGenAlloc* alloc;
  ZylExtension** extension;
  ZylNamedPropertySetI* getProperties() const { return Extended::getProperties(*extension); }
  ZylMemoryManager getMemoryManager() const { return ZylMemoryManager(alloc); }
  void addProperty(ZylNamedPropertyI* property) const {
    Extended::addProperty(alloc, extension, property);
  }
};

struct Reader {
  const ZylExtension* extension;
  ZylNamedPropertySetI* getProperties() const { return Extended::getProperties(extension); }
};

ZylNamedPropertySetI* ownSet(ZylGenAlloc* alloc, ZylExtension** extension) {
  return ZylExtension::getOrMake(alloc, extension)->getOrMakeProperties(alloc);
}

}  // namespace

void Extended::setName(ZylGenAlloc* alloc, ZylExtension** extension, const char* name) {
  if (name == nullptr && *extension == nullptr) return;
  ZylExtension::getOrMake(alloc, extension)->setName(alloc, name);
}

void Extended::swapName(ZylGenAlloc* alloc, ZylExtension** extension, char** name) {
  std::swap(ZylExtension::getOrMake(alloc, extension)->_name, *name);
}

void Extended::setObject(ZylGenAlloc* alloc, ZylExtension** extension, void* object) {
  if (object == nullptr && *extension == nullptr) return;
  ZylExtension::getOrMake(alloc, extension)->setObject(alloc, object);
}

void Extended::setProperties(ZylGenAlloc* alloc, ZylExtension** extension,
                             ZylNamedPropertySetI* properties) {
  if (properties == nullptr && getProperties(*extension) == nullptr) return;
  ZylExtension* record = ZylExtension::getOrMake(alloc, extension);
  // The owner gives the record back, so it is the owner's even where the set is not.
  record->getOrMakeObject(alloc);
  record->setProperties(properties);
}

void Extended::addProperty(ZylGenAlloc* alloc, ZylExtension** extension,
                           ZylNamedPropertyI* property) {
  ownSet(alloc, extension)->addProperty(property);
}

void Extended::addClonedProperty(ZylGenAlloc* alloc, ZylExtension** extension,
                                 const ZylNamedPropertyI* property) {
  ownSet(alloc, extension)->addClonedProperty(property);
}

void Extended::addProperties(ZylGenAlloc* alloc, ZylExtension** extension,
                             const ZylNamedPropertySetI* properties) {
  const auto* cell = properties->getFirst();
  try {
    for (; cell != nullptr; cell = cell->next) addClonedProperty(alloc, extension, cell->property);
  } catch (const ZylMemoryException&) {
    // All or none. What is refused for another reason leaves those before it.
    for (const auto* added = properties->getFirst(); added != cell; added = added->next) {
      removeProperty(*extension, added->property->getName());
    }
    throw;
  }
}

void Extended::removeAllProperties(const ZylExtension* extension) {
  if (ZylNamedPropertySetI* set = getProperties(extension)) set->removeAllProperties();
}

bool Extended::hasProperty(const ZylExtension* extension, const char* name) {
  const ZylNamedPropertySetI* set = getProperties(extension);
  return set != nullptr && set->hasProperty(name);
}

ZylNamedPropertyI* Extended::getProperty(const ZylExtension* extension, const char* name) {
  const ZylNamedPropertySetI* set = getProperties(extension);
  if (set == nullptr) throw ZylNamedPropertySet::NotPresent(name);
  return set->getProperty(name);
}

const char* Extended::getStringProperty(const ZylExtension* extension, const char* name) {
  const Reader reader{extension};
  return ZylGetPropertyValueI<ZylNamedStringPropertyI>(&reader, name);
}
void* Extended::getAnyProperty(const ZylExtension* extension, const char* name) {
  const Reader reader{extension};
  return ZylGetPropertyValueI<ZylNamedAnyPropertyI>(&reader, name);
}
double Extended::getNumProperty(const ZylExtension* extension, const char* name) {
  const Reader reader{extension};
  return ZylGetPropertyValueI<ZylNamedNumPropertyI>(&reader, name);
}
long Extended::getIntProperty(const ZylExtension* extension, const char* name) {
  const Reader reader{extension};
  return ZylGetPropertyValueI<ZylNamedIntPropertyI>(&reader, name);
}

void Extended::setStringProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                                 const char* value) {
  Owner owner{alloc, extension};
  ZylSetPropertyValueI<ZylNamedStringPropertyI>(&owner, name, value);
}
void Extended::setAnyProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                              void* value) {
  Owner owner{alloc, extension};
  ZylSetPropertyValueI<ZylNamedAnyPropertyI>(&owner, name, value);
}
void Extended::setNumProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                              double value) {
  Owner owner{alloc, extension};
  ZylSetPropertyValueI<ZylNamedNumPropertyI>(&owner, name, value);
}
void Extended::setIntProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                              long value) {
  Owner owner{alloc, extension};
  ZylSetPropertyValueI<ZylNamedIntPropertyI>(&owner, name, value);
}

void Extended::removeProperty(const ZylExtension* extension, const char* name) {
  ZylNamedPropertySetI* set = getProperties(extension);
  if (set == nullptr) throw ZylNamedPropertySet::NotPresent(name);
  set->removeProperty(name);
}

void Extended::removeProperty(const ZylExtension* extension, const ZylNamedPropertyI* property) {
  ZylNamedPropertySetI* set = getProperties(extension);
  if (set == nullptr) throw ZylNamedPropertySet::NotPresent(property);
  set->removeProperty(property);
}

void Extended::end(ZylGenAlloc* alloc, ZylExtension** extension) {
  if (*extension == nullptr) return;
  ZylExtension* record = *extension;
  *extension = nullptr;
  record->end(alloc);
  alloc->free(record, sizeof(ZylExtension));
}

}  // namespace zyl::detail
