// Named properties: typed name-value pairs that the library stores and does not interpret.

#ifndef ZYL_ENV_PROPERTY_H
#define ZYL_ENV_PROPERTY_H

#include <iosfwd>

#include "vorlane/env/object.h"

/// A property. It may stand in several sets, which count their use: it dies with the last of them,
/// and one that is in no set lives or dies by the client.
class ZYL_EXPORT ZylNamedPropertyI : public ZylRttiMemoryManagerObjectI {
  ZYL_TYPE_MANAGED(ZylNamedPropertyI, ZylRttiMemoryManagerObjectI)
 public:
  /// Raised where a property has no copy.
  class ZYL_EXPORT Exception : public ZylException {
   public:
    explicit Exception(const char* message) : ZylException(message) {}
  };

  explicit ZylNamedPropertyI(ZylGenAlloc* manager) : ZylRttiMemoryManagerObjectI(manager) {}
  /// Raises `ZylWrongUsage` if a set still uses the property; the storage is given back all the
  /// same.
  ~ZylNamedPropertyI() noexcept(false) override;

  virtual void display(std::ostream& stream) const;
  virtual const char* getName() const = 0;
  /// Returns a copy in `manager`. This base raises `Exception`.
  [[nodiscard]] virtual ZylNamedPropertyI* makeClone(const ZylMemoryManager& manager) const;

  /// Number of sets that use the property.
  long getUseCount() const noexcept { return _useCount; }

 protected:
  /// Copy a text into, and free it from, the pools of the property.
  [[nodiscard]] char* cloneString(const char* text) const;
  void freeString(char* text) const;

 private:
  friend class ZylNamedPropertySetI;
  long _useCount = 0;
};

/// A property with an interned name.
class ZYL_EXPORT ZylPreNamedPropertyI : public ZylNamedPropertyI {
  ZYL_TYPE_MANAGED(ZylPreNamedPropertyI, ZylNamedPropertyI)
 public:
  ZylPreNamedPropertyI(ZylGenAlloc* manager, const char* name)
      : ZylNamedPropertyI(manager), _name(manager->intern(name)) {}
  const char* getName() const override;
  /// A property of the same name. A class that adds fields overrides this: its clone would be one
  /// of the class that it comes from.
  ZylNamedPropertyI* makeClone(const ZylMemoryManager& manager) const override;

 private:
  const char* _name;
};

// A property class of a plain value. What derives from it is read and written by its value still.
#define ZYL_VALUE_PROPERTY(Class, Value)                                          \
  class ZYL_EXPORT Class : public ZylPreNamedPropertyI {                          \
    ZYL_TYPE_MANAGED(Class, ZylPreNamedPropertyI)                                 \
   public:                                                                        \
    using EmbeddedType = Value;                                                   \
    Class(ZylGenAlloc* manager, const char* name, Value value)                    \
        : ZylPreNamedPropertyI(manager, name), _value(value) {}                   \
    void display(std::ostream& stream) const override;                            \
    ZylNamedPropertyI* makeClone(const ZylMemoryManager& manager) const override; \
    Value getValue() const noexcept { return _value; }                            \
    void setValue(Value value) noexcept { _value = value; }                       \
                                                                                  \
   private:                                                                       \
    Value _value;                                                                 \
  };

/// A property of an integer.
ZYL_VALUE_PROPERTY(ZylNamedIntPropertyI, long)
/// A property of a number.
ZYL_VALUE_PROPERTY(ZylNamedNumPropertyI, double)
/// A property of an address, which the client owns.
ZYL_VALUE_PROPERTY(ZylNamedAnyPropertyI, void*)

#undef ZYL_VALUE_PROPERTY

/// A property of a text, which it owns.
class ZYL_EXPORT ZylNamedStringPropertyI : public ZylPreNamedPropertyI {
  ZYL_TYPE_MANAGED(ZylNamedStringPropertyI, ZylPreNamedPropertyI)
 public:
  using EmbeddedType = const char*;
  ZylNamedStringPropertyI(ZylGenAlloc* manager, const char* name, const char* value)
      : ZylPreNamedPropertyI(manager, name), _value(cloneString(value)) {}
  ~ZylNamedStringPropertyI() noexcept(false) override;
  void display(std::ostream& stream) const override;
  ZylNamedPropertyI* makeClone(const ZylMemoryManager& manager) const override;
  const char* getValue() const noexcept { return _value; }
  /// Copies the text, which may be the property's own.
  void setValue(const char* value);

 private:
  char* _value;
};

