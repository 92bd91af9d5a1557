// The base of all that an algorithm can extract: variables, expressions, constraints, objectives,
// models.

#ifndef ZYL_MODEL_EXTRACTABLE_H
#define ZYL_MODEL_EXTRACTABLE_H

#include <iosfwd>

#include "vorlane/env/object.h"

class ZylAlgorithm;
class ZylAlgorithmI;
class ZylChange;
class ZylConstraint;
class ZylExtractableVisitor;
class ZylIntExprArg;
class ZylModel;
class ZylModelI;
class ZylNumExprArg;
class ZylNumVar;
class ZylObjective;
class ZylParameterExtractableLinkI;

namespace zyl::detail {
[[noreturn]] ZYL_EXPORT void raiseExtractFailure();
[[noreturn]] ZYL_EXPORT void raiseRemoveFailure();
}  // namespace zyl::detail

// What every class that an engine may extract declares: its type, its pool, and its engine hooks,
// static function pointers that an engine layer fills in, process-wide, with the virtual operations
// that call them with the object itself. Null hooks raise.
#define ZYL_EXTRACTABLE(Class, Base)                                                      \
  ZYL_TYPE(Class, Base)                                                                   \
 public:                                                                                  \
  static void* (*_extractCP)(ZylAlgorithm algorithm, const Class* object);                \
  static void (*_unextractCP)(ZylAlgorithm algorithm, const Class* object, void* handle); \
  static void (*_modifyCP)(ZylAlgorithm algorithm, const Class* object, void* handle);    \
  void* extractToCP(ZylAlgorithm algorithm) const override;                               \
  void unextractFromCP(ZylAlgorithm algorithm, void* handle) const override;              \
  void modifyCP(ZylAlgorithm algorithm, void* handle) const override;                     \
                                                                                          \
 private:

// In the class's source, which includes model/algorithm_handle.h.
#define ZYL_EXTRACTABLE_DEF(Class, Base)                                    \
  ZYL_TYPE_DEF(Class, Base)                                                 \
  void* (*Class::_extractCP)(ZylAlgorithm, const Class*) = nullptr;         \
  void (*Class::_unextractCP)(ZylAlgorithm, const Class*, void*) = nullptr; \
  void (*Class::_modifyCP)(ZylAlgorithm, const Class*, void*) = nullptr;    \
  void* Class::extractToCP(ZylAlgorithm algorithm) const {                  \
    if (_extractCP == nullptr) zyl::detail::raiseExtractFailure();          \
    return _extractCP(algorithm, this);                                     \
  }                                                                         \
  void Class::unextractFromCP(ZylAlgorithm algorithm, void* handle) const { \
    if (_unextractCP == nullptr) zyl::detail::raiseRemoveFailure();         \
    _unextractCP(algorithm, this, handle);                                  \
  }                                                                         \
  void Class::modifyCP(ZylAlgorithm algorithm, void* handle) const {        \
    if (_modifyCP == nullptr) zyl::detail::raiseRemoveFailure();            \
    _modifyCP(algorithm, this, handle);                                     \
  }

/// An object of a model: it can tell what it contains, be visited, copied, shown and removed while
/// others still refer to it.
///
/// Owned by its environment, which numbers it; it lives until it is ended or its environment is.
/// Three words beside the type table: environment, id, and a pointer for name, user object and
/// properties, null until used. Not synchronised.
class ZYL_EXPORT ZylExtractableI : public ZylRttiEnvObjectI {
  ZYL_TYPE_ONLY(ZylExtractableI, ZylRttiEnvObjectI)
  ZYL_EXTENSION_OPERATIONS
 public:
  /// Takes an id from `env`; copies the name if there is one. Raises `ZylMemoryException`.
  ZylExtractableI(ZylEnvI* env, const char* name);
  ~ZylExtractableI() override;

  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  static void operator delete(void* block, ZylEnvI* env) noexcept {
    zyl::detail::freeInEnv(env, block, sizeof(ZylExtractableI));
  }
  static void operator delete(void* block, const ZylEnv& env) noexcept {
    zyl::detail::freeInEnv(env.getImpl(), block, sizeof(ZylExtractableI));
  }
  /// Deleting an object that nobody ended first takes it out of all that refers to it.
  static void operator delete(ZylExtractableI* object, std::destroying_delete_t,
                              std::size_t size) noexcept(false);

