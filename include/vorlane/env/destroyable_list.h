// The objects that an environment deletes at its end.

#ifndef ZYL_ENV_DESTROYABLE_LIST_H
#define ZYL_ENV_DESTROYABLE_LIST_H

#include "vorlane/env/object.h"

/// A list of objects, newest first, with a table to find an object's place in it.
class ZYL_EXPORT ZylDestroyableList {
 public:
  using Hash = long (*)(const ZylDestroyableI* object, long buckets);
  using Compare = long (*)(const ZylDestroyableI* a, const ZylDestroyableI* b);

  /// `buckets` is a power of two. The table comes from the global allocator, on first use.
  ZylDestroyableList(ZylEnvI* env, long buckets, Hash hash, Compare compare);
  ~ZylDestroyableList();
  ZylDestroyableList(const ZylDestroyableList&) = delete;
  ZylDestroyableList& operator=(const ZylDestroyableList&) = delete;

  /// Enters the object at the head; nothing if it is there. Raises `ZylMemoryException`, and
  /// `ZylWrongUsage` for a hash outside the buckets; a failure changes nothing.
  void add(ZylDestroyableI* object);
  /// Takes the object out; nothing if it is not there.
  void remove(ZylDestroyableI* object);
  /// The newest object, null if there is none.
  ZylDestroyableI* getHead() const noexcept { return _head != nullptr ? _head->_object : nullptr; }
  long getSize() const noexcept { return _size; }
  long getBucketCount() const noexcept { return _nbBuckets; }

  static long HashPointer(const ZylDestroyableI* object, long buckets);
  static long ComparePointers(const ZylDestroyableI* a, const ZylDestroyableI* b);

 private:
  struct Cell {  // from the pools
    ZylDestroyableI* _object;
    Cell* _prev;
    Cell* _next;
  };
  struct Entry {  // from the global allocator
    Entry* _next;
    ZylDestroyableI* _key;
    Cell* _cell;
  };

  ZYL_LOCAL long indexOf(const ZylDestroyableI* object, long buckets) const;
  ZYL_LOCAL Entry** bucketOf(const ZylDestroyableI* object) const;
  ZYL_LOCAL Entry** find(const ZylDestroyableI* object) const;
  ZYL_LOCAL void checkPlaces(const ZylDestroyableI* added, long buckets) const;
  ZYL_LOCAL void makeBuckets();
  ZYL_LOCAL void growBuckets();

  ZylEnvI* _env;
  Cell* _head;
  long _size;
  long _nbBuckets;
  Hash _hash;
  Compare _compare;
  Entry** _buckets;
};

#endif
