// An arena for short-lived work, reset as a whole.

#ifndef ZYL_ENV_ALLOCATION_STACK_H
#define ZYL_ENV_ALLOCATION_STACK_H

#include <cstddef>

#include "vorlane/env/exception.h"

/// Size in 8-byte words of a part of a stack that is built from now on.
extern ZYL_EXPORT long ZylAllocationStackDefaultSize;

/// Stacked blocks in parts that are kept for the next use. One thread only.
class ZYL_EXPORT ZylAllocationStack {
 public:
  /// The stack's own bookkeeping contradicts itself.
  class ZYL_EXPORT NullIndex : public ZylException {
   public:
    NullIndex();
  };

  /// Makes the first part. Raises `ZylMemoryException`.
  ZylAllocationStack();
  ~ZylAllocationStack();
  ZylAllocationStack(const ZylAllocationStack&) = delete;
  ZylAllocationStack& operator=(const ZylAllocationStack&) = delete;

  /// Returns `size` bytes on a 16-byte boundary, good until `reset`; the present top for 0. Raises
  /// `ZylMemoryException`, which leaves the stack as it was.
  [[nodiscard]] void* allocate(unsigned long size) {
    if (size == 0) return _top;
    const long words = static_cast<long>(((size - 1) >> 3) | 1) + 1;
    if (ZYL_UNLIKELY(words >= _current->_start + _current->_size - _index)) safeGoToNextPart(words);
    void** block = _top;
    _top += words;
    _index += words;
    return block;
  }
  /// Only counts: nothing is given back before `reset`.
  void free(void* block, unsigned long size) noexcept;
  /// Forgets all blocks; the parts stay for the next use.
  void reset() noexcept;

  /// Words used since the last reset, over all parts.
  long getIndex() const noexcept { return _index; }
  /// Bytes held, this object included.
  long getMemoryUsage() const noexcept { return _memory; }
  /// Bytes that `free` was told of since the last reset.
  long getFreed() const noexcept { return _freed; }

 private:
  struct Part {
    void** _data;
    long _size;   // words
    long _start;  // the stack's index at this part's first word
    Part* _prev;
    Part* _next;
  };

  void safeGoToNextPart(long words);
  ZYL_LOCAL Part* makePart(long words, long start);
  ZYL_LOCAL void deleteFrom(Part* part) noexcept;

  Part* _current;
  Part* _first;
  void** _top;
  long _index;
  long _memory;
  long _freed;
};

/// Storage from the stack, or from the global allocator for a null stack.
ZYL_EXPORT void* operator new(std::size_t size, ZylAllocationStack* stack);
/// Called when a constructor raised.
ZYL_EXPORT void operator delete(void* block, ZylAllocationStack* stack) noexcept;

#endif
