// Records: extractables that are nothing but their fields.
//
// A class of the family states its fields once, with their labels, in its order:
//
//     class MyPathI final : public zyl::Record<MyPathI, ZylConstraintI> {
//       ZYL_RECORD(MyPathI, ZylConstraintI)
//      public:
//       MyPathI(ZylEnvI* env, const ZylIntVarArray& next, ZylNumExprI* length,
//               const char* name = nullptr)
//           : Record(env, name), _next(next), _length(length) {}
//
//      private:
//       auto fields() { return zyl::fields("_next", _next, "_length", _length); }
//       zyl::Owned<ZylIntVarArray> _next;
//       zyl::Held<ZylNumExprI> _length;
//     };
//     ZYL_RECORD_DEF(MyPathI, ZylConstraintI)  // in its source
//
// From that follow the destructor, the visit, the clone, the text form and what happens when a part
// is removed. What a class does differently it overrides, with the functions on fields at hand.
//
// The destructor that ZYL_RECORD declares gives back what the fields hold, through the environment
// of the record, since a part may be dead by then. A field that is destroyed before, by a
// constructor that raises, takes its references back from operands that are there still, and leaves
// arrays to the caller: such a constructor has taken nothing.
//
// A new kind of field is a class with the operations of `Ref`. Numbers, enumerations, pointers to
// functions and a client's pointers are fields as they are; a text is a `Text`.

#ifndef ZYL_MODEL_RECORD_H
#define ZYL_MODEL_RECORD_H

#include <exception>
#include <tuple>
#include <type_traits>

#include "vorlane/model/display.h"
#include "vorlane/model/visitor.h"

namespace zyl {

/// A field that refers to an extractable, or to none, without counting.
template <class Impl>
class Ref {
 public:
  // Implicit, as fields read like the pointers that they are.
  // NOLINTNEXTLINE(google-explicit-constructor)
  Ref(Impl* object = nullptr) noexcept : _object(object) {}
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator Impl*() const noexcept { return _object; }
  Impl* operator->() const noexcept { return _object; }
  Impl* get() const noexcept { return _object; }

  void visit(ZylExtractableI* holder, ZylExtractableVisitor* visitor) const {
    if (_object != nullptr) visitor->visitChildren(holder, _object);
  }
  /// What the constructor of a clone in `env` takes.
  Impl* cloned(ZylEnvI* env) const {
    return _object != nullptr ? static_cast<Impl*>(env->getClone(_object)) : nullptr;
  }
  /// Gives up what is held; a second time there is nothing.
  void giveBack(ZylEnvI*) noexcept { _object = nullptr; }
  void display(std::ostream& stream) const {
    if (_object != nullptr) _object->display(stream);
  }
  /// Whether the record cannot live on: what it refers to is finished or marked for removal.
  bool isDead(const ZylEnvI* env) const noexcept {
    return _object != nullptr && env->isMarked(_object);
  }
  /// Lets go of elements that are finished or marked for removal.
  void dropDead() const noexcept {}

 private:
  Impl* _object;
};

/// A field that counts as one owner of an expression, generator or comprehension, or of none. Not
/// assigned; `replace` puts another in its place.
template <class Impl>
class Held : public Ref<Impl> {
 public:
  explicit Held(Impl* object = nullptr) noexcept : Ref<Impl>(object) {
    if (object != nullptr) object->hold();
  }
  ~Held() {
    if (this->get() != nullptr) this->get()->unhold();
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  /// Holds `object`, then releases what was held before.
  void replace(ZylEnvI* env, Impl* object) {
    Impl* const before = this->get();
    if (object != nullptr) object->hold();
    static_cast<Ref<Impl>&>(*this) = object;
    if (before != nullptr) env->release(before);
  }
  void giveBack(ZylEnvI* env) {
    Impl* const object = this->get();
    Ref<Impl>::giveBack(env);
    if (object != nullptr) env->release(object);
  }
};

/// A field that takes an array over, or none, and ends it. Elements that are counted are held.
template <class Array>
class Owned {
 public:
  explicit Owned(const Array& array = Array()) noexcept;
  ~Owned();
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  // NOLINTNEXTLINE(google-explicit-constructor): reads as the array that it is
  operator const Array&() const noexcept { return _array; }
  const Array& get() const noexcept { return _array; }
  const Array* operator->() const noexcept { return &_array; }
  bool isEmpty() const noexcept { return _array.getImpl() == nullptr; }

