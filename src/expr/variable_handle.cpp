#include <cmath>

#include "vorlane/collection/range.h"
#include "vorlane/env/number.h"
#include "vorlane/env/property.h"
#include "vorlane/expr/domain.h"
#include "vorlane/expr/special_variable.h"

using zyl::VariableType;

namespace {

ZylEnvI* checkedEnv(const ZylEnv& env) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle("Using empty ZylEnv handle.");
  return env.getImpl();
}

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
const Array& checkedArray(const Array& values) {
  if (values.getImpl() == nullptr) ZylRaiseEmptyHandle(Array::EmptyText());
  return values;
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
constexpr const char* NumText = "Using empty ZylNumVar handle.";
constexpr const char* NumText2 = "Using empty handle ZylNumVar";
constexpr const char* IntText = "Using empty ZylIntVar handle.";
constexpr const char* IntText2 = "Using empty handle ZylIntVar";
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

double ZylNumVar::getLB() const { return checked(NumText)->getLB(); }
double ZylNumVar::getUB() const { return checked(NumText)->getUB(); }
void ZylNumVar::setLB(double lower) const { checked(NumText)->setLB(lower); }
void ZylNumVar::setUB(double upper) const { checked(NumText)->setUB(upper); }
void ZylNumVar::setBounds(double lower, double upper) const {
  checked(NumText2)->setBounds(lower, upper);
}
ZylNumVar::Type ZylNumVar::getType() const {
  return checked("Using empty handle ZylNumVar::getType")->getType();
}

void ZylNumVar::getPossibleValues(const ZylNumArray& values) const {
  const ZylNumArray own = checked(NumText2)->getNumValues();
  checkedArray(values);
  if (own.getImpl() != nullptr) values.add(own);
}

void ZylNumVar::setPossibleValues(const ZylNumArray& values) const {
  checked(NumText)->setPossibleValues(checkedArray(values));
}

ZylNumVar ZylNumVar::getClone(const ZylEnv& env) const {
  return ZylNumVar(static_cast<ZylNumVarI*>(checkedEnv(env)->getClone(checked(NumText))));
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

long ZylIntVar::getMin() const { return ZylTrunc(checked(IntText)->getLB()); }
long ZylIntVar::getMax() const { return ZylTrunc(checked(IntText)->getUB()); }
void ZylIntVar::setMin(long lower) const { checked(IntText)->setLB(asBound(lower)); }
void ZylIntVar::setMax(long upper) const { checked(IntText)->setUB(asBound(upper)); }
void ZylIntVar::setBounds(long lower, long upper) const {
  checked(IntText2)->setBounds(asBound(lower), asBound(upper));
}
ZylIntVar::Type ZylIntVar::getType() const {
  return checked("Using empty handle ZylIntVar::getType")->getType();
}

void ZylIntVar::getPossibleValues(const ZylIntArray& values) const {
  const ZylIntArray own = checked(IntText2)->getIntValues();
  checkedArray(values);
  if (own.getImpl() != nullptr) values.add(own);
}

void ZylIntVar::setPossibleValues(const ZylIntArray& values) const {
  checked(IntText)->setPossibleValues(checkedArray(values));
}

ZylAnyArray ZylIntVar::getAnyDomain() const {
  try {
    return ZylAnyArray(
        static_cast<ZylArrayI*>(checked(IntText)->getAnyProperty(AnyDomainProperty)));
  } catch (const ZylNamedPropertySet::NotPresent&) {
    return ZylAnyArray();
  }
}

ZylIntVar ZylIntVar::getClone(const ZylEnv& env) const {
  return ZylIntVar(static_cast<ZylNumVarI*>(checkedEnv(env)->getClone(checked(IntText))));
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

// --- ZylSemiContVar ------------------------------------------------------------------------------

ZylSemiContVar::ZylSemiContVar(const ZylEnv& env, double threshold, double upper, Type type,
                               const char* name) {
  ZylEnvI* owner = checkedEnv(env);
  _impl = new (owner) ZylSemiContVarI(owner, threshold, upper, type, name);
}

double ZylSemiContVar::getSemiContinuousLb() const { return checked(NumText)->getBd(); }
void ZylSemiContVar::setSemiContinuousLb(double threshold) const {
  checked(NumText)->setBd(threshold);
}

ZylSemiContVar ZylSemiContVar::getClone(const ZylEnv& env) const {
  return ZylSemiContVar(static_cast<ZylSemiContVarI*>(checkedEnv(env)->getClone(checked(NumText))));
}

void ZylSemiContVar::setClone(const ZylSemiContVar& clone) const {
  clone.checked(NumText)->getEnv()->setClone(checked(NumText), clone.getImpl());
}
