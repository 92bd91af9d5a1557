// What those who store a linear sum do with it: copy on write, and their edits.

#ifndef ZYL_SRC_COMMON_OWN_LINEAR_H
#define ZYL_SRC_COMMON_OWN_LINEAR_H

#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/var_array.h"

#include <utility>

namespace zyl::detail {

/// Returns the sum to edit for a holder of `sum`: itself if nobody else holds it, otherwise a copy
/// that the holder holds from now on instead. Raises `ZylMemoryException`, which changes nothing.
inline ZylNumLinTermI* ownLinear(ZylNumLinTermI* sum) {
  if (sum->getCount() <= 1) return sum;
  auto* copy = static_cast<ZylNumLinTermI*>(sum->copy());
  copy->hold();
  sum->unhold();
  return copy;
}

/// Makes the sum its holder's own, and ready for `setCoef`. Raises `ZylWrongUsage` for an
/// aggregate.
inline void prepareCoefs(ZylNumLinTermI** sum) {
  *sum = ownLinear(*sum);
  if (!(*sum)->hasNonLinearPart() && !(*sum)->getEnv()->mayHoldAggregates()) return;
  if ((*sum)->containsAggregate()) {
    ZylRaiseWrongUsage("You can not change the coefficient of an aggregate expression");
  }
  (*sum)->kvlNormalization();
}

/// Adds a variable that no term has yet: the sum is as normal as it was. Raises
/// `ZylMemoryException`, which changes nothing.
inline void addNewVariable(ZylNumLinTermI** sum, ZylNumVarI* variable, double coefficient) {
  ZylEnvI* env = (*sum)->getEnv();
  const bool normalized = (*sum)->isNormalized();
  ZylNumLinExprTermI* term = env->newTerm(variable, coefficient);
  try {
    *sum = ownLinear(*sum);
  } catch (...) {
    env->recycleTerm(term);
    throw;
  }
  (*sum)->append(term);
  (*sum)->setNormalized(normalized);
}

/// Makes `expr` the sum of its holder, and sends that as a `Change`. Receivers may still read the
/// old sum, so it goes last, whatever they raise.
template <class Change, class Holder>
void replaceLinear(Holder* holder, ZylNumLinTermI** sum, ZylNumExprI* expr) {
  ZylNumLinTermI* linear = expr->toNumLinTermI();
  linear->hold();
  ZylNumLinTermI* before = std::exchange(*sum, linear);
  ZylEnvI* env = holder->getEnv();
  try {
    holder->notify(Change(holder, before, linear));
  } catch (...) {
    env->release(before);
    throw;
  }
  env->release(before);
}

// What the handles of holders ask of the arguments of `setLinearCoef` and `setLinearCoefs`.
inline void requireHandle(const ZylNumVar& variable) {
  if (variable.getImpl() == nullptr) ZylRaiseEmptyHandle("Using empty ZylNumVar handle.");
}
inline void requireHandles(const ZylNumVarArray& variables, const ZylNumArray& values) {
  if (variables.getImpl() == nullptr) ZylRaiseEmptyHandle(ZylNumVarArray::EmptyText());
  if (values.getImpl() == nullptr) ZylRaiseEmptyHandle(ZylNumArray::EmptyText());
}

/// A number array of `size` zeros that ends with its scope.
struct ScopedNumArray : ZylNumArray {
  ScopedNumArray(ZylEnvI* env, long size) : ZylNumArray(ZylEnv(env), size) {}
  explicit ScopedNumArray(const ZylNumArray& array) : ZylNumArray(array) {}
  ~ScopedNumArray() { end(); }
  ScopedNumArray(const ScopedNumArray&) = delete;
  ScopedNumArray& operator=(const ScopedNumArray&) = delete;
};

}  // namespace zyl::detail

#endif
