// Ranges: collections defined by two bounds, without stored elements.

#ifndef ZYL_COLLECTION_RANGE_H
#define ZYL_COLLECTION_RANGE_H

#include "vorlane/collection/data_iterator.h"
#include "vorlane/env/types.h"

/// The integers from a lower to an upper bound. The bounds are taken as they are: crossed bounds
/// give a size of at most 0.
///
/// The keys of the shared domains are ranges: bounds are read inline, and the size is six words.
class ZYL_EXPORT ZylIntRangeI final : public ZylIntAbstractSetI {
  ZYL_TYPE(ZylIntRangeI, ZylIntAbstractSetI)
 public:
  /// The widest range.
  explicit ZylIntRangeI(ZylEnvI* env) : ZylIntRangeI(env, ZylIntMin, ZylIntMax) {}
  ZylIntRangeI(ZylEnvI* env, long lower, long upper)
      : ZylIntAbstractSetI(env), _lowerBound(lower), _upperBound(upper) {}
  explicit ZylIntRangeI(const ZylIntRangeI* other)
      : ZylIntRangeI(other->getEnv(), other->_lowerBound, other->_upperBound) {}

  ZylIntRangeI* copy() const override;
  long getDataType() const override;
  bool isIntRange() const override;
  void display(std::ostream& stream) const override;
  ZylIntRangeI* makeClone(ZylEnvI* env) const override;

  /// `ZylIntMax` if a bound is at its extreme on its own side; then positions go by the lower bound
  /// all the same, and may lie beyond it.
  long getSize() const override;
  [[nodiscard]] ZylDataIterator* iterator(ZylGenAlloc* alloc) const override;
  using ZylIntAbstractSetI::getIndex;
  /// Position of a value, -1 if it is outside.
  long getIndex(long value) const override;

  /// Raises `ZylNotImplemented`: no elements are stored.
  ZylIntArray getArray() const override;
  bool contains(long value) const override { return _lowerBound <= value && value <= _upperBound; }
  /// The value at a position. Raises `ZylWrongUsage` outside.
  long getValue(long index) const override;
  long getNext(long element, long n) const override;
  long getPrevious(long element, long n) const override;
  long getNextC(long element, long n) const override;
  long getPreviousC(long element, long n) const override;
  /// The bounds, also if they are crossed.
  long getFirst() const override { return _lowerBound; }
  long getLast() const override { return _upperBound; }
  long getLB() const noexcept override { return _lowerBound; }
  long getUB() const noexcept override { return _upperBound; }

  /// Raise `ZylDataCollection::ImmutableException` while the range is locked.
  void setLB(long lower);
  void setUB(long upper);
  /// The one domain of these bounds.
  ZylVarDomainI* getSharedDomain();

 private:
  ZYL_LOCAL void requireElement(long element, long next, long circular) const;
  ZYL_LOCAL long step(long element, long n, long next) const;
  ZYL_LOCAL long stepC(long element, long n, long next) const;

  long _lowerBound;
  long _upperBound;
};

/// The real numbers from a lower to an upper bound.
class ZYL_EXPORT ZylNumRangeI final : public ZylContinuousDataI {
  ZYL_TYPE(ZylNumRangeI, ZylContinuousDataI)
 public:
  ZylNumRangeI(ZylEnvI* env, double lower, double upper)
      : ZylContinuousDataI(env), _lowerBound(lower), _upperBound(upper) {}
  explicit ZylNumRangeI(const ZylNumRangeI* other)
      : ZylNumRangeI(other->getEnv(), other->_lowerBound, other->_upperBound) {}

  bool isKvlRefCounted() const override;
  ZylNumRangeI* copy() const override;
  long getDataType() const override;
  bool isNumRange() const override;
  void display(std::ostream& stream) const override;
  ZylNumRangeI* makeClone(ZylEnvI* env) const override;

  double getLB() const noexcept { return _lowerBound; }
  double getUB() const noexcept { return _upperBound; }
  /// Raise `ZylDataCollection::ImmutableException` while the range is locked.
  void setLB(double lower);
  void setUB(double upper);
  /// The one domain of these bounds, null for the float domain from 0 to infinity.
  ZylVarDomainI* getSharedDomain();

