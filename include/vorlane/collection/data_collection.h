// The root of the data collections: sets, ranges, columns and arrays of plain data.

#ifndef ZYL_COLLECTION_DATA_COLLECTION_H
#define ZYL_COLLECTION_DATA_COLLECTION_H

#include <iosfwd>

#include "vorlane/env/array.h"
#include "vorlane/env/property.h"

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

  /// Calls `makeClone`.
  ZylRttiEnvObjectI* makeKvlClone(ZylEnvI* env) const override;
  /// Locks for a non-zero argument, unlocks for 0: a nesting count of those who depend on the
  /// contents.
  virtual void setLockable(long on);
  /// A new collection of the same data in the same environment, unlocked.
  [[nodiscard]] virtual ZylDataCollectionI* copy() const = 0;
  /// A `DataType`, or a number of a front end's own.
  virtual long getDataType() const = 0;
  // The kinds, false in this base.
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
  /// The same as `copy` in another environment.
  [[nodiscard]] virtual ZylDataCollectionI* makeClone(ZylEnvI* env) const = 0;

  /// Sort an array, or its inclusive range, in place. What is swapped in the array is swapped in
  /// `permutation` too, unless that handle is empty: begun as 0, 1, 2, ... it tells where each
  /// element was. Equal elements may change places. Raise `ZylEmptyHandleException` for an empty
  /// array, `ZylArrayError` for a range outside an array. O(n log n) expected.
  static void sortAsc(ZylIntArray array);
  static void sortAsc(ZylIntArray array, long low, long high,
                      ZylIntArray permutation = ZylIntArray());
  static void sortAsc(ZylNumArray array);
  static void sortAsc(ZylNumArray array, long low, long high,
                      ZylIntArray permutation = ZylIntArray());
  static void sortDesc(ZylIntArray array);
  static void sortDesc(ZylIntArray array, long low, long high,
                       ZylIntArray permutation = ZylIntArray());
  static void sortDesc(ZylNumArray array);
  static void sortDesc(ZylNumArray array, long low, long high,
                       ZylIntArray permutation = ZylIntArray());

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

/// Data that cannot be enumerated.
class ZYL_EXPORT ZylContinuousDataI : public ZylDataCollectionI {
  ZYL_TYPE(ZylContinuousDataI, ZylDataCollectionI)
 public:
  explicit ZylContinuousDataI(ZylEnvI* env) : ZylDataCollectionI(env) {}
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

  // Each raises `ZylEmptyHandleException` "ZylDataCollection: Using empty handle" on an empty
  // handle, and, for a null name of a property, "ZylDataCollection: Using empty string".
  long getDataType() const;
  bool isIntRange() const;
  bool isNumRange() const;
  bool isIntSet() const;
  bool isNumSet() const;
  bool isSymbolSet() const;
  bool isAnySet() const;
  bool isIntDataColumn() const;
  bool isNumDataColumn() const;
  bool isAnyDataColumn() const;
  bool isTupleCollection() const;
  bool isTupleSet() const;
  bool isTupleRefColumn() const;
  bool isIntCollectionColumn() const;
  bool isNumCollectionColumn() const;
  bool isAnyCollectionColumn() const;
  bool isIntCollection() const;
  bool isNumCollection() const;
  bool isAnyCollection() const;
  bool isMapAsCollection() const;
  void display(std::ostream& stream) const;
  ZYL_PROPERTY_OPERATIONS
  /// Deletes the collection; nothing on an empty handle.
  void end();

  /// Sort an array, or its inclusive range, in ascending order; see `ZylDataCollectionI::sortAsc`.
  static void sort(ZylIntArray array);
  static void sort(ZylIntArray array, long low, long high);
  static void sort(ZylNumArray array);
  static void sort(ZylNumArray array, long low, long high);

 protected:
  ZylDataCollectionI* checked(const char* text) const {
    if (_impl == nullptr) ZylRaiseEmptyHandle(text);
    return _impl;
  }
  ZylDataCollectionI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylDataCollection& collection);

#endif
