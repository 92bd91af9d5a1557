// Variables, their handles, and the domain that they share until an edit makes it their own.

#include "vorlane/expr/variable.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "common/handle_check.h"
#include "vorlane/collection/range.h"
#include "vorlane/env/number.h"
#include "vorlane/env/property.h"
#include "vorlane/expr/domain.h"
#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/variable_change.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylNumVarI, ZylIntExprI)

using zyl::VariableType;

namespace {

long ceiled(double value) { return ZylTrunc(std::ceil(value)); }
long floored(double value) { return ZylTrunc(std::floor(value)); }

// The upper bound of a boolean given as a double: anything above 0 is 1.
long looseBool(double value, double one) {
  if (value < 0.0) return 0;
  if (value > one) return 1;
  return ZylTrunc(value);
}

ZylVarDomainI* booleanDomain(ZylEnvI* env, double lower, double upper) {
  return env->getOrMakeSharedDomain(looseBool(lower, 1.0), looseBool(upper, 0.0));
}

ZylVarDomainI* strictBooleanDomain(ZylEnvI* env, double lower, double upper) {
  return env->getOrMakeSharedDomain(std::clamp(ZylTrunc(lower), 0L, 1L),
                                    std::clamp(ZylTrunc(upper), 0L, 1L));
}

// Both bounds are rounded up here; `setUB` rounds down.
ZylVarDomainI* internedDomain(ZylEnvI* env, double lower, double upper, VariableType type,
                              ZylVarDomainI* (*boolean)(ZylEnvI*, double, double)) {
  if (type == zyl::Float) return env->getOrMakeSharedDomain(lower, upper);
  if (type == zyl::Int) return env->getOrMakeSharedDomain(ceiled(lower), ceiled(upper));
  return boolean(env, lower, upper);
}

// A private domain on an array that it takes over; the array is ended if that fails.
template <class Domain, class Array, class... Args>
ZylVarDomainI* makeOwning(ZylEnvI* env, Array values, Args... args) {
  try {
    return new (env) Domain(values, args...);
  } catch (...) {
    values.end();
    throw;
  }
}

ZylVarDomainI* valuesDomain(ZylEnvI* env, const ZylNumArray& values, VariableType type) {
  if (type == zyl::Int) {
    throw ZylNotSupportedOperation(
        "You cannot create a integer variable by giving it an array of double");
  }
  if (type != zyl::Float) {
    throw ZylNotSupportedOperation(
        "You cannot create a boolean variable by giving it an array of values");
  }
  return makeOwning<ZylNumVarDomainI>(env, values.copy(ZylEnv(env)));
}

ZylVarDomainI* valuesDomain(ZylEnvI* env, const ZylIntArray& values, VariableType type) {
  if (type == zyl::Float) {
    ZylNumArray numbers(ZylEnv(env), 0);
    try {
      for (long i = 0; i < values.getSize(); ++i) numbers.add(static_cast<double>(values[i]));
    } catch (...) {
      numbers.end();
      throw;
    }
    return makeOwning<ZylNumVarDomainI>(env, numbers);
  }
  if (type != zyl::Int) {
    throw ZylNotImplemented("You cannot create a boolean variable by giving it an array of values");
  }
  return makeOwning<ZylIntVarDomainI>(env, values.copy(ZylEnv(env)));
}

ZylVarDomainI* valuesDomain(ZylEnvI* env, const ZylAnyArray& values) {
  ZylIntArray addresses(ZylEnv(env), 0);
  try {
    for (long i = 0; i < values.getSize(); ++i) {
      addresses.add(reinterpret_cast<long>(values[i]));
    }
  } catch (...) {
    addresses.end();
    throw;
  }
  return makeOwning<ZylIntVarDomainI>(env, addresses, 1L);
}

void end(ZylVarDomainI* domain, ZylEnvI* env) {
  if (domain != nullptr && !domain->isShared()) domain->suicide(env, domain);
}

}  // namespace

ZylNumVarI::ZylNumVarI(ZylEnvI* env, const char* name)
    : ZylIntExprI(env, name), _domain(nullptr), _mark(nullptr) {}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, ZylVarDomainI* domain, const char* name)
    : ZylIntExprI(env, name), _domain(domain), _mark(nullptr) {}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, double lower, double upper, Type type, const char* name)
    : ZylNumVarI(env, internedDomain(env, lower, upper, type, &booleanDomain), name) {}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, Type type, double lower, double upper, const char* name)
    : ZylNumVarI(env, internedDomain(env, lower, upper, type, &strictBooleanDomain), name) {}

