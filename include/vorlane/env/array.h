// Growable arrays, and the arrays of numbers and addresses.
//
// Elements of 8 bytes stand in pages; the page table has as many entries as a page has elements, so
// no block is larger than about the square root of the array. Growing makes all new pages before it
// frees an old one, so that a failure loses nothing. Element i is at page i >> shift, offset
// i & mask. An array belongs to its environment or memory manager; handles share it, nothing is
// counted, `end` frees it. Not synchronised.

#ifndef ZYL_ENV_ARRAY_H
#define ZYL_ENV_ARRAY_H

#include <cassert>
#include <concepts>
#include <cstring>

#include "vorlane/env/object.h"
#include "vorlane/env/types.h"

class ZylAnyArray;
class ZylIntExprArg;
class ZylNumArray;
class ZylNumExprArg;

/// A removal outside the array, or an array too short for an operation.
class ZYL_EXPORT ZylArrayError : public ZylException {
 public:
  explicit ZylArrayError(const char* message);
};

/// The untyped array behind every typed one.
class ZYL_EXPORT ZylArrayI final : public ZylMemoryManagerObjectI {
 public:
  /// No address space holds more elements.
  static constexpr long MaxSize = 1L << 44;

  /// Makes an array of `size` zeroed elements. Raises `ZylMemoryException`, and `ZylWrongUsage` for
  /// an element size other than 8.
  ZylArrayI(ZylEnvI* env, long size, long elementSize = 8);
  ZylArrayI(ZylGenAlloc* manager, long size, long elementSize = 8);
  /// Copies `other` with its geometry.
  ZylArrayI(ZylEnvI* env, const ZylArrayI* other);
  ZylArrayI(ZylGenAlloc* manager, const ZylArrayI* other);
  /// Takes over a page table of this geometry from the same manager.
  ZylArrayI(ZylGenAlloc* manager, long maxSize, long elementSize, long size, long mask, long shift,
            char** pages);
  ~ZylArrayI() override;

  // The block of a constructor that raised goes back at once. Each release stands beside the
  // placement that it undoes; g++ takes an inherited one for another's.
  static void* operator new(std::size_t size, ZylGenAlloc* manager) { return manager->alloc(size); }
  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylMemoryManager& manager) {
    return zyl::detail::ownerOf(manager)->alloc(size);
  }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  using ZylMemoryManagerObjectI::operator delete;
  static void operator delete(void* block, ZylGenAlloc* manager) noexcept {
    zyl::detail::freeInManager(manager, block, sizeof(ZylArrayI));
  }
  static void operator delete(void* block, ZylEnvI* env) noexcept {
    zyl::detail::freeInEnv(env, block, sizeof(ZylArrayI));
  }
  static void operator delete(void* block, const ZylMemoryManager& manager) noexcept {
    operator delete(block, manager.getImpl());
  }
  static void operator delete(void* block, const ZylEnv& env) noexcept {
    operator delete(block, env.getImpl());
  }

  long getSize() const noexcept { return _size; }
  long getCapacity() const noexcept { return _maxSize; }
  long getPageSize() const noexcept { return _mask + 1; }
  /// Address of element `i`, 0 <= i < getSize(); not tested.
  void* at(long i) const noexcept { return _pages[i >> _shift] + (i & _mask) * 8; }
  template <class T>
  T& element(long i) const noexcept {
    static_assert(sizeof(T) == 8);
    return *static_cast<T*>(at(i));
  }
  /// Appends one element. Amortised O(1). Raises `ZylMemoryException`, which changes nothing.
  template <class T>
  void append(T value) {
    static_assert(sizeof(T) == 8 && std::is_trivially_copyable_v<T>);
    const long size = _size + 1;
    if (ZYL_UNLIKELY(size >= _maxSize || _pages[size >> _shift] == nullptr)) grow(size);
    _size = size;
    element<T>(size - 1) = value;
  }
  /// Appends `count` copies, nothing for a count below 1. Raises `ZylMemoryException`, which
  /// changes nothing.
  template <class T>
  void appendCopies(long count, T value) {
    if (count <= 0) return;
    if (count > MaxSize) ZylRaiseMemory();
    grow(_size + count);
    for (long i = 0; i < count; ++i) append(value);
  }
  /// Makes room for `n` elements, at least 1, without changing the size; new elements are not
  /// zeroed. Raises `ZylMemoryException`, which leaves the elements as they were.
  void grow(long n);
  /// Appends all elements of `other`, or those of the inclusive range. `other` may be this array.
  void addArray(const ZylArrayI* other);
  void addArray(const ZylArrayI* other, long first, long last);
  /// Removes `count` elements from `first` on. Raises `ZylArrayError`. O(size - first).
  void remove(long first, long count);
  /// Cuts the array to `size`, at most the present one; keeps the pages.
  void truncate(long size) noexcept { _size = size; }
  /// Frees every page.
  void clear() noexcept;

 private:
  ZYL_LOCAL static long checkedSize(long size);
  ZYL_LOCAL void setShiftMod() noexcept;
  ZYL_LOCAL void allocData(long size);
  ZYL_LOCAL void zeroData() noexcept;
  ZYL_LOCAL void copyPages(const ZylArrayI* other);
  ZYL_LOCAL char* newPage(long shift) const;
  ZYL_LOCAL void freePage(char* page, long shift) const noexcept;
  ZYL_LOCAL void freePages(char** pages, long shift) const noexcept;

  long _maxSize;
  long _elementSize;
  long _size;
  long _mask;
  unsigned _shift;
  char** _pages;
};

