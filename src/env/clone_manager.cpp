#include "vorlane/env/clone_manager.h"

#include "vorlane/algorithm/expander.h"
#include "vorlane/model/extractable.h"

ZylCloneManager::~ZylCloneManager() {
  delete _clones;
  delete _cloned;
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
  if (_cloned == nullptr) return;
  for (long i = level; i < _cloned->getSize(); ++i) {
    if (void** clone = slot(_cloned->element<long>(i))) *clone = nullptr;
  }
  if (level < _cloned->getSize()) _cloned->truncate(level);
}

void** ZylCloneManager::slot(long id) const noexcept {
  if (_clones == nullptr || id < 0 || id >= _clones->getSize()) return nullptr;
  return &_clones->element<void*>(id);
}

void ZylCloneManager::forget(long id) noexcept {
  if (void** clone = slot(id)) *clone = nullptr;
}

bool ZylCloneManager::hasClone(const ZylExtractableI* object) const {
  void* const* clone = slot(object->getId());
  return clone != nullptr && *clone != nullptr;
}

void ZylCloneManager::setMaxId(long id) {
  if (_clones != nullptr && id < _clones->getSize()) return;
  // The memo is no part of what a local environment undoes.
  struct Suspended {
    ZylEnvI* env;
    ZylLocalEnvI* local;
    ~Suspended() { env->setLocalEnv(local); }
  } suspended{_env, _env->setLocalEnv(nullptr)};
  if (_clones == nullptr) _clones = new (_env->getGenAlloc()) ZylArrayI(_env, 0L);
  if (_cloned == nullptr) _cloned = new (_env->getGenAlloc()) ZylArrayI(_env, 0L);
  while (_clones->getSize() <= id) _clones->append<void*>(nullptr);
}

void ZylCloneManager::setClone(const ZylExtractableI* object, ZylExtractableI* clone) {
  const long id = object->getId();
  setMaxId(id);
  _cloned->append<long>(id);
  *slot(id) = clone;
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
  if (void* known = *slot(object->getId())) return static_cast<ZylExtractableI*>(known);
  ZylExtractableI* clone = nullptr;
  if (_expander != nullptr) {
    clone = _expander->substitute(const_cast<ZylExtractableI*>(object));  // NOLINT: only read
  }
  if (clone == nullptr) clone = object->makeClone(_env);
  setClone(object, clone);
  return clone;
}

// --- the environment's operations -----------------------------------------------------------------

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
