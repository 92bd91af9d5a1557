// The system's own type identity.
//
// A class is known by its token, the address of its own static function `GetBaseTypeInfo`. The
// function is defined out of line, in the class's one source file, and its code mentions the
// class's own index, so neither identical-code folding nor a second shared object can make two
// tokens of one or one of two. A token exists from program load; there is no table and no
// registration.
//
// Beside the token stands a small index, assigned on first demand: good for dense tables in one
// run, never to be written to a file or compared between processes.

#ifndef ZYL_ENV_RTTI_H
#define ZYL_ENV_RTTI_H

#include <type_traits>

#include "vorlane/env/export.h"

/// A type token.
using ZylTypeInfo = void (*)();

/// Root of the type family. Single inheritance only.
class ZYL_EXPORT ZylRtti {
 public:
  /// The highest index handed out so far.
  static long _counter;

  /// Destructors of the family may raise: a property that is still in use refuses to go.
  virtual ~ZylRtti() noexcept(false) = default;

  static ZylTypeInfo GetTypeInfo() noexcept {
    return reinterpret_cast<ZylTypeInfo>(&GetBaseTypeInfo);
  }
  static ZylTypeInfo GetBaseTypeInfo() noexcept;
  /// The root's index is 0 always.
  static long GetTypeIndex() noexcept { return 0; }

  /// The index of the object's class, 0 while nothing has asked the class for it.
  virtual long getTypeIndex() const;
  virtual ZylTypeInfo getTypeInfo() const;
  /// Whether the object is of the class with this token, or of one derived from it.
  virtual bool isType(ZylTypeInfo type) const;
  virtual const char* getRttiTypeName() const = 0;

 protected:
  ZylRtti() = default;
  ZylRtti(const ZylRtti&) = default;
  ZylRtti& operator=(const ZylRtti&) = default;
};

/// Returns the token of the direct base of the class with this token, null for the root.
inline ZylTypeInfo ZylGetBaseTypeInfo(ZylTypeInfo type) noexcept {
  return reinterpret_cast<ZylTypeInfo (*)()>(type)();
}

namespace zyl::detail {
// Assigns `*index` from the process-wide counter, once, whatever other threads do; under the
// process-wide lock if there is one.
ZYL_EXPORT void assignTypeIndex(long* index);
}  // namespace zyl::detail

// What every class of the family declares, all alike. Only `isType` and the token stand in the
// class's source: the first keeps the class's tables there, the second must be one in the process.
// The rest is inline, and so no symbol of the library. ZYL_TYPE is for classes whose base already
// has `getBaseTypeInfo` and `getBaseTypeIndex`; ZYL_TYPE_FIRST for those directly under the root.
#define ZYL_TYPE_COMMON_(Class, Base)                                                           \
 public:                                                                                        \
  static long _rttiIndex;                                                                       \
  static ZylTypeInfo GetTypeInfo() noexcept {                                                   \
    return reinterpret_cast<ZylTypeInfo>(&Class::GetBaseTypeInfo);                              \
  }                                                                                             \
  static ZylTypeInfo GetBaseTypeInfo() noexcept;                                                \
  static void InitTypeIndex() { zyl::detail::assignTypeIndex(&_rttiIndex); }                    \
  static long GetTypeIndex() {                                                                  \
    InitTypeIndex();                                                                            \
    return __atomic_load_n(&_rttiIndex, __ATOMIC_ACQUIRE);                                      \
  }                                                                                             \
  static const char* GetRttiTypeName() noexcept { return #Class; }                              \
  long getTypeIndex() const override { return __atomic_load_n(&_rttiIndex, __ATOMIC_ACQUIRE); } \
  ZylTypeInfo getTypeInfo() const override { return GetTypeInfo(); }                            \
  bool isType(ZylTypeInfo type) const override;                                                 \
  const char* getRttiTypeName() const override { return GetRttiTypeName(); }

#define ZYL_TYPE_FIRST(Class, Base)                                         \
  ZYL_TYPE_COMMON_(Class, Base)                                             \
  virtual ZylTypeInfo getBaseTypeInfo() const { return GetBaseTypeInfo(); } \
  virtual long getBaseTypeIndex() const { return Base::GetTypeIndex(); }    \
                                                                            \
 private:

#define ZYL_TYPE_ONLY(Class, Base)                                           \
  ZYL_TYPE_COMMON_(Class, Base)                                              \
  ZylTypeInfo getBaseTypeInfo() const override { return GetBaseTypeInfo(); } \
  long getBaseTypeIndex() const override { return Base::GetTypeIndex(); }    \
                                                                             \
 private:

// The definitions, in the class's own source and nowhere else. `_rttiIndex` stands in the token's
// code only to make that code unlike every other class's.
#define ZYL_TYPE_DEF(Class, Base)                                               \
  static_assert(std::is_base_of_v<Base, Class> && !std::is_same_v<Base, Class>, \
                #Base " is not a base of " #Class);                             \
  long Class::_rttiIndex = 0;                                                   \
  ZylTypeInfo Class::GetBaseTypeInfo() noexcept {                               \
    __asm__ volatile("" : : "r"(&Class::_rttiIndex));                           \
    return Base::GetTypeInfo();                                                 \
  }                                                                             \
  bool Class::isType(ZylTypeInfo type) const { return type == GetTypeInfo() || Base::isType(type); }

namespace zyl {
/// Returns `object` as a `T` if it is one by the system's type identity, otherwise null. The one
/// checked cast of the modelling layer; null in gives null out.
template <class T, class U>
[[nodiscard]] T* as(U* object) noexcept {
  static_assert(std::is_base_of_v<U, T> || std::is_base_of_v<T, U>, "unrelated classes");
  return object != nullptr && object->isType(T::GetTypeInfo()) ? static_cast<T*>(object) : nullptr;
}
/// Same for a pointer to const.
template <class T, class U>
[[nodiscard]] const T* as(const U* object) noexcept {
  static_assert(std::is_base_of_v<U, T> || std::is_base_of_v<T, U>, "unrelated classes");
  return object != nullptr && object->isType(T::GetTypeInfo()) ? static_cast<const T*>(object)
                                                               : nullptr;
}
/// Whether `object` is exactly a `T`, no subclass.
template <class T, class U>
[[nodiscard]] bool isExactly(const U* object) noexcept {
  return object->getTypeInfo() == T::GetTypeInfo();
}
}  // namespace zyl

#endif
