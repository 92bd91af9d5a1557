// The object bases: who owns an object is stated by its base class.
//
// Two ladders, one for objects that know their environment and one for objects that know only a
// memory manager. Objects are created with the placement form `new (env) T(...)`, and deleted with
// plain `delete`: a destroying operator reads the owner from the live object, runs the virtual
// destructor, and gives back a block of the size of the real class. It lets pass what the
// destructor raises.

#ifndef ZYL_ENV_OBJECT_H
#define ZYL_ENV_OBJECT_H

#include <cstddef>
#include <new>
#include <type_traits>

#include "vorlane/env/environment.h"
#include "vorlane/env/extension.h"
#include "vorlane/env/rtti.h"

namespace zyl::detail {

// Whether objects of the class may be aggregates: it, or what it derives from, overrides
// `isAggregate`. One that does so in private counts as well.
template <class Class, class Extractable = ZylExtractableI>
consteval bool mayBeAggregate() {
  if constexpr (!std::is_base_of_v<Extractable, Class>) return false;
  else return !requires {
      requires std::is_same_v<decltype(&Class::isAggregate), bool (Extractable::*)() const>;
    };
}

// Storage for an object of a class whose type is declared. A subclass without a declaration
// of its own comes here too; a different size gives it away.
template <class Class, class Owner>
void* allocObject(Owner* owner, std::size_t size) {
  if constexpr (std::is_base_of_v<ZylExtractableI, Class>) {
    if (mayBeAggregate<Class>() || size != sizeof(Class)) owner->noteAggregates();
  }
  return owner->alloc(size);
}

}  // namespace zyl::detail

// What a class whose objects stand in pools adds to its type identity: placement, and the release
// of the block of an object whose constructor raised. A live object tells its size when it is
// deleted; here there is none yet, so the class states the size. Without this macro the base's
// release serves, with the base's size: sound, but the block is counted as a smaller one.
#define ZYL_TYPE_POOLED_(Class, Base, Owner, Handle, Release)              \
 public:                                                                   \
  static void* operator new(std::size_t size, Owner* owner) {              \
    return zyl::detail::allocObject<Class>(owner, size);                   \
  }                                                                        \
  static void* operator new(std::size_t size, const Handle& owner) {       \
    return operator new(size, zyl::detail::ownerOf(owner));                \
  }                                                                        \
  using Base::operator delete;                                             \
  static void operator delete(void* block, Owner* owner) noexcept {        \
    zyl::detail::Release(owner, block, sizeof(Class));                     \
  }                                                                        \
  static void operator delete(void* block, const Handle& owner) noexcept { \
    zyl::detail::Release(owner.getImpl(), block, sizeof(Class));           \
  }                                                                        \
                                                                           \
 private:

// Type identity and placement of a class whose objects belong to an environment.
#define ZYL_TYPE(Class, Base) \
  ZYL_TYPE_ONLY(Class, Base)  \
  ZYL_TYPE_POOLED_(Class, Base, ZylEnvI, ZylEnv, freeInEnv)

// The same where objects belong to a memory manager.
#define ZYL_TYPE_MANAGED(Class, Base) \
  ZYL_TYPE_ONLY(Class, Base)          \
  ZYL_TYPE_POOLED_(Class, Base, ZylGenAlloc, ZylMemoryManager, freeInManager)

// Placement alone, for a class that has no type identity.
#define ZYL_POOLED(Class, Base) ZYL_TYPE_POOLED_(Class, Base, ZylEnvI, ZylEnv, freeInEnv)

namespace zyl::detail {
inline void freeInManager(ZylGenAlloc* manager, void* block, std::size_t size) noexcept {
  if (manager != nullptr) manager->free(block, size);
}

// Gives a block back when the destructor is through, whether it returned or raised.
struct ReleaseToEnv {
  ZylEnvI* env;
  void* block;
  std::size_t size;
  ~ReleaseToEnv() { freeInEnv(env, block, size); }
};
struct ReleaseToManager {
  ZylGenAlloc* manager;
  void* block;
  std::size_t size;
  ~ReleaseToManager() { freeInManager(manager, block, size); }
};
}  // namespace zyl::detail

