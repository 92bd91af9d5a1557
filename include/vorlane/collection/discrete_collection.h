// Collections whose elements can be counted, and type-less access to them.

#ifndef ZYL_COLLECTION_DISCRETE_COLLECTION_H
#define ZYL_COLLECTION_DISCRETE_COLLECTION_H

#include <concepts>

#include "vorlane/collection/data_collection.h"
#include "vorlane/collection/object_base.h"

class ZylDataIterator;

/// A collection with positions 0 to getSize() - 1.
///
/// Access without a type is there for front ends; a collection answers for its own element type,
/// and raises `ZylNotImplemented` for the others.
class ZYL_EXPORT ZylDiscreteDataCollectionI : public ZylDataCollectionI {
  ZYL_TYPE(ZylDiscreteDataCollectionI, ZylDataCollectionI)
 public:
  /// What `getSortSense` answers.
  enum SortSense : long { Unsorted = 10, Ascending = 11, Descending = 12 };

  explicit ZylDiscreteDataCollectionI(ZylEnvI* env) : ZylDataCollectionI(env) {}

  /// True: a language front end counts the owners of collections that it can enumerate.
  bool isKvlRefCounted() const override;

  /// Called by a front end before and after it reads data into the collection; what `sort` says is
  /// its own. This base does nothing.
  virtual void processBeforeFill();
  virtual void processAfterFill(long sort);
  /// Where the elements stood before the last sort, for a front end that keeps data beside them; an
  /// empty handle if nothing is kept, as in this base.
  virtual ZylIntArray getOldIndexPositions();
  /// Gives that array back. This base does nothing.
  virtual void endOldIndexes();
  /// Drops what was stored only to find elements faster. This base does nothing.
  virtual void clearAllCaches();
  /// Removes all elements. This base does nothing.
  virtual void empty();
  /// Whether elements refer to other data of a front end. False in this base.
  virtual bool hasReference() const;

  virtual long getSize() const = 0;
  /// The element at a position.
  virtual ZylObjectBase getMapItem(long index) const = 0;
  /// A new iterator, from `alloc` or, for null, from the environment; the caller deletes it. This
  /// base raises `ZylNotImplemented`.
  [[nodiscard]] virtual ZylDataIterator* iterator(ZylGenAlloc* alloc) const;

  // Positions of values, -1 for what is not there. This base raises `ZylNotImplemented`.
  virtual long getMapItemIndex(ZylObjectBase item) const;
  virtual long getIndex(long value) const;
  virtual long getIndex(double value) const;
  virtual long getIndex(void* value) const;
  virtual long getIndex(ZylSymbol value) const;
  // Values at positions. This base raises `ZylNotImplemented`.
  virtual long getIntValue(long index) const;
  virtual double getNumValue(long index) const;
  virtual void* getAnyValue(long index) const;

  virtual bool supportDuplicates() const;
  virtual bool isSortedAsc() const;
  virtual bool isSortedDesc() const;
  /// Brings the elements into an order. This base does nothing.
  virtual void sort(long sense);

  /// Smaller integers mean the integer, where a call would lie between it and the double.
  template <std::integral T>
  long getIndex(T value) const {
    return getIndex(static_cast<long>(value));
  }
  /// A `SortSense`.
  long getSortSense() const;
};

/// Handle of a collection with positions.
class ZYL_EXPORT ZylDiscreteDataCollection : public ZylDataCollection {
 public:
  using ImplClass = ZylDiscreteDataCollectionI;
  ZylDiscreteDataCollection() = default;
  explicit ZylDiscreteDataCollection(ZylDiscreteDataCollectionI* impl) noexcept
      : ZylDataCollection(impl) {}
  ZylDiscreteDataCollectionI* getImpl() const noexcept {
    return static_cast<ZylDiscreteDataCollectionI*>(_impl);
  }

  // Each raises `ZylEmptyHandleException` "ZylDiscreteDataCollection: Using empty handle" on an
  // empty handle.
  long getSize() const;
  ZylObjectBase getMapItem(long index) const;
  /// Positions of values, -1 for what is not there. Raise `ZylNotImplemented` for a value that is
  /// not of the collection's type.
  long getIndex(long value) const;
  long getIndex(double value) const;
  long getIndex(void* value) const;
  long getIndex(ZylSymbol value) const;
  /// The position of the environment's symbol of this text, which is made if it is new. Raises
  /// `ZylEmptyHandleException` "ZylDataCollection: Using empty string" for null.
  long getIndex(const char* text) const;
  template <std::integral T>
  long getIndex(T value) const {
    return getIndex(static_cast<long>(value));
  }
  /// Whether the elements are in ascending, or in descending, order by construction.
  bool isSorted() const;
  bool isReversed() const;

 private:
  ZYL_LOCAL ZylDiscreteDataCollectionI* checkedDiscrete() const;
};

#endif