  /// Returns a copy in `env`, its parts through `env->getClone`. This base raises
  /// `ZylExtractable::NoCloneMechanismException`.
  virtual ZylExtractableI* makeClone(ZylEnvI* env) const;
  /// Calls the engine hook of the class and returns the engine's handle.
  virtual void* extractToCP(ZylAlgorithm algorithm) const = 0;
  virtual void unextractFromCP(ZylAlgorithm algorithm, void* handle) const = 0;
  virtual void modifyCP(ZylAlgorithm algorithm, void* handle) const = 0;
  /// Called while others are removed: an object that refers to one of them goes too. Containers
  /// drop the element instead. `removed` is null except on the paths of a deleter.
  virtual void atRemove(ZylExtractableI* removed, void* extra);
  /// Shows the object and what it refers to: begin, children in order, end.
  virtual void visitSubExtractables(ZylExtractableVisitor* visitor) = 0;
  /// Whether owners of the object are counted: then `end` takes one away, and the last one that
  /// goes takes the object along. What is not counted goes at its first `end`.
  virtual bool isRefCountedExpr() const;
  /// Removes the object from all that refers to it, and deletes it. Nothing on a finished object.
  virtual void end();
  /// Adds what the object stands for to `model`, through the environment's expander, which says
  /// what the two texts mean. The library's own expander raises `ZylWrongUsage`.
  virtual void expandTo(ZylModelI* model, const char* first, const char* second) const;
  virtual void display(std::ostream& stream) const;
  /// For engines to call when the object joins or leaves what they hold. Constraints and objectives
  /// call the hooks of their class; this base does nothing.
  virtual void whenAddedToCP(ZylAlgorithm algorithm, void* handle) const;
  virtual void whenRemovedFromCP(ZylAlgorithm algorithm, void* handle) const;
  /// The parameter at the other end of `link` has changed, or goes. This base does nothing.
  virtual void changeParameter(const ZylParameterExtractableLinkI* link);
  virtual void endParameter(const ZylParameterExtractableLinkI* link);
  /// Whether this object itself, apart from its children, depends on a loop index.
  virtual bool hasNongroundType() const;
  /// Whether nothing below this object depends on a loop index.
  virtual bool isGround() const;
  /// Whether a decision variable occurs below this object. The first answer is kept.
  virtual bool isDecisionExpr() const;
  /// Whether this object itself stands for many terms. The library's own never do; an environment
  /// knows whether it was asked for an object of a class that declares its type and overrides this.
  virtual bool isAggregate() const;

  /// Sends a change of this object to whom it may concern.
  void notify(const ZylChange& change) const { _env->change(this, change); }
  /// Takes the object out of all that refers to it, without deleting it.
  void removeFromAll();
  /// Index in the environment's id table; -1 once the object is finished.
  long getId() const noexcept { return _id; }

 private:
  friend class ZylEnvI;
  ZylGenAlloc* extensionAlloc() const noexcept { return _env->getGenAlloc(); }
  long _id;
  ZylExtension* _extension;
};

/// Handle of an extractable: one pointer, shared by copying, owning nothing. Every operation raises
/// `ZylEmptyHandleException` "Using empty Handle" on an empty handle.
class ZYL_EXPORT ZylExtractable {
 public:
  using ImplClass = ZylExtractableI;

  /// The class of the object cannot be copied.
  class ZYL_EXPORT NoCloneMechanismException : public ZylException {
   public:
    explicit NoCloneMechanismException(const ZylExtractableI* extractable);
    void print(std::ostream& stream) const override;
    const ZylExtractableI* getExtractable() const noexcept { return _extractable; }

   private:
    const ZylExtractableI* _extractable;
  };

  ZylExtractable() = default;
  explicit ZylExtractable(ZylExtractableI* impl) noexcept : _impl(impl) {}
  ZylExtractableI* getImpl() const noexcept { return _impl; }

  bool isNumExpr() const;
  bool isIntExpr() const;
  bool isConstraint() const;
  bool isObjective() const;
  bool isModel() const;
  bool isVariable() const;
  /// The same object under its own kind; an empty handle if it is of another.
  ZylNumExprArg asNumExpr() const;
  ZylIntExprArg asIntExpr() const;
  ZylConstraint asConstraint() const;
  ZylObjective asObjective() const;
  ZylModel asModel() const;
  ZylNumVar asVariable() const;

  ZylEnv getEnv() const;
  long getId() const;
  ZYL_PROPERTY_OPERATIONS

  /// Ends the object (for an expression: drops a reference) and empties this handle. If that
  /// raises, the handle keeps an object that lives, and no reference.
  void end();
  void removeFromAll() const;
  void display(std::ostream& stream) const;

 protected:
  ZylExtractableI* checked() const {
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle("Using empty Handle");
    return _impl;
  }
  ZylExtractableI* _impl = nullptr;
};

/// Writes the object's text form.
ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylExtractable& extractable);

// What every handle class of the family declares: empty construction, construction from its
// implementation, and the typed read of it. The implementation class must be complete.
#define ZYL_HANDLE(Class, Base, Impl)                                  \
 public:                                                               \
  using ImplClass = Impl;                                              \
  Class() = default;                                                   \
  explicit Class(Impl* impl) noexcept : Base(impl) {}                  \
  Impl* getImpl() const noexcept { return static_cast<Impl*>(_impl); } \
                                                                       \
 protected:                                                            \
  /* Raises the class's own text on an empty handle. */                \
  Impl* checked(const char* text) const {                              \
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle(text);     \
    return static_cast<Impl*>(_impl);                                  \
  }                                                                    \
                                                                       \
 private:

inline bool ZylEnvI::isMarked(const ZylExtractableI* object) const noexcept {
  return object->getId() == -1 || _idManager->isMarked(object->getId());
}

#endif
