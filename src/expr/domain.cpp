// Domains by type of value, private or shared: bounds, values, and how each rounds.

#include "vorlane/expr/domain.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "vorlane/env/number.h"
#include "vorlane/model/display.h"

ZylVarDomainI::~ZylVarDomainI() = default;
bool ZylVarDomainI::isShared() const { return false; }
bool ZylVarDomainI::isIntDomain() const { return false; }
bool ZylVarDomainI::isNumDomain() const { return false; }
bool ZylVarDomainI::isBoolDomain() const { return false; }

namespace {

// No value is smallest among none.
template <class Array, class Value>
void boundsOf(const Array& values, Value* lower, Value* upper) {
  if (values.getSize() == 0) throw ZylArrayError("Array of size 0 in call to ZylMin");
  *lower = *upper = values[0];
  for (long i = 1; i < values.getSize(); ++i) {
    *lower = std::min<Value>(*lower, values[i]);
    *upper = std::max<Value>(*upper, values[i]);
  }
}

// Takes the new values over, or ends them if they are refused.
template <class Array, class Value>
void replaceValues(Array* values, Array replacement, Value* lower, Value* upper) {
  try {
    boundsOf(replacement, lower, upper);
  } catch (...) {
    replacement.end();
    throw;
  }
  values->end();
  *values = replacement;
}

long ceiled(double value) { return ZylTrunc(std::ceil(value)); }
long floored(double value) { return ZylTrunc(std::floor(value)); }

template <class Domain>
void giveBack(Domain* domain, ZylEnvI* env, void* self) {
  // The shared subclasses add no field.
  domain->~Domain();
  env->free(self, sizeof(Domain));
}

template <class Lower, class Upper>
void displayBounds(std::ostream& stream, Lower lower, Upper upper) {
  stream << "[" << lower << ".." << upper << "] ";
}

template <class Array, class Bound>
void displayEither(std::ostream& stream, const Array& values, Bound lower, Bound upper) {
  if (values.getImpl() == nullptr) {
    displayBounds(stream, lower, upper);
    return;
  }
  zyl::detail::displayList(stream, values.getSize(),
                           [&](long i) -> std::ostream& { return stream << values[i]; });
}

// Gives a new domain, which dies if that fails, a copy of the values, if there are any.
template <class Domain, class Array>
Domain* withValues(ZylEnvI* env, Domain* domain, Array* copy, const Array& values) {
  if (values.getImpl() == nullptr) return domain;
  try {
    *copy = values.copy(ZylEnv(env));
  } catch (...) {
    domain->suicide(env, domain);
    throw;
  }
  return domain;
}

constexpr const char* DiscreteText = "SetLB is not supported on a discrete floating point variable";

}  // namespace

// --- float ---------------------------------------------------------------------------------------

ZylNumVarDomainI::ZylNumVarDomainI(ZylNumArray values) : _lower(0.0), _upper(0.0), _values(values) {
  boundsOf(values, &_lower, &_upper);
}

// Both setters speak of the lower bound, and keep the new one; clients know them so.
void ZylNumVarDomainI::setLB(double lower) {
  _lower = lower;
  if (isEnumerated()) throw ZylNotSupportedOperation(DiscreteText);
}

void ZylNumVarDomainI::setUB(double upper) {
  _upper = upper;
  if (isEnumerated()) throw ZylNotSupportedOperation(DiscreteText);
}

void ZylNumVarDomainI::setNumValues(ZylNumArray values) {
  replaceValues(&_values, values, &_lower, &_upper);
}

void ZylNumVarDomainI::setIntValues(ZylIntArray values) { values.end(); }

void ZylNumVarDomainI::suicide(ZylEnvI* env, void* self) {
  _values.end();
  giveBack(this, env, self);
}

void ZylNumVarDomainI::display(std::ostream& stream) const {
  displayEither(stream, _values, _lower, _upper);
}

ZylVarDomainI* ZylNumVarDomainI::makeClone(ZylEnvI* env) const {
  auto* clone = new (env) ZylNumVarDomainI(_lower, _upper);
  return withValues(env, clone, &clone->_values, _values);
}

// --- integer -------------------------------------------------------------------------------------

ZylIntVarDomainI::ZylIntVarDomainI(ZylIntArray values, long any)
    : _lower(0), _upper(0), _values(values), _any(any) {
  boundsOf(values, &_lower, &_upper);
}

void ZylIntVarDomainI::setLB(double lower) {
  const long rounded = ceiled(lower);
  if (isEnumerated()) cleanArray(rounded, _upper);
  _lower = rounded;
}

void ZylIntVarDomainI::setUB(double upper) {
  const long rounded = floored(upper);
  if (isEnumerated()) cleanArray(_lower, rounded);
  _upper = rounded;
}

void ZylIntVarDomainI::reserveBounds(long newLower, long newUpper) const {
  if (!isEnumerated()) return;
  // Wider bounds add the integers between old and new ones, which may be too many to count.
  const auto added = [](long from, long to) {
    return from < to ? static_cast<unsigned long>(to) - static_cast<unsigned long>(from) : 0UL;
  };
  constexpr auto most = static_cast<unsigned long>(ZylArrayI::MaxSize);
  const unsigned long count =
      std::min(added(newLower, _lower), most) + std::min(added(_upper, newUpper), most);
  if (count > most) ZylRaiseMemory();
  if (count != 0) _values.getImpl()->grow(_values.getSize() + static_cast<long>(count));
}

void ZylIntVarDomainI::cleanArray(long newLower, long newUpper) {
  reserveBounds(newLower, newUpper);
  const auto removeIf = [this](auto outside) {
    for (long i = _values.getSize() - 1; i >= 0; --i) {
      if (outside(_values[i])) _values.remove(i);
    }
  };
  if (_lower < newLower) removeIf([=](long v) { return v < newLower; });
  for (long v = newLower; v < _lower; ++v) _values.add(v);
  if (_upper > newUpper) removeIf([=](long v) { return v > newUpper; });
  for (long v = _upper + 1; v <= newUpper; ++v) _values.add(v);
}

void ZylIntVarDomainI::setNumValues(ZylNumArray values) { values.end(); }

void ZylIntVarDomainI::setIntValues(ZylIntArray values) {
  replaceValues(&_values, values, &_lower, &_upper);
}

void ZylIntVarDomainI::suicide(ZylEnvI* env, void* self) {
  _values.end();
  giveBack(this, env, self);
}

void ZylIntVarDomainI::display(std::ostream& stream) const {
  displayEither(stream, _values, _lower, _upper);
}

ZylVarDomainI* ZylIntVarDomainI::makeClone(ZylEnvI* env) const {
  auto* clone = new (env) ZylIntVarDomainI(_lower, _upper, _any);
  return withValues(env, clone, &clone->_values, _values);
}

// --- boolean -------------------------------------------------------------------------------------

void ZylBoolVarDomainI::setLB(double lower) { _lower = ZylTrunc(lower); }
void ZylBoolVarDomainI::setUB(double upper) { _upper = ZylTrunc(upper); }
void ZylBoolVarDomainI::setNumValues(ZylNumArray values) { values.end(); }
void ZylBoolVarDomainI::setIntValues(ZylIntArray values) { values.end(); }
void ZylBoolVarDomainI::suicide(ZylEnvI* env, void* self) { giveBack(this, env, self); }
void ZylBoolVarDomainI::display(std::ostream& stream) const {
  displayBounds(stream, _lower, _upper);
}
ZylVarDomainI* ZylBoolVarDomainI::makeClone(ZylEnvI* env) const {
  return new (env) ZylBoolVarDomainI(_lower, _upper);
}
