// What expressions and constraints learn from the environment's evaluator.

#include <utility>

#include "vorlane/algorithm/model_evaluator.h"
#include "vorlane/constraint/comparison.h"
#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/operators.h"

using zyl::detail::EnvLock;
using zyl::detail::ItemList;

double ZylNumVarI::eval(const ZylAlgorithm algorithm) const {
  auto* self = const_cast<ZylNumVarI*>(this);  // NOLINT: handles are mutable
  try {
    return algorithm.getValue(ZylNumVar(self));
  } catch (const ZylException&) {
    try {
      ZylModelEvaluatorI* evaluator = _env->getModelEvaluator();
      if (evaluator->isBound(this)) return evaluator->evaluate(static_cast<ZylNumExprI*>(self));
    } catch (const ZylException&) {
      // The evaluator cannot help: the algorithm's own failure says why there is no value.
    }
    throw;
  }
}

namespace {
// What the evaluator can express of a part; nothing where it does not serve the operation, as the
// library's own does not.
ZylNumExpr knownForm(ZylModelEvaluatorI* evaluator, const ZylNumExprArg& part) {
  try {
    return evaluator->evaluateToNumExpr(part);
  } catch (const ZylWrongUsage&) {
    return ZylNumExpr();
  }
}
}  // namespace

void ZylNumLinTermI::kvlNormalization() {
  if (_items.isEmpty()) return;
  const EnvLock lock(_env->getMutex());
  ZylModelEvaluatorI* evaluator = _env->getModelEvaluator();
  ZylNumExpr folded(ZylEnv(_env), 0.0);
  try {
    for (const ZylLinExprNonLinearItem* item = _items._head; item != nullptr; item = item->_next) {
      const ZylNumExprArg part(item->_expr);
      ZylNumExpr known = knownForm(evaluator, part);
      if (known.getImpl() == nullptr) {
        folded += part;
        continue;
      }
      folded += known;
      known.end();
    }
  } catch (...) {
    folded.end();
    throw;
  }
  // What was not folded is held by the new sum now; this one gives up its own references.
  ItemList items = std::exchange(_items, ItemList());
  append(static_cast<ZylNumLinTermI*>(folded.getImpl()));
  items.clear(_env);
}

double ZylConstraintI::eval(const ZylAlgorithm algorithm) const {
  auto* self = const_cast<ZylConstraintI*>(this);  // NOLINT: evaluators take mutable objects
  try {
    ZylModelEvaluatorI* evaluator = _env->getModelEvaluator();
    if (evaluator->isBound(this)) return evaluator->evaluate(static_cast<ZylNumExprI*>(self));
  } catch (const ZylModelEvaluator::Unbound&) {
    throw;
  } catch (const ZylException&) {
    // The evaluator cannot say: the algorithm is asked.
  }
  if (algorithm.getImpl() == nullptr) {
    ZylRaiseWrongUsage("accessing ZylAlgorithm through 0 handle");
  }
  return algorithm.getImpl()->getValue(this);
}

double ZylBinaryNumConstraintI::rightValue(ZylModelEvaluatorI* evaluator, double otherwise) const {
  try {
    return evaluator->evaluate(_right);
  } catch (const ZylException&) {
    return otherwise;
  }
}
