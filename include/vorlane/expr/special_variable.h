// Variables with more than a domain: semi-continuous ones.

#ifndef ZYL_EXPR_SPECIAL_VARIABLE_H
#define ZYL_EXPR_SPECIAL_VARIABLE_H

#include "vorlane/expr/variable.h"

/// A variable that is 0 or lies between a threshold and its upper bound.
class ZYL_EXPORT ZylSemiContVarI final : public ZylNumVarI {
  ZYL_EXTRACTABLE(ZylSemiContVarI, ZylNumVarI)
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
  ZYL_LOCAL ZylSemiContVarI(ZylEnvI* env, double threshold);
  double _threshold;
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
