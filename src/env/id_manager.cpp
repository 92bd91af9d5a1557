// The table of ids: live objects, and a chain of free slots through the same words.

#include "vorlane/env/id_manager.h"

#include <cstring>

namespace {
constexpr long SlotBytes = sizeof(void*);
}

ZylIdManager::ZylIdManager(ZylMemory* memory)
    : _memory(memory), _maxId(0), _capacity(InitialCapacity),
      _data(static_cast<void**>(memory->alloc(InitialCapacity * SlotBytes))), _free(_data) {
  chain(_data, 0, _capacity);
}

void ZylIdManager::end() noexcept {
  if (_data != nullptr) _memory->free(_data, _capacity * SlotBytes);
  _data = nullptr;
  _free = nullptr;
  _maxId = 0;
  _capacity = 0;
}

void ZylIdManager::freeId(long id) noexcept {
  // A last slot taken while the chain was exhausted leads to itself again through the head.
  _data[id] = static_cast<void*>(_free);
  _free = _data + id;
  if (id == _maxId - 1) _maxId = id;
}

// The last slot of the table ends the chain by leading to itself, so taking it exhausts the chain
// and the table grows at once.
long ZylIdManager::takeLast(void* contents) {
  const long id = _capacity - 1;
  growData(_capacity * 2, _capacity);
  _data[id] = contents;
  if (id >= _maxId) _maxId = id + 1;
  return id;
}

void ZylIdManager::growData(long newCapacity, long firstNew) {
  auto** data = static_cast<void**>(_memory->alloc(newCapacity * SlotBytes));
  std::memcpy(data, _data, static_cast<std::size_t>(_capacity * SlotBytes));
  chain(data, _capacity, newCapacity);
  _memory->free(_data, _capacity * SlotBytes);
  _data = data;
  _capacity = newCapacity;
  _free = data + firstNew;
}

void ZylIdManager::chain(void** data, long first, long capacity) noexcept {
  for (long i = first; i < capacity - 1; ++i) data[i] = data + i + 1;
  data[capacity - 1] = data + capacity - 1;
}
