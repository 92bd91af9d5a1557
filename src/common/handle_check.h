// Checks that handle functions make of their arguments before anything happens.
//
// Each function has its own texts and its own order of tests; both are stated where it calls these.

#ifndef ZYL_SRC_COMMON_HANDLE_CHECK_H
#define ZYL_SRC_COMMON_HANDLE_CHECK_H

#include <type_traits>

#include "vorlane/env/exception.h"
#include "vorlane/model/extractable_array.h"

namespace zyl::detail {

/// What is raised for an argument.
class Refusal {
 public:
  constexpr Refusal() noexcept : Refusal(nullptr, false) {}
  [[noreturn]] void raise() const {
    if (_isWrongUsage) ZylRaiseWrongUsage(_text);
    if (_text == nullptr) ZylRaiseEmptyHandle();
    ZylRaiseEmptyHandle(_text);
  }

 private:
  friend constexpr Refusal emptyHandle(const char* text) noexcept;
  friend constexpr Refusal wrongUsage(const char* text) noexcept;
  constexpr Refusal(const char* text, bool isWrongUsage) noexcept
      : _text(text), _isWrongUsage(isWrongUsage) {}

  const char* _text;
  bool _isWrongUsage;
};

/// `ZylEmptyHandleException`, with the default text if there is none of the function's own.
constexpr Refusal emptyHandle(const char* text = nullptr) noexcept { return {text, false}; }
/// `ZylWrongUsage`.
constexpr Refusal wrongUsage(const char* text) noexcept { return {text, true}; }

/// What most functions say of an empty environment.
inline constexpr Refusal EmptyEnv = emptyHandle("Using empty ZylEnv handle.");

/// The implementation of a handle - an environment's, an object's or an array's - that is not
/// empty.
template <class Handle>
[[nodiscard]] auto* checked(const Handle& handle, Refusal empty = emptyHandle()) {
  if (handle.getImpl() == nullptr) empty.raise();
  return handle.getImpl();
}

/// The same for what a handle held.
template <class Impl>
Impl* checked(Impl* object, Refusal empty = emptyHandle()) {
  if (object == nullptr) empty.raise();
  return object;
}

/// The array, which is no empty handle; by default with the text of its class.
template <class Array>
const Array& checkedArray(const Array& array, Refusal empty = emptyHandle(Array::EmptyText())) {
  if (array.getImpl() == nullptr) empty.raise();
  return array;
}

/// Raises `ZylWrongUsage` for an object of another environment. Empty handles pass.
inline void requireEnv(const ZylEnvI* env, const ZylExtractable& object, const char* text) {
  if (object.getImpl() != nullptr && object.getImpl()->getEnv() != env) ZylRaiseWrongUsage(text);
}
/// The same for each element of an array. Empty elements pass.
inline void requireEnv(const ZylEnvI* env, const ZylExtractableArray& array, const char* text) {
  if (array.getImpl() == nullptr) return;
  for (long i = 0; i < array.getSize(); ++i) {
    if (array.getI(i) != nullptr && array.getI(i)->getEnv() != env) ZylRaiseWrongUsage(text);
  }
}

/// Raises for an empty element.
inline void requireElements(const ZylExtractableArray& array, Refusal empty = emptyHandle()) {
  for (long i = 0; i < array.getSize(); ++i) {
    if (array.getI(i) == nullptr) empty.raise();
  }
}

/// An argument in a table of checks: it must not be empty, and not of another environment.
template <class Handle>
struct Argument {
  const Handle& handle;
  Refusal empty;
};
template <class Handle>
Argument<Handle> argument(const Handle& handle, Refusal empty = emptyHandle()) {
  return {handle, empty};
}

/// Holds a table of arguments against `env`: first that none is empty, in order, then that all are
/// of the environment, in order; `mixing` is the text of the latter's `ZylWrongUsage`.
template <class... Handles>
void require(const ZylEnvI* env, const char* mixing, const Argument<Handles>&... arguments) {
  (static_cast<void>(checked(arguments.handle, arguments.empty)), ...);
  (requireEnv(env, arguments.handle, mixing), ...);
}

/// The clone in `env` of what a handle refers to. The environment is tested first.
template <class Handle>
[[nodiscard]] auto* cloneIn(const ZylEnv& env, const Handle& handle, Refusal empty = emptyHandle(),
                            Refusal emptyEnv = emptyHandle()) {
  using Impl = std::remove_pointer_t<decltype(handle.getImpl())>;
  ZylEnvI* const target = checked(env, emptyEnv);
  return static_cast<Impl*>(target->getClone(checked(handle, empty)));
}

}  // namespace zyl::detail

#endif
