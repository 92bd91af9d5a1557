// Ranges in bulk: made from bounds and expressions of many forms, and edited with one change.

#include "common/own_linear.h"
#include "vorlane/constraint/range.h"
#include "vorlane/constraint/range_change.h"

namespace {

// One side of the bulk constructors: a number for all, or a number for each.
struct Side {
  Side(double value) : _value(value) {}                                       // NOLINT
  Side(const ZylNumArray& values) : _nums(&values), _size(sizeOf(values)) {}  // NOLINT
  Side(const ZylIntArray& values) : _ints(&values), _size(sizeOf(values)) {}  // NOLINT

  // A second array that is too short counts as zeros from there on.
  double operator[](long i) const {
    if (_nums != nullptr) return i < _size ? (*_nums)[i] : 0.0;
    if (_ints != nullptr) return i < _size ? static_cast<double>((*_ints)[i]) : 0.0;
    return _value;
  }
  bool isArray() const { return _size >= 0; }
  long getSize() const { return _size; }

 private:
  template <class Array>
  static long sizeOf(const Array& values) {
    if (values.getImpl() == nullptr) ZylRaiseEmptyHandle(Array::EmptyText());
    return values.getSize();
  }
  double _value = 0.0;
  const ZylNumArray* _nums = nullptr;
  const ZylIntArray* _ints = nullptr;
  long _size = -1;
};

// If one fails the array goes, with the ranges made before it, unless these hold expressions of the
// client: those would go along.
template <class Make>
void fill(ZylRangeArray* array, long n, bool ownExprs, Make make) {
  try {
    if (n > 0) array->getImpl()->grow(n);
    for (long i = 0; i < n; ++i) array->add(make(i));
  } catch (...) {
    for (long i = array->getSize() - 1; ownExprs && i >= 0; --i) {
      ZylRangeI* range = (*array)[i].getImpl();
      range->getEnv()->destroy(range, /*keep=*/0, /*notify=*/0);
    }
    array->end();
    throw;
  }
}

void fill(ZylRangeArray* array, const ZylEnv& env, const Side& lower, const Side& upper) {
  fill(array, lower.isArray() ? lower.getSize() : upper.getSize(), /*ownExprs=*/true,
       [&](long i) { return ZylRange(env, lower[i], upper[i]); });
}

void fill(ZylRangeArray* array, const ZylEnv& env, const Side& lower, const ZylNumExprArray& exprs,
          const Side& upper) {
  if (exprs.getImpl() == nullptr) ZylRaiseEmptyHandle(ZylNumExprArray::EmptyText());
  const long n = lower.isArray() ? lower.getSize() : exprs.getSize();
  fill(array, n, /*ownExprs=*/false, [&](long i) {
    return i < exprs.getSize() ? ZylRange(env, lower[i], exprs[i], upper[i])
                               : ZylRange(env, lower[i], upper[i]);
  });
}

}  // namespace

ZylRangeArray::ZylRangeArray(const ZylEnv& env, long n, double lower, double upper)
    : ZylRangeArray(env, 0) {
  fill(this, n, /*ownExprs=*/true, [&](long) { return ZylRange(env, lower, upper); });
}

#define ZYL_RANGE_ARRAY_BOUNDS(Lower, Upper)                                                 \
  ZylRangeArray::ZylRangeArray(const ZylEnv& env, Lower lower, Upper upper)                  \
      : ZylRangeArray(env, 0) {                                                              \
    fill(this, env, Side(lower), Side(upper));                                               \
  }                                                                                          \
  ZylRangeArray::ZylRangeArray(const ZylEnv& env, Lower lower, const ZylNumExprArray& exprs, \
                               Upper upper)                                                  \
      : ZylRangeArray(env, 0) {                                                              \
    fill(this, env, Side(lower), exprs, Side(upper));                                        \
  }

ZYL_RANGE_ARRAY_BOUNDS(const ZylNumArray&, const ZylNumArray&)
ZYL_RANGE_ARRAY_BOUNDS(const ZylIntArray&, const ZylIntArray&)
ZYL_RANGE_ARRAY_BOUNDS(double, const ZylNumArray&)
ZYL_RANGE_ARRAY_BOUNDS(const ZylNumArray&, double)
ZYL_RANGE_ARRAY_BOUNDS(double, const ZylIntArray&)
ZYL_RANGE_ARRAY_BOUNDS(const ZylIntArray&, double)

#undef ZYL_RANGE_ARRAY_BOUNDS

ZylRangeArray::ZylRangeArray(const ZylEnv& env, double lower, const ZylNumExprArray& exprs,
                             double upper)
    : ZylRangeArray(env, 0) {
  fill(this, env, Side(lower), exprs, Side(upper));
}

void ZylRangeArray::setBounds(const ZylNumArray& lower, const ZylNumArray& upper) const {
  if (_impl == nullptr) ZylRaiseEmptyHandle(EmptyText());
  const Side lowers(lower);
  const Side uppers(upper);
  ZylEnvI* env = nullptr;
  for (long i = 0; i < getSize() && i < lowers.getSize() && i < uppers.getSize(); ++i) {
    ZylRangeI* range = (*this)[i].getImpl();
    if (range == nullptr) continue;
    range->writeBounds(lower[i], upper[i]);
    env = range->getEnv();
  }
  if (env != nullptr) env->change(ZylSetRangeArrayBounds(*this, lower, upper));
}

void ZylRangeArray::setBounds(const ZylIntArray& lower, const ZylIntArray& upper) const {
  if (lower.getImpl() == nullptr || upper.getImpl() == nullptr) {
    ZylRaiseEmptyHandle(ZylIntArray::EmptyText());
  }
  const zyl::detail::ScopedNumArray lowers(lower.toNumArray());
  const zyl::detail::ScopedNumArray uppers(upper.toNumArray());
  setBounds(lowers, uppers);
}
