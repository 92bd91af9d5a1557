// Changes of ranges.

#ifndef ZYL_CONSTRAINT_RANGE_CHANGE_H
#define ZYL_CONSTRAINT_RANGE_CHANGE_H

#include "vorlane/constraint/range.h"
#include "vorlane/expr/objective_change.h"

ZYL_CHANGE_FIELD(Range, ZylRangeI*, ZylRange, getRange)
ZYL_CHANGE_FIELD(Ranges, ZylRangeArray, const ZylRangeArray&, getRanges)

/// The bounds of a range were set.
class ZYL_EXPORT ZylSetRangeBounds final
    : public zyl::ChangeOf<zyl::change::Range, zyl::change::LB, zyl::change::UB> {
  ZYL_CHANGE(ZylSetRangeBounds, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The bounds of ranges were set in one call; null elements had no part in it.
class ZYL_EXPORT ZylSetRangeArrayBounds final
    : public zyl::ChangeOf<zyl::change::Ranges, zyl::change::LBs, zyl::change::UBs> {
  ZYL_CHANGE(ZylSetRangeArrayBounds, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// A coefficient of a range was set.
class ZYL_EXPORT ZylSetRangeCoef final
    : public zyl::ChangeOf<zyl::change::Range, zyl::change::Var, zyl::change::NewValue,
                           zyl::change::OldValue> {
  ZYL_CHANGE(ZylSetRangeCoef, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// Coefficients of a range were set in one call.
class ZYL_EXPORT ZylSetRangeCoefs final
    : public zyl::ChangeOf<zyl::change::Range, zyl::change::Vars, zyl::change::NewValues,
                           zyl::change::OldValues> {
  ZYL_CHANGE(ZylSetRangeCoefs, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The expression of a range was replaced; the old one is still there.
class ZYL_EXPORT ZylSetRangeExpr final
    : public zyl::ExprReplacedIn<zyl::change::Range, zyl::change::OldExpr, zyl::change::NewExpr> {
  ZYL_CHANGE(ZylSetRangeExpr, ZylChange)
 public:
  using ExprReplacedIn::ExprReplacedIn;
};

/// The entry of a new variable in a range.
class ZYL_EXPORT ZylAddValueToRange final
    : public zyl::EntryOf<ZylAddValueToRange, zyl::change::Range, zyl::change::Value> {
  ZYL_CHANGE(ZylAddValueToRange, ZylAddNumVar)
 public:
  using EntryOf::EntryOf;
  void apply() const override;
};

#endif
