// Variables with more than a domain: semi-continuous ones, and those that indicate a constraint.

#ifndef ZYL_EXPR_SPECIAL_VARIABLE_H
#define ZYL_EXPR_SPECIAL_VARIABLE_H

#include "vorlane/expr/variable.h"

/// A variable that is 0 or lies between a threshold and its upper bound.
class ZYL_EXPORT ZylSemiContVarI final : public ZylNumVarI {
  ZYL_TYPE(ZylSemiContVarI, ZylNumVarI)
  ZYL_CP_HOOKS(ZylSemiContVarI)
 public:
  /// Of `type` over [0, upper].
  ZylSemiContVarI(ZylEnvI* env, double threshold, double upper, Type type,
                  const char* name = nullptr);

  /// An unnamed variable from 0 to infinity with the threshold: the domain is not copied.
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void display(std::ostream& stream) const override;

  double getBd() const noexcept { return _threshold; }
  /// Sends `ZylSetSemiContBound` if the threshold changes.
  void setBd(double threshold);

 private:
  ZylSemiContVarI(ZylEnvI* env, double threshold);
  double _threshold;
};

/// A variable of 0 and 1 that says whether a constraint holds. Goes with the constraint.
class ZYL_EXPORT ZylConstraintIndVarI final : public ZylNumVarI {
  ZYL_TYPE(ZylConstraintIndVarI, ZylNumVarI)
  ZYL_CP_HOOKS(ZylConstraintIndVarI)
 public:
  ZylConstraintIndVarI(ZylEnvI* env, ZylConstraintI* constraint);

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  ZylConstraintI* getConstraintI() const noexcept { return _constraint; }

 private:
  ZylConstraintI* _constraint;
};

/// Handle of a semi-continuous variable.
class ZYL_EXPORT ZylSemiContVar : public ZylNumVar {
  ZYL_HANDLE(ZylSemiContVar, ZylNumVar, ZylSemiContVarI)
 public:
  ZylSemiContVar(const ZylEnv& env, double threshold, double upper, Type type = Float,
                 const char* name = nullptr);

  double getSemiContinuousLb() const;
  void setSemiContinuousLb(double threshold) const;
  ZylSemiContVar getClone(const ZylEnv& env) const;
  /// Makes `clone` the clone of this variable in its environment.
  void setClone(const ZylSemiContVar& clone) const;
};

#endif
