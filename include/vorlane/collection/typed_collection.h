// Collections of integers, of numbers and of objects: what they share, and the sets among them.

#ifndef ZYL_COLLECTION_TYPED_COLLECTION_H
#define ZYL_COLLECTION_TYPED_COLLECTION_H

#include "vorlane/collection/collection_exception.h"
#include "vorlane/collection/discrete_collection.h"

namespace zyl::detail {

/// What the collections of one element type share; `Array` is the handle of an array of elements.
template <class Element, class Array>
class CollectionOf : public ZylDiscreteDataCollectionI {
 public:
  using ElementType = Element;
  using ZylDiscreteDataCollectionI::getIndex;

  explicit CollectionOf(ZylEnvI* env) : ZylDiscreteDataCollectionI(env) {}
  ZylObjectBase getMapItem(long index) const override { return ZylObjectBase(getValue(index)); }

  /// The elements in order, which the collection goes on owning. Raises `ZylNotImplemented` where
  /// they are not stored.
  virtual Array getArray() const = 0;
  virtual bool contains(Element value) const { return this->getIndex(value) != -1; }
  /// The element at a position. Raises an exception of the collection's own outside.
  virtual Element getValue(long index) const = 0;
};

/// A step of `n` positions, forth for a non-zero `next`. Returns -1 where it leaves [0, size).
ZYL_EXPORT long stepPosition(long position, long n, long size, long next, long circular) noexcept;

/// What the sets of one element type share: steps from element to element, by position.
///
/// `Collection` is the class of collections whose sets these are.
template <class Collection>
class AbstractSetOf : public Collection {
 public:
  using Element = typename Collection::ElementType;
  using Collection::getIndex;

  explicit AbstractSetOf(ZylEnvI* env) : Collection(env) {}
  bool supportDuplicates() const override { return false; }

  /// The element `n` positions behind, or before, `element`; the circular forms go on from the
  /// other end. Raise `ZylCollectionElementNotFoundException` if the set lacks the element,
  /// `ZylOperatorNextElementNotFoundException` for a step out of the set.
  virtual Element getNext(Element element, long n) const { return step(element, n, 1, 0); }
  virtual Element getPrevious(Element element, long n) const { return step(element, n, 0, 0); }
  virtual Element getNextC(Element element, long n) const { return step(element, n, 1, 1); }
  virtual Element getPreviousC(Element element, long n) const { return step(element, n, 0, 1); }
  /// Raise `ZylFirstLastElementNotFoundException` on a set without elements.
  virtual Element getFirst() const {
    if (this->getSize() <= 0) throw ZylFirstLastElementNotFoundException(1);
    return this->getValue(0);
  }
  virtual Element getLast() const {
    const long size = this->getSize();
    if (size <= 0) throw ZylFirstLastElementNotFoundException(0);
    return this->getValue(size - 1);
  }

 private:
  Element step(Element element, long n, long next, long circular) const {
    const long position = this->getIndex(element);
    if (position == -1) {
      throw ZylCollectionElementNotFoundException(ZylObjectBase(element), next, circular);
    }
    const long target = stepPosition(position, n, this->getSize(), next, circular);
    if (target == -1) {
      throw ZylOperatorNextElementNotFoundException(ZylObjectBase(element), next, circular);
    }
    return this->getValue(target);
  }
};

}  // namespace zyl::detail

/// A collection of integers.
class ZYL_EXPORT ZylIntCollectionI : public zyl::detail::CollectionOf<long, ZylIntArray> {
  ZYL_TYPE(ZylIntCollectionI, ZylDiscreteDataCollectionI)
 public:
  explicit ZylIntCollectionI(ZylEnvI* env) : CollectionOf(env) {}
  bool isIntCollection() const override;
  using CollectionOf::getIndex;
  /// The position of the integral part, toward zero.
  long getIndex(double value) const override;
  long getIndex(void* value) const override;
  long getIndex(ZylSymbol value) const override;
  /// The same as `getValue`.
  long getIntValue(long index) const override;
  double getNumValue(long index) const override;
  void* getAnyValue(long index) const override;
};

/// A collection of numbers.
class ZYL_EXPORT ZylNumCollectionI : public zyl::detail::CollectionOf<double, ZylNumArray> {
  ZYL_TYPE(ZylNumCollectionI, ZylDiscreteDataCollectionI)
 public:
  explicit ZylNumCollectionI(ZylEnvI* env) : CollectionOf(env) {}
  bool isNumCollection() const override;
  using CollectionOf::getIndex;
  long getIndex(long value) const override;
  long getIndex(void* value) const override;
  long getIndex(ZylSymbol value) const override;
  long getIntValue(long index) const override;
  /// The same as `getValue`.
  double getNumValue(long index) const override;
  void* getAnyValue(long index) const override;
};

/// A collection of addresses, which may be those of symbols.
class ZYL_EXPORT ZylAnyCollectionI : public zyl::detail::CollectionOf<void*, ZylAnyArray> {
  ZYL_TYPE(ZylAnyCollectionI, ZylDiscreteDataCollectionI)
 public:
  explicit ZylAnyCollectionI(ZylEnvI* env) : CollectionOf(env) {}
  bool isAnyCollection() const override;
  /// The object, or the symbol if `isSymbolSet`.
  ZylObjectBase getMapItem(long index) const override;
  using CollectionOf::getIndex;
  long getIndex(long value) const override;
  long getIndex(double value) const override;
  /// The position of the symbol's address.
  long getIndex(ZylSymbol value) const override;
  long getIntValue(long index) const override;
  double getNumValue(long index) const override;
  /// The same as `getValue`.
  void* getAnyValue(long index) const override;
};

