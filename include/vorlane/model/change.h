// Descriptions of edits.
//
// Every mutating operation alters the object first, then builds a change on the stack and sends it.
// A change lives for that one call; receivers that want to keep anything copy it.

#ifndef ZYL_MODEL_CHANGE_H
#define ZYL_MODEL_CHANGE_H

#include "vorlane/env/rtti.h"
#include "vorlane/model/extractable_array.h"

/// What a change's `visitChange` talks to, in the neutral terms of the graph.
class ZYL_EXPORT ZylChangeVisitor {
 public:
  virtual ~ZylChangeVisitor();
  virtual void addSubExtractable(ZylExtractableI* parent, ZylExtractableI* child);
  virtual void removeSubExtractable(ZylExtractableI* parent, ZylExtractableI* child);
  /// Each element in order.
  void addSubExtractable(ZylExtractableI* parent, const ZylExtractableArray& children);
  void removeSubExtractable(ZylExtractableI* parent, const ZylExtractableArray& children);
};

/// An edit that has been made.
class ZYL_EXPORT ZylChange : public ZylRtti {
  ZYL_TYPE_FIRST(ZylChange, ZylRtti)
 public:
  /// Tells the visitor what became or ceased to be a child of what. `object` is the one changed, or
  /// null.
  virtual void visitChange(ZylEnvI* env, ZylExtractableI* object,
                           ZylChangeVisitor* visitor) const = 0;
  /// Calls the engine hook of the class. A null hook raises
  /// `ZylAlgorithm::CannotChangeException` of the algorithm.
  virtual void applyToCP(ZylAlgorithm algorithm, void* handle) const = 0;
  virtual bool isApplyingOnArray() const;
  /// The array changed. Raises `ZylWrongUsage` where there is none.
  virtual ZylExtractableArray getChangedExtractableArray() const;
  /// The object changed. Raises `ZylWrongUsage` where there is none.
  virtual ZylExtractableI* getChangedExtractable() const;
};

namespace zyl::detail {
[[noreturn]] ZYL_EXPORT void raiseCannotChange(const ZylAlgorithm& algorithm);
}

// What every concrete change declares: type identity and the engine hook.
#define ZYL_CHANGE(Class, Base)                                                       \
  ZYL_TYPE_ONLY(Class, Base)                                                          \
 public:                                                                              \
  static void (*_applyCP)(ZylAlgorithm algorithm, const Class* change, void* handle); \
  void applyToCP(ZylAlgorithm algorithm, void* handle) const override;                \
                                                                                      \
 private:

// In the class's source, which includes model/algorithm_handle.h.
#define ZYL_CHANGE_DEF(Class, Base)                                     \
  ZYL_TYPE_DEF(Class, Base)                                             \
  void (*Class::_applyCP)(ZylAlgorithm, const Class*, void*) = nullptr; \
  void Class::applyToCP(ZylAlgorithm algorithm, void* handle) const {   \
    if (_applyCP == nullptr) zyl::detail::raiseCannotChange(algorithm); \
    _applyCP(algorithm, this, handle);                                  \
  }

namespace zyl {

/// A change of fixed fields, the first of which is what has changed: an object, or an array of
/// them. A class names its fields and inherits constructor and accessors:
///
///     class ZYL_EXPORT ZylSetSize final
///         : public zyl::ChangeOf<zyl::change::Box, zyl::change::NewValue, zyl::change::OldValue> {
///       ZYL_CHANGE(ZylSetSize, ZylChange)
///      public:
///       using ChangeOf::ChangeOf;
///     };
///
/// The constructor takes the fields in order. Unless the class says otherwise, the change alters no
/// edge of the graph of objects.
template <class Changed, class... Fields>
class ZYL_EXPORT ChangeOf : public ZylChange, public Changed, public Fields... {
 public:
  explicit ChangeOf(const typename Changed::Argument& changed,
                    const typename Fields::Argument&... fields)
      : Changed(changed), Fields(fields)... {}

