#include "vorlane/collection/range.h"

#include <ostream>

ZYL_TYPE_DEF(ZylIntRangeI, ZylIntAbstractSetI)
ZYL_TYPE_DEF(ZylNumRangeI, ZylContinuousDataI)

ZylIntRangeI* ZylIntRangeI::copy() const { return makeClone(_env); }
long ZylIntRangeI::getDataType() const { return IntRange; }
bool ZylIntRangeI::isIntRange() const { return true; }

void ZylIntRangeI::display(std::ostream& stream) const {
  stream << "[" << _lowerBound << " ," << _upperBound << "]";
}

ZylIntRangeI* ZylIntRangeI::makeClone(ZylEnvI* env) const {
  return new (env) ZylIntRangeI(env, _lowerBound, _upperBound);
}

void ZylIntRangeI::setLB(long lower) {
  testMutable();
  _lowerBound = lower;
}

void ZylIntRangeI::setUB(long upper) {
  testMutable();
  _upperBound = upper;
}

long ZylIntRangeI::getSize() const noexcept {
  if (_lowerBound == ZylIntMin || _upperBound == ZylIntMax) return ZylIntMax;
  if (_lowerBound == ZylIntMax || _upperBound == ZylIntMin) return 0;
  return static_cast<long>(static_cast<unsigned long>(_upperBound) -
                           static_cast<unsigned long>(_lowerBound) + 1UL);
}

long ZylIntRangeI::getValue(long index) const {
  if (index < 0) {
    ZylRaiseWrongUsage("ZylIntRangeI::getValue(ZylInt index): index is negative");
  }
  if (index >= getSize()) {
    ZylRaiseWrongUsage("ZylIntRangeI::getValue(ZylInt index): index is out of bound");
  }
  return _lowerBound + index;
}

ZylVarDomainI* ZylIntRangeI::getSharedDomain() { return _env->getOrMakeSharedDomain(this); }

bool ZylNumRangeI::isKvlRefCounted() const { return true; }
ZylNumRangeI* ZylNumRangeI::copy() const { return makeClone(_env); }
long ZylNumRangeI::getDataType() const { return NumRange; }
bool ZylNumRangeI::isNumRange() const { return true; }

void ZylNumRangeI::display(std::ostream& stream) const {
  stream << "[" << _lowerBound << " ," << _upperBound << "]";
}

ZylNumRangeI* ZylNumRangeI::makeClone(ZylEnvI* env) const {
  return new (env) ZylNumRangeI(env, _lowerBound, _upperBound);
}

void ZylNumRangeI::setLB(double lower) {
  testMutable();
  _lowerBound = lower;
}

void ZylNumRangeI::setUB(double upper) {
  testMutable();
  _upperBound = upper;
}

ZylVarDomainI* ZylNumRangeI::getSharedDomain() { return _env->getOrMakeSharedDomain(this); }

ZylIntRange::ZylIntRange(const ZylEnv& env)
    : ZylDataCollection(new (env.getImpl()) ZylIntRangeI(env.getImpl())) {}

ZylIntRange::ZylIntRange(const ZylEnv& env, long lower, long upper)
    : ZylDataCollection(new (env.getImpl()) ZylIntRangeI(env.getImpl(), lower, upper)) {}

ZylNumRange::ZylNumRange(const ZylEnv& env, double lower, double upper)
    : ZylDataCollection(new (env.getImpl()) ZylNumRangeI(env.getImpl(), lower, upper)) {}