ZylNumVarI::ZylNumVarI(const ZylIntRangeI* range, const char* name)
    : ZylNumVarI(range->getEnv(),
                 const_cast<ZylIntRangeI*>(range)->getSharedDomain(),  // NOLINT: only read
                 name) {}

ZylNumVarI::ZylNumVarI(const ZylNumRangeI* range, const char* name)
    : ZylNumVarI(range->getEnv(),
                 const_cast<ZylNumRangeI*>(range)->getSharedDomain(),  // NOLINT: only read
                 name) {}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, const ZylNumArray& values, Type type, const char* name)
    : ZylNumVarI(env, static_cast<ZylVarDomainI*>(nullptr), name) {
  _domain = valuesDomain(env, values, type);
}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, const ZylIntArray& values, Type type, const char* name)
    : ZylNumVarI(env, static_cast<ZylVarDomainI*>(nullptr), name) {
  _domain = valuesDomain(env, values, type);
}

ZylNumVarI::ZylNumVarI(ZylEnvI* env, const ZylAnyArray& values, const char* name)
    : ZylNumVarI(env, static_cast<ZylVarDomainI*>(nullptr), name) {
  _domain = valuesDomain(env, values);
}

ZylNumVarI::~ZylNumVarI() { ::end(_domain, _env); }

ZylExtractableI* ZylNumVarI::makeClone(ZylEnvI* env) const {
  ZylVarDomainI* domain = _domain != nullptr ? _domain->makeClone(env) : nullptr;
  try {
    return new (env) ZylNumVarI(env, domain, getName());
  } catch (...) {
    ::end(domain, env);
    throw;
  }
}

void ZylNumVarI::atRemove(ZylExtractableI*, void*) {}

void ZylNumVarI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->endVisit(this);
}

bool ZylNumVarI::isRefCountedExpr() const { return false; }
// Not counted, so nothing outlives its end. NOLINTNEXTLINE(bugprone-parent-virtual-call)
void ZylNumVarI::end() { ZylExtractableI::end(); }
bool ZylNumVarI::isGround() const { return true; }
bool ZylNumVarI::isDecisionExpr() const { return true; }
void ZylNumVarI::release() {}

void ZylNumVarI::display(std::ostream& stream) const {
  const char* name = getName();
  if (_domain == nullptr) {
    if (name != nullptr) {
      stream << name;
    } else {
      stream << "ZylNumVar(" << getId() << ")";
    }
    stream << "[0 .. " << ZylInfinity << "] ";
    return;
  }
  if (name != nullptr) {
    stream << name;
  } else if (_domain->getType() == zyl::Float) {
    stream << "ZylNumVar(" << getId() << ")";
  } else {
    stream << (_domain->isAny() ? "ZylAnyVar(" : "ZylIntVar(") << getId() << ")";
  }
  _domain->display(stream);
}

ZylNumLinTermI* ZylNumVarI::toNumLinTermI() {
  return new (_env) ZylNumLinTermI(ZylNumLinExprTerm(this, 1.0));
}

ZylIntLinTermI* ZylNumVarI::toIntLinTermI() {
  return new (_env) ZylIntLinTermI(ZylIntLinExprTerm(this, 1.0));
}

bool ZylNumVarI::isInteger() const {
  return _domain != nullptr && _domain->getType() != zyl::Float;
}

// --- what others ask of variables
// -----------------------------------------------------------------

void ZylFindDecisionVar::beginVisit(ZylExtractableI* object) {
  if (object->isType(ZylNumVarI::GetTypeInfo())) _result = 1;
}

// --- bounds --------------------------------------------------------------------------------------

double ZylNumVarI::getLB() const { return _domain != nullptr ? _domain->getLB() : 0.0; }
double ZylNumVarI::getUB() const { return _domain != nullptr ? _domain->getUB() : ZylInfinity; }
ZylNumVarI::Type ZylNumVarI::getType() const {
  return _domain != nullptr ? _domain->getType() : zyl::Float;
}
ZylNumArray ZylNumVarI::getNumValues() const {
  return _domain != nullptr ? _domain->getNumValues() : ZylNumArray();
}
ZylIntArray ZylNumVarI::getIntValues() const {
  return _domain != nullptr ? _domain->getIntValues() : ZylIntArray();
}

