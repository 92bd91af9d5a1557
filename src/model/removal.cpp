// Removals, and the deleter that may govern them.
//
// A removal marks objects in the id table (all bits set), asks every other live object whether it
// can go on without them, and lets what cannot go too. Marked objects are hidden from the scans.
// Invariants of a removal that destroys:
//   1. every object in the bin's first array is marked, and was announced before it dies;
//   2. what is still in that array when an exception leaves is alive, and gets its slot back.

#include <algorithm>
#include <utility>

#include "common/use_count.h"
#include "vorlane/env/environment.h"
#include "vorlane/model/change.h"
#include "vorlane/model/plug_in.h"
#include "vorlane/model/recycle_bin.h"

/// Makes and installs the bin of an outermost removal, and takes it down whatever leaves.
class ZylEnvI::RemovalScope {
 public:
  explicit RemovalScope(ZylEnvI* env) : _env(env), _bin(env) { env->_recycleBin = &_bin; }
  ~RemovalScope() {
    const ZylExtractableArray& marked = _bin.getMarked();
    for (long i = 0; i < marked.getSize(); ++i) {
      _env->_idManager->set(marked.getI(i)->getId(), marked.getI(i));
    }
    _env->_recycleBin = nullptr;
    _bin.end();
  }
  RemovalScope(const RemovalScope&) = delete;
  RemovalScope& operator=(const RemovalScope&) = delete;

  ZylRecycleBinI* operator->() noexcept { return &_bin; }

 private:
  ZylEnvI* _env;
  ZylRecycleBinI _bin;
};

/// A caller's array whose elements die in a removal: it lists none that is dead, whatever leaves.
class ZylEnvI::DyingArray {
 public:
  /// Enters the elements into the bin, which is empty.
  DyingArray(ZylEnvI* env, const ZylExtractableArray& objects)
      : _objects(objects), _places(ZylEnv(env)) {
    try {
      for (long i = 0; i < objects.getSize(); ++i) {
        if (objects.getI(i) == nullptr) continue;
        env->_recycleBin->add(objects.getI(i));
        if (env->_recycleBin->getMarked().getSize() > _places.getSize()) _places.add(i);
      }
    } catch (...) {
      _places.end();
      throw;
    }
  }
  ~DyingArray() { _places.end(); }
  DyingArray(const DyingArray&) = delete;
  DyingArray& operator=(const DyingArray&) = delete;

  /// To be told before each death of the first batch, in which what entered last dies first.
  void leave(long entry) {
    if (entry >= _places.getSize()) return;
    // Behind it stands nothing that lives, or what occurs further in front too.
    _objects.getImpl()->truncate(std::min(_places[entry], _objects.getSize()));
  }

 private:
  ZylExtractableArray _objects;
  ZylIntArray _places;  // by entry of the bin: where in the array it occurs first
};

namespace {

// An id is good in its own environment only: elsewhere it is a stranger's.
void checkEnv(const ZylEnvI* env, const ZylExtractableI* object) {
  if (object->getEnv() != env) throw ZylEnvironmentMismatch();
}
void checkEnv(const ZylEnvI* env, const ZylExtractableArray& objects) {
  for (long i = 0; i < objects.getSize(); ++i) {
    if (objects.getI(i) != nullptr) checkEnv(env, objects.getI(i));
  }
}

// Its owners may die later in this removal, and will release it.
void expectReleases(ZylRecycleBinI* bin, ZylExtractableI* object) {
  if (zyl::detail::countOf(object) > 0 && !bin->isDying(object)) bin->addDying(object);
}

// Whether this is what a holder's last release left: nobody can depend on it.
bool isReleased(ZylExtractableI* object) {
  return zyl::detail::isCounted(object) && zyl::detail::countOf(object) <= 0;
}

// A removal is one more owner of what it keeps: whoever held that dies, and it stays all the same.
void keep(ZylExtractableI* object) { zyl::detail::holdCounted(object); }
void letGo(ZylExtractableI* object) { zyl::detail::unholdCounted(object); }

class KeptObject {
 public:
  explicit KeptObject(ZylExtractableI* object)
      : _counted(zyl::detail::isCounted(object) ? object : nullptr) {
    if (_counted != nullptr) keep(_counted);
  }
  ~KeptObject() {
    if (_counted != nullptr) letGo(_counted);
  }
  KeptObject(const KeptObject&) = delete;
  KeptObject& operator=(const KeptObject&) = delete;

 private:
  // Null for what is not counted: a receiver may end that.
  ZylExtractableI* _counted;
};

}  // namespace