namespace zyl::detail {

template <class T>
concept Number = std::is_arithmetic_v<T>;

// What all array handles share. `Derived::EmptyText()` is the class's text for an empty handle.
template <class Derived, class T>
class ArrayHandle {
 public:
  using Element = T;

  ZylArrayI* getImpl() const noexcept { return _impl; }
  /// Number of elements.
  long getSize() const { return checked()->getSize(); }
  /// Element `i`, 0 <= i < getSize(), asserted only: two loads in release builds.
  T& operator[](std::integral auto i) const {
    assert(_impl != nullptr && "element of an empty array handle");
    assert(static_cast<long>(i) >= 0 && static_cast<long>(i) < _impl->getSize() &&
           "index outside the array");
    return _impl->template element<T>(static_cast<long>(i));
  }
  /// Appends an element, `count` copies of one, or an array's elements.
  void add(T element) const { checked()->append(element); }
  void add(long count, T element) const { checked()->appendCopies(count, element); }
  void add(const Derived& other) const { checked()->addArray(other.checked()); }
  /// Removes `count` elements from `first` on. Raises `ZylArrayError`.
  void remove(long first, long count = 1) const { checked()->remove(first, count); }
  /// Removes all elements and frees the pages.
  void clear() const { checked()->clear(); }
  /// Frees the array; nothing on an empty handle. The elements stay.
  void end() {
    delete _impl;
    _impl = nullptr;
  }
  ZylEnv getEnv() const { return ZylEnv(checked()->getEnv()); }
  ZylMemoryManager getMemoryManager() const { return checked()->getMemoryManager(); }

 protected:
  template <class, class>
  friend class ArrayHandle;
  ArrayHandle() = default;
  explicit ArrayHandle(ZylArrayI* impl) noexcept : _impl(impl) {}
  ArrayHandle(const ZylEnv& env, long size) : _impl(make(env, size)) {}
  ArrayHandle(const ZylMemoryManager& manager, long size) {
    ZylGenAlloc* alloc = manager.getImpl();
    if (alloc == nullptr) ZylRaiseEmptyHandle();
    _impl = new (alloc) ZylArrayI(alloc, size);
  }
  static ZylArrayI* make(const ZylEnv& env, long size) {
    if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
    return new (env.getImpl()->getGenAlloc()) ZylArrayI(env.getImpl(), size);
  }
  // Literal constructors: what is missing in the list stays 0, what is too much is left out.
  template <class... Values>
  void fill(long n, Values... values) {
    constexpr long Count = static_cast<long>(sizeof...(values));
    const T list[] = {static_cast<T>(values)...};
    try {
      for (long i = 0; i < n && i < Count; ++i) _impl->append(list[i]);
      _impl->appendCopies(n - Count, T());
    } catch (...) {
      end();
      throw;
    }
  }
  ZylArrayI* checked() const {
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle(Derived::EmptyText());
    return _impl;
  }
  ZylArrayI* _impl = nullptr;
};

}  // namespace zyl::detail

