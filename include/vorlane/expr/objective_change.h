// Changes of objectives.

#ifndef ZYL_EXPR_OBJECTIVE_CHANGE_H
#define ZYL_EXPR_OBJECTIVE_CHANGE_H

#include "vorlane/expr/objective.h"
#include "vorlane/expr/variable_change.h"

ZYL_CHANGE_FIELD(Objective, ZylObjectiveI*, ZylObjective, getObjective)
ZYL_CHANGE_FIELD(OldExpr, ZylNumExprI*, ZylNumExprArg, getOldExpr)
ZYL_CHANGE_FIELD(NewExpr, ZylNumExprI*, ZylNumExprArg, getNewExpr)
ZYL_CHANGE_FIELD(Sense, ZylObjective::Sense, ZylObjective::Sense, getSense)

/// The expression was replaced; the old one is still there.
class ZYL_EXPORT ZylSetObjExpr final
    : public zyl::ExprReplacedIn<zyl::change::Objective, zyl::change::OldExpr,
                                 zyl::change::NewExpr> {
  ZYL_CHANGE(ZylSetObjExpr, ZylChange)
 public:
  using ExprReplacedIn::ExprReplacedIn;
};

/// A coefficient was set.
class ZYL_EXPORT ZylSetObjCoef final
    : public zyl::ChangeOf<zyl::change::Objective, zyl::change::Var, zyl::change::NewValue,
                           zyl::change::OldValue> {
  ZYL_CHANGE(ZylSetObjCoef, ZylChange)
 public:
  using ChangeOf::ChangeOf;
  void visitChange(ZylEnvI* env, ZylExtractableI* object, ZylChangeVisitor* visitor) const override;
};

/// Coefficients were set in one call.
class ZYL_EXPORT ZylSetObjCoefs final
    : public zyl::ChangeOf<zyl::change::Objective, zyl::change::Vars, zyl::change::NewValues,
                           zyl::change::OldValues> {
  ZYL_CHANGE(ZylSetObjCoefs, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The constant was set.
class ZYL_EXPORT ZylSetObjConst final
    : public zyl::ChangeOf<zyl::change::Objective, zyl::change::NewValue> {
  ZYL_CHANGE(ZylSetObjConst, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The sense was set.
class ZYL_EXPORT ZylSetObjSense final
    : public zyl::ChangeOf<zyl::change::Objective, zyl::change::Sense> {
  ZYL_CHANGE(ZylSetObjSense, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The entry of a new variable in an objective.
class ZYL_EXPORT ZylAddValueToObj final
    : public zyl::EntryOf<ZylAddValueToObj, zyl::change::Objective, zyl::change::Value> {
  ZYL_CHANGE(ZylAddValueToObj, ZylAddNumVar)
 public:
  using EntryOf::EntryOf;
  void apply() const override;
  /// The variable stands as both arguments.
  void visitChange(ZylEnvI* env, ZylExtractableI* object, ZylChangeVisitor* visitor) const override;
};

#endif