  void visit(ZylExtractableI* holder, ZylExtractableVisitor* visitor) const;
  [[nodiscard]] auto cloned(ZylEnvI* env) const;
  void giveBack(ZylEnvI* env);
  void display(std::ostream& stream) const;
  bool isDead(const ZylEnvI*) const noexcept { return false; }
  void dropDead() const;

 private:
  Array _array;
};

/// A field with a copy of a text, or without one.
class Text {
 public:
  /// Raises `ZylMemoryException`.
  Text(ZylEnvI* env, const char* text) : _env(env), _text(env->strDup(text)) {}
  ~Text() { _env->strFree(_text); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  const char* get() const noexcept { return _text; }

  void visit(ZylExtractableI*, ZylExtractableVisitor*) const noexcept {}
  const char* cloned(ZylEnvI*) const noexcept { return _text; }
  void giveBack(ZylEnvI*) noexcept {
    _env->strFree(_text);
    _text = nullptr;
  }
  void display(std::ostream& stream) const {
    if (_text != nullptr) stream << _text;
  }
  bool isDead(const ZylEnvI*) const noexcept { return false; }
  void dropDead() const noexcept {}

 private:
  ZylEnvI* _env;
  char* _text;
};

/// What a class of records does differently: state it as a member `Row`.
struct RecordRow {
  bool clonable = true;
  /// Whether a clone has the name of its original.
  bool keepsName = false;
  /// Whether elements of arrays that are removed drop out, and only the loss of another part ends
  /// the record. Otherwise it goes with any of them.
  bool shrinks = false;
};

namespace detail {

template <class T>
struct Labelled {
  const char* label;
  T& field;
};

template <class T>
inline constexpr bool IsText = std::is_same_v<std::remove_cv_t<std::remove_pointer_t<T>>, char>;

template <class T>
inline constexpr bool IsPlain = std::is_arithmetic_v<T> || std::is_enum_v<T> ||
                                (std::is_pointer_v<T> && !IsText<T>);

// A number or an address; an absent object and a function show nothing.
template <class T>
void displayPlain(std::ostream& stream, const T& value) {
  if constexpr (std::is_enum_v<T>) {
    stream << static_cast<long>(value);
  } else if constexpr (!std::is_pointer_v<T>) {
    stream << value;
  } else if constexpr (!std::is_function_v<std::remove_pointer_t<T>>) {
    if (value != nullptr) stream << static_cast<const void*>(value);
  }
}

template <class Array>
inline constexpr bool HasExtractables = std::is_base_of_v<ZylExtractableArray, Array>;

template <class Array>
inline constexpr bool IsCounting = requires(const Array& array) {
  array.lockExprs();
};

/// A private copy of an array; ended unless an object takes it over.
template <class Array>
class ArrayCopy {
 public:
  ArrayCopy() = default;
  /// Copies the array, if there is one.
  ArrayCopy(ZylEnvI* env, const ZylArrayI* array)
      : _array(array != nullptr ? new (env) ZylArrayI(env, array) : nullptr) {}
  /// Owns the array given.
  explicit ArrayCopy(const Array& array) noexcept : _array(array) {}
  ArrayCopy(ArrayCopy&& other) noexcept : _array(other._array) { other._array = Array(); }
  ArrayCopy& operator=(ArrayCopy&&) = delete;
  ~ArrayCopy() { _array.end(); }

  const Array& get() const noexcept { return _array; }
  /// Passes on what took the array over.
  template <class Node>
  [[nodiscard]] Node* takenBy(Node* node) noexcept {
    _array = Array();
    return node;
  }

