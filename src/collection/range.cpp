// Ranges of integers and of numbers: arithmetic on bounds in place of stored elements.

#include "vorlane/collection/range.h"

#include <ostream>

#include "common/handle_check.h"
#include "vorlane/collection/collection_helper.h"

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

// Bounds may be any longs, so distances between them are taken without a sign.
namespace {
unsigned long distance(long from, long to) {
  return static_cast<unsigned long>(to) - static_cast<unsigned long>(from);
}
long moved(long from, unsigned long by) {
  return static_cast<long>(static_cast<unsigned long>(from) + by);
}
bool isUnbounded(long lower, long upper) { return lower == ZylIntMin || upper == ZylIntMax; }
}  // namespace

long ZylIntRangeI::getSize() const {
  if (isUnbounded(_lowerBound, _upperBound)) return ZylIntMax;
  if (_lowerBound == ZylIntMax || _upperBound == ZylIntMin) return 0;
  return static_cast<long>(distance(_lowerBound, _upperBound) + 1UL);
}

ZylDataIterator* ZylIntRangeI::iterator(ZylGenAlloc* alloc) const {
  if (alloc == nullptr) alloc = _env->getGenAlloc();
  return new (alloc) ZylIntRange::Iterator(alloc, this);
}

long ZylIntRangeI::getIndex(long value) const {
  return contains(value) ? static_cast<long>(distance(_lowerBound, value)) : -1;
}

ZylIntArray ZylIntRangeI::getArray() const {
  throw ZylNotImplemented("ZylIntRangeI::getArray() is not implemented");
}

long ZylIntRangeI::getValue(long index) const {
  if (index < 0) {
    ZylRaiseWrongUsage("ZylIntRangeI::getValue(ZylInt index): index is negative");
  }
  if (index >= getSize()) {
    ZylRaiseWrongUsage("ZylIntRangeI::getValue(ZylInt index): index is out of bound");
  }
  return moved(_lowerBound, static_cast<unsigned long>(index));
}

// Steps go by values: positions in a range without a bound may lie beyond its size.

void ZylIntRangeI::requireElement(long element, long next, long circular) const {
  if (contains(element)) return;
  throw ZylCollectionElementNotFoundException(ZylObjectBase(element), next, circular);
}

long ZylIntRangeI::step(long element, long n, long next) const {
  requireElement(element, next, 0);
  long target = 0;
  const bool overflows = next != 0 ? __builtin_add_overflow(element, n, &target)
                                   : __builtin_sub_overflow(element, n, &target);
  if (overflows || !contains(target)) {
    throw ZylOperatorNextElementNotFoundException(ZylObjectBase(element), next, 0);
  }
  return target;
}

long ZylIntRangeI::stepC(long element, long n, long next) const {
  requireElement(element, next, 1);
  // 0 stands for all the longs, on which unsigned sums go round by themselves.
  const unsigned long count = distance(_lowerBound, _upperBound) + 1UL;
  const bool forward = (next != 0) == (n >= 0);
  unsigned long length = n < 0 ? distance(n, 0) : distance(0, n);
  if (count != 0) length %= count;
  if (!forward && length != 0) length = count - length;
  const unsigned long offset = distance(_lowerBound, element);
  const unsigned long room = count - offset;
  if (count != 0 && length >= room) return moved(_lowerBound, length - room);
  return moved(_lowerBound, offset + length);
}

long ZylIntRangeI::getNext(long element, long n) const { return step(element, n, 1); }
long ZylIntRangeI::getPrevious(long element, long n) const { return step(element, n, 0); }
long ZylIntRangeI::getNextC(long element, long n) const { return stepC(element, n, 1); }
long ZylIntRangeI::getPreviousC(long element, long n) const { return stepC(element, n, 0); }

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

// --- iterator ------------------------------------------------------------------------------------

ZylIntRange::Iterator::Iterator(ZylGenAlloc* alloc, const ZylIntRangeI* range)
    : ZylIntDataIterator(alloc, range) {
  reset(0);
}

void ZylIntRange::Iterator::setCollection(const ZylDiscreteDataCollectionI* collection) {
  if (collection != nullptr && zyl::as<ZylIntRangeI>(collection) == nullptr) {
    zyl::detail::raiseWrongCollection();
  }
  ZylIntDataIterator::setCollection(collection);
}

bool ZylIntRange::Iterator::next() {
  _isOk = 0;
  if (isUnbounded(_min, _max) || _current >= _max) return false;
  ++_current;
  _isOk = 1;
  return true;
}

void ZylIntRange::Iterator::reset(long) {
  _isOk = 0;
  if (range() == nullptr) return;
  _min = range()->getLB();
  _max = range()->getUB();
  _current = _min;
  _isOk = _min <= _max ? 1 : 0;
}

void ZylIntRange::Iterator::reset(long min, long max, long flag) {
  reset(flag);
  if (range() != nullptr) checkMinMax(min, max);
}

long ZylIntRange::Iterator::recomputeMin() const {
  return range() != nullptr ? range()->getLB() : Widest::Min;
}
long ZylIntRange::Iterator::recomputeMax() const {
  return range() != nullptr ? range()->getUB() : Widest::Max;
}

// --- handles -------------------------------------------------------------------------------------

namespace {

template <class Range, class... Bounds>
Range* makeRange(const ZylEnv& env, Bounds... bounds) {
  ZylEnvI* owner = zyl::detail::checked(env, zyl::detail::EmptyEnv);
  return new (owner) Range(owner, bounds...);
}

template <class Handle>
Handle asRange(ZylDataCollectionI* collection) {
  auto* range = zyl::as<typename Handle::ImplClass>(collection);
  if (range == nullptr) zyl::detail::raiseWrongCollection();
  return Handle(range);
}

}  // namespace

ZylIntRange::ZylIntRange(const ZylEnv& env) : ZylIntRange(makeRange<ZylIntRangeI>(env)) {}
ZylIntRange::ZylIntRange(const ZylEnv& env, long lower, long upper)
    : ZylIntRange(makeRange<ZylIntRangeI>(env, lower, upper)) {}
ZylNumRange::ZylNumRange(const ZylEnv& env, double lower, double upper)
    : ZylNumRange(makeRange<ZylNumRangeI>(env, lower, upper)) {}

// The test of the kind comes first for what it raises on an empty handle; a front end's own kind of
// range answers it too, and is none of ours.
ZylIntRange ZylCollectionHelper::asIntRange(const ZylDataCollection& collection) {
  if (!collection.isIntRange()) zyl::detail::raiseWrongCollection();
  return asRange<ZylIntRange>(collection.getImpl());
}
ZylNumRange ZylCollectionHelper::asNumRange(const ZylDataCollection& collection) {
  if (!collection.isNumRange()) zyl::detail::raiseWrongCollection();
  return asRange<ZylNumRange>(collection.getImpl());
}
