// Variables that indicate whether a constraint holds.

#ifndef ZYL_CONSTRAINT_INDICATOR_VARIABLE_H
#define ZYL_CONSTRAINT_INDICATOR_VARIABLE_H

#include "vorlane/constraint/constraint.h"
#include "vorlane/expr/variable.h"

/// A variable of 0 and 1 that says whether a constraint holds. Goes with the constraint.
class ZYL_EXPORT ZylConstraintIndVarI final : public ZylNumVarI {
  ZYL_EXTRACTABLE(ZylConstraintIndVarI, ZylNumVarI)
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

#endif
