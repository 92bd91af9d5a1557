// The evaluator: values of expressions without free variables, outside any engine.

#ifndef ZYL_ALGORITHM_MODEL_EVALUATOR_H
#define ZYL_ALGORITHM_MODEL_EVALUATOR_H

#include "vorlane/algorithm/algorithm.h"
#include "vorlane/env/allocation_stack.h"

/// What an engine installs to answer for the values of variables.
class ZYL_EXPORT ZylModelEvaluatorSolutionGetterBaseI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylModelEvaluatorSolutionGetterBaseI, ZylRttiEnvObjectI)
 public:
  explicit ZylModelEvaluatorSolutionGetterBaseI(ZylEnvI* env) : ZylRttiEnvObjectI(env) {}
};

/// The library's own evaluator. It accepts any model, and evaluates fixed variables, linear sums
/// over them, and their binary minimum and maximum; a language layer installs a richer one through
/// `ZylEnvI::setModelEvaluatorPop`.
class ZYL_EXPORT ZylModelEvaluatorI : public ZylAlgorithmI {
 public:
  explicit ZylModelEvaluatorI(ZylEnvI* env);
  /// In the environment of the algorithm, which owns the evaluator.
  explicit ZylModelEvaluatorI(ZylAlgorithmI* algorithm);
  ~ZylModelEvaluatorI() override;

  bool doExtract(const ZylExtractableI* extractable, void** handle) override;
  bool doRemove(const ZylExtractableI* extractable, void* handle) override;
  bool doApply(const ZylChange* change, void** handle, const ZylExtractableI* extractable) override;
  double getObjValue() const override;
  using ZylAlgorithmI::getValue;
  double getValue(const ZylNumVarI* variable) const override;
  double getValue(const ZylObjectiveI* objective) const override;

  virtual bool isGround(const ZylExtractableI* extractable);
  /// Whether the evaluator can answer for the object at present. This base raises `ZylWrongUsage`.
  virtual bool isBound(const ZylExtractableI* extractable);
  virtual bool isDecisionExpr(const ZylExtractableI* extractable);
  virtual bool hasSubstitutionExpr(const ZylNumExprI* expr) const;
  virtual ZylNumExprI* getSubstitutionAsNumExpr(const ZylNumExprI* expr) const;
  virtual void registerAll();
  /// Raise `ZylWrongUsage` for what cannot be evaluated.
  virtual long evaluate(ZylIntExprI* expr);
  virtual double evaluate(ZylNumExprI* expr);
  /// The expression with what is known folded in; an empty expression if nothing is known.
  virtual ZylNumExpr evaluateToNumExpr(const ZylNumExprArg expr);

  ZylAlgorithmI* getAlgorithm() const noexcept { return _algorithm; }
  void setAlgorithm(ZylAlgorithmI* algorithm) noexcept { _algorithm = algorithm; }
  /// Raise `ZylWrongUsage` if a getter is set, or if another one is.
  void setSolutionGetter(const ZylModelEvaluatorSolutionGetterBaseI* getter);
  void removeSolutionGetter(const ZylModelEvaluatorSolutionGetterBaseI* getter);
  const ZylModelEvaluatorSolutionGetterBaseI* getSolutionGetter() const noexcept {
    return _solutionGetter;
  }

 private:
  ZylAlgorithmI* _algorithm;
  ZylAllocationStack _stack;
  ZylAllocationStack _resultStack;
  const ZylModelEvaluatorSolutionGetterBaseI* _solutionGetter;
};

/// Handle of an environment's evaluator.
class ZYL_EXPORT ZylModelEvaluator {
 public:
  /// An expression has no value yet.
  class ZYL_EXPORT Unbound : public ZylException {
   public:
    explicit Unbound(const ZylExtractableI* expr);
    void print(std::ostream& stream) const override;
    const ZylExtractableI* getExpr() const noexcept { return _expr; }

   private:
    const ZylExtractableI* _expr;
  };

  ZylModelEvaluator() = default;
  explicit ZylModelEvaluator(ZylModelEvaluatorI* impl) noexcept : _impl(impl) {}
  explicit ZylModelEvaluator(const ZylEnv& env);
  ZylModelEvaluatorI* getImpl() const noexcept { return _impl; }
  double evaluate(const ZylNumExprArg& expr) const;
  long evaluate(const ZylIntExprArg& expr) const;
  ZylNumExpr evaluateToNumExpr(const ZylNumExprArg& expr) const;

 private:
  ZYL_LOCAL ZylModelEvaluatorI* checked() const;
  ZylModelEvaluatorI* _impl = nullptr;
};

/// What an environment makes its evaluators with, unless told otherwise.
[[nodiscard]] ZYL_EXPORT ZylModelEvaluatorI* defaultModelEvaluator(ZylEnvI* env);

#endif
