// A list of objects, newest first, beside a hash table that finds an object's place in it.

#include "vorlane/env/destroyable_list.h"

#include <algorithm>
#include <cstdint>

using zyl::detail::allocateGlobal;
using zyl::detail::releaseGlobal;

ZylDestroyableList::ZylDestroyableList(ZylEnvI* env, long buckets, Hash hash, Compare compare)
    : _env(env), _head(nullptr), _size(0), _nbBuckets(buckets), _hash(hash), _compare(compare),
      _buckets(nullptr) {}

ZylDestroyableList::~ZylDestroyableList() {
  for (long i = 0; _buckets != nullptr && i < _nbBuckets; ++i) {
    while (Entry* entry = _buckets[i]) {
      _buckets[i] = entry->_next;
      releaseGlobal(entry);
    }
  }
  releaseGlobal(_buckets);
  while (_head != nullptr) {
    Cell* next = _head->_next;
    _env->free(_head, sizeof(Cell));
    _head = next;
  }
}

long ZylDestroyableList::HashPointer(const ZylDestroyableI* object, long buckets) {
  const auto address = reinterpret_cast<std::uintptr_t>(object);
  return static_cast<long>((address >> 5) & (static_cast<std::uintptr_t>(buckets) - 1));
}

long ZylDestroyableList::ComparePointers(const ZylDestroyableI* a, const ZylDestroyableI* b) {
  return a == b ? 1 : 0;
}

long ZylDestroyableList::indexOf(const ZylDestroyableI* object, long buckets) const {
  const long index = _hash(object, buckets);
  if (index < 0 || index >= buckets) ZylRaiseWrongUsage("Hash function returned bad index");
  return index;
}

ZylDestroyableList::Entry** ZylDestroyableList::bucketOf(const ZylDestroyableI* object) const {
  return &_buckets[indexOf(object, _nbBuckets)];
}

ZylDestroyableList::Entry** ZylDestroyableList::find(const ZylDestroyableI* object) const {
  if (_buckets == nullptr) return nullptr;
  for (Entry** link = bucketOf(object); *link != nullptr; link = &(*link)->_next) {
    if (_compare((*link)->_key, object) != 0) return link;
  }
  return nullptr;
}

void ZylDestroyableList::makeBuckets() {
  const auto bytes = static_cast<std::size_t>(_nbBuckets) * sizeof(Entry*);
  _buckets = static_cast<Entry**>(allocateGlobal(bytes));
  std::fill_n(_buckets, _nbBuckets, nullptr);
}

void ZylDestroyableList::add(ZylDestroyableI* object) {
  if (find(object) != nullptr) return;
  if (_buckets == nullptr) makeBuckets();
  Entry** bucket = bucketOf(object);
  if (_size >= 2 * _nbBuckets) checkPlaces(object, 2 * _nbBuckets);
  auto* cell = static_cast<Cell*>(_env->alloc(sizeof(Cell)));
  Entry* entry = nullptr;
  try {
    entry = static_cast<Entry*>(allocateGlobal(sizeof(Entry)));
  } catch (const ZylMemoryException&) {
    _env->free(cell, sizeof(Cell));
    throw;
  }
  *cell = Cell{object, nullptr, _head};
  if (_head != nullptr) _head->_prev = cell;
  _head = cell;
  *entry = Entry{*bucket, object, cell};
  *bucket = entry;
  if (++_size > 2 * _nbBuckets) growBuckets();
}

// Nothing is entered or moved before each is known to have a place in the larger table.
void ZylDestroyableList::checkPlaces(const ZylDestroyableI* added, long buckets) const {
  indexOf(added, buckets);
  for (const Cell* cell = _head; cell != nullptr; cell = cell->_next) {
    indexOf(cell->_object, buckets);
  }
}

void ZylDestroyableList::growBuckets() {
  Entry** before = _buckets;
  const long count = _nbBuckets;
  _nbBuckets *= 2;
  try {
    makeBuckets();
  } catch (const ZylMemoryException&) {
    // The longer chains serve as well.
    _nbBuckets = count;
    return;
  }
  for (long i = 0; i < count; ++i) {
    while (Entry* entry = before[i]) {
      before[i] = entry->_next;
      Entry** bucket = bucketOf(entry->_key);
      entry->_next = *bucket;
      *bucket = entry;
    }
  }
  releaseGlobal(before);
}

void ZylDestroyableList::remove(ZylDestroyableI* object) {
  Entry** link = find(object);
  if (link == nullptr) return;
  Entry* entry = *link;
  Cell* cell = entry->_cell;
  *link = entry->_next;
  releaseGlobal(entry);
  --_size;
  if (cell->_next != nullptr) cell->_next->_prev = cell->_prev;
  if (cell->_prev != nullptr) {
    cell->_prev->_next = cell->_next;
  } else {
    _head = cell->_next;
  }
  _env->free(cell, sizeof(Cell));
}