using ZylVarArgsInt = ZylInt;
using ZylVarArgsNum = ZylNum;

/// An array of integers.
class ZYL_EXPORT ZylIntArray : public zyl::detail::ArrayHandle<ZylIntArray, long> {
  using Base = zyl::detail::ArrayHandle<ZylIntArray, long>;

 public:
  static const char* EmptyText() { return "Using empty ZylIntArray handle."; }
  using Base::operator[];

  ZylIntArray() = default;
  explicit ZylIntArray(ZylArrayI* impl) noexcept : Base(impl) {}
  /// An array of `n` zeros.
  explicit ZylIntArray(const ZylEnv& env, long n = 0) : Base(env, n) {}
  explicit ZylIntArray(const ZylMemoryManager& manager, long n = 0) : Base(manager, n) {}
  /// The array of one value. Raises `ZylWrongUsage` unless n is 1.
  ZylIntArray(const ZylEnv& env, long n, long value);
  /// The array of the values given. Raises `ZylWrongUsage` if n is below 2.
  template <std::integral... Rest>
  ZylIntArray(const ZylEnv& env, long n, std::integral auto first, std::integral auto second,
              Rest... rest)
      : Base(env, 0) {
    checkLiteral(n);
    fill(n, first, second, rest...);
  }
  /// Copies the array into an environment.
  [[nodiscard]] ZylIntArray copy(const ZylEnv& env) const;

  bool contains(long value) const;
  /// Whether each element of `values` occurs.
  bool contains(const ZylIntArray& values) const;
  /// Removes the last element equal to `value`, if any; for an array, once for each of its
  /// elements.
  void discard(long value);
  void discard(const ZylIntArray& values);
  /// Whether each element is 0 or 1.
  bool areElementsBoolean() const;
  [[nodiscard]] ZylNumArray toNumArray() const;
  [[nodiscard]] ZylAnyArray toAnyArray() const;
  /// The element at the value of an integer expression.
  ZylIntExprArg operator[](const ZylIntExprArg& index) const;

 private:
  void checkLiteral(long n);
};

/// An array of integers used as 0 or 1.
class ZYL_EXPORT ZylBoolArray : public ZylIntArray {
 public:
  ZylBoolArray() = default;
  explicit ZylBoolArray(ZylArrayI* impl) noexcept : ZylIntArray(impl) {}
  explicit ZylBoolArray(const ZylEnv& env, long n = 0) : ZylIntArray(env, n) {}
  explicit ZylBoolArray(const ZylMemoryManager& manager, long n = 0) : ZylIntArray(manager, n) {}
  ZylBoolArray(const ZylEnv& env, long n, long value);
  template <std::integral... Rest>
  ZylBoolArray(const ZylEnv& env, long n, std::integral auto first, std::integral auto second,
               Rest... rest)
      : ZylIntArray(env, 0) {
    checkBoolLiteral(n);
    fill(n, first, second, rest...);
  }

 private:
  void checkBoolLiteral(long n);
};

/// An array of doubles.
class ZYL_EXPORT ZylNumArray : public zyl::detail::ArrayHandle<ZylNumArray, double> {
  using Base = zyl::detail::ArrayHandle<ZylNumArray, double>;

 public:
  static const char* EmptyText() { return "Using empty ZylNumArray handle."; }
  using Base::operator[];

  ZylNumArray() = default;
  explicit ZylNumArray(ZylArrayI* impl) noexcept : Base(impl) {}
  explicit ZylNumArray(const ZylEnv& env, long n = 0) : Base(env, n) {}
  explicit ZylNumArray(const ZylMemoryManager& manager, long n = 0) : Base(manager, n) {}
  /// The array of one value. Raises `ZylWrongUsage` unless n is 1.
  ZylNumArray(const ZylEnv& env, long n, double value);
  /// The array of the values given. Raises `ZylWrongUsage` if n is below 2.
  template <zyl::detail::Number First, zyl::detail::Number Second, zyl::detail::Number... Rest>
  ZylNumArray(const ZylEnv& env, long n, First first, Second second, Rest... rest) : Base(env, 0) {
    checkLiteral(n);
    fill(n, first, second, rest...);
  }
  [[nodiscard]] ZylNumArray copy(const ZylEnv& env) const;

