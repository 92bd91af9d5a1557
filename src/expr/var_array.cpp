// Arrays of variables, many of them new: one kind of constructor for each form of bounds.

#include "vorlane/expr/var_array.h"

#include <algorithm>
#include <type_traits>

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

// Appends the elements that `make(i)` makes, as many as `count()` says. If one fails the array
// goes, with the variables made before it.
template <class Array, class Count, class Make>
void fill(Array* array, Count count, Make make) {
  try {
    const long n = count();
    // Room for all first: what is made must not be lost on its way into the array.
    if (n > 0) array->getImpl()->grow(n);
    for (long i = 0; i < n; ++i) array->add(make(i));
  } catch (...) {
    for (long i = array->getSize() - 1; i >= 0; --i) discard(array->getI(i));
    array->end();
    throw;
  }
}

// Bounds are given one for each variable, zeros being added to a second array that is too short, or
// one for all.
template <class Bounds>
long sizeOf(const Bounds& bounds) {
  if constexpr (std::is_arithmetic_v<Bounds>) {
    return -1;
  } else {
    return checkedArray(bounds).getSize();
  }
}

template <class Bounds>
auto boundOf(const Bounds& bounds, long i) {
  if constexpr (std::is_arithmetic_v<Bounds>) {
    return bounds;
  } else {
    return i < bounds.getSize() ? bounds[i] : 0;
  }
}

// As many variables as the first array has elements.
template <class Variable, class Array, class Lower, class Upper, class... Type>
void fillOver(Array* array, const ZylEnv& env, const Lower& lower, const Upper& upper,
              Type... type) {
  const auto count = [&] {
    const long sizes[] = {sizeOf(lower), sizeOf(upper)};
    return sizes[0] >= 0 ? sizes[0] : sizes[1];
  };
  fill(array, count,
       [&](long i) { return Variable(env, boundOf(lower, i), boundOf(upper, i), type...); });
}

// `n` variables, all alike.
template <class Variable, class Array, class... Facts>
void fillWith(Array* array, long n, const ZylEnv& env, Facts... facts) {
  fill(
      array, [n] { return n; }, [&](long) { return Variable(env, facts...); });
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

// --- ZylNumVarArray ------------------------------------------------------------------------------

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, long n, double lower, double upper, Type type)
    : ZylNumVarArray(env, 0) {
  fillWith<ZylNumVar>(this, n, env, lower, upper, type);
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower,
                               const ZylNumArray& upper, Type type)
    : ZylNumVarArray(env, 0) {
  fillOver<ZylNumVar>(this, env, lower, upper, type);
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, const ZylNumArray& lower, double upper, Type type)
    : ZylNumVarArray(env, 0) {
  fillOver<ZylNumVar>(this, env, lower, upper, type);
}

ZylNumVarArray::ZylNumVarArray(const ZylEnv& env, double lower, const ZylNumArray& upper, Type type)
    : ZylNumVarArray(env, 0) {
  fillOver<ZylNumVar>(this, env, lower, upper, type);
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

// --- ZylIntVarArray ------------------------------------------------------------------------------

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long n, long lower, long upper)
    : ZylIntVarArray(env, 0) {
  fillWith<ZylIntVar>(this, n, env, lower, upper);
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower,
                               const ZylIntArray& upper)
    : ZylIntVarArray(env, 0) {
  fillOver<ZylIntVar>(this, env, lower, upper);
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, const ZylIntArray& lower, long upper)
    : ZylIntVarArray(env, 0) {
  fillOver<ZylIntVar>(this, env, lower, upper);
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long lower, const ZylIntArray& upper)
    : ZylIntVarArray(env, 0) {
  fillOver<ZylIntVar>(this, env, lower, upper);
}

ZylIntVarArray::ZylIntVarArray(const ZylEnv& env, long n, const ZylAnyArray& values)
    : ZylIntVarArray(env, 0) {
  const auto count = [&] {
    checkedArray(values);
    return n;
  };
  fill(this, count, [&](long) {
    ZylIntVar variable(env, 0, values.getSize());
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

// --- ZylBoolVarArray -----------------------------------------------------------------------------

ZylBoolVarArray::ZylBoolVarArray(const ZylEnv& env, long n, long lower, long upper)
    : ZylBoolVarArray(env, 0) {
  fillWith<ZylBoolVar>(this, n, env, lower, upper);
}

ZylBoolVarArray::ZylBoolVarArray(const ZylEnv& env, const ZylIntArray& lower,
                                 const ZylIntArray& upper)
    : ZylBoolVarArray(env, 0) {
  fillOver<ZylBoolVar>(this, env, lower, upper);
}

ZylBoolVarArray::ZylBoolVarArray(const ZylEnv& env, const ZylIntArray& lower, long upper)
    : ZylBoolVarArray(env, 0) {
  fillOver<ZylBoolVar>(this, env, lower, upper);
}

ZylBoolVarArray::ZylBoolVarArray(const ZylEnv& env, long lower, const ZylIntArray& upper)
    : ZylBoolVarArray(env, 0) {
  fillOver<ZylBoolVar>(this, env, lower, upper);
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

// --- ZylSemiContVarArray -------------------------------------------------------------------------

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, long n, double threshold, double upper,
                                         Type type)
    : ZylSemiContVarArray(env, 0) {
  fillWith<ZylSemiContVar>(this, n, env, threshold, upper, type);
}

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, const ZylNumArray& thresholds,
                                         const ZylNumArray& upper, Type type)
    : ZylSemiContVarArray(env, 0) {
  fillOver<ZylSemiContVar>(this, env, thresholds, upper, type);
}

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, const ZylNumArray& thresholds,
                                         double upper, Type type)
    : ZylSemiContVarArray(env, 0) {
  fillOver<ZylSemiContVar>(this, env, thresholds, upper, type);
}

ZylSemiContVarArray::ZylSemiContVarArray(const ZylEnv& env, double threshold,
                                         const ZylNumArray& upper, Type type)
    : ZylSemiContVarArray(env, 0) {
  fillOver<ZylSemiContVar>(this, env, threshold, upper, type);
}
