// Chained hash tables with a client's hash and comparison.

#ifndef ZYL_ENV_HASH_TABLE_H
#define ZYL_ENV_HASH_TABLE_H

#include <cstddef>
#include <utility>

#include "vorlane/env/object.h"

class ZylSymbolI;

// Hash functions: an index in [0, n) for a table of n buckets.
ZYL_EXPORT long ZylStringHashFunction(const char* text, long n);
/// n must be a power of two.
ZYL_EXPORT long ZylStringHashFunction2(const char* text, long n);
ZYL_EXPORT long ZylIntegerHashFunction(long key, long n);
ZYL_EXPORT long ZylAddressHashFunction(void* key, long n);
ZYL_EXPORT long ZylSymbolHashFunction(ZylSymbolI* key, long n);
ZYL_EXPORT long ZylFloatHashFunction(double key, long n);
ZYL_EXPORT long ZylPlatformIndependentIntegerHashFunction(long key, long n);
/// The same hashes under the names by which the keys of data know them.
ZYL_EXPORT long ZylIntDataTableHashFunction(long key, long n);
ZYL_EXPORT long ZylNumDataTableHashFunction(double key, long n);

// Comparisons: non-zero for equal keys.
ZYL_EXPORT long ZylStringCompFunction(const char* a, const char* b);
ZYL_EXPORT long ZylStringCompFunction2(const char* a, const char* b);
ZYL_EXPORT long ZylIntegerCompFunction(long a, long b);
ZYL_EXPORT long ZylAddressCompFunction(void* a, void* b);
ZYL_EXPORT long ZylFloatCompFunction(double a, double b);

namespace zyl::detail {

struct GlobalStorage {
  void* alloc(std::size_t size) const { return allocateGlobal(size); }
  void free(void* block, std::size_t) const noexcept { releaseGlobal(block); }
};
struct ManagerStorage {
  ZylGenAlloc* manager;
  void* alloc(std::size_t size) const { return manager->alloc(size); }
  void free(void* block, std::size_t size) const { manager->free(block, size); }
};

/// The algorithms of both tables.
///
/// `add` does not look for the key: callers that keep keys unique look first. Buckets are made at
/// the first insertion and doubled when there are more than twice as many entries; nothing shrinks.
/// A hash outside [0, buckets) raises `ZylWrongUsage`.
template <class K, class V, class Storage>
class ChainedTable {
 public:
  using Hash = long (*)(K key, long buckets);
  using Compare = long (*)(K a, K b);
  struct Entry {
    Entry* next;
    K key;
    V value;
  };

  ChainedTable(const Storage& storage, long buckets, Hash hash, Compare compare)
      : _storage(storage), _size(0), _nbBuckets(buckets), _hash(hash), _compare(compare),
        _buckets(nullptr) {}
  ChainedTable(const ChainedTable&) = delete;
  ChainedTable& operator=(const ChainedTable&) = delete;

  void add(K key, V value) {
    if (_buckets == nullptr) _buckets = makeBuckets(_nbBuckets);
    Entry** bucket = &_buckets[indexOf(key)];
    auto* entry = static_cast<Entry*>(_storage.alloc(sizeof(Entry)));
    *entry = Entry{*bucket, key, value};
    *bucket = entry;
    if (++_size <= 2 * _nbBuckets) return;
    try {
      grow();
    } catch (...) {
      *bucket = entry->next;
      _storage.free(entry, sizeof(Entry));
      --_size;
      throw;
    }
  }
  /// The value of the newest entry with this key, null if there is none.
  const V* find(K key) const {
    if (_buckets == nullptr) return nullptr;
    for (Entry* entry = _buckets[indexOf(key)]; entry != nullptr; entry = entry->next) {
      if (_compare(entry->key, key) != 0) return &entry->value;
    }
    return nullptr;
  }
  bool contains(K key) const { return find(key) != nullptr; }
  /// Removes the newest entry with this key; false if there is none.
  bool remove(K key) {
    if (_buckets == nullptr) return false;
    for (Entry** link = &_buckets[indexOf(key)]; *link != nullptr; link = &(*link)->next) {
      Entry* entry = *link;
      if (_compare(entry->key, key) == 0) continue;
      *link = entry->next;
      _storage.free(entry, sizeof(Entry));
      --_size;
      return true;
    }
    return false;
  }
  /// Calls `visit(key, value)` for each entry, bucket by bucket. The visit may remove the entry
  /// that it is given, after which both references are void, but no other, and must add none.
  template <class Visit>
  void forEach(Visit visit) const {
    for (long i = 0; _buckets != nullptr && i < _nbBuckets; ++i) {
      for (Entry* entry = _buckets[i]; entry != nullptr;) {
        Entry* next = entry->next;
        visit(entry->key, entry->value);
        entry = next;
      }
    }
  }
  /// Frees the entries and the buckets; the table may be used again.
  void end() {
    for (long i = 0; _buckets != nullptr && i < _nbBuckets; ++i) {
      while (Entry* entry = _buckets[i]) {
        _buckets[i] = entry->next;
        _storage.free(entry, sizeof(Entry));
      }
    }
    if (_buckets != nullptr) _storage.free(_buckets, bytesOf(_nbBuckets));
    _buckets = nullptr;
    _size = 0;
  }

  long getSize() const noexcept { return _size; }
  long getBucketCount() const noexcept { return _nbBuckets; }
  /// The chain of a bucket, null while there are none.
  Entry* getChain(long bucket) const noexcept {
    return _buckets != nullptr ? _buckets[bucket] : nullptr;
  }

