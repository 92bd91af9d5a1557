// Ranges: collections defined by two bounds, without stored elements.

#ifndef ZYL_COLLECTION_RANGE_H
#define ZYL_COLLECTION_RANGE_H

#include "vorlane/collection/data_collection.h"
#include "vorlane/env/types.h"

/// The integers from a lower to an upper bound. The bounds are taken as they are: crossed bounds
/// give a size of at most 0.
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

  long getLB() const noexcept { return _lowerBound; }
  long getUB() const noexcept { return _upperBound; }
  /// Raise `ZylDataCollection::ImmutableException` while the range is locked.
  void setLB(long lower);
  void setUB(long upper);
  /// `ZylIntMax` if a bound is at its extreme.
  long getSize() const noexcept;
  bool contains(long value) const noexcept { return _lowerBound <= value && value <= _upperBound; }
  /// Position of a value, -1 if it is outside.
  long getIndex(long value) const noexcept { return contains(value) ? value - _lowerBound : -1; }
  /// The value at a position. Raises `ZylWrongUsage` outside.
  long getValue(long index) const;
  long getFirst() const noexcept { return _lowerBound; }
  long getLast() const noexcept { return _upperBound; }
  /// The one domain of these bounds.
  ZylVarDomainI* getSharedDomain();

 private:
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
  void setLB(double lower);
  void setUB(double upper);
  /// The one domain of these bounds, null for the float domain from 0 to infinity.
  ZylVarDomainI* getSharedDomain();

 private:
  double _lowerBound;
  double _upperBound;
};

/// Handle of an integer range.
class ZYL_EXPORT ZylIntRange : public ZylDataCollection {
 public:
  using ImplClass = ZylIntRangeI;
  ZylIntRange() = default;
  explicit ZylIntRange(ZylIntRangeI* impl) noexcept : ZylDataCollection(impl) {}
  explicit ZylIntRange(const ZylEnv& env);
  ZylIntRange(const ZylEnv& env, long lower, long upper);
  ZylIntRangeI* getImpl() const noexcept { return static_cast<ZylIntRangeI*>(_impl); }
  long getLB() const { return checkedRange()->getLB(); }
  long getUB() const { return checkedRange()->getUB(); }

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
