// Changes of the ranges of quantified constraints. What has changed is the quantified constraint.

#ifndef ZYL_CONSTRAINT_FOR_ALL_CHANGE_H
#define ZYL_CONSTRAINT_FOR_ALL_CHANGE_H

#include "vorlane/constraint/for_all.h"
#include "vorlane/expr/variable_change.h"

ZYL_CHANGE_FIELD(ForAllRange, ZylForAllRangeI*, ZylForAllRange, getRange)

namespace zyl::detail {
/// A change of a range of a quantified constraint.
template <class... Fields>
class ZYL_EXPORT ForAllRangeChange : public ChangeOf<change::ForAllRange, Fields...> {
 public:
  using ChangeOf<change::ForAllRange, Fields...>::ChangeOf;
  ZylExtractableI* getChangedExtractable() const override {
    return change::ForAllRange::argument()->getForAll();
  }
};
}  // namespace zyl::detail

/// Both bounds of the range were set.
class ZYL_EXPORT ZylSetForAllRangeBounds final
    : public zyl::detail::ForAllRangeChange<zyl::change::LB, zyl::change::UB> {
  ZYL_CHANGE(ZylSetForAllRangeBounds, ZylChange)
 public:
  using ForAllRangeChange::ForAllRangeChange;
};

/// The lower bound of the range was set.
class ZYL_EXPORT ZylSetForAllRangeLB final
    : public zyl::detail::ForAllRangeChange<zyl::change::LB> {
  ZYL_CHANGE(ZylSetForAllRangeLB, ZylChange)
 public:
  using ForAllRangeChange::ForAllRangeChange;
};

/// The upper bound of the range was set.
class ZYL_EXPORT ZylSetForAllRangeUB final
    : public zyl::detail::ForAllRangeChange<zyl::change::UB> {
  ZYL_CHANGE(ZylSetForAllRangeUB, ZylChange)
 public:
  using ForAllRangeChange::ForAllRangeChange;
};

/// The coefficient of a variable in the range was set.
class ZYL_EXPORT ZylSetForAllRangeLinearCoef final
    : public zyl::detail::ForAllRangeChange<zyl::change::Var, zyl::change::NewValue> {
  ZYL_CHANGE(ZylSetForAllRangeLinearCoef, ZylChange)
 public:
  using ForAllRangeChange::ForAllRangeChange;
};

/// The coefficients of variables in the range were set, position by position.
class ZYL_EXPORT ZylSetForAllRangeLinearCoefs final
    : public zyl::detail::ForAllRangeChange<zyl::change::Vars, zyl::change::NewValues> {
  ZYL_CHANGE(ZylSetForAllRangeLinearCoefs, ZylChange)
 public:
  using ForAllRangeChange::ForAllRangeChange;
};

#endif
