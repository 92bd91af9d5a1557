// The memo of deep copies, in which shared objects stay shared.

#ifndef ZYL_MODEL_CLONE_MANAGER_H
#define ZYL_MODEL_CLONE_MANAGER_H

#include "vorlane/env/array.h"

/// Knows the clones made in an environment, by the ids of their originals: one indexed read each.
///
/// The memo lasts for the outermost `getClone`, or as long as a client holds the lock; originals in
/// other environments must live that long. A cycle in the graph does not end.
class ZYL_EXPORT ZylCloneManager {
 public:
  explicit ZylCloneManager(ZylEnvI* env) : _env(env) {}
  ~ZylCloneManager();
  ZylCloneManager(const ZylCloneManager&) = delete;
  ZylCloneManager& operator=(const ZylCloneManager&) = delete;

  /// Returns 0 if the manager was locked already, else locks it and returns 1.
  long lock() noexcept;
  /// Unlocks and forgets everything.
  void unlock();
  bool isLocked() const noexcept { return _locked != 0; }
  /// A mark in the list of clones, and the way back to it.
  long lockLevel() const;
  void unlockLevel(long level) { clearLevel(level); }
  void clear();
  void clearLevel(long level);
  bool hasClone(const ZylExtractableI* object) const;
  void setClone(const ZylExtractableI* object, ZylExtractableI* clone);
  /// Returns the clone, making it first if there is none. What `makeClone` raises passes on, with
  /// the lock as it was; clones of parts that were made by then stay.
  ZylExtractableI* getClone(const ZylExtractableI* object);
  /// Makes the id a valid index.
  void setMaxId(long id);
  /// Lets the environment's expander decide about clones; false if one does already.
  bool pushExpander();
  void popExpander() noexcept { _expander = nullptr; }
  /// The object dies, and its id and address are free again: its clone is not the next object's.
  void forget(const ZylExtractableI* object) noexcept;

 private:
  ZYL_LOCAL bool knows(const ZylExtractableI* object) const noexcept;
  ZYL_LOCAL void makeRoom(long id);
  ZYL_LOCAL void growIndex(long room);
  ZYL_LOCAL long& newestOf(long cloneId) const noexcept;
  ZYL_LOCAL void link(long entry) const noexcept;
  ZYL_LOCAL ZylExtractableI* makeClone(const ZylExtractableI* object);

  ZylEnvI* _env;
  long _locked = 0;
  ZylArrayI* _clones = nullptr;  // by id: the clone or null
  ZylArrayI* _cloned = nullptr;  // ids in order of cloning
  long _awaited = 0;             // clones that are being made: there is room for their ids
  long _room = 0;                // elements that `_cloned` holds without asking for memory
  ZylExpanderI* _expander = nullptr;
  // By id: the original. Ids tell objects of one environment apart, and originals come from any.
  ZylArrayI* _originals = nullptr;
  // The entries of `_cloned` by the clone's id, for its death: chains in hashed buckets, the newest
  // entry in front. An entry leaves its chain when its clone dies or the memo is cut, newest first.
  ZylArrayI* _cloneIds = nullptr;  // by entry: -1 if it is in no chain
  ZylArrayI* _older = nullptr;     // by entry: the next one in its chain, plus 1, or 0
  ZylArrayI* _newest = nullptr;    // by bucket: the front of the chain, plus 1, or 0
};

#endif