/// A set of integers.
class ZYL_EXPORT ZylIntAbstractSetI : public zyl::detail::AbstractSetOf<ZylIntCollectionI> {
  ZYL_TYPE(ZylIntAbstractSetI, ZylIntCollectionI)
 public:
  explicit ZylIntAbstractSetI(ZylEnvI* env) : AbstractSetOf(env) {}
  /// The position of an integer item. Raises `ZylWrongUsage` for another kind of item.
  long getMapItemIndex(ZylObjectBase item) const override;
  /// The smallest and the largest element, at most `ZylIntMax` and at least `ZylIntMin`; these
  /// themselves for a set without elements. O(n).
  virtual long getLB() const;
  virtual long getUB() const;
};

/// A set of numbers.
class ZYL_EXPORT ZylNumAbstractSetI : public zyl::detail::AbstractSetOf<ZylNumCollectionI> {
  ZYL_TYPE(ZylNumAbstractSetI, ZylNumCollectionI)
 public:
  explicit ZylNumAbstractSetI(ZylEnvI* env) : AbstractSetOf(env) {}
  /// The position of a number item. Raises `ZylWrongUsage` for another kind of item.
  long getMapItemIndex(ZylObjectBase item) const override;
  /// The smallest and the largest element; plus and minus infinity for a set without elements.
  /// O(n).
  virtual double getLB() const;
  virtual double getUB() const;
};

/// A set of addresses.
class ZYL_EXPORT ZylAnyAbstractSetI : public zyl::detail::AbstractSetOf<ZylAnyCollectionI> {
  ZYL_TYPE(ZylAnyAbstractSetI, ZylAnyCollectionI)
 public:
  explicit ZylAnyAbstractSetI(ZylEnvI* env) : AbstractSetOf(env) {}
  /// The position of an object, of a symbol, or of the environment's symbol of a text, which is
  /// made if it is new. Raises `ZylWrongUsage` for another kind of item.
  long getMapItemIndex(ZylObjectBase item) const override;
};

/// Columns of a front end's tables; the library makes none.
class ZYL_EXPORT ZylIntAbstractDataColumnI : public ZylIntCollectionI {
  ZYL_TYPE(ZylIntAbstractDataColumnI, ZylIntCollectionI)
 public:
  explicit ZylIntAbstractDataColumnI(ZylEnvI* env) : ZylIntCollectionI(env) {}
  bool isIntDataColumn() const override;
};
class ZYL_EXPORT ZylNumAbstractDataColumnI : public ZylNumCollectionI {
  ZYL_TYPE(ZylNumAbstractDataColumnI, ZylNumCollectionI)
 public:
  explicit ZylNumAbstractDataColumnI(ZylEnvI* env) : ZylNumCollectionI(env) {}
  bool isNumDataColumn() const override;
};
class ZYL_EXPORT ZylAnyAbstractDataColumnI : public ZylAnyCollectionI {
  ZYL_TYPE(ZylAnyAbstractDataColumnI, ZylAnyCollectionI)
 public:
  explicit ZylAnyAbstractDataColumnI(ZylEnvI* env) : ZylAnyCollectionI(env) {}
  bool isAnyDataColumn() const override;
};

namespace zyl::detail {
/// Handle of the collections of one element type. `Derived::EmptyText()` is the class's text for an
/// empty handle.
template <class Derived, class Impl>
class TypedCollection : public ZylDiscreteDataCollection {
 public:
  using ImplClass = Impl;
  using ElementType = typename Impl::ElementType;
  TypedCollection() = default;
  explicit TypedCollection(Impl* impl) noexcept : ZylDiscreteDataCollection(impl) {}
  Impl* getImpl() const noexcept { return static_cast<Impl*>(_impl); }

  // Each raises `ZylEmptyHandleException` with the class's text on an empty handle.
  bool contains(ElementType value) const { return checkedTyped()->contains(value); }
  /// The element at a position. Raises an exception of the collection's own outside.
  ElementType getValue(long index) const { return checkedTyped()->getValue(index); }

 private:
  Impl* checkedTyped() const { return static_cast<Impl*>(checked(Derived::EmptyText())); }
};
}  // namespace zyl::detail

/// Handle of a collection of integers.
class ZYL_EXPORT ZylIntCollection
    : public zyl::detail::TypedCollection<ZylIntCollection, ZylIntCollectionI> {
 public:
  using TypedCollection::TypedCollection;
  static const char* EmptyText() { return "ZylIntCollection: Using empty handle"; }
};

/// Handle of a collection of numbers.
class ZYL_EXPORT ZylNumCollection
    : public zyl::detail::TypedCollection<ZylNumCollection, ZylNumCollectionI> {
 public:
  using TypedCollection::TypedCollection;
  static const char* EmptyText() { return "ZylNumCollection: Using empty handle"; }
};

/// Handle of a collection of addresses.
class ZYL_EXPORT ZylAnyCollection
    : public zyl::detail::TypedCollection<ZylAnyCollection, ZylAnyCollectionI> {
 public:
  using TypedCollection::TypedCollection;
  static const char* EmptyText() { return "ZylAnyCollection: Using empty handle"; }
};

/// Whether two collections hold the same values in the same order. If the first is a range, only
/// sizes and bounds are compared, whatever the second is; so this is not symmetric. Raise
/// `ZylEmptyHandleException` with the class's text for an empty handle.
ZYL_EXPORT bool operator==(const ZylIntCollection& a, const ZylIntCollection& b);
ZYL_EXPORT bool operator==(const ZylNumCollection& a, const ZylNumCollection& b);

#endif
