// What collections of each element type share, equality of sets, and the members that raise.

#include "vorlane/collection/typed_collection.h"

#include "collection/not_implemented.h"

ZYL_TYPE_DEF(ZylIntCollectionI, ZylDiscreteDataCollectionI)
ZYL_TYPE_DEF(ZylNumCollectionI, ZylDiscreteDataCollectionI)
ZYL_TYPE_DEF(ZylAnyCollectionI, ZylDiscreteDataCollectionI)
ZYL_TYPE_DEF(ZylIntAbstractSetI, ZylIntCollectionI)
ZYL_TYPE_DEF(ZylNumAbstractSetI, ZylNumCollectionI)
ZYL_TYPE_DEF(ZylAnyAbstractSetI, ZylAnyCollectionI)
ZYL_TYPE_DEF(ZylIntAbstractDataColumnI, ZylIntCollectionI)
ZYL_TYPE_DEF(ZylNumAbstractDataColumnI, ZylNumCollectionI)
ZYL_TYPE_DEF(ZylAnyAbstractDataColumnI, ZylAnyCollectionI)

bool ZylIntCollectionI::isIntCollection() const { return true; }
bool ZylNumCollectionI::isNumCollection() const { return true; }
bool ZylAnyCollectionI::isAnyCollection() const { return true; }
bool ZylIntAbstractDataColumnI::isIntDataColumn() const { return true; }
bool ZylNumAbstractDataColumnI::isNumDataColumn() const { return true; }
bool ZylAnyAbstractDataColumnI::isAnyDataColumn() const { return true; }

