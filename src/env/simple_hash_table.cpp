// Tables for pointer keys whose chains end at a sentinel.

#include "vorlane/env/simple_hash_table.h"

#include <utility>

ZylSimpleHashTable::ZylSimpleHashTable(const ZylEnv& env, long size)
    : _env(env.getImpl()), _current(&_sentinel), _size(size),
      _buckets(nullptr), _sentinel{nullptr, nullptr, nullptr}, _count(0) {
  if (_env == nullptr) ZylRaiseEmptyHandle();
  _buckets = makeBuckets(size);
}

ZylSimpleHashTable::Item** ZylSimpleHashTable::makeBuckets(long size) {
  auto** buckets =
      static_cast<Item**>(_env->alloc(static_cast<unsigned long>(size) * sizeof(Item*)));
  for (long i = 0; i < size; ++i) buckets[i] = &_sentinel;
  return buckets;
}

void ZylSimpleHashTable::add(void* key, void* value) {
  auto* item = static_cast<Item*>(_env->alloc(sizeof(Item)));
  Item** bucket = &_buckets[bucketOf(key)];
  *item = Item{key, value, *bucket};
  *bucket = item;
  _current = item;
  ++_count;
}

long ZylSimpleHashTable::checkDuplicatedKey() const noexcept {
  for (const Item* item = _current->next; item != &_sentinel; item = item->next) {
    if (item->key == _current->key) return 2;
  }
  return 0;
}

long ZylSimpleHashTable::addWithCheck(void* key, void* value) {
  add(key, value);
  return checkDuplicatedKey();
}

bool ZylSimpleHashTable::isIn(void* key) const noexcept {
  if (_current != &_sentinel && _current->key == key) return true;
  _sentinel.key = key;
  Item* item = _buckets[bucketOf(key)];
  while (item->key != key) item = item->next;
  _current = item;
  return item != &_sentinel;
}

void* ZylSimpleHashTable::operator[](void* key) const noexcept {
  return isIn(key) ? _current->value : nullptr;
}

long ZylSimpleHashTable::getValue(void* key, void*& value) const noexcept {
  if (!isIn(key)) return 1;
  value = _current->value;
  return 0;
}

long ZylSimpleHashTable::remove(void* key) noexcept {
  for (Item** link = &_buckets[bucketOf(key)]; *link != &_sentinel; link = &(*link)->next) {
    Item* item = *link;
    if (item->key != key) continue;
    *link = item->next;
    if (_current == item) _current = &_sentinel;
    _env->free(item, sizeof(Item));
    --_count;
    return 0;
  }
  return 1;
}

void ZylSimpleHashTable::clear() noexcept {
  for (long i = 0; i < _size; ++i) {
    while (_buckets[i] != &_sentinel) {
      Item* item = _buckets[i];
      _buckets[i] = item->next;
      _env->free(item, sizeof(Item));
    }
  }
  _current = &_sentinel;
  _count = 0;
}

void ZylSimpleHashTable::end() noexcept {
  if (_buckets == nullptr) return;
  clear();
  _env->free(_buckets, static_cast<unsigned long>(_size) * sizeof(Item*));
  _buckets = nullptr;
}

ZylSimpleHashTable::Iterator::Iterator(const ZylSimpleHashTable& table) noexcept
    : _table(&table), _bucket(table._size - 1), _item(table._buckets[table._size - 1]) {
  skipEmpty();
}

void ZylSimpleHashTable::Iterator::skipEmpty() noexcept {
  while (_item == &_table->_sentinel && _bucket > 0) _item = _table->_buckets[--_bucket];
}

void ZylSimpleHashTable::Iterator::operator++() noexcept {
  _item = _item->next;
  skipEmpty();
}

void ZylSimpleHashTable2::add(void* key, void* value) {
  if (_count == _limit - 1) reHash();
  ZylSimpleHashTable::add(key, value);
}

long ZylSimpleHashTable2::addWithCheck(void* key, void* value) {
  add(key, value);
  return checkDuplicatedKey();
}

void ZylSimpleHashTable2::reHash() {
  Item** before = _buckets;
  const long size = _size;
  _buckets = makeBuckets(2 * size);
  _size = 2 * size;
  for (long i = 0; i < size; ++i) {
    // Oldest first: of several items of one key the newest stays in front.
    Item* oldest = &_sentinel;
    for (Item* item = before[i]; item != &_sentinel;) {
      Item* next = std::exchange(item->next, oldest);
      oldest = std::exchange(item, next);
    }
    while (oldest != &_sentinel) {
      Item** bucket = &_buckets[bucketOf(oldest->key)];
      Item* newer = std::exchange(oldest->next, *bucket);
      *bucket = std::exchange(oldest, newer);
    }
  }
  _env->free(before, static_cast<unsigned long>(size) * sizeof(Item*));
  _limit *= 2;
}
