// Decision variables.

#ifndef ZYL_EXPR_VARIABLE_H
#define ZYL_EXPR_VARIABLE_H

#include "vorlane/env/array.h"
#include "vorlane/expr/num_expr.h"

class ZylAddNumVar;
class ZylConstraintI;
class ZylIntRange;
class ZylIntVar;
class ZylNumRange;
class ZylVarDomainI;
struct ZylNumLinExprTermI;

namespace zyl {
/// Types of numeric variables; clients write `ZylNumVar::Type`, `ZylNumVar::Int` and so on.
enum VariableType : int { Int = 1, Float = 2, Bool = 3 };
}  // namespace zyl

/// A variable. What it may take is a separate domain, interned for plain bounds: a variable costs
/// one pointer for it, and none is allocated for a float variable from 0 to infinity.
///
/// Bounds are not compared anywhere: a lower bound above the upper one is accepted.
class ZYL_EXPORT ZylNumVarI : public ZylIntExprI {
  ZYL_EXTRACTABLE(ZylNumVarI, ZylIntExprI)
 public:
  using Type = zyl::VariableType;

  /// A float variable from 0 to infinity.
  explicit ZylNumVarI(ZylEnvI* env, const char* name = nullptr);
  /// On the domain given, which is not copied; a domain that is not shared is owned from now on.
  ZylNumVarI(ZylEnvI* env, ZylVarDomainI* domain, const char* name = nullptr);
  /// Integer bounds are rounded up, both; boolean ones fall into [0, 1]. The two forms differ for a
  /// boolean upper bound between 0 and 1: 1 in the first, 0 in the second.
  ZylNumVarI(ZylEnvI* env, double lower, double upper, Type type, const char* name = nullptr);
  ZylNumVarI(ZylEnvI* env, Type type, double lower, double upper, const char* name = nullptr);
  explicit ZylNumVarI(const ZylIntRangeI* range, const char* name = nullptr);
  explicit ZylNumVarI(const ZylNumRangeI* range, const char* name = nullptr);
  /// On a copy of the values. Raises `ZylNotSupportedOperation` unless the type is float.
  ZylNumVarI(ZylEnvI* env, const ZylNumArray& values, Type type, const char* name = nullptr);
  /// On a copy of the values. Raises `ZylNotImplemented` for a boolean.
  ZylNumVarI(ZylEnvI* env, const ZylIntArray& values, Type type, const char* name = nullptr);
  ZylNumVarI(ZylEnvI* env, const ZylAnyArray& values, const char* name = nullptr);
  ~ZylNumVarI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  bool isRefCountedExpr() const override;
  void end() override;
  void display(std::ostream& stream) const override;
  bool isGround() const override;
  bool isDecisionExpr() const override;
  void release() override;
  ZylNumLinTermI* toNumLinTermI() override;
  bool isInteger() const override;
  double eval(const ZylAlgorithm algorithm) const override;
  ZylIntLinTermI* toIntLinTermI() override;

  /// Each sends one `ZylSetNumVarBounds` that carries the bounds as given, not as rounded.
  virtual void setUB(double upper);
  virtual void setLB(double lower);
  virtual void setBounds(double lower, double upper);

  double getLB() const;
  double getUB() const;
  Type getType() const;
  /// The enumerated values; empty handles where there are none of that kind.
  ZylNumArray getNumValues() const;
  ZylIntArray getIntValues() const;
  /// Replaces the domain by the values given, copied. Raise `ZylNotSupportedOperation` for float
  /// values on an integer variable.
  void setPossibleValues(const ZylNumArray& values);
  void setPossibleValues(const ZylIntArray& values);
  /// Does all for `setBounds` that needs memory. Raises `ZylMemoryException`; a client sees no
  /// difference.
  void prepareBounds(double lower, double upper);
  /// Builds a domain of the variable's type and environment that is not interned.
  [[nodiscard]] ZylVarDomainI* makeDomain(double lower, double upper) const;
  /// Null for a float variable from 0 to infinity.
  ZylVarDomainI* getDomain() const noexcept { return _domain; }

  /// Scratch word of a normalisation, meaningful only during one.
  ZylNumLinExprTermI* getMark() const noexcept { return _mark; }
  void setMark(ZylNumLinExprTermI* term) noexcept { _mark = term; }
  void prefetchMark() const noexcept { __builtin_prefetch(&_mark, /*rw=*/1); }

 private:
  ZYL_LOCAL void replaceDomain(ZylVarDomainI* domain, ZylVarDomainI* before);
  ZYL_LOCAL ZylVarDomainI* ownDomain();

