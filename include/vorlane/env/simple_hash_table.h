// A light table for pointer keys: every chain ends at a sentinel, so a search needs no end test,
// and a test followed by a read costs one walk.

#ifndef ZYL_ENV_SIMPLE_HASH_TABLE_H
#define ZYL_ENV_SIMPLE_HASH_TABLE_H

#include "vorlane/env/environment.h"

/// Maps addresses to addresses. Items come from the environment; there is no destructor, so without
/// `end()` they and the buckets stay there until its end, and with the pools off they leak.
class ZYL_EXPORT ZylSimpleHashTable {
 public:
  /// A key with its value; the sentinel follows the last of a chain.
  struct Item {
    void* key;
    void* value;
    Item* next;
  };

  /// `size` buckets, a power of two; the number does not change. Raises `ZylMemoryException`.
  ZylSimpleHashTable(const ZylEnv& env, long size);
  ZylSimpleHashTable(const ZylSimpleHashTable&) = delete;
  ZylSimpleHashTable& operator=(const ZylSimpleHashTable&) = delete;

  /// Enters an item without looking for a like key.
  void add(void* key, void* value);
  /// The same; returns 2 if the key stood there already, which leaves both, 0 if not.
  long addWithCheck(void* key, void* value);
  bool isIn(void* key) const noexcept;
  /// The value, null if there is none.
  void* operator[](void* key) const noexcept;
  /// Returns 0 and stores the value if the key is there, 1 if not.
  long getValue(void* key, void*& value) const noexcept;
  /// Removes the newest item of the key; returns 0, or 1 if there is none.
  long remove(void* key) noexcept;
  /// Gives all items back.
  void clear() noexcept;
  /// Gives the buckets back too.
  void end() noexcept;
  long getCount() const noexcept { return _count; }

  /// Walks from the last bucket to the first, through each chain.
  class ZYL_EXPORT Iterator {
   public:
    explicit Iterator(const ZylSimpleHashTable& table) noexcept;
    bool ok() const noexcept { return _item != &_table->_sentinel; }
    const Item& operator*() const noexcept { return *_item; }
    void operator++() noexcept;

   private:
    ZYL_LOCAL void skipEmpty() noexcept;
    const ZylSimpleHashTable* _table;
    long _bucket;
    const Item* _item;
  };

 protected:
  long checkDuplicatedKey() const noexcept;
  long bucketOf(const void* key) const noexcept {
    return (reinterpret_cast<long>(key) >> 3) & (_size - 1);
  }
  Item** makeBuckets(long size);

  ZylEnvI* _env;
  mutable Item* _current;  // what the last search found, or the item added last
  long _size;
  Item** _buckets;
  mutable Item _sentinel;  // holds the key of the search that runs
  long _count;
};

/// The same with growing: at `limit` entries the buckets double.
class ZYL_EXPORT ZylSimpleHashTable2 : public ZylSimpleHashTable {
 public:
  ZylSimpleHashTable2(const ZylEnv& env, long size, long limit)
      : ZylSimpleHashTable(env, size), _limit(limit) {}
  void add(void* key, void* value);
  long addWithCheck(void* key, void* value);
  long getLimit() const noexcept { return _limit; }

 private:
  ZYL_LOCAL void reHash();
  long _limit;
};

#endif
