// What is collected during one removal.

#ifndef ZYL_MODEL_RECYCLE_BIN_H
#define ZYL_MODEL_RECYCLE_BIN_H

#include "vorlane/env/hash_table.h"
#include "vorlane/model/extractable_array.h"

/// The bin of a removal: made at the start of an outermost one, freed at its end.
///
/// Objects in it are marked in the id table, which hides them from the scan for dependants and
/// shows them to `ZylFindMarkedVisitor`. It is either marking or, while a batch dies, releasing:
/// what arrives then waits for the next batch, its slot untouched.
class ZYL_EXPORT ZylRecycleBinI {
 public:
  /// Raises `ZylMemoryException`.
  explicit ZylRecycleBinI(ZylEnvI* env);
  ZylRecycleBinI(const ZylRecycleBinI&) = delete;
  ZylRecycleBinI& operator=(const ZylRecycleBinI&) = delete;

  /// Enters an object; nothing if it is finished or marked. Raises `ZylMemoryException`.
  void add(ZylExtractableI* object);
  /// Makes room for as many: entering them cannot fail then. Raises `ZylMemoryException`.
  void makeRoom(long count);
  /// Asks every other live object `atRemove`, until a whole scan has added nothing, then sends one
  /// `ZylRemoveFromAllChange`; one more for what its receivers end.
  void removeFromAll();
  /// Takes the object that entered first out of the bin again, and puts it back in its slot.
  void keepFirst();
  void startReleaseMode() noexcept { _releaseMode = 1; }
  /// Makes what arrived during the batch the contents of the bin.
  void endReleaseMode();
  bool isReleasing() const noexcept { return _releaseMode != 0; }
  /// Gives back all that the bin holds.
  void end();

  const ZylExtractableArray& getMarked() const noexcept { return _marked; }
  const ZylExtractableArray& getArrivals() const noexcept { return _arrivals; }
  /// Remembers a counted expression that is being destroyed: its releases are ignored from now on.
  void addDying(ZylExtractableI* object);
  bool isDying(const ZylExtractableI* object) const;
  /// Whether the object is in the bin, or dying.
  bool contains(const ZylExtractableI* object) const;
  /// Counts the release of a counted object that `contains` tells of. It dies of no release; what
  /// is marked may yet be kept, and then its count must be right. What is dying is gone already.
  template <class Counted>
  void released(Counted* object) const {
    if (!isDying(object) && object->getCount() > 1) object->unhold();
  }

  static long HashExtractable(ZylExtractableI* object, long buckets);
  static long CompareExtractables(ZylExtractableI* a, ZylExtractableI* b);

 private:
  ZylEnvI* _env;
  ZylExtractableArray _marked;
  ZylExtractableArray _arrivals;
  long _releaseMode;
  ZylHashTable<ZylExtractableI*, ZylExtractableI*> _dying;
};

#endif
