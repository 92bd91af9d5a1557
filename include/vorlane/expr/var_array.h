// Arrays of variables.

#ifndef ZYL_EXPR_VAR_ARRAY_H
#define ZYL_EXPR_VAR_ARRAY_H

#include "vorlane/expr/special_variable.h"
#include "vorlane/model/extractable_array.h"

class ZylBoolVarArray;
class ZylConversionI;
class ZylIntExprArray;
class ZylIntVarArray;
class ZylNumExprArray;

/// An array of variables of any type.
class ZYL_EXPORT ZylNumVarArray : public zyl::detail::HandleArray<ZylNumVarArray, ZylNumVar> {
  ZYL_HANDLE_ARRAY(ZylNumVarArray, ZylNumVar, count == 1 ? "n != " : "n !=")
  using Type = ZylNumVar::Type;
  using Family::operator[];

  /// One new variable a slot. The length is that of the first array given.
  ZylNumVarArray(const ZylEnv& env, long n, double lower, double upper,
                 Type type = ZylNumVar::Float);
  ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower, const ZylNumArray& upper,
                 Type type = ZylNumVar::Float);
  ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower, double upper,
                 Type type = ZylNumVar::Float);
  ZylNumVarArray(const ZylEnv& env, double lower, const ZylNumArray& upper,
                 Type type = ZylNumVar::Float);
  /// Shares the array of integer variables.
  ZylNumVarArray(const ZylIntVarArray& variables);  // NOLINT(google-explicit-constructor)

  /// Sets the bounds of each variable that is there, each announced, and then all of them in one
  /// `ZylSetNumVarArrayBounds`. Raises `ZylEmptyHandleException` for an empty array handle.
  void setBounds(const ZylNumArray& lower, const ZylNumArray& upper) const;
  /// The same variables in a new array. The integer forms raise `ZylBadConversion` if any is float.
  [[nodiscard]] ZylIntVarArray toIntVarArray() const;
  [[nodiscard]] ZylIntExprArray toIntExprArray() const;
  [[nodiscard]] ZylNumExprArray toNumExprArray() const;
  /// The variable at the value of an integer expression.
  ZylNumExprArg operator[](const ZylIntExprArg& index) const;
};

/// An array of integer variables.
class ZYL_EXPORT ZylIntVarArray : public zyl::detail::HandleArray<ZylIntVarArray, ZylIntVar> {
  ZYL_HANDLE_ARRAY(ZylIntVarArray, ZylIntVar, "n !=")
  using Family::operator[];

  /// `n` variables over [lower, upper].
  ZylIntVarArray(const ZylEnv& env, long n, long lower, long upper);
  ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower, const ZylIntArray& upper);
  ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower, long upper);
  ZylIntVarArray(const ZylEnv& env, long lower, const ZylIntArray& upper);
  /// `n` variables that stand for a position in `values`, which they share under
  /// `ZylIntVar::AnyDomainProperty`.
  ZylIntVarArray(const ZylEnv& env, long n, const ZylAnyArray& values);
  /// Shares the array of boolean variables.
  ZylIntVarArray(const ZylBoolVarArray& variables);  // NOLINT(google-explicit-constructor)

  [[nodiscard]] ZylNumVarArray toNumVarArray() const;
  [[nodiscard]] ZylIntExprArray toIntExprArray() const;
  [[nodiscard]] ZylNumExprArray toNumExprArray() const;
  ZylIntExprArg operator[](const ZylIntExprArg& index) const;
};

/// An array of boolean variables.
class ZYL_EXPORT ZylBoolVarArray : public zyl::detail::HandleArray<ZylBoolVarArray, ZylBoolVar> {
  ZYL_HANDLE_ARRAY(ZylBoolVarArray, ZylBoolVar, "n !=")
  /// `n` new variables over [lower, upper], which are not checked.
  ZylBoolVarArray(const ZylEnv& env, long n, long lower, long upper);
  ZylBoolVarArray(const ZylEnv& env, const ZylIntArray& lower, const ZylIntArray& upper);
  ZylBoolVarArray(const ZylEnv& env, const ZylIntArray& lower, long upper);
  ZylBoolVarArray(const ZylEnv& env, long lower, const ZylIntArray& upper);
  /// Shares the array. Raises `ZylEmptyHandleException` for an empty element, `ZylWrongUsage` for a
  /// float variable, `ZylBadConversion` for bounds other than 0 and 1.
  explicit ZylBoolVarArray(const ZylIntVarArray& variables);
  [[nodiscard]] ZylIntExprArray toIntExprArray() const;
  [[nodiscard]] ZylNumExprArray toNumExprArray() const;
};

/// An array of semi-continuous variables.
class ZYL_EXPORT ZylSemiContVarArray
    : public zyl::detail::HandleArray<ZylSemiContVarArray, ZylSemiContVar> {
  ZYL_HANDLE_ARRAY(ZylSemiContVarArray, ZylSemiContVar, "n !=")
  using Type = ZylNumVar::Type;
  /// One new variable a slot, each 0 or between its threshold and its upper bound.
  ZylSemiContVarArray(const ZylEnv& env, long n, double threshold, double upper,
                      Type type = ZylNumVar::Float);
  ZylSemiContVarArray(const ZylEnv& env, const ZylNumArray& thresholds, const ZylNumArray& upper,
                      Type type = ZylNumVar::Float);
  ZylSemiContVarArray(const ZylEnv& env, const ZylNumArray& thresholds, double upper,
                      Type type = ZylNumVar::Float);
  ZylSemiContVarArray(const ZylEnv& env, double threshold, const ZylNumArray& upper,
                      Type type = ZylNumVar::Float);
};

#endif
