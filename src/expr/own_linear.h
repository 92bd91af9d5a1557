// Copy on write for those who store a linear sum.

#ifndef ZYL_SRC_EXPR_OWN_LINEAR_H
#define ZYL_SRC_EXPR_OWN_LINEAR_H

#include "vorlane/expr/lin_term.h"

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
