// Size-class pools: many small objects, all of one life.
//
// A `ZylMemory` serves small requests from free lists over big blocks, one list for each size
// class, and larger ones from the global allocator through a linked list. Blocks go back to the
// global allocator only when the pools are destroyed. Cost: 8 bytes for each block of 4000; no
// header on the objects. Pools above a megabyte take their blocks from slabs. Not synchronised.

#ifndef ZYL_ENV_MEMORY_H
#define ZYL_ENV_MEMORY_H

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "vorlane/env/exception.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZYL_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZYL_ASAN 1
#endif
#endif
#ifdef ZYL_ASAN
#include <sanitizer/asan_interface.h>
#define ZYL_POISON(p, n) ASAN_POISON_MEMORY_REGION(p, n)
#define ZYL_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION(p, n)
#else
#define ZYL_POISON(p, n) static_cast<void>(0)
#define ZYL_UNPOISON(p, n) static_cast<void>(0)
#endif

class ZylMemory;

namespace zyl::detail {
/// Tests make the global allocator fail through this: when set, it is asked before each request of
/// the library to the global allocator, and true makes that request fail. Null in production.
extern ZYL_EXPORT bool (*failAllocation)();
/// Storage from the global allocator; raises `ZylMemoryException`.
[[nodiscard]] ZYL_EXPORT void* allocateGlobal(std::size_t size);
ZYL_EXPORT void releaseGlobal(void* block) noexcept;

/// Where large pools take their blocks from: slabs of some megabytes from the global allocator, on
/// such borders that an address tells whose slab it lies in. In a large model, whose objects lie
/// scattered over more memory than the caches hold, that answers "is this object of my
/// environment?" without a look at the object.
///
/// Small pools are left alone, so that an environment of a few objects stays one of a few
/// kilobytes.
class ZYL_EXPORT SlabSource {
 public:
  SlabSource() = default;
  ~SlabSource();
  SlabSource(const SlabSource&) = delete;
  SlabSource& operator=(const SlabSource&) = delete;

  /// Returns `bytes` that live as long as this source; null if a block of its own does better, or
  /// if there is no memory for a slab.
  [[nodiscard]] void* take(std::size_t bytes) noexcept {
    if (ZYL_LIKELY(bytes + CacheLine <= static_cast<std::size_t>(_top - _bottom)))
      return cut(bytes);
    return takeSlow(bytes);
  }
  /// True only if the address lies in a slab of this source; false says nothing. While another
  /// thread takes, which is for one at a time, any may ask.
  bool owns(const void* address) const noexcept {
    const std::uintptr_t window = reinterpret_cast<std::uintptr_t>(address) >> WindowBits;
    const std::uintptr_t* windows = _windows.load(std::memory_order_acquire);
    return __atomic_load_n(&windows[window % Windows], __ATOMIC_RELAXED) == window;
  }

 private:
  // Slabs consist of whole windows, each window of the address space having one place in the table.
  // Of windows that share a place the last one counts: beyond 2 gigabytes some slabs go unknown.
  static constexpr int WindowBits = 21;
  static constexpr std::size_t Windows = 1024;
  static constexpr std::size_t CacheLine = 64;
  static const std::uintptr_t NoWindows[Windows];

  struct Slab {
    Slab* next;
    std::size_t size;
  };
  void* cut(std::size_t bytes) noexcept;
  void* takeSlow(std::size_t bytes) noexcept;
  ZYL_LOCAL bool addSlab() noexcept;
  ZYL_LOCAL void back() noexcept;

  std::atomic<const std::uintptr_t*> _windows = NoWindows;
  Slab* _slabs = nullptr;
  // What is left of the newest slab.
  char* _bottom = nullptr;
  char* _top = nullptr;
  char* _backed = nullptr;  // from here on the slab has storage behind its addresses
  std::size_t _asked = 0;   // bytes asked for so far
};
}  // namespace zyl::detail

/// Blocks that come one by one from the global allocator, on a doubly linked list.
class ZYL_EXPORT ZylAllocationList {
 public:
  /// Stands in front of the client's bytes, which begin on a 16-byte boundary.
  struct alignas(16) Cell {
    long size;
    Cell* prev;
    Cell* next;
    ZylAllocationList* list;  // a block may be given back to another list than it came from
  };

  /// Cells of varying size.
  ZylAllocationList() : ZylAllocationList(-1) {}
  /// Cells of `size` bytes each.
  explicit ZylAllocationList(long size) : _head(nullptr), _memory(0), _size(size) {}
  ZylAllocationList(const ZylAllocationList&) = delete;
  ZylAllocationList& operator=(const ZylAllocationList&) = delete;

  /// Raises `ZylMemoryException`.
  [[nodiscard]] void* alloc(long size);
  void free(Cell* cell) noexcept;
  void free(void* block) noexcept;
  /// Frees every cell.
  void end() noexcept;
  /// Whether the block came from here. O(number of blocks).
  bool holds(const void* block) const noexcept;
  /// Bytes held by clients.
  long getMemoryUsage() const noexcept { return _memory; }

 private:
  Cell* _head;
  long _memory;
  long _size;
};

/// A pool of cells of one size.
class ZYL_EXPORT ZylFixedSizeAllocatorI {
 public:
  explicit ZylFixedSizeAllocatorI(long size)
      : _useIt(1), _size(size), _free(nullptr), _blocks(nullptr), _inUse(0), _total(0),
        _list(nullptr), _kept(nullptr), _mixed(false) {}
  ~ZylFixedSizeAllocatorI();
  ZylFixedSizeAllocatorI(const ZylFixedSizeAllocatorI&) = delete;
  ZylFixedSizeAllocatorI& operator=(const ZylFixedSizeAllocatorI&) = delete;