  bool isApplyingOnArray() const override { return IsOfArray; }
  ZylExtractableI* getChangedExtractable() const override {
    if constexpr (IsOfArray) {
      return ZylChange::getChangedExtractable();
    } else {
      return Changed::argument();
    }
  }
  ZylExtractableArray getChangedExtractableArray() const override {
    if constexpr (IsOfArray) {
      return Changed::argument();
    } else {
      return ZylChange::getChangedExtractableArray();
    }
  }
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor*) const override {}

 private:
  static constexpr bool IsOfArray =
      std::is_base_of_v<ZylExtractableArray, typename Changed::Argument>;
};

/// The expression of an object was replaced; the old one is still there.
template <class Changed, class OldExpr, class NewExpr>
class ZYL_EXPORT ExprReplacedIn : public ChangeOf<Changed, OldExpr, NewExpr> {
 public:
  using ChangeOf<Changed, OldExpr, NewExpr>::ChangeOf;
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const override {
    visitor->removeSubExtractable(Changed::argument(), OldExpr::argument());
    visitor->addSubExtractable(Changed::argument(), NewExpr::argument());
  }
};

/// An object left another one. What counts as changed is the object that left.
template <class Left, class Holder>
class ZYL_EXPORT LeftFrom : public ChangeOf<Left, Holder> {
 public:
  using ChangeOf<Left, Holder>::ChangeOf;
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const override {
    visitor->removeSubExtractable(Holder::argument(), Left::argument());
  }
};

enum class Membership { Joined, Left };

/// An object joined or left another one, which is what has changed.
template <Membership Event, class Holder, class Member>
class ZYL_EXPORT MemberChange : public ChangeOf<Holder, Member> {
 public:
  using ChangeOf<Holder, Member>::ChangeOf;
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const override {
    if constexpr (Event == Membership::Joined) {
      visitor->addSubExtractable(Holder::argument(), Member::argument());
    } else {
      visitor->removeSubExtractable(Holder::argument(), Member::argument());
    }
  }
};

/// Members joined or left an object. `Changed` is the object, `Members` the field of the array;
/// one that was built here for a single member is ended with the change.
template <Membership Event, class Changed, class Members>
class ZYL_EXPORT MembersChange : public ChangeOf<Changed, Members> {
 public:
  using Array = typename Members::Argument;
  MembersChange(const typename Changed::Argument& changed, const Array& members)
      : ChangeOf<Changed, Members>(changed, members), _owned(0) {}
  /// Raises `ZylMemoryException`.
  MembersChange(const typename Changed::Argument& changed, ZylExtractableI* member)
      : ChangeOf<Changed, Members>(changed, arrayOf(changed->getEnv(), member)), _owned(1) {}
  ~MembersChange() override {
    if (_owned != 0) Array(Members::argument()).end();
  }
  MembersChange(const MembersChange&) = delete;
  MembersChange& operator=(const MembersChange&) = delete;

  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor* visitor) const override {
    if constexpr (Event == Membership::Joined) {
      visitor->addSubExtractable(Changed::argument(), Members::argument());
    } else {
      visitor->removeSubExtractable(Changed::argument(), Members::argument());
    }
  }

 private:
  static Array arrayOf(ZylEnvI* env, ZylExtractableI* member) {
    Array array{ZylEnv(env)};
    try {
      array.addI(member);
    } catch (...) {
      array.end();
      throw;
    }
    return array;
  }
  long _owned;
};

}  // namespace zyl

// A field of changes: what a constructor takes, and what its accessor gives a client.
#define ZYL_CHANGE_FIELD(Field, Given, Read, accessor)                \
  namespace zyl::change {                                             \
  class ZYL_EXPORT Field {                                            \
   public:                                                            \
    using Argument = Given;                                           \
    explicit Field(const Argument& value) noexcept : _value(value) {} \
    Read accessor() const { return static_cast<Read>(_value); }       \
                                                                      \
   protected:                                                         \
    const Argument& argument() const noexcept { return _value; }      \
                                                                      \
   private:                                                           \
    Argument _value;                                                  \
  };                                                                  \
  }
