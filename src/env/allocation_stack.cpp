// Parts in a chain, of which those behind the current one wait for their next use.

#include "vorlane/env/allocation_stack.h"

#include <algorithm>
#include <limits>

#include "vorlane/env/memory.h"

long ZylAllocationStackDefaultSize = 1000;

ZylAllocationStack::NullIndex::NullIndex()
    : ZylException("ZylAllocationStack: Internal error: non null index for empty stack.") {}

ZylAllocationStack::ZylAllocationStack()
    : _current(nullptr), _first(nullptr), _top(nullptr), _index(0),
      _memory(static_cast<long>(sizeof(ZylAllocationStack))), _freed(0) {
  _first = makePart(1, 0);
  _current = _first;
  _top = _current->_data;
}

ZylAllocationStack::~ZylAllocationStack() { deleteFrom(_first); }

void ZylAllocationStack::free(void*, unsigned long size) noexcept {
  _freed += static_cast<long>(size);
}

void ZylAllocationStack::reset() noexcept {
  _current = _first;
  _top = _first->_data;
  _index = 0;
  _freed = 0;
}

ZylAllocationStack::Part* ZylAllocationStack::makePart(long words, long start) {
  constexpr long MostWords = std::numeric_limits<long>::max() / long{sizeof(void*)};
  if (words > MostWords) ZylRaiseMemory();
  const long size = std::max(ZylAllocationStackDefaultSize, words);
  const std::size_t bytes = static_cast<std::size_t>(size) * sizeof(void*);
  auto* data = static_cast<void**>(zyl::detail::allocateGlobal(bytes));
  Part* part = nullptr;
  try {
    part = static_cast<Part*>(zyl::detail::allocateGlobal(sizeof(Part)));
  } catch (const ZylMemoryException&) {
    zyl::detail::releaseGlobal(data);
    throw;
  }
  *part = Part{data, size, start, nullptr, nullptr};
  _memory += static_cast<long>(bytes + sizeof(Part));
  return part;
}

void ZylAllocationStack::deleteFrom(Part* part) noexcept {
  while (part != nullptr) {
    Part* next = part->_next;
    _memory -= part->_size * static_cast<long>(sizeof(void*)) + static_cast<long>(sizeof(Part));
    zyl::detail::releaseGlobal(part->_data);
    zyl::detail::releaseGlobal(part);
    part = next;
  }
}

void ZylAllocationStack::safeGoToNextPart(long words) {
  if (_index == _current->_start) {
    if (_current->_prev == nullptr) {
      if (_index != 0) throw NullIndex();
      // The new part is made first, so that a failure leaves the stack as it was.
      Part* part = makePart(words, 0);
      deleteFrom(_first);
      _first = part;
      _current = part;
      _top = part->_data;
      return;
    }
    // An empty part that is too small: it and what follows make room for a larger one.
    Part* part = makePart(words, _index);
    Part* before = _current->_prev;
    deleteFrom(_current);
    before->_next = part;
    part->_prev = before;
    _current = part;
    _top = part->_data;
    return;
  }
  Part* next = _current->_next;
  if (next == nullptr || next->_size < words) {
    Part* part = makePart(words, _index);
    deleteFrom(next);
    _current->_next = part;
    part->_prev = _current;
    next = part;
  }
  next->_start = _index;
  _current = next;
  _top = next->_data;
}

void* operator new(std::size_t size, ZylAllocationStack* stack) {
  return stack != nullptr ? stack->allocate(size) : zyl::detail::allocateGlobal(size);
}

void operator delete(void* block, ZylAllocationStack* stack) noexcept {
  if (stack == nullptr) zyl::detail::releaseGlobal(block);
}
