// Arrays of extractables, and the family of typed handle arrays.

#ifndef ZYL_MODEL_EXTRACTABLE_ARRAY_H
#define ZYL_MODEL_EXTRACTABLE_ARRAY_H

#include "vorlane/env/array.h"
#include "vorlane/model/extractable.h"

/// An array of extractables. The array refers to them and owns none.
class ZYL_EXPORT ZylExtractableArray {
 public:
  using Element = ZylExtractable;

  ZylExtractableArray() = default;
  explicit ZylExtractableArray(ZylArrayI* impl) noexcept : _impl(impl) {}
  /// An array of `n` empty handles.
  explicit ZylExtractableArray(const ZylEnv& env, long n = 0);
  explicit ZylExtractableArray(const ZylMemoryManager& manager, long n = 0);
  /// The array of the objects given. Raises `ZylWrongUsage` if `n` is not their number.
  template <std::derived_from<ZylExtractable>... Rest>
  ZylExtractableArray(const ZylEnv& env, long n, const ZylExtractable& first, const Rest&... rest);

  ZylArrayI* getImpl() const noexcept { return _impl; }
  long getSize() const { return checked()->getSize(); }
  /// Element `i`, asserted to be in the array.
  ZylExtractable& operator[](std::integral auto i) const {
    return slot<ZylExtractable>(static_cast<long>(i));
  }
  /// The implementation at `i`, null for an empty handle.
  ZylExtractableI* getI(long i) const { return _impl->element<ZylExtractableI*>(i); }
  void add(const ZylExtractable& element) const { checked()->append(element.getImpl()); }
  void add(long count, const ZylExtractable& element) const {
    checked()->appendCopies(count, element.getImpl());
  }
  void add(const ZylExtractableArray& other) const { checked()->addArray(other.checked()); }
  void addI(ZylExtractableI* element) const { checked()->append(element); }
  /// Removes `count` elements from `first` on. Raises `ZylArrayError`.
  void remove(long first, long count = 1) const { checked()->remove(first, count); }
  void clear() const { checked()->clear(); }
  /// Frees the array; nothing on an empty handle. The elements stay.
  void end() {
    delete _impl;
    _impl = nullptr;
  }
  ZylEnv getEnv() const { return ZylEnv(checked()->getEnv()); }

  /// The highest index that holds the object, -1 if none does. O(size).
  long find(const ZylExtractable& object) const;
  /// Drops every element that is finished or marked for removal, keeping the order; null stays.
  void removeMarked() const;
  /// Names element i "prefix[i]". Raises `ZylWrongUsage` if an object occurs twice; then nothing is
  /// named.
  void setNames(const char* prefix) const;
  /// Points this handle at a new array of clones in `env`, or in each element's own environment
  /// for an empty `env`. The old array stays as it was.
  void replaceByClone(ZylEnvI* env);
  /// Ends all elements in one removal, counted expressions by their counts, and clears the array.
  /// If that raises, elements that have ended are empty handles, and no reference is dropped again.
  /// Raises `ZylEnvironmentMismatch`, before anything else, for an element of another environment.
  void endElements() const;

  static const char* EmptyText() { return "Using empty ZylExtractableArray handle."; }

 protected:
  // A slot is written and read as one type, by whichever kind of array.
  static ZylExtractableI* implOf(const ZylExtractable& element) noexcept {
    return element.getImpl();
  }
  // The elements of a literal; a failure gives the array back.
  template <class... Elements>
  void addLiteral(const Elements&... elements) {
    try {
      (_impl->append(implOf(elements)), ...);
    } catch (...) {
      end();
      throw;
    }
  }
  template <class T>
  T& slot(long i) const {
    static_assert(sizeof(T) == sizeof(ZylExtractableI*));
    assert(_impl != nullptr && "element of an empty array handle");
    assert(i >= 0 && i < _impl->getSize() && "index outside the array");
    return _impl->element<T>(i);
  }
  ZylArrayI* checked() const {
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle(EmptyText());
    return _impl;
  }
  ZylArrayI* _impl = nullptr;
};

namespace zyl::detail {

[[noreturn]] ZYL_EXPORT void raiseLiteralCount(const char* name, const char* separator, long count);

/// What the typed handle arrays share.
///
/// `Derived` states `Name()`, its own name, and `Separator(k)`, what stands before the element
/// count k in the text of a wrong literal count.
template <class Derived, class Handle>
class HandleArray : public ZylExtractableArray {
 public:
  using Element = Handle;

  HandleArray() = default;
  explicit HandleArray(ZylArrayI* impl) noexcept : ZylExtractableArray(impl) {}
  /// An array of `n` empty handles.
  explicit HandleArray(const ZylEnv& env, long n = 0) : ZylExtractableArray(env, n) {}
  /// The array of the elements given. Raises `ZylWrongUsage` if `n` is not their number.
  template <std::convertible_to<Handle>... Rest>
  HandleArray(const ZylEnv& env, long n, const Handle& first, const Rest&... rest)
      : ZylExtractableArray(env, checkCount(n, 1 + static_cast<long>(sizeof...(rest)))) {
    addLiteral(first, Handle(rest)...);
  }

  long getSize() const { return checked()->getSize(); }
  /// Element `i`, asserted to be in the array.
  Handle& operator[](std::integral auto i) const { return slot<Handle>(static_cast<long>(i)); }
  void add(const Handle& element) const { checked()->append(implOf(element)); }
  void add(long count, const Handle& element) const {
    checked()->appendCopies(count, implOf(element));
  }
  void add(const Derived& other) const { checked()->addArray(other.checked()); }
  void remove(long first, long count = 1) const { checked()->remove(first, count); }
  void clear() const { checked()->clear(); }
  ZylEnv getEnv() const { return ZylEnv(checked()->getEnv()); }
  long find(const ZylExtractable& object) const { return named().find(object); }
  void setNames(const char* prefix) const { named().setNames(prefix); }
  void endElements() const { named().endElements(); }

 protected:
  // As in the base, with the text of the class.
  ZylArrayI* checked() const {
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle(Derived::EmptyText());
    return _impl;
  }

 private:
  // The base, after the test with the text of the class.
  const ZylExtractableArray& named() const {
    static_cast<void>(checked());
    return *this;
  }
  static long checkCount(long n, long count) {
    if (n != count) raiseLiteralCount(Derived::Name(), Derived::Separator(count), count);
    return 0;
  }
};

}  // namespace zyl::detail

// The facts of a typed array class.
#define ZYL_HANDLE_ARRAY(Class, Handle, SeparatorExpr)                                \
  using Family = zyl::detail::HandleArray<Class, Handle>;                             \
  friend Family;                                                                      \
                                                                                      \
 public:                                                                              \
  static const char* Name() { return #Class; }                                        \
  static const char* Separator([[maybe_unused]] long count) { return SeparatorExpr; } \
  static const char* EmptyText() { return "Using empty " #Class " handle."; }         \
  using Family::Family;                                                               \
  Class() = default;

template <std::derived_from<ZylExtractable>... Rest>
ZylExtractableArray::ZylExtractableArray(const ZylEnv& env, long n, const ZylExtractable& first,
                                         const Rest&... rest)
    : ZylExtractableArray(env) {
  constexpr long Count = 1 + static_cast<long>(sizeof...(rest));
  if (n != Count) {
    end();
    zyl::detail::raiseLiteralCount("ZylExtractableArray", "n != ", Count);
  }
  addLiteral(first, rest...);
}

#endif
