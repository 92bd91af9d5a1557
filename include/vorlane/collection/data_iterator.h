// Iterators over the elements of collections.
//
// An iterator stands on a value or on none. Those of integers and of numbers see only the values
// within a window. An iterator refers to its collection and must not outlive it; edits of the
// collection between two steps are seen. Not synchronised.

#ifndef ZYL_COLLECTION_DATA_ITERATOR_H
#define ZYL_COLLECTION_DATA_ITERATOR_H

#include "vorlane/collection/typed_collection.h"

/// An iterator over a collection of any type.
///
/// Made on the stack, or in a memory manager by `new (alloc)` and deleted by who asked for it.
class ZYL_EXPORT ZylDataIterator : public ZylMemoryManagerObjectI {
 public:
  /// Belongs to `alloc` or, for null, to the environment of the collection. Both may be null.
  ZylDataIterator(ZylGenAlloc* alloc, const ZylDiscreteDataCollectionI* collection);

  /// Takes another collection, or none; where the iterator stands is open until it is reset.
  virtual void setCollection(const ZylDiscreteDataCollectionI* collection);
  /// Moves to the next value. Returns whether there is one.
  virtual bool next() = 0;
  /// Starts again: moves to the first value, if there is one. No iterator of the library reads
  /// `flag`; a front end that derives its own gives it a meaning. This base leaves `isOk` false.
  virtual void reset(long flag);
  /// Whether what the iterator yields depends on other iterators. False in this base.
  virtual bool isOpen() const;

  /// Whether the iterator stands on a value.
  bool isOk() const noexcept { return _isOk != 0; }
  const ZylDiscreteDataCollectionI* getCollection() const noexcept { return _collection; }

 protected:
  const ZylDiscreteDataCollectionI* _collection;
  long _isOk = 0;
};

namespace zyl::detail {

/// Bounds that shut out no value.
template <class T>
struct WidestWindow;
template <>
struct WidestWindow<long> {
  static constexpr long Min = ZylIntMin;
  static constexpr long Max = ZylIntMax;
};
template <>
struct WidestWindow<double> {
  static constexpr double Min = -ZylInfinity;
  static constexpr double Max = ZylInfinity;
};

/// An iterator over the values in [min, max].
template <class T>
class WindowIterator : public ZylDataIterator {
 public:
  using ElementType = T;
  using Widest = WidestWindow<T>;
  using ZylDataIterator::reset;

  WindowIterator(ZylGenAlloc* alloc, const ZylDiscreteDataCollectionI* collection)
      : ZylDataIterator(alloc, collection) {}
  /// Opens the widest window, narrows it to [min, max] and moves to the first value.
  virtual void reset(T min, T max, long flag) {
    _min = Widest::Min;
    _max = Widest::Max;
    checkMinMax(min, max);
    this->reset(flag);
  }
  /// Narrows the window to its common part with [min, max], and stands on its lower end if it is
  /// not empty.
  virtual void checkMinMax(T min, T max) {
    if (min > _min) _min = min;
    if (max < _max) _max = max;
    _current = _min;
    _isOk = _min <= _max ? 1 : 0;
  }

  T getMin() const noexcept { return _min; }
  T getMax() const noexcept { return _max; }
  /// The value stood on; without a meaning while there is none.
  T operator*() const noexcept { return _current; }

 protected:
  T _min = Widest::Min;
  T _max = Widest::Max;
  T _current{};
  long _position = -1;
};

}  // namespace zyl::detail

/// An iterator over integers.
class ZYL_EXPORT ZylIntDataIterator : public zyl::detail::WindowIterator<long> {
 public:
  using WindowIterator::WindowIterator;
  /// The smallest and the largest value of the collection, whatever the window is: the widest
  /// bounds without a collection, these crossed for one without elements. This base knows no
  /// elements.
  virtual long recomputeMin() const;
  virtual long recomputeMax() const;
};

/// An iterator over numbers.
class ZYL_EXPORT ZylNumDataIterator : public zyl::detail::WindowIterator<double> {
 public:
  using WindowIterator::WindowIterator;
  /// As for integers, with the infinities as the widest bounds.
  virtual double recomputeLB() const;
  virtual double recomputeUB() const;
};

/// An iterator over addresses.
class ZYL_EXPORT ZylAnyDataIterator : public ZylDataIterator {
 public:
  using ElementType = void*;
  using ZylDataIterator::reset;
  using ZylDataIterator::ZylDataIterator;
  /// Moves to a value, to none if the collection lacks it. This base stands on none.
  virtual void reset(void* value, long flag);
  /// The value stood on; without a meaning while there is none.
  void* operator*() const noexcept { return _current; }

 protected:
  void* _current = nullptr;
  long _position = -1;
};