 private:
  double _lowerBound;
  double _upperBound;
};

/// Handle of an integer range.
class ZYL_EXPORT ZylIntRange : public ZylIntCollection {
 public:
  using ImplClass = ZylIntRangeI;

  /// Walks a range upwards. A range without a bound is not walked: the iterator stands on its lower
  /// bound and ends there.
  class ZYL_EXPORT Iterator final : public ZylIntDataIterator {
   public:
    /// Stand on the lower bound if the range has elements.
    explicit Iterator(const ZylIntRangeI* range) : Iterator(nullptr, range) {}
    Iterator(ZylGenAlloc* alloc, const ZylIntRangeI* range);
    /// Raises `ZylEmptyHandleException` for an empty handle.
    explicit Iterator(const ZylIntRange& range) : Iterator(range.checkedRange()) {}

    /// Raises `ZylWrongUsage` for a collection that is no integer range.
    void setCollection(const ZylDiscreteDataCollectionI* collection) override;
    bool next() override;
    /// Opens the window of the range's bounds and stands on the lower one, if the window is not
    /// empty; on none without a range.
    void reset(long flag) override;
    void reset(long min, long max, long flag) override;
    /// The bounds of the range.
    long recomputeMin() const override;
    long recomputeMax() const override;

   private:
    const ZylIntRangeI* range() const { return static_cast<const ZylIntRangeI*>(_collection); }
  };

  ZylIntRange() = default;
  explicit ZylIntRange(ZylIntRangeI* impl) noexcept : ZylIntCollection(impl) {}
  /// The widest range. Each constructor raises `ZylEmptyHandleException` for an empty environment
  /// handle.
  explicit ZylIntRange(const ZylEnv& env);
  ZylIntRange(const ZylEnv& env, long lower, long upper);
  ZylIntRangeI* getImpl() const noexcept { return static_cast<ZylIntRangeI*>(_impl); }

  // Each raises `ZylEmptyHandleException` "ZylIntRange: Using empty handle" on an empty handle.
  long getLB() const { return checkedRange()->getLB(); }
  long getUB() const { return checkedRange()->getUB(); }
  long getFirst() const { return checkedRange()->getFirst(); }
  long getLast() const { return checkedRange()->getLast(); }
  /// The value `n` above, or below, an element; the circular forms go on from the other bound.
  /// Raise `ZylCollectionElementNotFoundException` for a value outside the range,
  /// `ZylOperatorNextElementNotFoundException` for a step out of it.
  long getNext(long element, long n = 1) const { return checkedRange()->getNext(element, n); }
  long getPrevious(long element, long n = 1) const {
    return checkedRange()->getPrevious(element, n);
  }
  long getNextC(long element, long n = 1) const { return checkedRange()->getNextC(element, n); }
  long getPreviousC(long element, long n = 1) const {
    return checkedRange()->getPreviousC(element, n);
  }

 private:
  ZylIntRangeI* checkedRange() const {
    return static_cast<ZylIntRangeI*>(checked("ZylIntRange: Using empty handle"));
  }
};

/// Handle of a numeric range.
class ZYL_EXPORT ZylNumRange : public ZylDataCollection {
 public:
  using ImplClass = ZylNumRangeI;
  ZylNumRange() = default;
  explicit ZylNumRange(ZylNumRangeI* impl) noexcept : ZylDataCollection(impl) {}
  /// Raises `ZylEmptyHandleException` for an empty environment handle.
  ZylNumRange(const ZylEnv& env, double lower, double upper);
  ZylNumRangeI* getImpl() const noexcept { return static_cast<ZylNumRangeI*>(_impl); }
  double getLB() const { return checkedRange()->getLB(); }
  double getUB() const { return checkedRange()->getUB(); }

 private:
  ZylNumRangeI* checkedRange() const {
    return static_cast<ZylNumRangeI*>(checked("ZylNumRange: Using empty handle"));
  }
};

#endif