 private:
  Array _array;
};

/// A private clone of an array, and of its elements if they are extractables.
template <class Array>
ArrayCopy<Array> clonedArray(ZylEnvI* env, const Array& array) {
  if constexpr (HasExtractables<Array>) {
    if (array.getImpl() == nullptr) return ArrayCopy<Array>();
    Array clone(array.getImpl());
    clone.replaceByClone(env);
    return ArrayCopy<Array>(clone);
  } else {
    return ArrayCopy<Array>(env, array.getImpl());
  }
}

/// An array in list form; an absent one shows nothing.
template <class Array>
void displayArray(std::ostream& stream, const Array& array) {
  if (array.getImpl() == nullptr) return;
  if constexpr (HasExtractables<Array>) {
    displayList(stream, static_cast<const ZylExtractableArray&>(array));
  } else {
    displayList(stream, array.getSize(), [&](long i) { stream << array[i]; });
  }
}

template <class T>
auto clonedField(ZylEnvI* env, const T& field) {
  if constexpr (IsPlain<T>) {
    return field;
  } else {
    return field.cloned(env);
  }
}

// What a constructor is given of its caller's argument.
template <class T>
const T& given(const T& argument) noexcept {
  return argument;
}
template <class Array>
const Array& given(const ArrayCopy<Array>& copy) noexcept {
  return copy.get();
}

template <class Node, class T>
void take(Node*, const T&) noexcept {}
template <class Node, class Array>
void take(Node* node, ArrayCopy<Array>& copy) noexcept {
  static_cast<void>(copy.takenBy(node));
}

/// A new object in `env` that takes over the copies of arrays among its arguments; a constructor
/// that raises leaves them to be ended by the caller's scope.
template <class Class, class... Arguments>
[[nodiscard]] Class* build(ZylEnvI* env, Arguments&&... arguments) {
  Class* object;
  if constexpr (std::is_constructible_v<Class, ZylEnvI*, decltype(given(arguments))...>) {
    object = new (env) Class(env, given(arguments)...);
  } else {
    object = new (env) Class(given(arguments)...);
  }
  (take(object, arguments), ...);
  return object;
}

template <class Class, class Fields>
[[nodiscard]] Class* cloneOf(ZylEnvI* env, const Fields& fields, const char* name) {
  return std::apply(
      [&](const auto&... each) {
        // Braces: the parts are cloned in order.
        std::tuple<decltype(clonedField(env, each.field))...> parts{
            clonedField(env, each.field)...};
        return std::apply(
            [&](auto&... part) {
              using Env = ZylEnvI*;
              using Name = const char*;
              if constexpr (std::is_constructible_v<Class, Env, decltype(given(part))..., Name> ||
                            std::is_constructible_v<Class, decltype(given(part))..., Name>) {
                return build<Class>(env, part..., name);
              } else {
                return build<Class>(env, part...);
              }
            },
            parts);
      },
      fields);
}

/// Begin, the fields in order, end.
template <class Fields>
void visitFields(ZylExtractableI* holder, ZylExtractableVisitor* visitor, const Fields& fields) {
  visitor->beginVisit(holder);
  const auto visit = [&]<class T>(const Labelled<T>& each) {
    if constexpr (!IsPlain<T>) each.field.visit(holder, visitor);
  };
  std::apply([&](const auto&... each) { (visit(each), ...); }, fields);
  visitor->endVisit(holder);
}

/// Gives every field back, also if one raises on the way; what the first one raised then follows.
template <class Fields>
void giveBack(ZylEnvI* env, const Fields& fields) {
  std::exception_ptr first;
  const auto giveBack = [&]<class T>(const Labelled<T>& each) {
    if constexpr (!IsPlain<T>) {
      try {
        each.field.giveBack(env);
      } catch (...) {
        if (first == nullptr) first = std::current_exception();
      }
    }
  };
  std::apply([&](const auto&... each) { (giveBack(each), ...); }, fields);
  if (first != nullptr) std::rethrow_exception(first);
}

/// The class with name or id, then a line for each field.
template <class Fields>
void displayFields(std::ostream& stream, const ZylExtractableI* holder, const Fields& fields) {
  displayHead(stream, holder->getRttiTypeName(), holder);
  const auto show = [&]<class T>(const Labelled<T>& each) {
    stream << "  " << each.label << " ";
    if constexpr (IsPlain<T>) {
      displayPlain(stream, each.field);
    } else {
      each.field.display(stream);
    }
    stream << std::endl;
  };
  std::apply([&](const auto&... each) { (show(each), ...); }, fields);
}

/// Lets go of the elements that go; returns whether a part goes without which the record cannot be.
template <class Fields>
[[nodiscard]] bool shrink(const ZylEnvI* env, const Fields& fields) {
  bool dead = false;
  const auto drop = [&]<class T>(const Labelled<T>& each) {
    if constexpr (!IsPlain<T>) {
      each.field.dropDead();
      dead = dead || each.field.isDead(env);
    }
  };
  std::apply([&](const auto&... each) { (drop(each), ...); }, fields);
  return dead;
}

}  // namespace detail

/// The fields of a record: a label and a member, in turns.
inline std::tuple<> fields() { return {}; }
template <class T, class... Rest>
auto fields(const char* label, T& field, Rest&&... rest) {
  static_assert(!detail::IsText<T>, "a text that nobody copies: make the field a zyl::Text");
  return std::tuple_cat(std::tuple(detail::Labelled<T>{label, field}), fields(rest...));
}

/// What follows from the fields of `Class`, whose direct base in the type family is `Base`.
template <class Class, class Base>
class ZYL_EXPORT Record : public Base {
 public:
  using Base::Base;
  static constexpr RecordRow Row{};

