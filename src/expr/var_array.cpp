#include "vorlane/expr/var_array.h"

#include <algorithm>

#include "vorlane/env/property.h"
#include "vorlane/expr/expr_array.h"
#include "vorlane/expr/variable_change.h"

namespace {

template <class Array>
const Array& checkedArray(const Array& array) {
  if (array.getImpl() == nullptr) ZylRaiseEmptyHandle(Array::EmptyText());
  return array;
}

// A variable that nobody knows yet, nor will.
void discard(ZylExtractableI* variable) {
  variable->getEnv()->destroy(variable, /*keep=*/0, /*notify=*/0);
}

// Appends `n` elements that `make(i)` makes. If one fails the array goes, with the variables made
// before it.
template <class Array, class Make>
void fill(Array* array, long n, Make make) {
  try {
    // Room for all first: what is made must not be lost on its way into the array.
    if (n > 0) array->getImpl()->grow(n);
    for (long i = 0; i < n; ++i) array->add(make(i));
  } catch (...) {
    for (long i = array->getSize() - 1; i >= 0; --i) discard(array->getI(i));
    array->end();
    throw;
  }
}

// The same elements under another handle class, in a new array.
template <class To>
To rewrapped(const ZylExtractableArray& from) {
  To copy(from.getEnv(), 0);
  static_cast<ZylExtractableArray&>(copy).add(from);
  return copy;
}

template <class To>
To integersOf(const ZylNumVarArray& variables) {
  for (long i = 0; i < variables.getSize(); ++i) {
    const ZylNumVarI* variable = variables[i].getImpl();
    if (variable != nullptr && variable->getType() == zyl::Float) throw ZylBadConversion();
  }
  return rewrapped<To>(variables);
}

}  // namespace

// --- ZylNumVarArray
// -------------------------------------------------------------------------------

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, long n, double lower, double upper, Type type)
    : ZylNumVarArray(env, 0) {
  fill(this, n, [&](long) { return ZylNumVar(env, lower, upper, type); });
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower,
                               const ZylNumArray& upper, Type type)
    : ZylNumVarArray(env, 0) {
  checkedArray(upper);
  fill(this, checkedArray(lower).getSize(), [&](long i) {
    // A second array that is too short counts as zeros from there on.
    return ZylNumVar(env, lower[i], i < upper.getSize() ? upper[i] : 0.0, type);
  });
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower, double upper, Type type)
    : ZylNumVarArray(env, 0) {
  fill(this, checkedArray(lower).getSize(),
       [&](long i) { return ZylNumVar(env, lower[i], upper, type); });
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, double lower, const ZylNumArray& upper, Type type)
    : ZylNumVarArray(env, 0) {
  fill(this, checkedArray(upper).getSize(),
       [&](long i) { return ZylNumVar(env, lower, upper[i], type); });
}

ZylNumVarArray::ZylNumVarArray(const ZylIntVarArray& variables)
    : ZylNumVarArray(variables.getImpl()) {}

void ZylNumVarArray::setBounds(const ZylNumArray& lower, const ZylNumArray& upper) const {
  if (_impl == nullptr) ZylRaiseEmptyHandle(EmptyText());
  checkedArray(lower);
  checkedArray(upper);
  const long size = std::min({getSize(), lower.getSize(), upper.getSize()});
  for (long i = 0; i < size; ++i) {
    if (ZylNumVarI* variable = (*this)[i].getImpl()) variable->prepareBounds(lower[i], upper[i]);
  }
  ZylEnvI* env = nullptr;
  for (long i = 0; i < size; ++i) {
    ZylNumVarI* variable = (*this)[i].getImpl();
    if (variable == nullptr) continue;
    variable->setBounds(lower[i], upper[i]);
    env = variable->getEnv();
  }
  if (env != nullptr) env->change(ZylSetNumVarArrayBounds(*this, lower, upper));
}

