// Changes of ranges.

#ifndef ZYL_CONSTRAINT_RANGE_CHANGE_H
#define ZYL_CONSTRAINT_RANGE_CHANGE_H

#include "vorlane/constraint/range.h"
#include "vorlane/expr/variable_change.h"

/// The bounds of a range were set.
class ZYL_EXPORT ZylSetRangeBounds final : public ZylChange {
  ZYL_CHANGE(ZylSetRangeBounds, ZylChange)
 public:
  ZylSetRangeBounds(ZylRangeI* range, double lower, double upper)
      : _range(range), _lower(lower), _upper(upper) {}
  ZylExtractableI* getChangedExtractable() const override { return _range; }
  ZylRange getRange() const { return ZylRange(_range); }
  double getLB() const noexcept { return _lower; }
  double getUB() const noexcept { return _upper; }

 private:
  ZylRangeI* _range;
  double _lower;
  double _upper;
};

/// The bounds of ranges were set in one call; null elements had no part in it.
class ZYL_EXPORT ZylSetRangeArrayBounds final : public ZylChange {
  ZYL_CHANGE(ZylSetRangeArrayBounds, ZylChange)
 public:
  ZylSetRangeArrayBounds(const ZylRangeArray& ranges, const ZylNumArray& lower,
                         const ZylNumArray& upper)
      : _ranges(ranges), _lower(lower), _upper(upper) {}
  bool isApplyingOnArray() const override { return true; }
  ZylExtractableArray getChangedExtractableArray() const override { return _ranges; }
  const ZylRangeArray& getRanges() const noexcept { return _ranges; }
  const ZylNumArray& getLBs() const noexcept { return _lower; }
  const ZylNumArray& getUBs() const noexcept { return _upper; }

 private:
  ZylRangeArray _ranges;
  ZylNumArray _lower;
  ZylNumArray _upper;
};

/// A coefficient of a range was set.
class ZYL_EXPORT ZylSetRangeCoef final : public ZylChange {
  ZYL_CHANGE(ZylSetRangeCoef, ZylChange)
 public:
  ZylSetRangeCoef(ZylRangeI* range, ZylNumVarI* variable, double newValue, double oldValue)
      : _range(range), _variable(variable), _newValue(newValue), _oldValue(oldValue) {}
  ZylExtractableI* getChangedExtractable() const override { return _range; }
  ZylRange getRange() const { return ZylRange(_range); }
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  double getNewValue() const noexcept { return _newValue; }
  double getOldValue() const noexcept { return _oldValue; }

 private:
  ZylRangeI* _range;
  ZylNumVarI* _variable;
  double _newValue;
  double _oldValue;
};

/// Coefficients of a range were set in one call.
class ZYL_EXPORT ZylSetRangeCoefs final : public ZylChange {
  ZYL_CHANGE(ZylSetRangeCoefs, ZylChange)
 public:
  ZylSetRangeCoefs(ZylRangeI* range, const ZylNumVarArray& variables, const ZylNumArray& newValues,
                   const ZylNumArray& oldValues)
      : _range(range), _variables(variables), _newValues(newValues), _oldValues(oldValues) {}
  ZylExtractableI* getChangedExtractable() const override { return _range; }
  ZylRange getRange() const { return ZylRange(_range); }
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  const ZylNumArray& getNewValues() const noexcept { return _newValues; }
  const ZylNumArray& getOldValues() const noexcept { return _oldValues; }

 private:
  ZylRangeI* _range;
  ZylNumVarArray _variables;
  ZylNumArray _newValues;
  ZylNumArray _oldValues;
};

/// The expression of a range was replaced; the old one is still there.
class ZYL_EXPORT ZylSetRangeExpr final : public ZylChange {
  ZYL_CHANGE(ZylSetRangeExpr, ZylChange)
 public:
  ZylSetRangeExpr(ZylRangeI* range, ZylNumExprI* oldExpr, ZylNumExprI* newExpr)
      : _range(range), _oldExpr(oldExpr), _newExpr(newExpr) {}
  ZylExtractableI* getChangedExtractable() const override { return _range; }
  ZylRange getRange() const { return ZylRange(_range); }
  ZylNumExprArg getOldExpr() const { return ZylNumExprArg(_oldExpr); }
  ZylNumExprArg getNewExpr() const { return ZylNumExprArg(_newExpr); }

 private:
  ZylRangeI* _range;
  ZylNumExprI* _oldExpr;
  ZylNumExprI* _newExpr;
};

/// The entry of a new variable in a range.
class ZYL_EXPORT ZylAddValueToRange final : public ZylAddNumVar {
  ZYL_CHANGE(ZylAddValueToRange, ZylAddNumVar)
 public:
  ZylAddValueToRange(ZylRangeI* range, double value) : _range(range), _value(value) {}
  ZylAddExtractable* getCopy(ZylEnvI* env) const override;
  void destroy(ZylEnvI* env) override;
  ZylExtractableI* what() const override { return _range; }
  void apply() const override;
  ZylRange getRange() const { return ZylRange(_range); }
  double getValue() const noexcept { return _value; }

 private:
  ZylRangeI* _range;
  double _value;
};

#endif
