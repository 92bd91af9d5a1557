// The root of the data collections: sets, ranges, columns and arrays of plain data.

#ifndef ZYL_COLLECTION_DATA_COLLECTION_H
#define ZYL_COLLECTION_DATA_COLLECTION_H

#include <iosfwd>

#include "vorlane/env/object.h"

class ZylDataIterator;
class ZylObjectBase;
class ZylSymbol;

/// A container of plain data.
///
/// Immutable while something that depends on its contents has locked it. Owned by its environment's
/// pools, given back by `end` of a handle.
class ZYL_EXPORT ZylDataCollectionI : public ZylKvlBaseObjectI {
  ZYL_TYPE(ZylDataCollectionI, ZylKvlBaseObjectI)
  ZYL_EXTENSION_OPERATIONS
 public:
  /// What a collection holds, as a number that front ends know.
  enum DataType : long {
    IntRange = 1,
    NumRange = 2,
    SymbolSet = 3,
    IntSet = 4,
    NumSet = 5,
    AnySet = 6,
    IntArray = 21,
    NumArray = 22,
    AnyArray = 24
  };

  explicit ZylDataCollectionI(ZylEnvI* env);
  ~ZylDataCollectionI() override;

  ZylRttiEnvObjectI* makeKvlClone(ZylEnvI* env) const override;
  /// Locks for a non-zero argument, unlocks for 0: a nesting count of those who depend on the
  /// contents.
  virtual void setLockable(long on);
  [[nodiscard]] virtual ZylDataCollectionI* copy() const = 0;
  virtual long getDataType() const = 0;
  virtual bool isIntRange() const;
  virtual bool isNumRange() const;
  virtual bool isIntSet() const;
  virtual bool isNumSet() const;
  virtual bool isSymbolSet() const;
  virtual bool isAnySet() const;
  virtual bool isIntDataColumn() const;
  virtual bool isNumDataColumn() const;
  virtual bool isAnyDataColumn() const;
  virtual bool isTupleCollection() const;
  virtual bool isTupleSet() const;
  virtual bool isTupleRefColumn() const;
  virtual bool isIntCollectionColumn() const;
  virtual bool isNumCollectionColumn() const;
  virtual bool isAnyCollectionColumn() const;
  virtual bool isIntCollection() const;
  virtual bool isNumCollection() const;
  virtual bool isAnyCollection() const;
  virtual bool isMapAsCollection() const;
  virtual void display(std::ostream& stream) const = 0;
  [[nodiscard]] virtual ZylDataCollectionI* makeClone(ZylEnvI* env) const = 0;

  long getLockCount() const noexcept { return _lockCount; }
  bool isImmutable() const noexcept { return _lockCount > 0; }

 protected:
  /// Every edit begins with this. Raises `ZylDataCollection::ImmutableException`.
  void testMutable() const;

 private:
  ZylGenAlloc* extensionAlloc() const noexcept { return _env->getGenAlloc(); }
  ZylExtension* _extension = nullptr;
  long _lockCount = 0;
};

/// A collection whose elements can be counted.
class ZYL_EXPORT ZylDiscreteDataCollectionI : public ZylDataCollectionI {
  ZYL_TYPE(ZylDiscreteDataCollectionI, ZylDataCollectionI)
 public:
  explicit ZylDiscreteDataCollectionI(ZylEnvI* env) : ZylDataCollectionI(env) {}
  bool isKvlRefCounted() const override;
};

/// A collection whose elements cannot.
class ZYL_EXPORT ZylContinuousDataI : public ZylDataCollectionI {
  ZYL_TYPE(ZylContinuousDataI, ZylDataCollectionI)
 public:
  explicit ZylContinuousDataI(ZylEnvI* env) : ZylDataCollectionI(env) {}
};

/// A collection of integers.
class ZYL_EXPORT ZylIntCollectionI : public ZylDiscreteDataCollectionI {
  ZYL_TYPE(ZylIntCollectionI, ZylDiscreteDataCollectionI)
 public:
  explicit ZylIntCollectionI(ZylEnvI* env) : ZylDiscreteDataCollectionI(env) {}
  bool isIntCollection() const override;
};

/// A set of integers.
class ZYL_EXPORT ZylIntAbstractSetI : public ZylIntCollectionI {
  ZYL_TYPE(ZylIntAbstractSetI, ZylIntCollectionI)
 public:
  explicit ZylIntAbstractSetI(ZylEnvI* env) : ZylIntCollectionI(env) {}
};

/// Handle of a collection.
class ZYL_EXPORT ZylDataCollection {
 public:
  /// An edit of a collection that something depends on.
  class ZYL_EXPORT ImmutableException : public ZylException {
   public:
    explicit ImmutableException(const ZylDataCollectionI* collection);
    void print(std::ostream& stream) const override;
    const ZylDataCollectionI* getCollection() const noexcept { return _collection; }

   private:
    const ZylDataCollectionI* _collection;
  };

  ZylDataCollection() = default;
  explicit ZylDataCollection(ZylDataCollectionI* impl) noexcept : _impl(impl) {}
  ZylDataCollectionI* getImpl() const noexcept { return _impl; }
  long getDataType() const;
  const char* getName() const;
  void setName(const char* name) const;
  void display(std::ostream& stream) const;
  /// Deletes the collection; nothing on an empty handle.
  void end();

 protected:
  ZylDataCollectionI* checked(const char* text) const {
    if (_impl == nullptr) ZylRaiseEmptyHandle(text);
    return _impl;
  }
  ZylDataCollectionI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylDataCollection& collection);

#endif
