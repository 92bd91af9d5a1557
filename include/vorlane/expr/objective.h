// Objectives: what a model is optimised for.

#ifndef ZYL_EXPR_OBJECTIVE_H
#define ZYL_EXPR_OBJECTIVE_H

#include "vorlane/expr/expr_array.h"
#include "vorlane/expr/expression.h"
#include "vorlane/expr/multi_criterion.h"
#include "vorlane/expr/var_array.h"

class ZylAddValueToObj;

/// A single-expression operation was called on a multi-criterion objective.
class ZYL_EXPORT ZylNotAllowedWithMultiCriterionException : public ZylException {
 public:
  /// `operation` is the name of the operation.
  explicit ZylNotAllowedWithMultiCriterionException(const char* operation);
  void print(std::ostream& stream) const override;
};

namespace zyl {
/// Clients write `ZylObjective::Sense`, `ZylObjective::Minimize`, `ZylObjective::Maximize`.
enum ObjectiveSense : int { Minimize = 1, Maximize = -1 };
}  // namespace zyl

/// A sense, and either one expression or a lexicographic list of them.
///
/// Holds one reference on its expression, which is a linear node; never alters an expression that
/// somebody else holds.
class ZYL_EXPORT ZylObjectiveI final : public ZylExtractableI {
  ZYL_EXTRACTABLE(ZylObjectiveI, ZylExtractableI)
 public:
  using Sense = zyl::ObjectiveSense;

  static void (*_addToCP)(ZylAlgorithm algorithm, const ZylObjectiveI* object, void* handle);
  static void (*_removeFromCP)(ZylAlgorithm algorithm, const ZylObjectiveI* object, void* handle);

  ZylObjectiveI(ZylEnvI* env, ZylNumExprI* expr, Sense sense, const char* name = nullptr);
  /// Of a constant.
  ZylObjectiveI(ZylEnvI* env, double constant, Sense sense, const char* name = nullptr);
  /// Keeps a duplicate of the criteria.
  ZylObjectiveI(ZylEnvI* env, const ZylMultiCriterionExprI* criteria, Sense sense,
                const char* name = nullptr);
  ~ZylObjectiveI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  void whenAddedToCP(ZylAlgorithm algorithm, void* handle) const override;
  void whenRemovedFromCP(ZylAlgorithm algorithm, void* handle) const override;

  Sense getSense() const noexcept { return _sense; }
  /// Sends `ZylSetObjSense`.
  void setSense(Sense sense);
  bool isMultiCriterion() const noexcept { return _multiCriterion != nullptr; }
  ZylMultiCriterionExprI* getMultiCriterion() const noexcept { return _multiCriterion; }

  // The operations on the one expression raise `ZylNotAllowedWithMultiCriterionException` where
  // there are several.

  ZylNumExprI* getExpr() const;
  /// The linear node, null with several criteria.
  ZylNumLinTermI* getLinear() const noexcept { return _expr; }
  /// Sends `ZylSetObjExpr`.
  void setExpr(const ZylNumExprArg& expr);
  /// Raise `ZylWrongUsage` for an aggregate or non-linear expression. Send `ZylSetObjCoef`,
  /// `ZylSetObjCoefs`. O(number of terms).
  void setCoef(const ZylNumVar& variable, double value);
  void setCoef(const ZylNumVarArray& variables, const ZylNumArray& values);
  /// Sends `ZylSetObjConst`. With several criteria 0 is accepted silently.
  void setConst(double constant);
  /// Appends a term for a new variable; sends nothing.
  void addVar(ZylNumVarI* variable, double value);
  long getNumCriteria() const;
  /// The expression, or criterion `i`. Raises `ZylWrongUsage` outside.
  ZylNumExprI* getCriterion(long i) const;
  void normalize();

 private:
  ZYL_LOCAL void requireSingle(const char* operation) const;

  Sense _sense;
  ZylNumLinTermI* _expr;
  ZylMultiCriterionExprI* _multiCriterion;
};

/// Handle of an objective. Operations on an empty handle raise `ZylEmptyHandleException`.
class ZYL_EXPORT ZylObjective : public ZylExtractable {
  ZYL_HANDLE(ZylObjective, ZylExtractable, ZylObjectiveI)
 public:
  using Sense = zyl::ObjectiveSense;
  // Constants, as g++ 12 fails inside templates over enumerators that `using enum` brings in.
  static constexpr Sense Minimize = zyl::Minimize;
  static constexpr Sense Maximize = zyl::Maximize;

  explicit ZylObjective(const ZylEnv& env, double constant = 0.0, Sense sense = Minimize,
                        const char* name = nullptr);
  ZylObjective(const ZylEnv& env, const ZylNumExprArg& expr, Sense sense = Minimize,
               const char* name = nullptr);
  ZylObjective(const ZylEnv& env, const ZylMultiCriterionExpr& criteria, Sense sense = Minimize,
               const char* name = nullptr);

  Sense getSense() const { return checkedObjective()->getSense(); }
  void setSense(Sense sense) const { checkedObjective()->setSense(sense); }
  ZylNumExprArg getExpr() const { return ZylNumExprArg(checkedObjective()->getExpr()); }
  operator ZylNumExprArg() const { return getExpr(); }  // NOLINT(google-explicit-constructor)
  void setExpr(const ZylNumExprArg& expr) const;
  void setLinearCoef(const ZylNumVar& variable, double value) const;
  void setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& values) const;
  /// The constant of the expression; 0 with several criteria. Raises
  /// `ZylNumExpr::NonLinearExpression`.
  double getConst() const;
  double getConstant() const { return getConst(); }
  void setConst(double constant) const { checkedObjective()->setConst(constant); }
  void setConstant(double constant) const { setConst(constant); }
  long getNumCriteria() const { return checkedObjective()->getNumCriteria(); }
  ZylNumExprArg getCriterion(long i) const {
    return ZylNumExprArg(checkedObjective()->getCriterion(i));
  }
  /// Walks the terms of the linear part.
  ZylExpr::LinearIterator getLinearIterator() const;
  void normalize() const { checkedObjective()->normalize(); }
  ZylObjective getClone(const ZylEnv& env) const;
  /// The entry of a new variable with this coefficient.
  ZylAddValueToObj operator()(double value) const;

 private:
  ZylObjectiveI* checkedObjective() const { return checked("Using empty ZylObjective handle."); }
};

/// An objective of the expression. Raise `ZylWrongUsage` for empty handles, and for criteria of
/// which there are none.
ZYL_EXPORT ZylObjective ZylMinimize(const ZylEnv& env, const ZylNumExprArg& expr,
                                    const char* name = nullptr);
ZYL_EXPORT ZylObjective ZylMaximize(const ZylEnv& env, const ZylNumExprArg& expr,
                                    const char* name = nullptr);
ZYL_EXPORT ZylObjective ZylMinimize(const ZylEnv& env, double constant = 0.0,
                                    const char* name = nullptr);
ZYL_EXPORT ZylObjective ZylMaximize(const ZylEnv& env, double constant = 0.0,
                                    const char* name = nullptr);
ZYL_EXPORT ZylObjective ZylMinimize(const ZylEnv& env, const ZylMultiCriterionExpr& criteria,
                                    const char* name = nullptr);
ZYL_EXPORT ZylObjective ZylMaximize(const ZylEnv& env, const ZylMultiCriterionExpr& criteria,
                                    const char* name = nullptr);

#endif
