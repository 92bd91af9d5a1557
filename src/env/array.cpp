// Arrays in pages: growth first adds pages, and copies to longer ones when the table is full.

#include "vorlane/env/array.h"

#include <algorithm>
#include <cmath>

#include "vorlane/env/number.h"

ZylArrayError::ZylArrayError(const char* message) : ZylException(message) {}

// --- ZylArrayI -----------------------------------------------------------------------------------

namespace {
unsigned long tableBytes(long entries) {
  return static_cast<unsigned long>(entries) * sizeof(char*);
}
}  // namespace

ZylArrayI::ZylArrayI(ZylEnvI* env, long size, long elementSize)
    : ZylArrayI(static_cast<ZylGenAlloc*>(env->getGenAlloc()), size, elementSize) {}

ZylArrayI::ZylArrayI(ZylGenAlloc* manager, long size, long elementSize)
    : ZylMemoryManagerObjectI(manager), _maxSize(checkedSize(size)), _elementSize(elementSize),
      _size(std::max(size, 0L)), _mask(0), _shift(0), _pages(nullptr) {
  if (elementSize != 8) ZylRaiseWrongUsage("ZylArrayI: elements have 8 bytes");
  setShiftMod();
  allocData(_size);
  zeroData();
}

ZylArrayI::ZylArrayI(ZylEnvI* env, const ZylArrayI* other)
    : ZylArrayI(static_cast<ZylGenAlloc*>(env->getGenAlloc()), other) {}

ZylArrayI::ZylArrayI(ZylGenAlloc* manager, const ZylArrayI* other)
    : ZylMemoryManagerObjectI(manager), _maxSize(std::max(other->_maxSize, 1L)),
      _elementSize(other->_elementSize), _size(other->_size), _mask(0), _shift(0), _pages(nullptr) {
  setShiftMod();
  allocData(_size);
  copyPages(other);
}

ZylArrayI::ZylArrayI(ZylGenAlloc* manager, long maxSize, long elementSize, long size, long mask,
                     long shift, char** pages)
    : ZylMemoryManagerObjectI(manager), _maxSize(maxSize), _elementSize(elementSize), _size(size),
      _mask(mask), _shift(static_cast<unsigned>(shift)), _pages(pages) {}

ZylArrayI::~ZylArrayI() { clear(); }

long ZylArrayI::checkedSize(long size) {
  if (size > MaxSize) ZylRaiseMemory();
  return std::max(size, 1L);
}

// The smallest power of four that holds the wanted capacity: as many pages as a page has elements.
void ZylArrayI::setShiftMod() noexcept {
  _shift = 0;
  while ((1L << (2 * _shift)) < _maxSize) ++_shift;
  _mask = (1L << _shift) - 1;
  _maxSize = 1L << (2 * _shift);
}

char* ZylArrayI::newPage(long shift) const {
  return static_cast<char*>(
      _manager->alloc(static_cast<unsigned long>((1L << shift) * _elementSize)));
}

void ZylArrayI::freePage(char* page, long shift) const noexcept {
  _manager->free(page, static_cast<unsigned long>((1L << shift) * _elementSize));
}

void ZylArrayI::freePages(char** pages, long shift) const noexcept {
  for (long i = 0; i < (1L << shift) && pages[i] != nullptr; ++i) freePage(pages[i], shift);
  _manager->free(pages, tableBytes(1L << shift));
}

// Pages in use are a prefix of the table: an entry is null exactly from the first missing page on.
void ZylArrayI::allocData(long size) {
  const long entries = 1L << _shift;
  const long needed = ((std::max(size, 1L) - 1) >> _shift) + 1;
  auto** pages = static_cast<char**>(_manager->alloc(tableBytes(entries)));
  std::fill_n(pages, entries, nullptr);
  try {
    for (long i = 0; i < needed; ++i) pages[i] = newPage(_shift);
  } catch (...) {
    freePages(pages, _shift);
    throw;
  }
  _pages = pages;
}

void ZylArrayI::zeroData() noexcept {
  for (long i = 0; i < (1L << _shift) && _pages[i] != nullptr; ++i) {
    std::memset(_pages[i], 0, static_cast<std::size_t>((1L << _shift) * _elementSize));
  }
}

void ZylArrayI::copyPages(const ZylArrayI* other) {
  // Same shift, unless the other was cleared and has no elements.
  for (long i = 0; i < _size; i += _mask + 1) {
    const long count = std::min(_mask + 1, _size - i);
    std::memcpy(at(i), other->at(i), static_cast<std::size_t>(count * _elementSize));
  }
}