void ZylNumVarI::replaceDomain(ZylVarDomainI* domain, ZylVarDomainI* before) {
  _domain = domain;
  ::end(before, _env);
}

// A domain that may be written to: a shared one is replaced by a private copy first.
ZylVarDomainI* ZylNumVarI::ownDomain() {
  if (_domain->isShared()) _domain = _domain->makeClone(_env);
  return _domain;
}

void ZylNumVarI::setLB(double lower) {
  ZylVarDomainI* d = _domain;
  if (d == nullptr) {
    _domain = _env->getOrMakeSharedDomain(lower, ZylInfinity);
  } else if (d->isBoolDomain()) {
    const long t = ceiled(lower);
    if (d->isShared() || t < 0 || t > 1) {
      replaceDomain(_env->getOrMakeSharedDomain(t, d->getMax()), d);
    } else {
      d->setLB(lower);
    }
  } else if (!d->isShared()) {
    d->setLB(lower);
  } else if (d->isIntDomain()) {
    _domain = _env->getOrMakeSharedDomain(ceiled(lower), d->getMax());
  } else {
    _domain = _env->getOrMakeSharedDomain(lower, d->getUB());
  }
  notify(ZylSetNumVarBounds(this, lower, getUB()));
}

void ZylNumVarI::setUB(double upper) {
  ZylVarDomainI* d = _domain;
  if (d == nullptr) {
    _domain = _env->getOrMakeSharedDomain(0.0, upper);
  } else if (d->isBoolDomain()) {
    const long t = floored(upper);
    if (d->isShared() || t < 0 || t > 1) {
      replaceDomain(_env->getOrMakeSharedDomain(d->getMin(), t), d);
    } else {
      d->setUB(upper);
    }
  } else if (!d->isShared()) {
    d->setUB(upper);
  } else if (d->isIntDomain()) {
    _domain = _env->getOrMakeSharedDomain(d->getMin(), floored(upper));
  } else {
    _domain = _env->getOrMakeSharedDomain(d->getLB(), upper);
  }
  notify(ZylSetNumVarBounds(this, getLB(), upper));
}

// Without a domain one of these bounds gets interned, otherwise the private one gets its room.
void ZylNumVarI::prepareBounds(double lower, double upper) {
  if (_domain == nullptr) {
    // The default is no domain; under a local environment one is made for each call.
    if (_env->getLocalEnv() == nullptr) {
      static_cast<void>(_env->getOrMakeSharedDomain(lower, upper));
    }
    return;
  }
  ZylVarDomainI* d = ownDomain();
  if (d->isIntDomain()) {
    static_cast<ZylIntVarDomainI*>(d)->reserveBounds(ceiled(lower), floored(upper));
  }
}

// No interning here: two look-ups for one call would cost more than a private domain.
void ZylNumVarI::setBounds(double lower, double upper) {
  if (_domain == nullptr) {
    _domain = _env->getOrMakeSharedDomain(lower, upper);
  } else {
    prepareBounds(lower, upper);
    _domain->setLB(lower);
    _domain->setUB(upper);
  }
  notify(ZylSetNumVarBounds(this, lower, upper));
}

void ZylNumVarI::setPossibleValues(const ZylNumArray& values) {
  if (getType() != zyl::Float) {
    throw ZylNotSupportedOperation(
        "You cannot change the domain of an integer variable by giving it a floating point "
        "variable");
  }
  if (_domain == nullptr) {
    _domain = valuesDomain(_env, values, zyl::Float);
  } else {
    ownDomain()->setNumValues(values.copy(ZylEnv(_env)));
  }
  notify(ZylSetNumVarPossibleValues(this, values, ZylIntArray()));
}

void ZylNumVarI::setPossibleValues(const ZylIntArray& values) {
  if (getType() == zyl::Float) {
    ZylNumArray numbers = values.toNumArray();
    try {
      setPossibleValues(numbers);
    } catch (...) {
      numbers.end();
      throw;
    }
    numbers.end();
    return;
  }
  ownDomain()->setIntValues(values.copy(ZylEnv(_env)));
  notify(ZylSetNumVarPossibleValues(this, ZylNumArray(), values));
}

ZylVarDomainI* ZylNumVarI::makeDomain(double lower, double upper) const {
  const Type type = getType();
  if (type == zyl::Float) return new (_env) ZylNumVarDomainI(lower, upper);
  if (type == zyl::Int) {
    auto* domain = new (_env) ZylIntVarDomainI(ZylIntMin, ZylIntMax, 0);
    domain->setLB(lower);
    domain->setUB(upper);
    return domain;
  }
  return new (_env) ZylBoolVarDomainI(looseBool(lower, 1.0), looseBool(upper, 0.0));
}

