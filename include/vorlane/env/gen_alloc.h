// The abstract allocator, its handle, and the two allocators of the library.

#ifndef ZYL_ENV_GEN_ALLOC_H
#define ZYL_ENV_GEN_ALLOC_H

#include <cstddef>
#include <new>

#include "vorlane/env/exception.h"
#include "vorlane/env/rtti.h"

class ZylAllocationStack;
class ZylEnv;
class ZylEnvI;
class ZylSymbolTable;

/// An allocator with sized release.
///
/// Blocks carry no header: whoever frees a block tells the size that it was allocated with.
class ZYL_EXPORT ZylGenAlloc : public ZylRtti {
  ZYL_TYPE_FIRST(ZylGenAlloc, ZylRtti)
 public:
  /// Returns `size` bytes; null for 0. Raises `ZylMemoryException`.
  virtual void* alloc(unsigned long size) const = 0;
  /// Gives a block of `size` bytes back; null or 0 does nothing.
  virtual void free(void* block, unsigned long size) const = 0;
  /// Lets a backtracking allocator note the word before it changes.
  virtual void saveValue(void** word) const = 0;
  virtual void saveValue(long* word) const = 0;
  virtual void saveValue(double* word) const = 0;
  /// Returns the allocator's own copy of `text`, one for equal texts. Null for null.
  virtual const char* intern(const char* text) const = 0;
};

/// An environment seen as an allocator.
class ZYL_EXPORT ZylVorlaneAlloc final : public ZylGenAlloc {
  ZYL_TYPE_ONLY(ZylVorlaneAlloc, ZylGenAlloc)
 public:
  explicit ZylVorlaneAlloc(ZylEnvI* env) : _env(env) {}
  void* alloc(unsigned long size) const override;
  void free(void* block, unsigned long size) const override;
  void saveValue(void** word) const override;
  void saveValue(long* word) const override;
  void saveValue(double* word) const override;
  const char* intern(const char* text) const override;

  ZylEnvI* getEnv() const noexcept { return _env; }

 private:
  ZylEnvI* _env;
};

/// An allocation stack seen as an allocator; texts are interned in the symbol table given.
class ZYL_EXPORT ZylStackGenAlloc final : public ZylGenAlloc {
  ZYL_TYPE_ONLY(ZylStackGenAlloc, ZylGenAlloc)
 public:
  /// Neither argument is owned.
  ZylStackGenAlloc(ZylAllocationStack* stack, ZylSymbolTable* symbols)
      : _stack(stack), _symbols(symbols) {}
  void* alloc(unsigned long size) const override;
  void free(void* block, unsigned long size) const override;
  void saveValue(void** word) const override;
  void saveValue(long* word) const override;
  void saveValue(double* word) const override;
  const char* intern(const char* text) const override;

 private:
  ZylAllocationStack* _stack;
  ZylSymbolTable* _symbols;
};

/// Handle of an allocator; stands in where a signature wants one.
class ZYL_EXPORT ZylMemoryManager {
 public:
  ZylMemoryManager() = default;
  explicit ZylMemoryManager(ZylGenAlloc* impl) : _impl(impl) {}
  ZylMemoryManager(const ZylMemoryManager&) = default;
  ZylMemoryManager& operator=(const ZylMemoryManager&) = default;
  virtual ~ZylMemoryManager();

  ZylGenAlloc* getImpl() const noexcept { return _impl; }

 protected:
  ZylGenAlloc* _impl = nullptr;
};

/// Returns the environment behind the manager, null if there is none.
ZYL_EXPORT ZylEnvI* ZylGetEnv(const ZylMemoryManager& manager) noexcept;
ZYL_EXPORT ZylEnvI* ZylGetEnv(const ZylGenAlloc* manager) noexcept;

namespace zyl::detail {
// What a handle stands for; raises `ZylEmptyHandleException` for an empty one.
inline ZylGenAlloc* ownerOf(const ZylMemoryManager& manager) {
  if (ZYL_UNLIKELY(manager.getImpl() == nullptr)) ZylRaiseEmptyHandle();
  return manager.getImpl();
}
}  // namespace zyl::detail

/// Placement in an allocator. Without it, `new (manager) T` would fall to the standard placement
/// form and build the object on top of the manager.
inline void* operator new(std::size_t size, ZylGenAlloc* manager) { return manager->alloc(size); }
/// A constructor that raised: the size is unknown here, so the block waits for its pool's end.
inline void operator delete(void*, ZylGenAlloc*) noexcept {}

#endif