  ZylVarDomainI* _domain;
  ZylNumLinExprTermI* _mark;
};

/// Handle of a variable of any type.
class ZYL_EXPORT ZylNumVar : public ZylNumExprArg {
  ZYL_HANDLE(ZylNumVar, ZylNumExprArg, ZylNumVarI)
 public:
  using Type = zyl::VariableType;
  // Constants, as g++ 12 fails inside templates over enumerators that `using enum` brings in.
  static constexpr Type Int = zyl::Int;
  static constexpr Type Float = zyl::Float;
  static constexpr Type Bool = zyl::Bool;

  /// A variable of `type` between the bounds; a bound beyond plus or minus `ZylNumMax` is infinite.
  explicit ZylNumVar(const ZylEnv& env, double lower = 0.0, double upper = ZylInfinity,
                     Type type = Float, const char* name = nullptr);
  ZylNumVar(const ZylEnv& env, double lower, double upper, const char* name);
  explicit ZylNumVar(const ZylNumRange& range, const char* name = nullptr);
  /// A variable with enumerated values, copied. Raises as `ZylNumVarI`.
  ZylNumVar(const ZylEnv& env, const ZylNumArray& values, Type type = Float,
            const char* name = nullptr);
  /// An integer variable of 0 and 1 that indicates the constraint.
  explicit ZylNumVar(const ZylConstraint& constraint);
  /// An integer variable is a variable.
  ZylNumVar(const ZylIntVar& variable);  // NOLINT(google-explicit-constructor)

  double getLB() const;
  double getUB() const;
  void setLB(double lower) const;
  void setUB(double upper) const;
  void setBounds(double lower, double upper) const;
  Type getType() const;
  /// Appends the variable's values, if it has any.
  void getPossibleValues(const ZylNumArray& values) const;
  void setPossibleValues(const ZylNumArray& values) const;
  ZylNumVar getClone(const ZylEnv& env) const;
};

/// Handle of an integer or boolean variable.
class ZYL_EXPORT ZylIntVar : public ZylIntExprArg {
  ZYL_HANDLE(ZylIntVar, ZylIntExprArg, ZylNumVarI)
 public:
  using Type = zyl::VariableType;
  /// Key of the property that holds the values of an object-valued variable.
  static const char* const AnyDomainProperty;

  /// From 0 to `ZylIntMax`.
  explicit ZylIntVar(const ZylEnv& env, const char* name = nullptr);
  ZylIntVar(const ZylEnv& env, long lower, long upper, const char* name = nullptr);
  ZylIntVar(const ZylEnv& env, const ZylIntArray& values, const char* name = nullptr);
  ZylIntVar(const ZylEnv& env, const ZylAnyArray& values, const char* name = nullptr);
  explicit ZylIntVar(const ZylIntRange& range, const char* name = nullptr);
  /// Shares the variable. Raises `ZylBadConversion` for a float one.
  explicit ZylIntVar(const ZylNumVar& variable);

  /// Bounds, truncated toward zero.
  long getMin() const;
  long getMax() const;
  double getLB() const { return static_cast<double>(getMin()); }
  double getUB() const { return static_cast<double>(getMax()); }
  void setMin(long lower) const;
  void setMax(long upper) const;
  void setLB(long lower) const { setMin(lower); }
  void setUB(long upper) const { setMax(upper); }
  void setBounds(long lower, long upper) const;
  Type getType() const;
  void getPossibleValues(const ZylIntArray& values) const;
  void setPossibleValues(const ZylIntArray& values) const;
  /// The values of an object-valued variable, an empty handle for others.
  ZylAnyArray getAnyDomain() const;
  ZylIntVar getClone(const ZylEnv& env) const;
};

/// Handle of a variable of 0 and 1.
class ZYL_EXPORT ZylBoolVar : public ZylIntVar {
  ZYL_HANDLE(ZylBoolVar, ZylIntVar, ZylNumVarI)
 public:
  explicit ZylBoolVar(const ZylEnv& env, const char* name = nullptr);
  /// The bounds are not checked.
  ZylBoolVar(const ZylEnv& env, long lower, long upper, const char* name = nullptr);
  /// Share the variable. Raise `ZylBadConversion` for bounds outside 0 and 1, and `ZylWrongUsage`
  /// for a float variable.
  explicit ZylBoolVar(const ZylIntVar& variable);
  explicit ZylBoolVar(const ZylNumVar& variable);
};

inline ZylNumVar::ZylNumVar(const ZylIntVar& variable) : ZylNumVar(variable.getImpl()) {}

#endif