void ZylArrayI::grow(long n) {
  n = checkedSize(n);
  if (n <= _maxSize) {
    // Missing pages, from that of the last element wanted downward. What an allocation leaves
    // behind when it fails has no gap: the prefix is filled first.
    const long last = (n - 1) >> _shift;
    for (long i = 0; i <= last; ++i) {
      if (_pages[i] == nullptr) _pages[i] = newPage(_shift);
    }
    return;
  }
  const long oldMaxSize = _maxSize;
  const long oldMask = _mask;
  const unsigned oldShift = _shift;
  char** oldPages = _pages;
  const auto restore = [&] {
    _maxSize = oldMaxSize;
    _mask = oldMask;
    _shift = oldShift;
    _pages = oldPages;
  };

  if (_maxSize == 0) {
    _maxSize = n;
    setShiftMod();
  } else {
    while (n > _maxSize) {
      ++_shift;
      _maxSize *= 4;
    }
    _mask = (1L << _shift) - 1;
  }
  // All pages are there before the first element moves, so that a failure loses nothing; elements
  // in old pages are then moved and each old page freed at once.
  try {
    allocData(n);
  } catch (...) {
    restore();
    throw;
  }
  if (oldPages == nullptr) return;
  const long oldPageSize = oldMask + 1;
  for (long i = 0; i < (1L << oldShift) && oldPages[i] != nullptr; ++i) {
    const long first = i * oldPageSize;
    if (first < _size) {
      const long count = std::min(oldPageSize, _size - first);
      std::memcpy(at(first), oldPages[i], static_cast<std::size_t>(count * _elementSize));
    }
    freePage(oldPages[i], oldShift);
  }
  _manager->free(oldPages, tableBytes(1L << oldShift));
}

void ZylArrayI::addArray(const ZylArrayI* other) {
  if (other->_size > 0) addArray(other, 0, other->_size - 1);
}

void ZylArrayI::addArray(const ZylArrayI* other, long first, long last) {
  if (last < first) return;
  const long size = _size;
  grow(size + (last - first + 1));
  _size = size + (last - first + 1);
  for (long i = first; i <= last; ++i) {
    std::memcpy(at(size + i - first), other->at(i), static_cast<std::size_t>(_elementSize));
  }
}

void ZylArrayI::remove(long first, long count) {
  if (first < 0) throw ZylArrayError("invalid index for first element to remove");
  if (count < 0 || first > _size || count > _size - first) {
    throw ZylArrayError("Trying to remove too many elements");
  }
  for (long i = first + count; i < _size; ++i) {
    std::memcpy(at(i - count), at(i), static_cast<std::size_t>(_elementSize));
  }
  _size -= count;
}

void ZylArrayI::clear() noexcept {
  if (_pages != nullptr) freePages(_pages, _shift);
  _pages = nullptr;
  _size = 0;
  _maxSize = 0;
}

// --- arrays of numbers ---------------------------------------------------------------------------

