// The memo of clones: arrays by id of the original, with chains by id of the clone for its death.

#include "vorlane/model/clone_manager.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "vorlane/model/extractable.h"

ZylCloneManager::~ZylCloneManager() {
  delete _clones;
  delete _cloned;
  delete _originals;
  delete _cloneIds;
  delete _older;
  delete _newest;
}

long ZylCloneManager::lock() noexcept {
  if (_locked != 0) return 0;
  _locked = 1;
  return 1;
}

void ZylCloneManager::unlock() {
  _locked = 0;
  clear();
}

long ZylCloneManager::lockLevel() const { return _cloned != nullptr ? _cloned->getSize() : 0; }

void ZylCloneManager::clear() {
  clearLevel(0);
  _expander = nullptr;
}

void ZylCloneManager::clearLevel(long level) {
  level = std::max(level, 0L);
  if (level >= lockLevel()) return;
  for (long i = _cloned->getSize() - 1; i >= level; --i) {
    _clones->element<ZylExtractableI*>(_cloned->element<long>(i)) = nullptr;
    const long cloneId = _cloneIds->element<long>(i);
    if (cloneId >= 0) newestOf(cloneId) = _older->element<long>(i);
  }
  _cloned->truncate(level);
  _cloneIds->truncate(level);
  _older->truncate(level);
}

// Multiplicative hashing (Knuth 1973): ids of clones may lie apart by a power of two.
long& ZylCloneManager::newestOf(long cloneId) const noexcept {
  const int bits = std::countr_zero(static_cast<std::uint64_t>(_newest->getSize()));
  const std::uint64_t product = static_cast<std::uint64_t>(cloneId) * 0x9E3779B97F4A7C15U;
  return _newest->element<long>(static_cast<long>(product >> (64 - bits)));
}

void ZylCloneManager::link(long entry) const noexcept {
  const long cloneId = _cloneIds->element<long>(entry);
  if (cloneId < 0) return;
  long& newest = newestOf(cloneId);
  _older->element<long>(entry) = newest;
  newest = entry + 1;
}

// Behind this, `room` entries have their places, and a bucket each.
void ZylCloneManager::growIndex(long room) {
  ZylGenAlloc* manager = _env->getGenAlloc();
  if (_cloneIds == nullptr) _cloneIds = new (manager) ZylArrayI(_env, 0L);
  if (_older == nullptr) _older = new (manager) ZylArrayI(_env, 0L);
  _cloneIds->grow(room);
  _older->grow(room);
  const auto buckets =
      static_cast<long>(std::bit_ceil(static_cast<std::uint64_t>(std::max(room, 16L))));
  if (_newest != nullptr && _newest->getSize() >= buckets) return;
  auto* newest = new (manager) ZylArrayI(_env, buckets);
  delete _newest;
  _newest = newest;
  for (long i = 0; i < lockLevel(); ++i) link(i);
}

bool ZylCloneManager::knows(const ZylExtractableI* object) const noexcept {
  const long id = object->getId();
  return _clones != nullptr && id >= 0 && id < _clones->getSize() &&
         _clones->element<ZylExtractableI*>(id) != nullptr &&
         _originals->element<const ZylExtractableI*>(id) == object;
}

// The object may be an original, or a clone, of which only a locked memo keeps any.
void ZylCloneManager::forget(const ZylExtractableI* object) noexcept {
  if (lockLevel() == 0) return;
  const long id = object->getId();
  if (knows(object)) _clones->element<ZylExtractableI*>(id) = nullptr;
  for (long* link = &newestOf(id); *link != 0;) {
    const long entry = *link - 1;
    long& older = _older->element<long>(entry);
    if (_cloneIds->element<long>(entry) != id) {
      link = &older;
      continue;
    }
    // The original may have been given another clone since.
    ZylExtractableI*& clone = _clones->element<ZylExtractableI*>(_cloned->element<long>(entry));
    if (clone == object) clone = nullptr;
    _cloneIds->element<long>(entry) = -1;
    *link = older;
  }
}

bool ZylCloneManager::hasClone(const ZylExtractableI* object) const { return knows(object); }

namespace {
// The memo is no part of what a local environment undoes.
struct Suspended {
  explicit Suspended(ZylEnvI* e) : env(e), local(e->setLocalEnv(nullptr)) {}
  ~Suspended() { env->setLocalEnv(local); }
  Suspended(const Suspended&) = delete;
  Suspended& operator=(const Suspended&) = delete;
  ZylEnvI* env;
  ZylLocalEnvI* local;
};
}  // namespace

