// Name, user object and properties of an object: one pointer until one of them is wanted.

#ifndef ZYL_ENV_EXTENSION_H
#define ZYL_ENV_EXTENSION_H

#include "vorlane/env/export.h"

class ZylEnvI;
class ZylGenAlloc;
class ZylNamedProperty;
class ZylNamedPropertyI;
class ZylNamedPropertySet;
class ZylNamedPropertySetI;

namespace zyl::detail {
struct Extended;
}  // namespace zyl::detail

/// The client's pointer and the property set of an object.
class ZYL_EXPORT ZylObjectExtension {
 public:
  /// Deletes the property set.
  void end(ZylGenAlloc* alloc);
  /// Makes an empty set. Raises `ZylMemoryException`.
  void createProperties(ZylGenAlloc* alloc);

 private:
  friend class ZylExtension;
  void* _object = nullptr;
  ZylNamedPropertySetI* _properties = nullptr;
};

/// The record behind an object's extension pointer; it and its parts come from the owner's memory
/// manager, which each call is given again.
class ZYL_EXPORT ZylExtension {
 public:
  /// Returns `*extension`, making an empty record first if it is null.
  static ZylExtension* getOrMake(ZylGenAlloc* alloc, ZylExtension** extension);
  static ZylExtension* getOrMake(ZylEnvI* env, ZylExtension** extension);

  const char* getName() const noexcept { return _name; }
  void* getObject() const noexcept { return _object != nullptr ? _object->_object : nullptr; }
  ZylNamedPropertySetI* getProperties() const noexcept {
    return _object != nullptr ? _object->_properties : nullptr;
  }
  /// Copies `name`; null clears it.
  void setName(ZylGenAlloc* alloc, const char* name);
  void setName(ZylEnvI* env, const char* name);
  void setObject(ZylGenAlloc* alloc, void* object);
  void setObject(ZylEnvI* env, void* object);
  /// Takes the set over, deleting the one that was there.
  void setProperties(ZylNamedPropertySetI* properties);
  /// Returns the set, making an empty one on the first call.
  ZylNamedPropertySetI* getOrMakeProperties(ZylGenAlloc* alloc);
  /// Gives back all that the record refers to; the caller then frees the record.
  void end(ZylGenAlloc* alloc);
  void end(ZylEnvI* env);

 private:
  friend struct zyl::detail::Extended;
  ZYL_LOCAL ZylObjectExtension* getOrMakeObject(ZylGenAlloc* alloc);
  char* _name = nullptr;
  ZylObjectExtension* _object = nullptr;
};

namespace zyl::detail {

// What every owner of an extension offers, on its pointer and its allocator. A setter given null
// makes no record; readers treat absence as null, except that a missing property raises
// `ZylNamedPropertySet::NotPresent`.
struct ZYL_EXPORT Extended {
  static const char* getName(const ZylExtension* extension) noexcept {
    return extension != nullptr ? extension->getName() : nullptr;
  }
  static void* getObject(const ZylExtension* extension) noexcept {
    return extension != nullptr ? extension->getObject() : nullptr;
  }
  static ZylNamedPropertySetI* getProperties(const ZylExtension* extension) noexcept {
    return extension != nullptr ? extension->getProperties() : nullptr;
  }
  static void setName(ZylGenAlloc* alloc, ZylExtension** extension, const char* name);
  // Exchanges the name with another text of the same allocator. Raises `ZylMemoryException` only
  // where there is no record yet.
  static void swapName(ZylGenAlloc* alloc, ZylExtension** extension, char** name);
  static void setObject(ZylGenAlloc* alloc, ZylExtension** extension, void* object);
  static void removeAllProperties(const ZylExtension* extension);
  static void setProperties(ZylGenAlloc* alloc, ZylExtension** extension,
                            ZylNamedPropertySetI* properties);
  static void addProperty(ZylGenAlloc* alloc, ZylExtension** extension,
                          ZylNamedPropertyI* property);
  static void addClonedProperty(ZylGenAlloc* alloc, ZylExtension** extension,
                                const ZylNamedPropertyI* property);
  // Clones each property of the set in turn.
  static void addProperties(ZylGenAlloc* alloc, ZylExtension** extension,
                            const ZylNamedPropertySetI* properties);
  static bool hasProperty(const ZylExtension* extension, const char* name);
  static ZylNamedPropertyI* getProperty(const ZylExtension* extension, const char* name);
  static const char* getStringProperty(const ZylExtension* extension, const char* name);
  static void* getAnyProperty(const ZylExtension* extension, const char* name);
  static double getNumProperty(const ZylExtension* extension, const char* name);
  static long getIntProperty(const ZylExtension* extension, const char* name);
  static void setStringProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                                const char* value);
  static void setAnyProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                             void* value);
  static void setNumProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                             double value);
  static void setIntProperty(ZylGenAlloc* alloc, ZylExtension** extension, const char* name,
                             long value);
  static void removeProperty(const ZylExtension* extension, const char* name);
  static void removeProperty(const ZylExtension* extension, const ZylNamedPropertyI* property);
  // Ends the record, frees it, and clears the pointer.
  static void end(ZylGenAlloc* alloc, ZylExtension** extension);
};

}  // namespace zyl::detail

