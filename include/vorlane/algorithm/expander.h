// The expander: turns quantified parts of a model into plain ones.

#ifndef ZYL_ALGORITHM_EXPANDER_H
#define ZYL_ALGORITHM_EXPANDER_H

#include "vorlane/algorithm/algorithm.h"

/// The library's own expander accepts any model and expands nothing: it raises `ZylWrongUsage`. A
/// language layer installs one of its own through `ZylEnvI::setExpanderPop`.
class ZYL_EXPORT ZylExpanderI : public ZylAlgorithmI {
 public:
  explicit ZylExpanderI(ZylEnvI* env);
  ~ZylExpanderI() override;

  bool doExtract(const ZylExtractableI* extractable, void** handle) override;
  bool doRemove(const ZylExtractableI* extractable, void* handle) override;
  bool doApply(const ZylChange* change, void** handle, const ZylExtractableI* extractable) override;
  double getObjValue() const override;
  using ZylAlgorithmI::getValue;
  double getValue(const ZylNumVarI* variable) const override;
  double getValue(const ZylObjectiveI* objective) const override;

  virtual void registerAll();
  /// Adds what `extractable` stands for to the model.
  virtual void expand(ZylModelI* model, const ZylExtractableI* extractable, const char* first,
                      const char* second);
  /// Returns what stands for `extractable` in a clone, null to clone it as it is.
  virtual ZylExtractableI* substitute(ZylExtractableI* extractable);

  /// Stores the evaluator, owned from now on, whose algorithm this is then; the one before is
  /// deleted. Null leaves none: the next demand makes one. Raises `ZylWrongUsage` for an evaluator
  /// of another algorithm, `ZylEnvironmentMismatch` for one of another environment.
  void setEvaluator(ZylModelEvaluatorI* evaluator);
};

/// What an environment makes its expander with, unless told otherwise.
[[nodiscard]] ZYL_EXPORT ZylExpanderI* defaultExpander(ZylEnvI* env);

#endif