namespace {

template <class Array>
void checkCount(Array* array, bool right, const char* text) {
  if (right) return;
  array->end();
  ZylRaiseWrongUsage(text);
}

template <class Array, class Value>
bool occurs(const Array& array, Value value) {
  for (long i = 0; i < array.getSize(); ++i) {
    if (array[i] == value) return true;
  }
  return false;
}

template <class Array>
Array copied(const Array& array, const ZylEnv& env) {
  if (array.getImpl() == nullptr) ZylRaiseEmptyHandle(Array::EmptyText());
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return Array(new (env.getImpl()->getGenAlloc()) ZylArrayI(env.getImpl(), array.getImpl()));
}

template <class To, class From, class Convert>
To converted(const From& from, Convert convert) {
  To result(from.getMemoryManager(), from.getSize());
  for (long i = 0; i < from.getSize(); ++i) result[i] = convert(from[i]);
  return result;
}

template <class Array>
bool sameElements(const Array& a, const Array& b) {
  if (a.getImpl() == nullptr || b.getImpl() == nullptr || a.getSize() != b.getSize()) return false;
  for (long i = 0; i < a.getSize(); ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

template <class Array2, class Array>
bool anyEqual(const Array2& arrays, const Array& array) {
  if (array.getImpl() == nullptr || array.getSize() == 0) return false;
  for (long i = 0; i < arrays.getSize(); ++i) {
    if (sameElements(arrays[i], array)) return true;
  }
  return false;
}

}  // namespace

ZylIntArray::ZylIntArray(const ZylEnv& env, long n, long value) : Base(env, 0) {
  checkCount(this, n == 1, "ZylIntArray::ZylIntArray: n != 1");
  add(value);
}

void ZylIntArray::checkLiteral(long n) {
  checkCount(this, n >= 2, "ZylIntArray::ZylIntArray: n must be >= 2");
}

ZylIntArray ZylIntArray::copy(const ZylEnv& env) const { return copied(*this, env); }

bool ZylIntArray::contains(long value) const {
  if (_impl == nullptr) ZylRaiseWrongUsage("Empty Handle in ZylIntArray::contains");
  return occurs(*this, value);
}

bool ZylIntArray::contains(const ZylIntArray& values) const {
  if (_impl == nullptr || values._impl == nullptr) {
    ZylRaiseWrongUsage("Empty Handle in ZylIntArray::contains");
  }
  for (long i = 0; i < values.getSize(); ++i) {
    if (!occurs(*this, values[i])) return false;
  }
  return true;
}

void ZylIntArray::discard(long value) {
  if (_impl == nullptr) ZylRaiseWrongUsage("Empty Handle in ZylIntArray::remove");
  for (long i = getSize() - 1; i >= 0; --i) {
    if ((*this)[i] != value) continue;
    remove(i);
    return;
  }
}

void ZylIntArray::discard(const ZylIntArray& values) {
  if (_impl == nullptr || values._impl == nullptr) {
    ZylRaiseWrongUsage("Empty Handle in ZylIntArray::remove");
  }
  if (values._impl == _impl) {
    clear();
    return;
  }
  for (long i = 0; i < values.getSize(); ++i) discard(values[i]);
}

bool ZylIntArray::areElementsBoolean() const {
  for (long i = 0; i < getSize(); ++i) {
    if (static_cast<unsigned long>((*this)[i]) > 1) return false;
  }
  return true;
}

ZylNumArray ZylIntArray::toNumArray() const {
  return converted<ZylNumArray>(*this, [](long v) { return static_cast<double>(v); });
}

ZylAnyArray ZylIntArray::toAnyArray() const {
  ZylAnyArray result(getEnv(), getSize());
  for (long i = 0; i < getSize(); ++i) result[i] = reinterpret_cast<void*>((*this)[i]);  // NOLINT
  return result;
}

ZylBoolArray::ZylBoolArray(const ZylEnv& env, long n, long value) : ZylIntArray(env, 0) {
  checkCount(this, n == 1, "ZylBoolArray::ZylBoolArray: n != 1");
  add(value);
}

void ZylBoolArray::checkBoolLiteral(long n) {
  checkCount(this, n >= 2, "ZylBoolArray::ZylBoolArray: n must be >= 2");
}

ZylNumArray::ZylNumArray(const ZylEnv& env, long n, double value) : Base(env, 0) {
  checkCount(this, n == 1, "ZylNumArray::ZylNumArray: n != 1");
  add(value);
}

void ZylNumArray::checkLiteral(long n) {
  checkCount(this, n >= 2, "ZylNumArray::ZylNumArray: n must be >=2");
}

ZylNumArray ZylNumArray::copy(const ZylEnv& env) const { return copied(*this, env); }

bool ZylNumArray::contains(double value) const {
  if (_impl == nullptr) ZylRaiseEmptyHandle("Empty Handle in ZylNumArray::contains");
  return occurs(*this, value);
}

bool ZylNumArray::areElementsBoolean() const {
  for (long i = 0; i < getSize(); ++i) {
    if ((*this)[i] != 0.0 && (*this)[i] != 1.0) return false;
  }
  return true;
}

bool ZylNumArray::areElementsInteger() const {
  for (long i = 0; i < getSize(); ++i) {
    if (!(std::floor((*this)[i]) == (*this)[i])) return false;
  }
  return true;
}

ZylIntArray ZylNumArray::toIntArray() const {
  if (!areElementsInteger()) throw ZylBadConversion();
  return converted<ZylIntArray>(*this, [](double v) { return ZylTrunc(v); });
}

ZylAnyArray::ZylAnyArray(const ZylEnv& env, long n, void* value) : Base(env, 0) {
  checkCount(this, n == 1, "ZylAnyArray::ZylAnyArray: n != 1");
  add(value);
}

void ZylAnyArray::checkLiteral(long n) {
  checkCount(this, n >= 2, "ZylAnyArray::ZylAnyArray: n must be >=2");
}

ZylAnyArray ZylAnyArray::copy(const ZylEnv& env) const { return copied(*this, env); }

bool ZylAnyArray::contains(void* value) const {
  if (_impl == nullptr) ZylRaiseEmptyHandle("Empty Handle in ZylAnyArray::contains");
  return occurs(*this, value);
}

bool ZylIntArray2::equal(const ZylIntArray& a, const ZylIntArray& b) { return sameElements(a, b); }
bool ZylIntArray2::contains(const ZylIntArray& array) const { return anyEqual(*this, array); }
bool ZylNumArray2::equal(const ZylNumArray& a, const ZylNumArray& b) { return sameElements(a, b); }
bool ZylNumArray2::contains(const ZylNumArray& array) const { return anyEqual(*this, array); }

ZylAnyArray2::ZylAnyArray2(const ZylEnv& env, long n, ZylAnyArray first) : Base(env, n) {
  checkCount(this, first.getImpl() != nullptr, "ZylAnyArray2::ZylAnyArray2: n != 1");
  fill(1, first);
}