 private:
  static std::size_t bytesOf(long buckets) {
    return static_cast<std::size_t>(buckets) * sizeof(Entry*);
  }
  long indexOf(K key) const { return indexOf(key, _nbBuckets); }
  long indexOf(K key, long buckets) const {
    const long index = _hash(key, buckets);
    if (ZYL_UNLIKELY(index < 0 || index >= buckets)) {
      ZylRaiseWrongUsage("Hash function returned bad index");
    }
    return index;
  }
  Entry** makeBuckets(long count) const {
    auto** buckets = static_cast<Entry**>(_storage.alloc(bytesOf(count)));
    for (long i = 0; i < count; ++i) buckets[i] = nullptr;
    return buckets;
  }
  static Entry* reversed(Entry* chain) {
    Entry* reversed = nullptr;
    while (chain != nullptr) {
      Entry* next = std::exchange(chain->next, reversed);
      reversed = std::exchange(chain, next);
    }
    return reversed;
  }
  void grow() {
    // No entry moves before each is known to have a place.
    forEach([this](const K& key, const V&) { indexOf(key, 2 * _nbBuckets); });
    Entry** before = _buckets;
    const long count = _nbBuckets;
    try {
      _buckets = makeBuckets(2 * count);
    } catch (const ZylMemoryException&) {
      // The longer chains serve as well.
      return;
    }
    _nbBuckets = 2 * count;
    for (long i = 0; i < count; ++i) {
      // From its end a chain goes over to the heads of others, so that like keys keep their order.
      Entry* chain = reversed(before[i]);
      while (Entry* entry = chain) {
        chain = entry->next;
        Entry** bucket = &_buckets[indexOf(entry->key)];
        entry->next = *bucket;
        *bucket = entry;
      }
    }
    _storage.free(before, bytesOf(count));
  }

  Storage _storage;
  long _size;
  long _nbBuckets;
  Hash _hash;
  Compare _compare;
  Entry** _buckets;
};

}  // namespace zyl::detail

/// A table on the global allocator.
template <class K, class V>
class ZylHashTable : public zyl::detail::ChainedTable<K, V, zyl::detail::GlobalStorage> {
  using Table = zyl::detail::ChainedTable<K, V, zyl::detail::GlobalStorage>;

 public:
  ZylHashTable(long buckets, typename Table::Hash hash, typename Table::Compare compare)
      : Table(zyl::detail::GlobalStorage(), buckets, hash, compare) {}
  ~ZylHashTable() { this->end(); }
};

/// A table in a memory manager or an environment; those below take the same owners.
template <class K, class V>
class ZylEnvHashTable : public ZylMemoryManagerObjectI,
                        public zyl::detail::ChainedTable<K, V, zyl::detail::ManagerStorage> {
 public:
  using Table = zyl::detail::ChainedTable<K, V, zyl::detail::ManagerStorage>;

  ZylEnvHashTable(ZylGenAlloc* manager, long buckets, typename Table::Hash hash,
                  typename Table::Compare compare)
      : ZylMemoryManagerObjectI(manager),
        Table(zyl::detail::ManagerStorage{manager}, buckets, hash, compare) {}
  /// In the pools of an environment.
  ZylEnvHashTable(ZylEnvI* env, long buckets, typename Table::Hash hash,
                  typename Table::Compare compare)
      : ZylEnvHashTable(env->getGenAlloc(), buckets, hash, compare) {}
  ZylEnvHashTable(const ZylEnv& env, long buckets, typename Table::Hash hash,
                  typename Table::Compare compare)
      : ZylEnvHashTable(zyl::detail::ownerOf(env), buckets, hash, compare) {}
  ~ZylEnvHashTable() override { this->end(); }
};

/// Keys are texts, compared by their characters. The table refers to them and copies none.
template <class V>
class ZylStringHashTable : public ZylEnvHashTable<const char*, V> {
 public:
  template <class Owner>
  ZylStringHashTable(const Owner& owner, long buckets)
      : ZylEnvHashTable<const char*, V>(owner, buckets, &ZylStringHashFunction,
                                        &ZylStringCompFunction) {}
};

/// Keys are addresses.
template <class V>
class ZylAddressHashTable : public ZylEnvHashTable<void*, V> {
 public:
  template <class Owner>
  ZylAddressHashTable(const Owner& owner, long buckets)
      : ZylEnvHashTable<void*, V>(owner, buckets, &ZylAddressHashFunction,
                                  &ZylAddressCompFunction) {}
};

/// Keys are integers.
template <class V>
class ZylIntegerHashTable : public ZylEnvHashTable<long, V> {
 public:
  template <class Owner>
  ZylIntegerHashTable(const Owner& owner, long buckets)
      : ZylEnvHashTable<long, V>(owner, buckets, &ZylIntegerHashFunction, &ZylIntegerCompFunction) {
  }
};

/// Keys are numbers, compared as the comparison function does: without a tolerance.
template <class V>
class ZylFloatHashTable : public ZylEnvHashTable<double, V> {
 public:
  template <class Owner>
  ZylFloatHashTable(const Owner& owner, long buckets)
      : ZylEnvHashTable<double, V>(owner, buckets, &ZylFloatHashFunction, &ZylFloatCompFunction) {}
};

class ZylAny2BoolHashTable final : public ZylAddressHashTable<long> {
 public:
  using ZylAddressHashTable<long>::ZylAddressHashTable;
};
class ZylAny2IndexHashTable final : public ZylAddressHashTable<long> {
 public:
  using ZylAddressHashTable<long>::ZylAddressHashTable;
};
class ZylInt2IndexHashTable final : public ZylIntegerHashTable<long> {
 public:
  using ZylIntegerHashTable<long>::ZylIntegerHashTable;
};
class ZylNum2IndexHashTable final : public ZylFloatHashTable<long> {
 public:
  using ZylFloatHashTable<long>::ZylFloatHashTable;
};

#endif