  /// Returns a cell. Raises `ZylMemoryException`; a failure changes nothing. `memory`, which may be
  /// null, is given the rest of a block that is too short for a cell; it may provide the block
  /// itself, and must then outlive this pool.
  [[nodiscard]] void* alloc(ZylMemory* memory) {
    if (ZYL_LIKELY(_free != nullptr)) {
      void* cell = _free;
      ZYL_UNPOISON(cell, static_cast<std::size_t>(_size));
      _free = *static_cast<void**>(cell);
      _inUse += _size;
      return cell;
    }
    return allocSlow(memory);
  }
  void free(void* cell) noexcept {
    if (ZYL_UNLIKELY(_useIt == 0)) {
      freeToList(cell);
      return;
    }
    *static_cast<void**>(cell) = _free;
    _free = cell;
    _inUse -= _size;
    ZYL_POISON(static_cast<char*>(cell), static_cast<std::size_t>(_size));
  }

  /// Refills the empty free list and returns one more cell; counts nothing as in use.
  [[nodiscard]] void* allocateBlock(ZylMemory* memory);
  /// With 0, each request becomes a block of the global allocator; with 1, the free cells of the
  /// pool serve again. Cells may be given back in either mode, at a cost of O(number of blocks) if
  /// the pool had handed out cells when it was switched off.
  void setUseIt(long useIt);
  /// Bytes handed out and not given back.
  long getMemoryUsage() const noexcept { return _useIt != 0 ? _inUse : listUsage(); }
  /// Bytes taken from the global allocator so far.
  long getTotalMemoryUsage() const noexcept { return _total; }
  long getSize() const noexcept { return _size; }

 private:
  friend class ZylMemory;
  void* allocSlow(ZylMemory* memory);
  void freeToList(void* cell) noexcept;
  long listUsage() const noexcept { return _list != nullptr ? _list->getMemoryUsage() : 0; }
  // Adds a cell that is not in use, such as one cut from another class's block; counts nothing.
  ZYL_LOCAL void adopt(void* cell) noexcept;

  long _useIt;
  long _size;
  void* _free;  // the cell's first word is the link; poisoned while free
  void* _blocks;
  long _inUse;
  long _total;
  ZylAllocationList* _list;
  void* _kept;  // the free list while requests do not go to it, so that one test serves `alloc`
  bool _mixed;  // what comes back while `_useIt` is 0 may be a cell of the pool
};

/// The table of size classes: 8 to 64 bytes by 8, then doubling to 4096; larger goes to a list.
class ZYL_EXPORT ZylMemory {
 public:
  static constexpr long MaxClasses = 60;

  /// With `useIt` 0 each object is a block of its own, so that memory tools see real leaks. Reads
  /// `ZYL_MEMORY_MANAGER_LIMIT`, the smallest size in bytes that goes to the list; a value that
  /// makes no sense sends every request there.
  explicit ZylMemory(long useIt);
  ~ZylMemory();
  ZylMemory(const ZylMemory&) = delete;
  ZylMemory& operator=(const ZylMemory&) = delete;

  /// Returns `size` bytes, null for 0. Raises `ZylMemoryException`, also for a negative size; a
  /// failure changes nothing.
  [[nodiscard]] void* alloc(long size) {
    if (ZYL_UNLIKELY(isLarge(size))) return _largeList->alloc(size);
    if (ZYL_UNLIKELY(size == 0)) return nullptr;
    return _classes[ClassOf(size)]->alloc(this);
  }
  /// Gives back a block with the size that it was asked for with.
  void free(void* block, long size) noexcept {
    if (ZYL_UNLIKELY(isLarge(size))) {
      _largeList->free(block);
      return;
    }
    if (ZYL_UNLIKELY(size == 0)) return;
    _classes[ClassOf(size)]->free(block);
  }

  /// Returns the index of the class that serves `size`. Raises `ZylMemoryException` if none does.
  long getIndex(long size) const;
  void setUseIt(long useIt) const;
  /// Bytes handed out and not given back, rounded up to class sizes.
  long getMemoryUsage() const noexcept;
  /// Bytes taken from the global allocator.
  long getTotalMemoryUsage() const noexcept;
  /// For allocators that can return to an earlier state, which pools cannot: does nothing.
  void snapshot() {}
  /// True only if the object was allocated here; false says nothing. Looks at no object.
  bool owns(const void* object) const noexcept { return _slabs.owns(object); }

  long getLimit() const noexcept { return _limit; }
  long getClassCount() const noexcept { return _classCount; }
  ZylFixedSizeAllocatorI* getClass(long index) const noexcept { return _classes[index]; }

 private:
  friend class ZylFixedSizeAllocatorI;
  // Negative sizes, which the list refuses, are the largest of all.
  bool isLarge(long size) const noexcept {
    return static_cast<unsigned long>(size) >= _pooledSizes;
  }
  // No range test: sizes below the limit always have a class.
  static long ClassOf(long size) noexcept {
    const unsigned long s = static_cast<unsigned long>(size) - 1;
    return (s >> 3) < 8 ? static_cast<long>(s >> 3) : 8 + static_cast<long>(std::bit_width(s >> 7));
  }

  ZylFixedSizeAllocatorI* _classes[MaxClasses];
  ZylAllocationList* _largeList;
  long _limit;
  long _classCount;
  zyl::detail::SlabSource _slabs;
  unsigned long _pooledSizes;  // the limit, 0 for one that makes no sense
};

#endif
