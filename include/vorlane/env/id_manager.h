// Ids: dense, small and reused at once, so that engines can index arrays by them.

#ifndef ZYL_ENV_ID_MANAGER_H
#define ZYL_ENV_ID_MANAGER_H

#include "vorlane/env/memory.h"

class ZylExtractableI;

/// The id table of an environment.
///
/// A slot's contents alone tell its state: an address inside the table itself means free and leads
/// to the next free slot (the last of the chain leads to itself); an object's address, live; 0,
/// booked with no object; all bits set, in the recycle bin or marked for removal.
class ZYL_EXPORT ZylIdManager {
 public:
  static constexpr long InitialCapacity = 256;

  /// Makes a table of 256 slots in `memory`. Raises `ZylMemoryException`.
  explicit ZylIdManager(ZylMemory* memory);
  ZylIdManager(const ZylIdManager&) = delete;
  ZylIdManager& operator=(const ZylIdManager&) = delete;
  /// Gives the table back.
  void end() noexcept;

  /// Issues an id for `object`: the id freed last, else the next unused. Amortised O(1). Raises
  /// `ZylMemoryException`, which changes nothing.
  long newId(ZylExtractableI* object) { return take(reinterpret_cast<void*>(object)); }
  /// Issues an id with no object, to be attached later.
  long bookId() { return take(nullptr); }
  /// Gives an id back; it is the next to be issued.
  void freeId(long id) noexcept;

  /// One more than the highest id in use, or a larger number: lowered by single steps only.
  long getMaxId() const noexcept { return _maxId; }
  long getCapacity() const noexcept { return _capacity; }

  bool isFree(long id) const noexcept {
    const void* value = _data[id];
    return value >= static_cast<const void*>(_data) &&
           value < static_cast<const void*>(_data + _capacity);
  }
  bool isMarked(long id) const noexcept { return _data[id] == Marked(); }
  /// The live object with this id, null if the slot is free, booked or marked.
  ZylExtractableI* getLive(long id) const noexcept {
    void* value = _data[id];
    if (value == Marked() || isFree(id)) return nullptr;
    return reinterpret_cast<ZylExtractableI*>(value);
  }
  void mark(long id) noexcept { _data[id] = Marked(); }
  /// Puts an object back in its slot.
  void set(long id, ZylExtractableI* object) noexcept {
    _data[id] = reinterpret_cast<void*>(object);
  }

  /// Walks ids in ascending order, stopping on slots that are not free.
  class ZYL_EXPORT Iterator {
   public:
    explicit Iterator(const ZylIdManager& manager) : _manager(&manager), _id(0) { nextValid(); }
    bool ok() const noexcept { return _id < _manager->_maxId; }
    long operator*() const noexcept { return _id; }
    void operator++() noexcept {
      ++_id;
      nextValid();
    }

   private:
    void nextValid() noexcept {
      while (_id < _manager->_maxId && _manager->isFree(_id)) ++_id;
    }
    const ZylIdManager* _manager;
    long _id;
  };

 private:
  static void* Marked() noexcept { return reinterpret_cast<void*>(-1L); }  // NOLINT
  long take(void* contents) {
    if (ZYL_UNLIKELY(_free == _data + _capacity - 1)) return takeLast(contents);
    const long id = _free - _data;
    _free = static_cast<void**>(*_free);
    _data[id] = contents;
    if (id >= _maxId) _maxId = id + 1;
    return id;
  }
  long takeLast(void* contents);
  ZYL_LOCAL void growData(long newCapacity, long firstNew);
  ZYL_LOCAL void chain(void** data, long first, long capacity) noexcept;

  ZylMemory* _memory;
  long _maxId;
  long _capacity;
  void** _data;
  void** _free;
};

#endif
