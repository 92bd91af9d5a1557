// The base of all constraints.

#ifndef ZYL_CONSTRAINT_CONSTRAINT_H
#define ZYL_CONSTRAINT_CONSTRAINT_H

#include "vorlane/expr/num_expr.h"
#include "vorlane/model/extractable_array.h"
#include "vorlane/model/record.h"

/// A constraint: an integer expression of value 1 where it holds and 0 where it does not. Not
/// counted: it lives until it is ended, and ending it removes it from everything.
class ZYL_EXPORT ZylConstraintI : public ZylIntExprI {
  ZYL_EXTRACTABLE(ZylConstraintI, ZylIntExprI)
 public:
  /// Hooks of an engine for a constraint that joins or leaves it; null hooks raise.
  static void (*_addToCP)(ZylAlgorithm algorithm, const ZylConstraintI* object, void* handle);
  static void (*_removeFromCP)(ZylAlgorithm algorithm, const ZylConstraintI* object, void* handle);

  explicit ZylConstraintI(ZylEnvI* env, const char* name = nullptr) : ZylIntExprI(env, name) {}

  bool isRefCountedExpr() const override;
  void end() override;
  void whenAddedToCP(ZylAlgorithm algorithm, void* handle) const override;
  void whenRemovedFromCP(ZylAlgorithm algorithm, void* handle) const override;
  void release() override;
  /// By the environment's evaluator if it can, else by the algorithm.
  double eval(const ZylAlgorithm algorithm) const override;
  /// The constraint below all quantifiers.
  virtual ZylConstraintI* getInnerConstraint();
};

/// Handle of a constraint.
class ZYL_EXPORT ZylConstraint : public ZylIntExprArg {
  ZYL_HANDLE(ZylConstraint, ZylIntExprArg, ZylConstraintI)
 public:
  ZylConstraint getClone(const ZylEnv& env) const;
};

/// An array of constraints.
class ZYL_EXPORT ZylConstraintArray
    : public zyl::detail::HandleArray<ZylConstraintArray, ZylConstraint> {
  ZYL_HANDLE_ARRAY(ZylConstraintArray, ZylConstraint, "n !=")
};

/// A constant truth.
class ZYL_EXPORT ZylConstConstraintI final
    : public zyl::Record<ZylConstConstraintI, ZylConstraintI> {
  ZYL_RECORD(ZylConstConstraintI, ZylConstraintI)
 public:
  ZylConstConstraintI(ZylEnvI* env, long isTrue, const char* name = nullptr)
      : Record(env, name), _isTrue(isTrue) {}

  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;
  virtual bool isTrue() const;

 private:
  auto fields() { return zyl::fields("isTrue", _isTrue); }
  long _isTrue;
};

#endif