void ZylEnvI::destroy(ZylExtractableI* object, long keep, long notify) {
  if (notify != 0) object->notify(ZylDestroyExtractable(object));
  if (_recycleBin != nullptr) expectReleases(_recycleBin, object);
  finit(object);
  if (keep == 0) delete object;
}

ZylExtractableArray ZylEnvI::getOrMakeEmptySharedDeletedArray() {
  if (_emptySharedDeletedArray == nullptr) {
    _emptySharedDeletedArray = new (static_cast<ZylGenAlloc*>(_alloc)) ZylArrayI(_alloc, 0L);
  }
  _emptySharedDeletedArray->truncate(0);
  return ZylExtractableArray(_emptySharedDeletedArray);
}

// Asks each live object in turn, until a whole scan has added nothing to the bin. An object may die
// or be made while the scan runs; slots are read afresh each time.
void ZylEnvI::scanForDependants(long maxId) {
  for (;;) {
    const long before = _recycleBin != nullptr ? _recycleBin->getMarked().getSize() : 0;
    for (long id = 0; id < maxId && id < _idManager->getCapacity(); ++id) {
      if (ZylExtractableI* object = _idManager->getLive(id)) object->atRemove(nullptr, nullptr);
    }
    if (_recycleBin == nullptr || _recycleBin->isReleasing()) return;
    if (_recycleBin->getMarked().getSize() == before) return;
  }
}

// Destroys what the bin holds and what arrives meanwhile, batch by batch.
void ZylEnvI::runBatches(DyingArray* listed) {
  while (_recycleBin->getMarked().getSize() > 0) {
    _recycleBin->startReleaseMode();
    destroyBatch(std::exchange(listed, nullptr));
    _recycleBin->endReleaseMode();
    // What a receiver or a destructor ended has dependants as everything else.
    const ZylExtractableArray& marked = _recycleBin->getMarked();
    bool scan = false;
    for (long i = 0; i < marked.getSize() && !scan; ++i) scan = !isReleased(marked.getI(i));
    if (scan) _recycleBin->removeFromAll();
  }
}

void ZylEnvI::destroyBatch(DyingArray* listed) {
  const ZylExtractableArray& marked = _recycleBin->getMarked();
  ZylExtractableArray batch = getOrMakeEmptySharedDeletedArray();
  for (long i = marked.getSize() - 1; i >= 0; --i) batch.addI(marked.getI(i));
  // Whatever allocates comes before the first death.
  for (long i = 0; i < marked.getSize(); ++i) expectReleases(_recycleBin, marked.getI(i));
  change(ZylDestroyExtractableArray(batch));
  for (long i = marked.getSize() - 1; i >= 0; --i) {
    ZylExtractableI* object = marked.getI(i);
    marked.getImpl()->truncate(i);
    if (listed != nullptr) listed->leave(i);
    finit(object);
    delete object;
  }
  batch.getImpl()->truncate(0);
}

void ZylEnvI::removeFromAll(ZylExtractableI* object) {
  checkEnv(this, object);
  if (isMarked(object)) return;
  const KeptObject kept(object);
  if (_recycleBin != nullptr) {
    // Inside a removal: the dependants join the bin, the object itself stays alive.
    _idManager->mark(object->getId());
    try {
      scanForDependants(_idManager->getMaxId());
    } catch (...) {
      _idManager->set(object->getId(), object);
      throw;
    }
    _idManager->set(object->getId(), object);
    ZylExtractableArray one = ZylExtractableArray(ZylEnv(this));
    one.addI(object);
    try {
      change(ZylRemoveFromAllChange(one));
    } catch (...) {
      one.end();
      throw;
    }
    one.end();
    return;
  }
  RemovalScope bin(this);
  bin->add(object);
  bin->removeFromAll();
  bin->keepFirst();
  runBatches();
}

namespace {

/// Marks and keeps the elements of an array, and gives them their slots back whatever leaves. What
/// joins the array later is kept only, so what goes by no count may die: then it leaves the array.
class MarkedArray {
 public:
  MarkedArray(ZylEnvI* env, const ZylExtractableArray& objects)
      : _env(env), _objects(objects), _taken(ZylEnv(env)) {
    try {
      _ids = ZylIntArray(ZylEnv(env));
      takeNew(/*marks=*/true);
    } catch (...) {
      giveBack();
      throw;
    }
  }
  ~MarkedArray() { giveBack(); }
  MarkedArray(const MarkedArray&) = delete;
  MarkedArray& operator=(const MarkedArray&) = delete;

