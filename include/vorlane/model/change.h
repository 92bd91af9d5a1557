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
  void visitChange(ZylEnvI* env, ZylExtractableI* object, ZylChangeVisitor* visitor)  \
      const override;                                                                 \
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

// For the changes that alter no edge of the graph.
#define ZYL_CHANGE_VISITS_NOTHING(Class) \
  void Class::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor*) const {}

/// An object is about to be deleted.
class ZYL_EXPORT ZylDestroyExtractable final : public ZylChange {
  ZYL_CHANGE(ZylDestroyExtractable, ZylChange)
 public:
  explicit ZylDestroyExtractable(ZylExtractableI* object) : _object(object) {}
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
  ZylExtractableArray getChangedExtractableArray() const override { return _objects; }

 private:
  ZylExtractableArray _objects;
};

/// Objects have been taken out of all that refers to them.
class ZYL_EXPORT ZylRemoveFromAllChange final : public ZylChange {
  ZYL_CHANGE(ZylRemoveFromAllChange, ZylChange)
 public:
  explicit ZylRemoveFromAllChange(const ZylExtractableArray& objects) : _objects(objects) {}
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
