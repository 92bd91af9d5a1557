// Callbacks by which an engine is told of the label under which a quantified constraint expands.

#ifndef ZYL_ALGORITHM_LABEL_CALLBACK_H
#define ZYL_ALGORITHM_LABEL_CALLBACK_H

#include "vorlane/env/object.h"

class ZylConstraintI;
class ZylModelEvaluatorI;

/// What a language layer derives from to hear of labels.
///
/// Keeps the evaluator and the constraint for the derived class and never looks at them. A
/// destroyable: the environment deletes it at its end, before the algorithms, unless it was made
/// while a local environment was installed.
class ZYL_EXPORT ZylLabelCallbackI : public ZylDestroyableI {
  ZYL_TYPE(ZylLabelCallbackI, ZylDestroyableI)
 public:
  /// Names of the properties under which a callback and a label are attached.
  static const char* const CALLBACK_PROPERTY_NAME;
  static const char* const LABEL_PROPERTY_NAME;

  explicit ZylLabelCallbackI(ZylEnvI* env) : ZylDestroyableI(env) {}

  void initialize(ZylModelEvaluatorI* evaluator) noexcept { _evaluator = evaluator; }
  /// Also clears the label.
  void initializeConstraint(ZylConstraintI* constraint) noexcept;
  /// Calls `main` with the label, which stands for the length of the call, whatever leaves it.
  /// Raises `ZylWrongUsage` from within such a call.
  void callmain(const char* label);

  ZylModelEvaluatorI* getModelEvaluator() const noexcept { return _evaluator; }
  ZylConstraintI* getConstraint() const noexcept { return _constraint; }
  /// The label of the call that runs, null outside; not copied.
  const char* getLabel() const noexcept { return _label; }
  bool isRunning() const noexcept { return _state != 0; }

 protected:
  virtual void main(const char* label) = 0;

 private:
  ZylModelEvaluatorI* _evaluator = nullptr;
  const char* _label = nullptr;
  ZylConstraintI* _constraint = nullptr;
  long _state = 0;
};

#endif