/// Knows its environment and is released to it; outside the type family.
class ZYL_EXPORT ZylEnvObjectI {
 public:
  explicit ZylEnvObjectI(ZylEnvI* env) noexcept : _env(env) {}
  virtual ~ZylEnvObjectI() noexcept(false);
  ZylEnvObjectI(const ZylEnvObjectI&) = delete;
  ZylEnvObjectI& operator=(const ZylEnvObjectI&) = delete;

  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  // The size is unknown here: the block of a constructor that raised waits for its pool's end.
  static void operator delete(void*, ZylEnvI*) noexcept {}
  static void operator delete(void*, const ZylEnv&) noexcept {}
  static void operator delete(ZylEnvObjectI* object, std::destroying_delete_t,
                              std::size_t size) noexcept(false);

  ZylEnvI* getEnv() const noexcept { return _env; }
  ZylMemoryManager getMemoryManager() const { return _env->getMemoryManager(); }

 protected:
  ZylEnvI* _env;
};

/// Knows its environment, and what it is.
class ZYL_EXPORT ZylRttiEnvObjectI : public ZylRtti {
  ZYL_TYPE_FIRST(ZylRttiEnvObjectI, ZylRtti)
 public:
  explicit ZylRttiEnvObjectI(ZylEnvI* env) noexcept : _env(env) {}
  ZylRttiEnvObjectI(const ZylRttiEnvObjectI&) = delete;
  ZylRttiEnvObjectI& operator=(const ZylRttiEnvObjectI&) = delete;

  /// Whether a language front end counts the life of this object.
  virtual bool isKvlRefCounted() const;
  /// Returns a copy for a language front end. This base raises `ZylWrongUsage`.
  virtual ZylRttiEnvObjectI* makeKvlClone(ZylEnvI* env) const;

  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  static void operator delete(void* block, ZylEnvI* env) noexcept {
    zyl::detail::freeInEnv(env, block, sizeof(ZylRttiEnvObjectI));
  }
  static void operator delete(void* block, const ZylEnv& env) noexcept {
    zyl::detail::freeInEnv(env.getImpl(), block, sizeof(ZylRttiEnvObjectI));
  }
  static void operator delete(ZylRttiEnvObjectI* object, std::destroying_delete_t,
                              std::size_t size) noexcept(false);

  ZylEnvI* getEnv() const noexcept { return _env; }
  ZylMemoryManager getMemoryManager() const { return _env->getMemoryManager(); }

 protected:
  ZylEnvI* _env;
};

/// Adds a name, a user object and properties, which cost one pointer until used.
class ZYL_EXPORT ZylExtensibleRttiEnvObjectI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylExtensibleRttiEnvObjectI, ZylRttiEnvObjectI)
  ZYL_EXTENSION_OPERATIONS
 public:
  explicit ZylExtensibleRttiEnvObjectI(ZylEnvI* env) noexcept : ZylRttiEnvObjectI(env) {}
  ~ZylExtensibleRttiEnvObjectI() override;

 private:
  ZylGenAlloc* extensionAlloc() const noexcept { return _env->getGenAlloc(); }
  ZylExtension* _extension = nullptr;
};

/// Knows its memory manager and is released to it; outside the type family.
class ZYL_EXPORT ZylMemoryManagerObjectI {
 public:
  explicit ZylMemoryManagerObjectI(ZylGenAlloc* manager) noexcept : _manager(manager) {}
  virtual ~ZylMemoryManagerObjectI() noexcept(false);
  ZylMemoryManagerObjectI(const ZylMemoryManagerObjectI&) = delete;
  ZylMemoryManagerObjectI& operator=(const ZylMemoryManagerObjectI&) = delete;

