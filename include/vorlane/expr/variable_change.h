// Changes of variables.

#ifndef ZYL_EXPR_VARIABLE_CHANGE_H
#define ZYL_EXPR_VARIABLE_CHANGE_H

#include "vorlane/expr/var_array.h"
#include "vorlane/model/change.h"

/// The bounds of a variable were set; they are as the client gave them, not as rounded.
class ZYL_EXPORT ZylSetNumVarBounds final : public ZylChange {
  ZYL_CHANGE(ZylSetNumVarBounds, ZylChange)
 public:
  ZylSetNumVarBounds(ZylNumVarI* variable, double lower, double upper)
      : _variable(variable), _lower(lower), _upper(upper) {}
  ZylExtractableI* getChangedExtractable() const override { return _variable; }
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  double getLB() const noexcept { return _lower; }
  double getUB() const noexcept { return _upper; }

 private:
  ZylNumVarI* _variable;
  double _lower;
  double _upper;
};

/// The values of a variable were set; one of the two arrays is an empty handle.
class ZYL_EXPORT ZylSetNumVarPossibleValues final : public ZylChange {
  ZYL_CHANGE(ZylSetNumVarPossibleValues, ZylChange)
 public:
  ZylSetNumVarPossibleValues(ZylNumVarI* variable, const ZylNumArray& numValues,
                             const ZylIntArray& intValues)
      : _variable(variable), _numValues(numValues), _intValues(intValues) {}
  ZylExtractableI* getChangedExtractable() const override { return _variable; }
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  const ZylNumArray& getNumValues() const noexcept { return _numValues; }
  const ZylIntArray& getIntValues() const noexcept { return _intValues; }

 private:
  ZylNumVarI* _variable;
  ZylNumArray _numValues;
  ZylIntArray _intValues;
};

/// The bounds of variables were set in one call. Each of them was announced before, too.
class ZYL_EXPORT ZylSetNumVarArrayBounds final : public ZylChange {
  ZYL_CHANGE(ZylSetNumVarArrayBounds, ZylChange)
 public:
  ZylSetNumVarArrayBounds(const ZylNumVarArray& variables, const ZylNumArray& lower,
                          const ZylNumArray& upper)
      : _variables(variables), _lower(lower), _upper(upper) {}
  bool isApplyingOnArray() const override { return true; }
  ZylExtractableArray getChangedExtractableArray() const override { return _variables; }
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  const ZylNumArray& getLBs() const noexcept { return _lower; }
  const ZylNumArray& getUBs() const noexcept { return _upper; }

 private:
  ZylNumVarArray _variables;
  ZylNumArray _lower;
  ZylNumArray _upper;
};

/// The threshold of a semi-continuous variable was set.
class ZYL_EXPORT ZylSetSemiContBound final : public ZylChange {
  ZYL_CHANGE(ZylSetSemiContBound, ZylChange)
 public:
  ZylSetSemiContBound(ZylSemiContVarI* variable, double oldValue, double newValue)
      : _variable(variable), _oldValue(oldValue), _newValue(newValue) {}
  ZylExtractableI* getChangedExtractable() const override { return _variable; }
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  double getOldValue() const noexcept { return _oldValue; }
  double getNewValue() const noexcept { return _newValue; }

 private:
  ZylSemiContVarI* _variable;
  double _oldValue;
  double _newValue;
};

/// A variable left a conversion.
class ZYL_EXPORT ZylConversionRemoveVar final : public ZylChange {
  ZYL_CHANGE(ZylConversionRemoveVar, ZylChange)
 public:
  ZylConversionRemoveVar(ZylNumVarI* variable, ZylConversionI* conversion)
      : _variable(variable), _conversion(conversion) {}
  ZylExtractableI* getChangedExtractable() const override;
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  ZylConversionI* getConversionI() const noexcept { return _conversion; }

 private:
  ZylNumVarI* _variable;
  ZylConversionI* _conversion;
};

/// The family of entries for a new numeric variable.
class ZYL_EXPORT ZylAddNumVar : public ZylAddExtractable {
  ZYL_TYPE_ONLY(ZylAddNumVar, ZylAddExtractable)
 public:
  /// The new variable, null until `setObj`.
  ZylNumVarI* getVarI() const noexcept;

 protected:
  ZylAddNumVar() = default;
};

#endif