// --- handles -------------------------------------------------------------------------------------

namespace {

using zyl::detail::checkedArray;
using zyl::detail::EmptyEnv;

ZylEnvI* checkedEnv(const ZylEnv& env) { return zyl::detail::checked(env, EmptyEnv); }

template <class... Args>
ZylNumVarI* make(const ZylEnv& env, Args... args) {
  ZylEnvI* owner = checkedEnv(env);
  return new (owner) ZylNumVarI(owner, args...);
}

// Longs go to the virtual setters as doubles, so that a subclass sees one entry point.
double asBound(long bound) { return static_cast<double>(bound); }

ZylVarDomainI* integerDomain(const ZylEnv& env, long lower, long upper) {
  return checkedEnv(env)->getOrMakeSharedDomain(lower, upper);
}

template <class Array>
ZylNumVarI* makeOnValues(const ZylEnv& env, const Array& values, VariableType type,
                         const char* name) {
  ZylEnvI* owner = checkedEnv(env);
  return new (owner) ZylNumVarI(owner, checkedArray(values), type, name);
}

}  // namespace

// --- ZylNumVar -----------------------------------------------------------------------------------

namespace {
// Which operation raises which text is part of the interface; the names follow the words.
constexpr const char* EmptyNumVarHandle = "Using empty ZylNumVar handle.";
constexpr const char* EmptyHandleNumVar = "Using empty handle ZylNumVar";
constexpr const char* EmptyIntVarHandle = "Using empty ZylIntVar handle.";
constexpr const char* EmptyHandleIntVar = "Using empty handle ZylIntVar";
}  // namespace

ZylNumVar::ZylNumVar(const ZylEnv& env, double lower, double upper, Type type, const char* name)
    : ZylNumExprArg(make(env, lower, upper, type, name)) {}

ZylNumVar::ZylNumVar(const ZylEnv& env, double lower, double upper, const char* name)
    : ZylNumVar(env, lower, upper, Float, name) {}

