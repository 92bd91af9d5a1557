// Changes of objectives.

#ifndef ZYL_EXPR_OBJECTIVE_CHANGE_H
#define ZYL_EXPR_OBJECTIVE_CHANGE_H

#include "vorlane/expr/objective.h"
#include "vorlane/expr/variable_change.h"

/// The expression was replaced; the old one is still there.
class ZYL_EXPORT ZylSetObjExpr final : public ZylChange {
  ZYL_CHANGE(ZylSetObjExpr, ZylChange)
 public:
  ZylSetObjExpr(ZylObjectiveI* objective, ZylNumExprI* oldExpr, ZylNumExprI* newExpr)
      : _objective(objective), _oldExpr(oldExpr), _newExpr(newExpr) {}
  ZylExtractableI* getChangedExtractable() const override { return _objective; }
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  ZylNumExprArg getOldExpr() const { return ZylNumExprArg(_oldExpr); }
  ZylNumExprArg getNewExpr() const { return ZylNumExprArg(_newExpr); }

 private:
  ZylObjectiveI* _objective;
  ZylNumExprI* _oldExpr;
  ZylNumExprI* _newExpr;
};

/// A coefficient was set.
class ZYL_EXPORT ZylSetObjCoef final : public ZylChange {
  ZYL_CHANGE(ZylSetObjCoef, ZylChange)
 public:
  ZylSetObjCoef(ZylObjectiveI* objective, ZylNumVarI* variable, double newValue, double oldValue)
      : _objective(objective), _variable(variable), _newValue(newValue), _oldValue(oldValue) {}
  ZylExtractableI* getChangedExtractable() const override { return _objective; }
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  ZylNumVar getVar() const { return ZylNumVar(_variable); }
  double getNewValue() const noexcept { return _newValue; }
  double getOldValue() const noexcept { return _oldValue; }

 private:
  ZylObjectiveI* _objective;
  ZylNumVarI* _variable;
  double _newValue;
  double _oldValue;
};

/// Coefficients were set in one call.
class ZYL_EXPORT ZylSetObjCoefs final : public ZylChange {
  ZYL_CHANGE(ZylSetObjCoefs, ZylChange)
 public:
  ZylSetObjCoefs(ZylObjectiveI* objective, const ZylNumVarArray& variables,
                 const ZylNumArray& newValues, const ZylNumArray& oldValues)
      : _objective(objective), _variables(variables), _newValues(newValues), _oldValues(oldValues) {
  }
  ZylExtractableI* getChangedExtractable() const override { return _objective; }
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  const ZylNumArray& getNewValues() const noexcept { return _newValues; }
  const ZylNumArray& getOldValues() const noexcept { return _oldValues; }

 private:
  ZylObjectiveI* _objective;
  ZylNumVarArray _variables;
  ZylNumArray _newValues;
  ZylNumArray _oldValues;
};

/// The constant was set.
class ZYL_EXPORT ZylSetObjConst final : public ZylChange {
  ZYL_CHANGE(ZylSetObjConst, ZylChange)
 public:
  ZylSetObjConst(ZylObjectiveI* objective, double value) : _objective(objective), _value(value) {}
  ZylExtractableI* getChangedExtractable() const override { return _objective; }
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  double getNewValue() const noexcept { return _value; }

 private:
  ZylObjectiveI* _objective;
  double _value;
};

/// The sense was set.
class ZYL_EXPORT ZylSetObjSense final : public ZylChange {
  ZYL_CHANGE(ZylSetObjSense, ZylChange)
 public:
  ZylSetObjSense(ZylObjectiveI* objective, ZylObjective::Sense sense)
      : _objective(objective), _sense(sense) {}
  ZylExtractableI* getChangedExtractable() const override { return _objective; }
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  ZylObjective::Sense getSense() const noexcept { return _sense; }

 private:
  ZylObjectiveI* _objective;
  ZylObjective::Sense _sense;
};

/// The entry of a new variable in an objective.
class ZYL_EXPORT ZylAddValueToObj final : public ZylAddNumVar {
  ZYL_CHANGE(ZylAddValueToObj, ZylAddNumVar)
 public:
  ZylAddValueToObj(ZylObjectiveI* objective, double value) : _value(value), _objective(objective) {}
  ZylAddExtractable* getCopy(ZylEnvI* env) const override;
  void destroy(ZylEnvI* env) override;
  ZylExtractableI* what() const override { return _objective; }
  void apply() const override;
  ZylObjective getObjective() const { return ZylObjective(_objective); }
  double getValue() const noexcept { return _value; }

 private:
  double _value;
  ZylObjectiveI* _objective;
};

#endif
