// Birth and death of a single extractable: its id, and who is told of it.

#include <utility>

#include "model/life_watch.h"
#include "vorlane/env/environment.h"
#include "vorlane/model/clone_manager.h"
#include "vorlane/model/plug_in.h"

void ZylEnvI::init(ZylExtractableI* object) {
  if (ZYL_UNLIKELY(_localEnv != nullptr)) {
    object->_id = _localEnv->init(object);
    return;
  }
  object->_id = _idManager->newId(object);
  if (ZYL_LIKELY(_typedLists.isEmpty() && _deleter == nullptr)) return;
  try {
    if (!_typedLists.isEmpty()) _typedLists.add(object);
    if (_deleter != nullptr) _deleter->created(object);
  } catch (...) {
    // The constructor that called raises too: nothing may lead to the object any more.
    if (!_typedLists.isEmpty()) _typedLists.remove(object);
    _idManager->freeId(object->_id);
    object->_id = -1;
    throw;
  }
}

void ZylEnvI::finit(ZylExtractableI* object) {
  const long id = object->_id;
  if (id < 0) return;  // finished before: nothing is left to take back
  if (ZYL_UNLIKELY(_lifeWatches != nullptr)) {
    zyl::detail::LifeWatch<ZylExtractableI>::leave(_lifeWatches, object);
  }
  _cloneManager->forget(object);
  // The object may have entered a list before a local environment came, and must not stay there.
  if (!_typedLists.isEmpty()) {
    const zyl::detail::EnvLock lock(_mtSafeAllocation != 0 ? _mutex : nullptr);
    _typedLists.remove(object);
  }
  if (_localEnv != nullptr) {
    _localEnv->releaseId(id);
  } else {
    _idManager->freeId(id);
    if (_deleter != nullptr) _deleter->ended(object);
  }
  object->_id = -1;
}

void ZylEnvI::removeVerticalEnv(void* object) {
  if (object == nullptr) return;
  auto* extractable = static_cast<ZylExtractableI*>(object);
  if (extractable->_id >= 0) _idManager->freeId(std::exchange(extractable->_id, -1));
  delete extractable;
}

// With the pools off, each object that still lives is a block of its own and gets its destructor.
void ZylEnvI::deleteLiveObjects() {
  _tearingDown = 1;
  for (long id = 0; id < _idManager->getMaxId(); ++id) {
    ZylExtractableI* object = _idManager->getLive(id);
    if (object == nullptr) continue;
    _idManager->freeId(id);
    object->_id = -1;
    delete object;
  }
  _tearingDown = 0;
}