ZylNumVar::ZylNumVar(const ZylNumRange& range, const char* name) {
  if (range.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylNumRange: Using empty handle");
  _impl = new (range.getImpl()->getEnv()) ZylNumVarI(range.getImpl(), name);
}

ZylNumVar::ZylNumVar(const ZylEnv& env, const ZylNumArray& values, Type type, const char* name)
    : ZylNumExprArg(makeOnValues(env, values, type, name)) {}

double ZylNumVar::getLB() const { return checked(EmptyNumVarHandle)->getLB(); }
double ZylNumVar::getUB() const { return checked(EmptyNumVarHandle)->getUB(); }
void ZylNumVar::setLB(double lower) const { checked(EmptyNumVarHandle)->setLB(lower); }
void ZylNumVar::setUB(double upper) const { checked(EmptyNumVarHandle)->setUB(upper); }
void ZylNumVar::setBounds(double lower, double upper) const {
  checked(EmptyHandleNumVar)->setBounds(lower, upper);
}
ZylNumVar::Type ZylNumVar::getType() const {
  return checked("Using empty handle ZylNumVar::getType")->getType();
}

void ZylNumVar::getPossibleValues(const ZylNumArray& values) const {
  const ZylNumArray own = checked(EmptyHandleNumVar)->getNumValues();
  checkedArray(values);
  if (own.getImpl() != nullptr) values.add(own);
}

void ZylNumVar::setPossibleValues(const ZylNumArray& values) const {
  checked(EmptyNumVarHandle)->setPossibleValues(checkedArray(values));
}

ZylNumVar ZylNumVar::getClone(const ZylEnv& env) const {
  return ZylNumVar(static_cast<ZylNumVarI*>(checkedEnv(env)->getClone(checked(EmptyNumVarHandle))));
}

bool ZylExtractable::isVariable() const { return checked()->isType(ZylNumVarI::GetTypeInfo()); }
ZylNumVar ZylExtractable::asVariable() const { return ZylNumVar(zyl::as<ZylNumVarI>(checked())); }

// --- ZylIntVar -----------------------------------------------------------------------------------

const char* const ZylIntVar::AnyDomainProperty = "ZylIntVar::AnyDomainProperty";

ZylIntVar::ZylIntVar(const ZylEnv& env, const char* name) : ZylIntVar(env, 0, ZylIntMax, name) {}

ZylIntVar::ZylIntVar(const ZylEnv& env, long lower, long upper, const char* name)
    : ZylIntExprArg(make(env, integerDomain(env, lower, upper), name)) {}

ZylIntVar::ZylIntVar(const ZylEnv& env, const ZylIntArray& values, const char* name)
    : ZylIntExprArg(makeOnValues(env, values, zyl::Int, name)) {}

ZylIntVar::ZylIntVar(const ZylEnv& env, const ZylAnyArray& values, const char* name) {
  ZylEnvI* owner = checkedEnv(env);
  _impl = new (owner) ZylNumVarI(owner, checkedArray(values), name);
}

ZylIntVar::ZylIntVar(const ZylIntRange& range, const char* name) {
  if (range.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylIntRange: Using empty handle");
  _impl = new (range.getImpl()->getEnv()) ZylNumVarI(range.getImpl(), name);
}

ZylIntVar::ZylIntVar(const ZylNumVar& variable) : ZylIntExprArg(variable.getImpl()) {
  if (_impl != nullptr && variable.getType() == zyl::Float) throw ZylBadConversion();
}

long ZylIntVar::getMin() const { return ZylTrunc(checked(EmptyIntVarHandle)->getLB()); }
long ZylIntVar::getMax() const { return ZylTrunc(checked(EmptyIntVarHandle)->getUB()); }
void ZylIntVar::setMin(long lower) const { checked(EmptyIntVarHandle)->setLB(asBound(lower)); }
void ZylIntVar::setMax(long upper) const { checked(EmptyIntVarHandle)->setUB(asBound(upper)); }
void ZylIntVar::setBounds(long lower, long upper) const {
  checked(EmptyHandleIntVar)->setBounds(asBound(lower), asBound(upper));
}
ZylIntVar::Type ZylIntVar::getType() const {
  return checked("Using empty handle ZylIntVar::getType")->getType();
}

void ZylIntVar::getPossibleValues(const ZylIntArray& values) const {
  const ZylIntArray own = checked(EmptyHandleIntVar)->getIntValues();
  checkedArray(values);
  if (own.getImpl() != nullptr) values.add(own);
}

void ZylIntVar::setPossibleValues(const ZylIntArray& values) const {
  checked(EmptyIntVarHandle)->setPossibleValues(checkedArray(values));
}

ZylAnyArray ZylIntVar::getAnyDomain() const {
  try {
    return ZylAnyArray(
        static_cast<ZylArrayI*>(checked(EmptyIntVarHandle)->getAnyProperty(AnyDomainProperty)));
  } catch (const ZylNamedPropertySet::NotPresent&) {
    return ZylAnyArray();
  }
}

ZylIntVar ZylIntVar::getClone(const ZylEnv& env) const {
  return ZylIntVar(static_cast<ZylNumVarI*>(checkedEnv(env)->getClone(checked(EmptyIntVarHandle))));
}

// --- ZylBoolVar ----------------------------------------------------------------------------------

namespace {
bool isZeroOrOne(double bound) { return bound == 0.0 || bound == 1.0; }
}  // namespace

ZylBoolVar::ZylBoolVar(const ZylEnv& env, const char* name) : ZylBoolVar(env, 0, 1, name) {}

ZylBoolVar::ZylBoolVar(const ZylEnv& env, long lower, long upper, const char* name)
    : ZylIntVar(make(env, integerDomain(env, lower, upper), name)) {}

ZylBoolVar::ZylBoolVar(const ZylIntVar& variable) : ZylIntVar(variable.getImpl()) {
  if (_impl == nullptr) return;
  if (variable.getMin() < 0 || variable.getMax() > 1 || variable.getMin() > 1 ||
      variable.getMax() < 0) {
    throw ZylBadConversion();
  }
}

ZylBoolVar::ZylBoolVar(const ZylNumVar& variable) : ZylIntVar(variable.getImpl()) {
  if (_impl == nullptr) return;
  if (variable.getType() == zyl::Float) {
    ZylRaiseWrongUsage("Try to add a float variable to ZylBoolVarArray");
  }
  if (variable.getType() == zyl::Bool) return;
  if (!isZeroOrOne(variable.getLB()) || !isZeroOrOne(variable.getUB())) throw ZylBadConversion();
}