// The operations of an owner of an extension, for a class that has `_extension` and answers
// `extensionAlloc()`. Meanings as in `zyl::detail::Extended`.
#define ZYL_EXTENSION_OPERATIONS                                                         \
  ZYL_EXTENSION_OPERATIONS_BUT_ONE                                                       \
 public:                                                                                 \
  void removeAllProperties() { zyl::detail::Extended::removeAllProperties(_extension); } \
                                                                                         \
 private:

// The same for an owner with a `removeAllProperties` of its own.
#define ZYL_EXTENSION_OPERATIONS_BUT_ONE                                                      \
 public:                                                                                      \
  const char* getName() const noexcept { return zyl::detail::Extended::getName(_extension); } \
  void setName(const char* name) {                                                            \
    zyl::detail::Extended::setName(extensionAlloc(), &_extension, name);                      \
  }                                                                                           \
  void swapName(char** name) {                                                                \
    zyl::detail::Extended::swapName(extensionAlloc(), &_extension, name);                     \
  }                                                                                           \
  void* getObject() const noexcept { return zyl::detail::Extended::getObject(_extension); }   \
  void setObject(void* object) {                                                              \
    zyl::detail::Extended::setObject(extensionAlloc(), &_extension, object);                  \
  }                                                                                           \
  ZylNamedPropertySetI* getProperties() const noexcept {                                      \
    return zyl::detail::Extended::getProperties(_extension);                                  \
  }                                                                                           \
  void setProperties(ZylNamedPropertySetI* properties) {                                      \
    zyl::detail::Extended::setProperties(extensionAlloc(), &_extension, properties);          \
  }                                                                                           \
  void addProperty(ZylNamedPropertyI* property) {                                             \
    zyl::detail::Extended::addProperty(extensionAlloc(), &_extension, property);              \
  }                                                                                           \
  void addClonedProperty(ZylNamedPropertyI* property) {                                       \
    zyl::detail::Extended::addClonedProperty(extensionAlloc(), &_extension, property);        \
  }                                                                                           \
  void addProperties(ZylNamedPropertySetI* properties) {                                      \
    zyl::detail::Extended::addProperties(extensionAlloc(), &_extension, properties);          \
  }                                                                                           \
  bool hasProperty(const char* name) const {                                                  \
    return zyl::detail::Extended::hasProperty(_extension, name);                              \
  }                                                                                           \
  ZylNamedPropertyI* getProperty(const char* name) const {                                    \
    return zyl::detail::Extended::getProperty(_extension, name);                              \
  }                                                                                           \
  const char* getStringProperty(const char* name) const {                                     \
    return zyl::detail::Extended::getStringProperty(_extension, name);                        \
  }                                                                                           \
  void* getAnyProperty(const char* name) const {                                              \
    return zyl::detail::Extended::getAnyProperty(_extension, name);                           \
  }                                                                                           \
  double getNumProperty(const char* name) const {                                             \
    return zyl::detail::Extended::getNumProperty(_extension, name);                           \
  }                                                                                           \
  long getIntProperty(const char* name) const {                                               \
    return zyl::detail::Extended::getIntProperty(_extension, name);                           \
  }                                                                                           \
  void setStringProperty(const char* name, const char* value) {                               \
    zyl::detail::Extended::setStringProperty(extensionAlloc(), &_extension, name, value);     \
  }                                                                                           \
  void setAnyProperty(const char* name, void* value) {                                        \
    zyl::detail::Extended::setAnyProperty(extensionAlloc(), &_extension, name, value);        \
  }                                                                                           \
  void setNumProperty(const char* name, double value) {                                       \
    zyl::detail::Extended::setNumProperty(extensionAlloc(), &_extension, name, value);        \
  }                                                                                           \
  void setIntProperty(const char* name, long value) {                                         \
    zyl::detail::Extended::setIntProperty(extensionAlloc(), &_extension, name, value);        \
  }                                                                                           \
  void removeProperty(const char* name) {                                                     \
    zyl::detail::Extended::removeProperty(_extension, name);                                  \
  }                                                                                           \
  void removeProperty(ZylNamedPropertyI* property) {                                          \
    zyl::detail::Extended::removeProperty(_extension, property);                              \
  }                                                                                           \
                                                                                              \
 private:

// The same operations of the handle of an owner; `common/property_operations.inc` defines them.
#define ZYL_PROPERTY_OPERATIONS                                      \
  const char* getName() const;                                       \
  void setName(const char* name) const;                              \
  void* getObject() const;                                           \
  void setObject(void* object) const;                                \
  ZylNamedPropertySet getProperties() const;                         \
  void setProperties(ZylNamedPropertySet properties) const;          \
  void removeAllProperties() const;                                  \
  void addProperty(ZylNamedProperty property) const;                 \
  void addClonedProperty(ZylNamedProperty property) const;           \
  void addProperties(ZylNamedPropertySet properties) const;          \
  bool hasProperty(const char* name) const;                          \
  ZylNamedProperty getProperty(const char* name) const;              \
  const char* getStringProperty(const char* name) const;             \
  void* getAnyProperty(const char* name) const;                      \
  double getNumProperty(const char* name) const;                     \
  long getIntProperty(const char* name) const;                       \
  void setStringProperty(const char* name, const char* value) const; \
  void setAnyProperty(const char* name, void* value) const;          \
  void setNumProperty(const char* name, double value) const;         \
  void setIntProperty(const char* name, long value) const;           \
  void removeProperty(const char* name) const;

#endif