  static void* operator new(std::size_t size, ZylGenAlloc* manager) { return manager->alloc(size); }
  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  static void* operator new(std::size_t size, const ZylMemoryManager& manager) {
    return zyl::detail::ownerOf(manager)->alloc(size);
  }
  static void operator delete(void*, ZylGenAlloc*) noexcept {}
  static void operator delete(void*, ZylEnvI*) noexcept {}
  static void operator delete(void*, const ZylEnv&) noexcept {}
  static void operator delete(void*, const ZylMemoryManager&) noexcept {}
  static void operator delete(ZylMemoryManagerObjectI* object, std::destroying_delete_t,
                              std::size_t size) noexcept(false);

  ZylGenAlloc* getManager() const noexcept { return _manager; }
  ZylMemoryManager getMemoryManager() const { return ZylMemoryManager(_manager); }
  /// The environment behind the manager. Raises `ZylEnv::IncompatibleMemoryManagerException`.
  ZylEnvI* getEnv() const;

 protected:
  ZylGenAlloc* _manager;
};

/// Knows its memory manager, and what it is.
class ZYL_EXPORT ZylRttiMemoryManagerObjectI : public ZylRtti {
  ZYL_TYPE_FIRST(ZylRttiMemoryManagerObjectI, ZylRtti)
 public:
  explicit ZylRttiMemoryManagerObjectI(ZylGenAlloc* manager) noexcept : _manager(manager) {}
  ZylRttiMemoryManagerObjectI(const ZylRttiMemoryManagerObjectI&) = delete;
  ZylRttiMemoryManagerObjectI& operator=(const ZylRttiMemoryManagerObjectI&) = delete;

  static void* operator new(std::size_t size, ZylGenAlloc* manager) { return manager->alloc(size); }
  static void* operator new(std::size_t size, const ZylMemoryManager& manager) {
    return zyl::detail::ownerOf(manager)->alloc(size);
  }
  static void operator delete(void* block, ZylGenAlloc* manager) noexcept {
    zyl::detail::freeInManager(manager, block, sizeof(ZylRttiMemoryManagerObjectI));
  }
  static void operator delete(void* block, const ZylMemoryManager& manager) noexcept {
    zyl::detail::freeInManager(manager.getImpl(), block, sizeof(ZylRttiMemoryManagerObjectI));
  }
  static void operator delete(ZylRttiMemoryManagerObjectI* object, std::destroying_delete_t,
                              std::size_t size) noexcept(false);

  ZylGenAlloc* getManager() const noexcept { return _manager; }
  ZylMemoryManager getMemoryManager() const { return ZylMemoryManager(_manager); }
  /// The environment behind the manager. Raises `ZylEnv::IncompatibleMemoryManagerException`.
  ZylEnvI* getEnv() const;

 protected:
  ZylGenAlloc* _manager;
};

/// Adds a name, a user object and properties.
class ZYL_EXPORT ZylExtensibleRttiMemoryManagerObjectI : public ZylRttiMemoryManagerObjectI {
  ZYL_TYPE_MANAGED(ZylExtensibleRttiMemoryManagerObjectI, ZylRttiMemoryManagerObjectI)
  ZYL_EXTENSION_OPERATIONS
 public:
  explicit ZylExtensibleRttiMemoryManagerObjectI(ZylGenAlloc* manager) noexcept
      : ZylRttiMemoryManagerObjectI(manager) {}
  ~ZylExtensibleRttiMemoryManagerObjectI() override;

 private:
  ZylGenAlloc* extensionAlloc() const noexcept { return _manager; }
  ZylExtension* _extension = nullptr;
};

/// An object that the environment deletes, with a running destructor, at its end. One that is made
/// while a local environment is installed is left to its maker.
class ZYL_EXPORT ZylDestroyableI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylDestroyableI, ZylRttiEnvObjectI)
 public:
  /// Raises `ZylMemoryException`.
  explicit ZylDestroyableI(ZylEnvI* env);
  ~ZylDestroyableI() override;
};

/// Base of what a language front end shows and counts.
class ZYL_EXPORT ZylKvlBaseObjectI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylKvlBaseObjectI, ZylRttiEnvObjectI)
 public:
  explicit ZylKvlBaseObjectI(ZylEnvI* env) noexcept : ZylRttiEnvObjectI(env) {}
  virtual bool isSymbol() const;
};

#endif