void ZylCloneManager::setMaxId(long id) {
  if (_clones != nullptr && id < _clones->getSize()) return;
  const Suspended suspended(_env);
  if (_originals == nullptr) _originals = new (_env->getGenAlloc()) ZylArrayI(_env, 0L);
  if (_cloned == nullptr) _cloned = new (_env->getGenAlloc()) ZylArrayI(_env, 0L);
  if (_clones == nullptr) _clones = new (_env->getGenAlloc()) ZylArrayI(_env, 0L);
  _originals->grow(id + 1);
  _clones->grow(id + 1);
  // Last of all the array whose size the tests read.
  while (_originals->getSize() <= id) _originals->append<const ZylExtractableI*>(nullptr);
  while (_clones->getSize() <= id) _clones->append<ZylExtractableI*>(nullptr);
}

// Behind this, and as long as nothing else is entered, `setClone` needs no memory.
void ZylCloneManager::makeRoom(long id) {
  setMaxId(id);
  const long needed = _cloned->getSize() + _awaited + 1;
  if (needed <= _room) return;
  const Suspended suspended(_env);
  const long room = std::max(needed, 2 * _room);
  _cloned->grow(room);
  growIndex(room);
  _room = room;
}

void ZylCloneManager::setClone(const ZylExtractableI* object, ZylExtractableI* clone) {
  const long id = object->getId();
  if (id < 0) return;  // finished
  makeRoom(id);
  const long entry = _cloned->getSize();
  _cloned->append<long>(id);
  _older->append<long>(0);
  _cloneIds->append<long>(clone != nullptr && clone->getEnv() == _env ? clone->getId() : -1);
  link(entry);
  _originals->element<const ZylExtractableI*>(id) = object;
  _clones->element<ZylExtractableI*>(id) = clone;
}

bool ZylCloneManager::pushExpander() {
  if (_expander != nullptr) return false;
  _expander = _env->getExpander();
  return true;
}

ZylExtractableI* ZylCloneManager::getClone(const ZylExtractableI* object) {
  struct Lock {
    ZylCloneManager* manager;
    long taken;
    ~Lock() {
      if (taken != 0) manager->unlock();
    }
  } held{this, lock()};
  setMaxId(object->getId());
  if (knows(object)) return _clones->element<ZylExtractableI*>(object->getId());
  // A clone that could not be entered would be lost, so the room comes first.
  makeRoom(object->getId());
  struct Awaited {
    explicit Awaited(long* number) : count(number) { ++*count; }
    ~Awaited() { --*count; }
    Awaited(const Awaited&) = delete;
    Awaited& operator=(const Awaited&) = delete;
    long* count;
  };
  ZylExtractableI* clone = nullptr;
  {
    const Awaited awaited(&_awaited);
    clone = makeClone(object);
  }
  setClone(object, clone);
  return clone;
}

// --- the environment's operations ----------------------------------------------------------------

ZylExtractableI* ZylEnvI::getClone(const ZylExtractableI* object) {
  return object != nullptr ? _cloneManager->getClone(object) : nullptr;
}

bool ZylEnvI::hasClone(const ZylExtractableI* object) const {
  return object != nullptr && _cloneManager->hasClone(object);
}

void ZylEnvI::setClone(const ZylExtractableI* object, ZylExtractableI* clone) {
  if (object != nullptr) _cloneManager->setClone(object, clone);
}

ZylExtractableI* ZylEnvI::substitute(const ZylExtractableI* object) {
  if (object == nullptr) return nullptr;
  struct Pushed {
    ZylCloneManager* manager;
    bool pushed;
    ~Pushed() {
      if (pushed) manager->popExpander();
    }
  } pushed{_cloneManager, _cloneManager->pushExpander()};
  return _cloneManager->getClone(object);
}

long ZylEnvI::lockCloning() { return _cloneManager->lock(); }
void ZylEnvI::unlockCloning() { _cloneManager->unlock(); }
long ZylEnvI::lockCloningLevel() { return _cloneManager->lockLevel(); }
void ZylEnvI::unlockCloningLevel(long level) { _cloneManager->unlockLevel(level); }
bool ZylEnvI::isCloningLocked() const { return _cloneManager->isLocked(); }

ZylRttiEnvObjectI* ZylEnvI::getKvlClone(const ZylRttiEnvObjectI* object) {
  return object != nullptr ? object->makeKvlClone(this) : nullptr;
}