  ZylExtractableI* makeClone(ZylEnvI* env) const override {
    if constexpr (Class::Row.clonable) {
      return detail::cloneOf<Class>(env, ownFields(),
                                    Class::Row.keepsName ? this->getName() : nullptr);
    } else {
      return Base::makeClone(env);
    }
  }
  void visitSubExtractables(ZylExtractableVisitor* visitor) override {
    detail::visitFields(this, visitor, ownFields());
  }
  void display(std::ostream& stream) const override {
    detail::displayFields(stream, this, ownFields());
  }
  void atRemove(ZylExtractableI* removed, void* extra) override {
    if constexpr (Class::Row.shrinks) {
      if (this->_env->getDeleterMode() == 0) {
        if (detail::shrink(this->_env, ownFields())) this->_env->removeFromAllAndDestroy(this, 0);
        return;
      }
    }
    Base::atRemove(removed, extra);
  }

 private:
  // Fields are listed once, as what the destructor changes.
  auto ownFields() const {
    return static_cast<Class*>(const_cast<Record*>(this))->fields();  // NOLINT: see above
  }
};

template <class Array>
Owned<Array>::Owned(const Array& array) noexcept : _array(array) {
  if constexpr (detail::IsCounting<Array>) {
    if (!isEmpty()) _array.lockExprs();
  }
}

template <class Array>
Owned<Array>::~Owned() {
  if constexpr (detail::IsCounting<Array>) {
    if (isEmpty()) return;
    for (long i = 0; i < _array.getSize(); ++i) {
      using Impl = typename Array::Element::ImplClass;
      if (auto* element = static_cast<Impl*>(_array.getI(i))) element->unhold();
    }
  }
}

template <class Array>
void Owned<Array>::visit(ZylExtractableI* holder, ZylExtractableVisitor* visitor) const {
  if constexpr (detail::HasExtractables<Array>) {
    if (!isEmpty()) visitor->visitChildren(holder, _array);
  }
}

template <class Array>
auto Owned<Array>::cloned(ZylEnvI* env) const {
  return detail::clonedArray(env, _array);
}

template <class Array>
void Owned<Array>::giveBack(ZylEnvI*) {
  if (isEmpty()) return;
  // Ended whatever a release raises.
  const detail::ArrayCopy<Array> owner(_array);
  _array = Array();
  if constexpr (detail::IsCounting<Array>) owner.get().releaseExprs();
}

template <class Array>
void Owned<Array>::display(std::ostream& stream) const {
  detail::displayArray(stream, _array);
}

template <class Array>
void Owned<Array>::dropDead() const {
  if (isEmpty()) return;
  if constexpr (detail::IsCounting<Array>) {
    _array.releaseMarkedExprs();
  } else if constexpr (detail::HasExtractables<Array>) {
    _array.removeMarked();
  }
}

}  // namespace zyl

// What a class of records declares: type and hooks, and the destructor that gives its fields back.
#define ZYL_RECORD(Class, Base)    \
  ZYL_EXTRACTABLE(Class, Base)     \
  friend zyl::Record<Class, Base>; \
                                   \
 public:                           \
  ~Class() override;               \
                                   \
 private:

// In the class's source, which includes model/algorithm_handle.h.
#define ZYL_RECORD_DEF(Class, Base)                                                \
  static_assert(std::is_base_of_v<zyl::Record<Class, Base>, Class>,                \
                #Class " is not derived from zyl::Record<" #Class ", " #Base ">"); \
  ZYL_EXTRACTABLE_DEF(Class, Base)                                                 \
  Class::~Class() { zyl::detail::giveBack(_env, fields()); }

#endif