/// A set of properties with different names. Small: look-up walks a list, newest first.
class ZYL_EXPORT ZylNamedPropertySetI final : public ZylMemoryManagerObjectI {
 public:
  /// A cell of the list; `prev` of the first is null.
  struct PropertyList {
    ZylNamedPropertyI* property;
    PropertyList* next;
    PropertyList* prev;
  };

  explicit ZylNamedPropertySetI(ZylGenAlloc* manager) : ZylMemoryManagerObjectI(manager) {}
  ~ZylNamedPropertySetI() override;

  /// The cell of a name or of a property, null if there is none, and for a null name.
  PropertyList* getElem(const char* name) const;
  PropertyList* getElem(const ZylNamedPropertyI* property) const;
  bool hasProperty(const char* name) const { return getElem(name) != nullptr; }
  /// Raises `ZylNamedPropertySet::NotPresent`.
  ZylNamedPropertyI* getProperty(const char* name) const;
  /// Raises `ZylEnvironmentMismatch`, `ZylNamedPropertySet::AlreadyPresent`.
  void addProperty(ZylNamedPropertyI* property);
  /// Adds a clone made in the set's own manager.
  void addClonedProperty(const ZylNamedPropertyI* property);
  /// Adds without any test.
  void fastAdd(ZylNamedPropertyI* property);
  /// Raise `ZylNamedPropertySet::NotPresent`.
  void removeProperty(const char* name);
  void removeProperty(const ZylNamedPropertyI* property);
  void removeAllProperties();
  /// A new set with clones in the same order, made in that order. Names may occur twice, as after
  /// `fastAdd`.
  [[nodiscard]] ZylNamedPropertySetI* makeClone(const ZylMemoryManager& manager) const;
  PropertyList* getFirst() const noexcept { return _first; }

 private:
  ZYL_LOCAL void testAbsent(const char* name) const;
  // Behind a cell, at the head for null; returns the new cell.
  ZYL_LOCAL PropertyList* insert(PropertyList* before, ZylNamedPropertyI* property);
  ZYL_LOCAL PropertyList* insertClone(PropertyList* before, const ZylNamedPropertyI* property);
  ZYL_LOCAL void remove(PropertyList* cell);
  PropertyList* _first = nullptr;
};

/// Handle of a property of any kind.
class ZYL_EXPORT ZylNamedProperty {
 public:
  ZylNamedProperty() = default;
  explicit ZylNamedProperty(ZylNamedPropertyI* impl) noexcept : _impl(impl) {}
  ZylNamedPropertyI* getImpl() const noexcept { return _impl; }
  const char* getName() const { return checked()->getName(); }
  void display(std::ostream& stream) const { checked()->display(stream); }
  /// Deletes the property; nothing on an empty handle. Raises `ZylWrongUsage` while a set uses it.
  void end() {
    ZylNamedPropertyI* impl = _impl;
    _impl = nullptr;
    delete impl;
  }

 protected:
  ZylNamedPropertyI* checked() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle("ZylNamedProperty: Using empty handle");
    return _impl;
  }
  ZylNamedPropertyI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylNamedProperty& property);

namespace zyl::detail {
/// Handle of a property of one kind.
template <class Impl>
class ValueProperty : public ZylNamedProperty {
 public:
  using ImplClass = Impl;
  using EmbeddedType = typename Impl::EmbeddedType;
  ValueProperty() = default;
  explicit ValueProperty(Impl* impl) noexcept : ZylNamedProperty(impl) {}
  ValueProperty(const ZylMemoryManager& manager, const char* name, EmbeddedType value) {
    ZylGenAlloc* alloc = manager.getImpl();
    if (alloc == nullptr) ZylRaiseEmptyHandle();
    _impl = new (alloc) Impl(alloc, name, value);
  }
  ValueProperty(const ZylEnv& env, const char* name, EmbeddedType value)
      : ValueProperty(env.getMemoryManager(), name, value) {}
  Impl* getImpl() const noexcept { return static_cast<Impl*>(_impl); }
  EmbeddedType getValue() const { return static_cast<Impl*>(checked())->getValue(); }
  void setValue(EmbeddedType value) const { static_cast<Impl*>(checked())->setValue(value); }
};
}  // namespace zyl::detail