long ZylIntCollectionI::getIndex(double value) const {
  // A double outside the integers, a NaN among them, is nowhere; converting it has no meaning.
  constexpr double Limit = 9223372036854775808.0;
  if (!(value >= -Limit && value < Limit)) return -1;
  return getIndex(static_cast<long>(value));
}
ZYL_NOT_IMPLEMENTED(long, ZylIntCollectionI, getIndex, void*, "ZylAny")
ZYL_NOT_IMPLEMENTED(long, ZylIntCollectionI, getIndex, ZylSymbol, "ZylSymbol")
long ZylIntCollectionI::getIntValue(long index) const { return getValue(index); }
ZYL_NOT_IMPLEMENTED(double, ZylIntCollectionI, getNumValue, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(void*, ZylIntCollectionI, getAnyValue, long, "ZylInt")

ZYL_NOT_IMPLEMENTED(long, ZylNumCollectionI, getIndex, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(long, ZylNumCollectionI, getIndex, void*, "ZylAny")
ZYL_NOT_IMPLEMENTED(long, ZylNumCollectionI, getIndex, ZylSymbol, "ZylSymbol")
ZYL_NOT_IMPLEMENTED(long, ZylNumCollectionI, getIntValue, long, "ZylInt")
double ZylNumCollectionI::getNumValue(long index) const { return getValue(index); }
ZYL_NOT_IMPLEMENTED(void*, ZylNumCollectionI, getAnyValue, long, "ZylInt")

ZylObjectBase ZylAnyCollectionI::getMapItem(long index) const {
  void* value = getValue(index);
  if (!isSymbolSet()) return ZylObjectBase(value);
  return ZylObjectBase(ZylSymbol(static_cast<ZylSymbolI*>(value)));
}
ZYL_NOT_IMPLEMENTED(long, ZylAnyCollectionI, getIndex, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(long, ZylAnyCollectionI, getIndex, double, "ZylNum")
long ZylAnyCollectionI::getIndex(ZylSymbol value) const {
  return getIndex(static_cast<void*>(value.getImpl()));
}
ZYL_NOT_IMPLEMENTED(long, ZylAnyCollectionI, getIntValue, long, "ZylInt")
ZYL_NOT_IMPLEMENTED(double, ZylAnyCollectionI, getNumValue, long, "ZylInt")
void* ZylAnyCollectionI::getAnyValue(long index) const { return getValue(index); }

// --- sets ----------------------------------------------------------------------------------------

long zyl::detail::stepPosition(long position, long n, long size, long next,
                               long circular) noexcept {
  if (size <= 0) return -1;
  // A remainder is shorter than the size, so nothing below overflows.
  if (circular != 0) {
    n %= size;
    const long target = next != 0 ? position + n : position - n;
    if (target < 0) return target + size;
    return target < size ? target : target - size;
  }
  long target = 0;
  const bool overflows = next != 0 ? __builtin_add_overflow(position, n, &target)
                                   : __builtin_sub_overflow(position, n, &target);
  return overflows || target < 0 || target >= size ? -1 : target;
}

long ZylIntAbstractSetI::getMapItemIndex(ZylObjectBase item) const {
  return getIndex(item.getInt());
}
long ZylNumAbstractSetI::getMapItemIndex(ZylObjectBase item) const {
  return getIndex(item.getNum());
}
long ZylAnyAbstractSetI::getMapItemIndex(ZylObjectBase item) const {
  if (item.isSymbol()) return getIndex(item.getSymbol());
  if (item.isString()) return getIndex(ZylSymbol(_env->makeSymbol(item.getString())));
  return getIndex(item.getAny());
}

namespace {

template <class Collection, class Element>
Element smallest(const Collection& collection, Element none) {
  const long size = collection.getSize();
  for (long i = 0; i < size; ++i) {
    const Element value = collection.getValue(i);
    if (value < none) none = value;
  }
  return none;
}

template <class Collection, class Element>
Element largest(const Collection& collection, Element none) {
  const long size = collection.getSize();
  for (long i = 0; i < size; ++i) {
    const Element value = collection.getValue(i);
    if (value > none) none = value;
  }
  return none;
}

}  // namespace

long ZylIntAbstractSetI::getLB() const { return smallest(*this, ZylIntMax); }
long ZylIntAbstractSetI::getUB() const { return largest(*this, ZylIntMin); }
double ZylNumAbstractSetI::getLB() const { return smallest(*this, ZylInfinity); }
double ZylNumAbstractSetI::getUB() const { return largest(*this, -ZylInfinity); }

// --- equality ------------------------------------------------------------------------------------

namespace {

// A collection that is no set has no bounds of its own to ask for.
long lowerBound(const ZylIntCollectionI& collection) {
  const auto* set = zyl::as<ZylIntAbstractSetI>(&collection);
  return set != nullptr ? set->getLB() : smallest(collection, ZylIntMax);
}
long upperBound(const ZylIntCollectionI& collection) {
  const auto* set = zyl::as<ZylIntAbstractSetI>(&collection);
  return set != nullptr ? set->getUB() : largest(collection, ZylIntMin);
}

template <class Collection>
bool haveEqualElements(const Collection& a, const Collection& b) {
  const long size = a.getSize();
  for (long i = 0; i < size; ++i) {
    if (a.getValue(i) != b.getValue(i)) return false;
  }
  return true;
}

template <class Handle>
auto& checkedOperand(const Handle& handle) {
  if (handle.getImpl() == nullptr) ZylRaiseEmptyHandle(Handle::EmptyText());
  return *handle.getImpl();
}

}  // namespace

bool operator==(const ZylIntCollection& a, const ZylIntCollection& b) {
  const ZylIntCollectionI& first = checkedOperand(a);
  const ZylIntCollectionI& second = checkedOperand(b);
  if (&first == &second) return true;
  if (first.getSize() != second.getSize()) return false;
  if (first.isIntRange()) {
    return lowerBound(first) == lowerBound(second) && upperBound(first) == upperBound(second);
  }
  return haveEqualElements(first, second);
}

bool operator==(const ZylNumCollection& a, const ZylNumCollection& b) {
  const ZylNumCollectionI& first = checkedOperand(a);
  const ZylNumCollectionI& second = checkedOperand(b);
  if (&first == &second) return true;
  // No range of numbers can be enumerated, so there are only elements to compare.
  return first.getSize() == second.getSize() && haveEqualElements(first, second);
}
