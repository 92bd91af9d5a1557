// Changes of the ranges of quantified constraints.

#ifndef ZYL_CONSTRAINT_FOR_ALL_CHANGE_H
#define ZYL_CONSTRAINT_FOR_ALL_CHANGE_H

#include "vorlane/constraint/for_all.h"
#include "vorlane/expr/var_array.h"
#include "vorlane/model/change.h"

namespace zyl::detail {
/// What these changes share: the range; what has changed is the quantified constraint.
class ZYL_EXPORT ForAllRangeChange : public ZylChange {
 public:
  ZylExtractableI* getChangedExtractable() const override { return _range->getForAll(); }
  ZylForAllRange getRange() const { return ZylForAllRange(_range); }

 protected:
  explicit ForAllRangeChange(ZylForAllRangeI* range) : _range(range) {}
  ZylForAllRangeI* _range;
};
}  // namespace zyl::detail

/// Both bounds of the range were set.
class ZYL_EXPORT ZylSetForAllRangeBounds final : public zyl::detail::ForAllRangeChange {
  ZYL_CHANGE(ZylSetForAllRangeBounds, ZylChange)
 public:
  ZylSetForAllRangeBounds(ZylForAllRangeI* range, double lower, double upper)
      : ForAllRangeChange(range), _lower(lower), _upper(upper) {}
  double getLB() const noexcept { return _lower; }
  double getUB() const noexcept { return _upper; }

 private:
  double _lower;
  double _upper;
};

/// The lower bound of the range was set.
class ZYL_EXPORT ZylSetForAllRangeLB final : public zyl::detail::ForAllRangeChange {
  ZYL_CHANGE(ZylSetForAllRangeLB, ZylChange)
 public:
  ZylSetForAllRangeLB(ZylForAllRangeI* range, double lower)
      : ForAllRangeChange(range), _lower(lower) {}
  double getLB() const noexcept { return _lower; }

 private:
  double _lower;
};

/// The upper bound of the range was set.
class ZYL_EXPORT ZylSetForAllRangeUB final : public zyl::detail::ForAllRangeChange {
  ZYL_CHANGE(ZylSetForAllRangeUB, ZylChange)
 public:
  ZylSetForAllRangeUB(ZylForAllRangeI* range, double upper)
      : ForAllRangeChange(range), _upper(upper) {}
  double getUB() const noexcept { return _upper; }

 private:
  double _upper;
};

/// The coefficient of a variable in the range was set.
class ZYL_EXPORT ZylSetForAllRangeLinearCoef final : public zyl::detail::ForAllRangeChange {
  ZYL_CHANGE(ZylSetForAllRangeLinearCoef, ZylChange)
 public:
  ZylSetForAllRangeLinearCoef(ZylForAllRangeI* range, ZylNumVarI* variable, double newValue)
      : ForAllRangeChange(range), _variable(variable), _newValue(newValue) {}
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  double getNewValue() const noexcept { return _newValue; }

 private:
  ZylNumVarI* _variable;
  double _newValue;
};

/// The coefficients of variables in the range were set, position by position.
class ZYL_EXPORT ZylSetForAllRangeLinearCoefs final : public zyl::detail::ForAllRangeChange {
  ZYL_CHANGE(ZylSetForAllRangeLinearCoefs, ZylChange)
 public:
  ZylSetForAllRangeLinearCoefs(ZylForAllRangeI* range, const ZylNumVarArray& variables,
                               const ZylNumArray& newValues)
      : ForAllRangeChange(range), _variables(variables), _newValues(newValues) {}
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  const ZylNumArray& getNewValues() const noexcept { return _newValues; }

 private:
  ZylNumVarArray _variables;
  ZylNumArray _newValues;
};

#endif