namespace zyl::detail {

[[noreturn]] ZYL_EXPORT void raiseWrongCollection();

/// A walk over the array of a collection, in its order: in no set the values need to be sorted.
///
/// Stands on no value until it is reset or moved. `Derived::EmptyText()` is the class's text for
/// having no collection.
template <class Derived, class Base, class Collection>
class DefaultDataIterator : public Base {
 public:
  using Element = typename Base::ElementType;
  using Base::reset;

  DefaultDataIterator(ZylGenAlloc* alloc, const Collection* collection) : Base(alloc, collection) {}
  /// Raises `ZylWrongUsage` for a collection of another element type.
  void setCollection(const ZylDiscreteDataCollectionI* collection) override {
    if (collection != nullptr && zyl::as<Collection>(collection) == nullptr) {
      raiseWrongCollection();
    }
    Base::setCollection(collection);
  }
  /// Moves to the next value in the window. Raises `ZylWrongUsage` without a collection.
  bool next() override {
    if (this->_collection == nullptr) ZylRaiseWrongUsage(Derived::EmptyText());
    this->_isOk = 0;
    const auto array = typed()->getArray();
    const long size = array.getSize();
    while (this->_position < size && ++this->_position < size) {
      const Element value = array[this->_position];
      if (!isInWindow(value)) continue;
      this->_current = value;
      this->_isOk = 1;
      return true;
    }
    return false;
  }
  void reset(long) override {
    this->_position = -1;
    this->_isOk = 0;
    if (this->_collection != nullptr) this->next();
  }

 protected:
  const Collection* typed() const { return static_cast<const Collection*>(this->_collection); }
  // The least of the values by `isLess`, `none` if there are none.
  template <class Less>
  Element extreme(Element none, Less isLess) const {
    const auto array = typed()->getArray();
    for (long i = 0; i < array.getSize(); ++i) {
      if (isLess(array[i], none)) none = array[i];
    }
    return none;
  }

 private:
  bool isInWindow(Element value) const {
    if constexpr (std::is_pointer_v<Element>) {
      return true;
    } else {
      return value >= this->_min && value <= this->_max;
    }
  }
};

}  // namespace zyl::detail

/// Walks a collection of integers.
class ZYL_EXPORT ZylIntDefaultDataIterator
    : public zyl::detail::DefaultDataIterator<ZylIntDefaultDataIterator, ZylIntDataIterator,
                                              ZylIntCollectionI> {
 public:
  using DefaultDataIterator::DefaultDataIterator;
  static const char* EmptyText() { return "Using empty ZylIntCollection handle."; }
  long recomputeMin() const override;
  long recomputeMax() const override;
};

/// Walks a collection of numbers; a NaN lies in no window.
class ZYL_EXPORT ZylNumDefaultDataIterator
    : public zyl::detail::DefaultDataIterator<ZylNumDefaultDataIterator, ZylNumDataIterator,
                                              ZylNumCollectionI> {
 public:
  using DefaultDataIterator::DefaultDataIterator;
  static const char* EmptyText() { return "Using empty ZylNumCollection handle."; }
  double recomputeLB() const override;
  double recomputeUB() const override;
};

/// Walks a collection of addresses.
class ZYL_EXPORT ZylAnyDefaultDataIterator
    : public zyl::detail::DefaultDataIterator<ZylAnyDefaultDataIterator, ZylAnyDataIterator,
                                              ZylAnyCollectionI> {
 public:
  using DefaultDataIterator::DefaultDataIterator;
  using DefaultDataIterator::reset;
  static const char* EmptyText() { return "Using empty ZylAnyCollection handle2."; }
  /// Moves to the first place of a value and goes on from there.
  void reset(void* value, long flag) override;
};

namespace zyl::detail {
/// Never stands on a value.
template <class Base>
class DummyDataIterator : public Base {
 public:
  explicit DummyDataIterator(ZylGenAlloc* alloc) : Base(alloc, nullptr) {}
  bool next() override { return false; }
};
/// The same with a window, which it keeps and yields nothing of.
template <class Base>
class DummyWindowIterator : public DummyDataIterator<Base> {
 public:
  using DummyDataIterator<Base>::DummyDataIterator;
  void checkMinMax(typename Base::ElementType min, typename Base::ElementType max) override {
    Base::checkMinMax(min, max);
    this->_isOk = 0;
  }
};
}  // namespace zyl::detail

// For use when no collection is at hand.
class ZYL_EXPORT ZylDummyIntDataIterator final
    : public zyl::detail::DummyWindowIterator<ZylIntDataIterator> {
 public:
  using DummyWindowIterator::DummyWindowIterator;
};
class ZYL_EXPORT ZylDummyNumDataIterator final
    : public zyl::detail::DummyWindowIterator<ZylNumDataIterator> {
 public:
  using DummyWindowIterator::DummyWindowIterator;
};
class ZYL_EXPORT ZylDummyAnyDataIterator final
    : public zyl::detail::DummyDataIterator<ZylAnyDataIterator> {
 public:
  using DummyDataIterator::DummyDataIterator;
};

#endif
