// The evaluator: values of expressions without free variables, outside any engine.

#ifndef ZYL_ALGORITHM_MODEL_EVALUATOR_H
#define ZYL_ALGORITHM_MODEL_EVALUATOR_H

#include "vorlane/algorithm/algorithm.h"
#include "vorlane/env/allocation_stack.h"
#include "vorlane/expr/lin_term.h"

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
  /// In the environment of the algorithm, which the evaluator names as its own. That one owns it
  /// once it was told, as by `ZylExpanderI::setEvaluator`.
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
  /// Raise `ZylWrongUsage` for what cannot be evaluated: a free variable, constraints, and in the
  /// integer form a coefficient or bound that is no integer. A result beyond 64 bits raises
  /// `ZylIntExpr::ZylOverflowOccurred`. The numeric form passes what is of an integer class on to
  /// the integer form, except variables of another type: who overrides that one does not see them.
  /// A constraint's own `eval` comes here, so whoever serves constraints must not call it.
  virtual long evaluate(ZylIntExprI* expr);
  virtual double evaluate(ZylNumExprI* expr);
  /// The expression with what is known folded in; an empty expression if nothing is known.
  virtual ZylNumExpr evaluateToNumExpr(const ZylNumExprArg expr);

  ZylAlgorithmI* getAlgorithm() const noexcept { return _algorithm; }
  /// Names the evaluator's algorithm, null for none. The algorithm's end clears the name.
  void setAlgorithm(ZylAlgorithmI* algorithm) noexcept;
  /// Raise `ZylWrongUsage` if a getter is set, or if another one is. The getter stays the caller's,
  /// and is never looked at here.
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
  ZylModelEvaluatorI* _nextEvaluator = nullptr;  // of the same algorithm
};

/// Handle of an environment's evaluator.
class ZYL_EXPORT ZylModelEvaluator {
 public:
  /// An expression has no value yet. Refers to it: to be printed before the expression ends.
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
  long evaluate(const ZylIntLinExprTerm& term) const { return evaluate(ZylIntExprArg(term)); }
  ZylNumExpr evaluateToNumExpr(const ZylNumExprArg& expr) const;

 private:
  ZYL_LOCAL ZylModelEvaluatorI* checked() const;
  ZylModelEvaluatorI* _impl = nullptr;
};

/// What an environment makes its evaluators with, unless told otherwise.
[[nodiscard]] ZYL_EXPORT ZylModelEvaluatorI* defaultModelEvaluator(ZylEnvI* env);

#endif