ZYL_CHANGE_FIELD(LB, double, double, getLB)
ZYL_CHANGE_FIELD(UB, double, double, getUB)
ZYL_CHANGE_FIELD(LBs, ZylNumArray, const ZylNumArray&, getLBs)
ZYL_CHANGE_FIELD(UBs, ZylNumArray, const ZylNumArray&, getUBs)
ZYL_CHANGE_FIELD(NewValue, double, double, getNewValue)
ZYL_CHANGE_FIELD(OldValue, double, double, getOldValue)
ZYL_CHANGE_FIELD(NewValues, ZylNumArray, const ZylNumArray&, getNewValues)
ZYL_CHANGE_FIELD(OldValues, ZylNumArray, const ZylNumArray&, getOldValues)

/// An object is about to be deleted.
class ZYL_EXPORT ZylDestroyExtractable final : public ZylChange {
  ZYL_CHANGE(ZylDestroyExtractable, ZylChange)
 public:
  explicit ZylDestroyExtractable(ZylExtractableI* object) : _object(object) {}
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor*) const override {}
  ZylExtractableI* getChangedExtractable() const override { return _object; }

 private:
  ZylExtractableI* _object;
};

/// A batch of objects is about to be deleted. Their ids are issued again at once: whoever keeps
/// anything by id forgets it now.
class ZYL_EXPORT ZylDestroyExtractableArray final : public ZylChange {
  ZYL_CHANGE(ZylDestroyExtractableArray, ZylChange)
 public:
  explicit ZylDestroyExtractableArray(const ZylExtractableArray& objects) : _objects(objects) {}
  void visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor*) const override {}
  ZylExtractableArray getChangedExtractableArray() const override { return _objects; }

 private:
  ZylExtractableArray _objects;
};

/// Objects have been taken out of all that refers to them.
class ZYL_EXPORT ZylRemoveFromAllChange final : public ZylChange {
  ZYL_CHANGE(ZylRemoveFromAllChange, ZylChange)
 public:
  explicit ZylRemoveFromAllChange(const ZylExtractableArray& objects) : _objects(objects) {}
  void visitChange(ZylEnvI* env, ZylExtractableI* object, ZylChangeVisitor* visitor) const override;
  bool isApplyingOnArray() const override { return true; }
  ZylExtractableArray getChangedExtractableArray() const override { return _objects; }

 private:
  ZylExtractableArray _objects;
};

/// An edit that waits for the object it is to introduce; a column is a chain of them.
class ZYL_EXPORT ZylAddExtractable : public ZylChange {
  ZYL_TYPE_ONLY(ZylAddExtractable, ZylChange)
 public:
  /// A chain was installed on nothing.
  class ZYL_EXPORT CannotAddExtractableException : public ZylException {
   public:
    explicit CannotAddExtractableException(const char* message,
                                           const ZylExtractableI* object = nullptr,
                                           const ZylAddExtractable* change = nullptr);
    const ZylExtractableI* getExtractable() const noexcept { return _object; }
    const ZylAddExtractable* getChange() const noexcept { return _change; }

   private:
    const ZylExtractableI* _object;
    const ZylAddExtractable* _change;
  };

  void visitChange(ZylEnvI* env, ZylExtractableI* object, ZylChangeVisitor* visitor) const override;

  virtual ZylEnvI* getEnv() const;
  /// Returns a copy in `env`, to be given back with `destroy`.
  virtual ZylAddExtractable* getCopy(ZylEnvI* env) const = 0;
  virtual void destroy(ZylEnvI* env) = 0;
  /// The object that the edit alters, null if it alters several.
  virtual ZylExtractableI* what() const = 0;
  /// Makes the edit.
  virtual void apply() const = 0;
  /// Stores the new object.
  virtual void setObj(const ZylExtractableI* object);

  /// Applies each link of the chain for `object` and sends it, unchaining as it goes. Raises
  /// `CannotAddExtractableException` for null.
  void install(ZylExtractableI* object);

  ZylExtractableI* getChangedExtractable() const override { return what(); }
  const ZylExtractableI* getObj() const noexcept { return _obj; }
  ZylAddExtractable* getNext() const noexcept { return _next; }
  void setNext(ZylAddExtractable* next) noexcept { _next = next; }

 protected:
  ZylAddExtractable() = default;
  ZylAddExtractable* _next = nullptr;
  const ZylExtractableI* _obj = nullptr;
};

#endif
