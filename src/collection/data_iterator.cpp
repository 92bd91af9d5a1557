// What iterators do unless they know better, and those that find extremes by a walk.

#include "vorlane/collection/data_iterator.h"

#include <functional>

namespace {
ZylGenAlloc* allocOf(ZylGenAlloc* alloc, const ZylDiscreteDataCollectionI* collection) {
  if (alloc != nullptr || collection == nullptr) return alloc;
  return collection->getEnv()->getGenAlloc();
}
}  // namespace

ZylDataIterator::ZylDataIterator(ZylGenAlloc* alloc, const ZylDiscreteDataCollectionI* collection)
    : ZylMemoryManagerObjectI(allocOf(alloc, collection)), _collection(collection) {}

void ZylDataIterator::setCollection(const ZylDiscreteDataCollectionI* collection) {
  _collection = collection;
}
void ZylDataIterator::reset(long) { _isOk = 0; }
bool ZylDataIterator::isOpen() const { return false; }

long ZylIntDataIterator::recomputeMin() const { return Widest::Min; }
long ZylIntDataIterator::recomputeMax() const { return Widest::Max; }
double ZylNumDataIterator::recomputeLB() const { return Widest::Min; }
double ZylNumDataIterator::recomputeUB() const { return Widest::Max; }
void ZylAnyDataIterator::reset(void*, long) { _isOk = 0; }

void zyl::detail::raiseWrongCollection() {
  ZylRaiseWrongUsage("Collection is not of the correct type");
}

long ZylIntDefaultDataIterator::recomputeMin() const {
  return _collection != nullptr ? extreme(Widest::Max, std::less<>()) : Widest::Min;
}
long ZylIntDefaultDataIterator::recomputeMax() const {
  return _collection != nullptr ? extreme(Widest::Min, std::greater<>()) : Widest::Max;
}
double ZylNumDefaultDataIterator::recomputeLB() const {
  return _collection != nullptr ? extreme(Widest::Max, std::less<>()) : Widest::Min;
}
double ZylNumDefaultDataIterator::recomputeUB() const {
  return _collection != nullptr ? extreme(Widest::Min, std::greater<>()) : Widest::Max;
}

void ZylAnyDefaultDataIterator::reset(void* value, long flag) {
  reset(flag);
  while (isOk() && _current != value) next();
}
