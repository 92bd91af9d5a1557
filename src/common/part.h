// Parts that an object makes of the global allocator, and deletes plainly.

#ifndef ZYL_SRC_COMMON_PART_H
#define ZYL_SRC_COMMON_PART_H

#include <new>
#include <utility>

#include "vorlane/env/memory.h"

namespace zyl::detail {

/// A new object that plain delete takes back. Raises `ZylMemoryException`.
template <class T, class... Args>
[[nodiscard]] T* makePart(Args&&... args) {
  void* block = allocateGlobal(sizeof(T));
  try {
    return ::new (block) T(std::forward<Args>(args)...);
  } catch (...) {
    releaseGlobal(block);
    throw;
  }
}

template <class T>
void destroyPart(T*& part) {
  delete part;
  part = nullptr;
}

}  // namespace zyl::detail

#endif
