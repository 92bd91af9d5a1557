// Changes of variables.

#ifndef ZYL_EXPR_VARIABLE_CHANGE_H
#define ZYL_EXPR_VARIABLE_CHANGE_H

#include "vorlane/expr/var_array.h"
#include "vorlane/model/change.h"

ZYL_CHANGE_FIELD(Var, ZylNumVarI*, ZylNumVar, getVar)
ZYL_CHANGE_FIELD(SemiContVar, ZylSemiContVarI*, ZylNumVar, getVar)
ZYL_CHANGE_FIELD(Vars, ZylNumVarArray, const ZylNumVarArray&, getVars)
ZYL_CHANGE_FIELD(NumValues, ZylNumArray, const ZylNumArray&, getNumValues)
ZYL_CHANGE_FIELD(IntValues, ZylIntArray, const ZylIntArray&, getIntValues)

/// The bounds of a variable were set; they are as the client gave them, not as rounded.
class ZYL_EXPORT ZylSetNumVarBounds final
    : public zyl::ChangeOf<zyl::change::Var, zyl::change::LB, zyl::change::UB> {
  ZYL_CHANGE(ZylSetNumVarBounds, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The values of a variable were set; one of the two arrays is an empty handle.
class ZYL_EXPORT ZylSetNumVarPossibleValues final
    : public zyl::ChangeOf<zyl::change::Var, zyl::change::NumValues, zyl::change::IntValues> {
  ZYL_CHANGE(ZylSetNumVarPossibleValues, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The bounds of variables were set in one call. Each of them was announced before, too.
class ZYL_EXPORT ZylSetNumVarArrayBounds final
    : public zyl::ChangeOf<zyl::change::Vars, zyl::change::LBs, zyl::change::UBs> {
  ZYL_CHANGE(ZylSetNumVarArrayBounds, ZylChange)
 public:
  using ChangeOf::ChangeOf;
};

/// The threshold of a semi-continuous variable was set.
class ZYL_EXPORT ZylSetSemiContBound final
    : public zyl::ChangeOf<zyl::change::SemiContVar, zyl::change::OldValue, zyl::change::NewValue> {
  ZYL_CHANGE(ZylSetSemiContBound, ZylChange)
 public:
  using ChangeOf::ChangeOf;
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

namespace zyl {

/// The entry of a new variable in an object: one link of a column. `Changed` is the object, and
/// `apply` states the edit. The fields are given to the constructor in order.
template <class Class, class Changed, class... Fields>
class ZYL_EXPORT EntryOf : public ZylAddNumVar, public Changed, public Fields... {
 public:
  explicit EntryOf(const typename Changed::Argument& changed,
                   const typename Fields::Argument&... fields)
      : Changed(changed), Fields(fields)... {}

  ZylAddExtractable* getCopy(ZylEnvI* env) const override {
    return ::new (env->alloc(sizeof(Class))) Class(static_cast<const Class&>(*this));
  }
  void destroy(ZylEnvI* env) override {
    auto* entry = static_cast<Class*>(this);
    entry->~Class();
    env->free(entry, sizeof(Class));
  }
  ZylExtractableI* what() const override { return Changed::argument(); }
  /// The variable joins the object.
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const override {
    visitor->addSubExtractable(Changed::argument(),
                               const_cast<ZylExtractableI*>(getObj()));  // NOLINT: handed out
  }
};

}  // namespace zyl

ZYL_CHANGE_FIELD(Value, double, double, getValue)

#endif