ZylIntVarArray ZylNumVarArray::toIntVarArray() const { return integersOf<ZylIntVarArray>(*this); }
ZylIntExprArray ZylNumVarArray::toIntExprArray() const {
  return integersOf<ZylIntExprArray>(*this);
}
ZylNumExprArray ZylNumVarArray::toNumExprArray() const { return rewrapped<ZylNumExprArray>(*this); }

// --- ZylIntVarArray
// -------------------------------------------------------------------------------

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long n, long lower, long upper)
    : ZylIntVarArray(env, 0) {
  fill(this, n, [&](long) { return ZylIntVar(env, lower, upper); });
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower,
                               const ZylIntArray& upper)
    : ZylIntVarArray(env, 0) {
  checkedArray(upper);
  fill(this, checkedArray(lower).getSize(),
       [&](long i) { return ZylIntVar(env, lower[i], i < upper.getSize() ? upper[i] : 0); });
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower, long upper)
    : ZylIntVarArray(env, 0) {
  fill(this, checkedArray(lower).getSize(),
       [&](long i) { return ZylIntVar(env, lower[i], upper); });
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long lower, const ZylIntArray& upper)
    : ZylIntVarArray(env, 0) {
  fill(this, checkedArray(upper).getSize(),
       [&](long i) { return ZylIntVar(env, lower, upper[i]); });
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long n, const ZylAnyArray& values)
    : ZylIntVarArray(env, 0) {
  fill(this, n, [&, size = checkedArray(values).getSize()](long) {
    ZylIntVar variable(env, 0, size);
    try {
      variable.setAnyProperty(ZylIntVar::AnyDomainProperty, values.getImpl());
    } catch (...) {
      discard(variable.getImpl());
      throw;
    }
    return variable;
  });
}

ZylIntVarArray::ZylIntVarArray(const ZylBoolVarArray& variables)
    : ZylIntVarArray(variables.getImpl()) {}

ZylNumVarArray ZylIntVarArray::toNumVarArray() const { return rewrapped<ZylNumVarArray>(*this); }
ZylIntExprArray ZylIntVarArray::toIntExprArray() const { return rewrapped<ZylIntExprArray>(*this); }
ZylNumExprArray ZylIntVarArray::toNumExprArray() const { return rewrapped<ZylNumExprArray>(*this); }

// --- ZylBoolVarArray
// ------------------------------------------------------------------------------

ZylBoolVarArray::ZylBoolVarArray(const ZylEnv& env, long n, long lower, long upper)
    : ZylBoolVarArray(env, 0) {
  fill(this, n, [&](long) { return ZylBoolVar(env, lower, upper); });
}

ZylBoolVarArray::ZylBoolVarArray(const ZylIntVarArray& variables)
    : ZylBoolVarArray(variables.getImpl()) {
  for (long i = 0; i < checkedArray(variables).getSize(); ++i) {
    if (variables.getI(i) == nullptr) ZylRaiseEmptyHandle("Using empty variable");
    ZylBoolVar(ZylNumVar(variables[i].getImpl()));
  }
}

ZylIntExprArray ZylBoolVarArray::toIntExprArray() const {
  return rewrapped<ZylIntExprArray>(*this);
}
ZylNumExprArray ZylBoolVarArray::toNumExprArray() const {
  return rewrapped<ZylNumExprArray>(*this);
}

// --- ZylSemiContVarArray
// --------------------------------------------------------------------------

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, long n, double threshold, double upper,
                                         Type type)
    : ZylSemiContVarArray(env, 0) {
  fill(this, n, [&](long) { return ZylSemiContVar(env, threshold, upper, type); });
}

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, const ZylNumArray& thresholds,
                                         const ZylNumArray& upper, Type type)
    : ZylSemiContVarArray(env, 0) {
  checkedArray(upper);
  fill(this, checkedArray(thresholds).getSize(), [&](long i) {
    return ZylSemiContVar(env, thresholds[i], i < upper.getSize() ? upper[i] : 0.0, type);
  });
}