  bool contains(double value) const;
  /// Whether each element is integral and 0 or 1.
  bool areElementsBoolean() const;
  bool areElementsInteger() const;
  /// Raises `ZylBadConversion` unless each element is integral.
  [[nodiscard]] ZylIntArray toIntArray() const;
  /// The element at the value of an integer expression.
  ZylNumExprArg operator[](const ZylIntExprArg& index) const;

 private:
  void checkLiteral(long n);
};

/// An array of addresses.
class ZYL_EXPORT ZylAnyArray : public zyl::detail::ArrayHandle<ZylAnyArray, void*> {
  using Base = zyl::detail::ArrayHandle<ZylAnyArray, void*>;

 public:
  static const char* EmptyText() { return "Using empty ZylAnyArray handle."; }

  ZylAnyArray() = default;
  explicit ZylAnyArray(ZylArrayI* impl) noexcept : Base(impl) {}
  explicit ZylAnyArray(const ZylEnv& env, long n = 0) : Base(env, n) {}
  ZylAnyArray(const ZylEnv& env, long n, void* value);
  template <std::convertible_to<void*>... Rest>
  ZylAnyArray(const ZylEnv& env, long n, void* first, void* second, Rest... rest) : Base(env, 0) {
    checkLiteral(n);
    fill(n, first, second, rest...);
  }
  [[nodiscard]] ZylAnyArray copy(const ZylEnv& env) const;
  bool contains(void* value) const;

 private:
  void checkLiteral(long n);
};

/// Arrays of arrays. The constructor from a count and one array makes that many empty slots and
/// appends the array: its size is n + 1.
class ZYL_EXPORT ZylIntArray2 : public zyl::detail::ArrayHandle<ZylIntArray2, ZylIntArray> {
  using Base = zyl::detail::ArrayHandle<ZylIntArray2, ZylIntArray>;

 public:
  static const char* EmptyText() { return "Using empty ZylIntArray2 handle."; }
  ZylIntArray2() = default;
  explicit ZylIntArray2(ZylArrayI* impl) noexcept : Base(impl) {}
  explicit ZylIntArray2(const ZylEnv& env, long n = 0) : Base(env, n) {}
  ZylIntArray2(const ZylEnv& env, long n, ZylIntArray first) : Base(env, n) { fill(1, first); }
  /// Whether both have the same elements in order; false if either handle is empty.
  static bool equal(const ZylIntArray& a, const ZylIntArray& b);
  /// Whether an element equals `array`; false for an array without elements.
  bool contains(const ZylIntArray& array) const;
};

/// An array of arrays of numbers; `equal` and `contains` as for integers.
class ZYL_EXPORT ZylNumArray2 : public zyl::detail::ArrayHandle<ZylNumArray2, ZylNumArray> {
  using Base = zyl::detail::ArrayHandle<ZylNumArray2, ZylNumArray>;

 public:
  static const char* EmptyText() { return "Using empty ZylNumArray2 handle."; }
  ZylNumArray2() = default;
  explicit ZylNumArray2(ZylArrayI* impl) noexcept : Base(impl) {}
  explicit ZylNumArray2(const ZylEnv& env, long n = 0) : Base(env, n) {}
  ZylNumArray2(const ZylEnv& env, long n, ZylNumArray first) : Base(env, n) { fill(1, first); }
  static bool equal(const ZylNumArray& a, const ZylNumArray& b);
  bool contains(const ZylNumArray& array) const;
};

/// An array of arrays of addresses.
class ZYL_EXPORT ZylAnyArray2 : public zyl::detail::ArrayHandle<ZylAnyArray2, ZylAnyArray> {
  using Base = zyl::detail::ArrayHandle<ZylAnyArray2, ZylAnyArray>;

 public:
  static const char* EmptyText() { return "Using empty ZylAnyArray2 handle."; }
  ZylAnyArray2() = default;
  explicit ZylAnyArray2(ZylArrayI* impl) noexcept : Base(impl) {}
  explicit ZylAnyArray2(const ZylEnv& env, long n = 0) : Base(env, n) {}
  /// Raises `ZylWrongUsage` "ZylAnyArray2::ZylAnyArray2: n != 1" for an empty array handle.
  ZylAnyArray2(const ZylEnv& env, long n, ZylAnyArray first);
};

#endif