class ZYL_EXPORT ZylNamedIntProperty : public zyl::detail::ValueProperty<ZylNamedIntPropertyI> {
 public:
  using ValueProperty::ValueProperty;
};
class ZYL_EXPORT ZylNamedNumProperty : public zyl::detail::ValueProperty<ZylNamedNumPropertyI> {
 public:
  using ValueProperty::ValueProperty;
};
class ZYL_EXPORT ZylNamedAnyProperty : public zyl::detail::ValueProperty<ZylNamedAnyPropertyI> {
 public:
  using ValueProperty::ValueProperty;
};
class ZYL_EXPORT ZylNamedStringProperty
    : public zyl::detail::ValueProperty<ZylNamedStringPropertyI> {
 public:
  using ValueProperty::ValueProperty;
};

/// Handle of a property set.
class ZYL_EXPORT ZylNamedPropertySet {
 public:
  /// A failure with the name of a property, of which it keeps a copy.
  class ZYL_EXPORT NameException : public ZylException {
   public:
    explicit NameException(const char* name) : ZylException(name, 1) {}

   protected:
    void printAround(std::ostream& stream, const char* behind) const;
  };
  /// A property of that name stands in the set already.
  class ZYL_EXPORT AlreadyPresent : public NameException {
   public:
    using NameException::NameException;
    void print(std::ostream& stream) const override;
  };
  /// The property of that name is of another type.
  class ZYL_EXPORT BadType : public NameException {
   public:
    using NameException::NameException;
    void print(std::ostream& stream) const override;
  };
  /// The set has no such property.
  class ZYL_EXPORT NotPresent : public NameException {
   public:
    explicit NotPresent(const char* name) : NameException(name) {}
    explicit NotPresent(const ZylNamedPropertyI* property)
        : NameException(property->getName()), _property(property) {}
    void print(std::ostream& stream) const override;
    const ZylNamedPropertyI* getProperty() const noexcept { return _property; }

   private:
    const ZylNamedPropertyI* _property = nullptr;
  };

  ZylNamedPropertySet() = default;
  explicit ZylNamedPropertySet(ZylNamedPropertySetI* impl) noexcept : _impl(impl) {}
  /// A new empty set.
  explicit ZylNamedPropertySet(const ZylMemoryManager& manager) {
    ZylGenAlloc* alloc = manager.getImpl();
    if (alloc == nullptr) ZylRaiseEmptyHandle();
    _impl = new (alloc) ZylNamedPropertySetI(alloc);
  }
  ZylNamedPropertySetI* getImpl() const noexcept { return _impl; }
  bool hasProperty(const char* name) const { return checked()->hasProperty(name); }
  ZylNamedProperty getProperty(const char* name) const {
    return ZylNamedProperty(checked()->getProperty(name));
  }
  void addProperty(const ZylNamedProperty& property) const;
  void addClonedProperty(const ZylNamedProperty& property) const;
  void removeProperty(const char* name) const { checked()->removeProperty(name); }
  void removeAllProperties() const { checked()->removeAllProperties(); }
  void end() {
    delete _impl;
    _impl = nullptr;
  }

 private:
  ZylNamedPropertySetI* checked() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle("ZylNamedPropertySet: Using empty handle");
    return _impl;
  }
  ZylNamedPropertySetI* _impl = nullptr;
};

/// The property of this name and kind in a set, null if the set is null or has none of the name.
/// Raises `ZylNamedPropertySet::BadType` for another kind.
template <class P>
P* ZylGetPropertyI(const ZylNamedPropertySetI* set, const char* name) {
  ZylNamedPropertySetI::PropertyList* cell = set != nullptr ? set->getElem(name) : nullptr;
  if (cell == nullptr) return nullptr;
  P* property = zyl::as<P>(cell->property);
  if (property == nullptr) throw ZylNamedPropertySet::BadType(name);
  return property;
}

/// The value of the owner's property of this name and kind. Raises
/// `ZylNamedPropertySet::NotPresent`, `ZylNamedPropertySet::BadType`.
template <class P, class Owner>
typename P::EmbeddedType ZylGetPropertyValueI(const Owner* owner, const char* name) {
  const P* property = ZylGetPropertyI<P>(owner->getProperties(), name);
  if (property == nullptr) throw ZylNamedPropertySet::NotPresent(name);
  return property->getValue();
}

/// Sets the value of the owner's property of this name, adding one if there is none.
template <class P, class Owner>
void ZylSetPropertyValueI(Owner* owner, const char* name, typename P::EmbeddedType value) {
  if (P* property = ZylGetPropertyI<P>(owner->getProperties(), name)) {
    property->setValue(value);
    return;
  }
  ZylGenAlloc* manager = owner->getMemoryManager().getImpl();
  P* property = new (manager) P(manager, name, value);
  try {
    owner->addProperty(property);
  } catch (...) {
    delete property;
    throw;
  }
}

#endif