  void keepJoined() { takeNew(/*marks=*/false); }

 private:
  void takeNew(bool marks) {
    for (; _seen < _objects.getSize(); ++_seen) {
      ZylExtractableI* object = _objects.getI(_seen);
      if (object == nullptr || object->getId() == -1) continue;
      checkEnv(_env, object);
      // What the removal around this one has marked stays hidden, and dies.
      if (_env->getRecycleBin() != nullptr && _env->isMarked(object)) continue;
      _ids.add(object->getId());
      _taken.addI(object);
      keep(object);
      if (marks) _env->getIdManager()->mark(object->getId());
    }
  }
  void giveBack() {
    ZylIdManager* ids = _env->getIdManager();
    for (long i = 0; i < _taken.getSize(); ++i) {
      ZylExtractableI* object = _taken.getI(i);
      // Whatever is marked lives.
      if (ids->isMarked(_ids[i])) ids->set(_ids[i], object);
      if (ids->getLive(_ids[i]) == object) {
        letGo(object);
      } else {
        forget(object);
      }
    }
    _taken.end();
    _ids.end();
  }
  void forget(const ZylExtractableI* object) {
    for (long i = 0; i < _objects.getSize(); ++i) {
      if (_objects.getI(i) == object) _objects[i] = ZylExtractable();
    }
  }

  ZylEnvI* _env;
  ZylExtractableArray _objects;
  ZylExtractableArray _taken;
  ZylIntArray _ids;  // theirs: what has died cannot be asked
  long _seen = 0;
};

}  // namespace

void ZylEnvI::removeFromAll(ZylExtractableArray objects) {
  if (objects.getSize() == 0) return;
  checkEnv(this, objects);
  {
    MarkedArray marks(this, objects);
    const long maxId = _idManager->getMaxId();
    long before = 0;
    do {
      before = objects.getSize();
      for (long id = 0; id < maxId && id < _idManager->getCapacity(); ++id) {
        if (ZylExtractableI* object = _idManager->getLive(id)) object->atRemove(nullptr, nullptr);
        marks.keepJoined();
      }
    } while (objects.getSize() != before);
  }
  change(ZylRemoveFromAllChange(objects));
}

void ZylEnvI::removeFromAllAndDestroy(ZylExtractableI* object, long flag) {
  if (_deleter != nullptr) {
    removeAndDelete(object, flag);
    return;
  }
  checkEnv(this, object);
  if (_recycleBin != nullptr) {
    _recycleBin->add(object);
    return;
  }
  RemovalScope bin(this);
  bin->add(object);
  bin->removeFromAll();
  runBatches();
}

void ZylEnvI::removeFromAllAndDestroy(ZylExtractableArray objects, long flag) {
  if (_deleter != nullptr) {
    removeAndDelete(objects, flag);
    return;
  }
  checkEnv(this, objects);
  if (_recycleBin != nullptr) {
    _recycleBin->makeRoom(objects.getSize());
    for (long i = 0; i < objects.getSize(); ++i) {
      if (objects.getI(i) != nullptr) _recycleBin->add(objects.getI(i));
    }
    return;
  }
  RemovalScope bin(this);
  DyingArray listed(this, objects);
  bin->removeFromAll();
  runBatches(&listed);
  objects.clear();
}

// --- the deleter ---------------------------------------------------------------------------------

void ZylEnvI::setDeleter(ZylBaseDeleterI* deleter, long mode) noexcept {
  _deleter = deleter;
  _deleterMode = mode;
}

void ZylEnvI::removeAndDelete(ZylExtractableI* object, long flag) {
  if (_deleter != nullptr) _deleter->removeAndDelete(object, flag);
}

void ZylEnvI::removeAndDelete(ZylExtractableArray objects, long flag) {
  if (_deleter != nullptr) _deleter->removeAndDelete(objects, flag);
}

void ZylEnvI::inhibitDeleter(long inhibit) {
  if (_deleter == nullptr) {
    ZylRaiseWrongUsage("ZylEnvI::inhibitDeleter: no deleter is installed");
  }
  _deleter->inhibit(inhibit);
}

void ZylEnvI::setDeleterVerbosityLevel(long level) {
  if (_deleter != nullptr) _deleter->setVerbosityLevel(level);
}

void ZylEnvI::unsetDeleter() {
  ZylBaseDeleterI* deleter = _deleter;
  _deleter = nullptr;
  _deleterMode = 0;
  delete deleter;
}
