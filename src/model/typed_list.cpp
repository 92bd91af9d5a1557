// Lists of extractables by exact class, filled when somebody asks.

#include "vorlane/model/typed_list.h"

#include "common/part.h"

namespace {

constexpr long ListBuckets = 32;

void* keyOf(ZylTypeInfo type) { return reinterpret_cast<void*>(type); }

// The lists are no part of what a local environment undoes.
class SuspendedLocalEnv {
 public:
  explicit SuspendedLocalEnv(ZylEnvI* env) : _env(env), _local(env->setLocalEnv(nullptr)) {}
  ~SuspendedLocalEnv() { _env->setLocalEnv(_local); }
  SuspendedLocalEnv(const SuspendedLocalEnv&) = delete;
  SuspendedLocalEnv& operator=(const SuspendedLocalEnv&) = delete;

 private:
  ZylEnvI* _env;
  ZylLocalEnvI* _local;
};

}  // namespace

void ZylTypedList::addSubList(ZylTypedList* list) noexcept {
  list->_father = this;
  ZylTypedList** link = &_firstSubType;
  while (*link != nullptr) link = &(*link)->_next;
  *link = list;
}

ZylTypedListManagerI::ZylTypedListManagerI(ZylEnvI* env)
    : _env(env), _classifyAll(1), _lists(ZylEnv(env), ListBuckets) {}

// Until the first question everything is found by a scan of the id table.
void ZylTypedListManagerI::add(ZylExtractableI* object) {
  if (_classifyAll == 0) _pending.add(object);
}

void ZylTypedListManagerI::remove(ZylExtractableI* object) {
  if (_classifyAll != 0) return;
  auto* list = static_cast<ZylTypedList*>(_lists[keyOf(object->getTypeInfo())]);
  if (list == nullptr || !list->remove(object)) _pending.remove(object);
}

ZylTypedList* ZylTypedListManagerI::getList(ZylTypeInfo type) {
  const SuspendedLocalEnv suspended(_env);
  classify();
  return static_cast<ZylTypedList*>(_lists[keyOf(type)]);
}

void ZylTypedListManagerI::classify() {
  if (_classifyAll != 0) {
    classifyAll();
    return;
  }
  // One by one, so that a failure leaves each object in one list.
  while (const ZylExtractableList::Cell* cell = _pending.getFirst()) {
    ZylExtractableI* object = cell->element;
    insert(object);
    _pending.remove(object);
  }
}

void ZylTypedListManagerI::classifyAll() {
  const ZylIdManager* ids = _env->getIdManager();
  try {
    for (long id = 0; id < ids->getMaxId(); ++id) {
      if (ZylExtractableI* object = ids->getLive(id)) insert(object);
    }
  } catch (...) {
    clear();
    throw;
  }
  _classifyAll = 0;
}

void ZylTypedListManagerI::insert(ZylExtractableI* object) {
  getOrBuildList(object->getTypeInfo())->add(object);
}

ZylTypedList* ZylTypedListManagerI::getOrBuildList(ZylTypeInfo type) {
  if (void* known = _lists[keyOf(type)]) return static_cast<ZylTypedList*>(known);
  ZylTypedList* father =
      type != ZylExtractableI::GetTypeInfo() ? getOrBuildList(ZylGetBaseTypeInfo(type)) : nullptr;
  auto* list = zyl::detail::makePart<ZylTypedList>(type);
  try {
    _lists.add(keyOf(type), list);
  } catch (...) {
    delete list;
    throw;
  }
  if (father != nullptr) father->addSubList(list);
  return list;
}

void ZylTypedListManagerI::clear() {
  const SuspendedLocalEnv suspended(_env);
  _pending.clear();
  for (ZylSimpleHashTable::Iterator it(_lists); it.ok(); ++it) {
    auto* list = static_cast<ZylTypedList*>((*it).value);
    list->clear();
    delete list;
  }
  _lists.clear();
  _classifyAll = 1;
}

void ZylTypedListManagerI::end() {
  clear();
  _lists.end();
}

ZylTypedListManagerI* ZylTypedListManager::getOrMake(ZylTypedListManager& manager, ZylEnvI* env) {
  if (manager._impl == nullptr) manager._impl = zyl::detail::makePart<ZylTypedListManagerI>(env);
  return manager._impl;
}

void ZylTypedListManager::add(ZylExtractableI* object) {
  if (_impl != nullptr) _impl->add(object);
}

void ZylTypedListManager::remove(ZylExtractableI* object) {
  if (_impl != nullptr) _impl->remove(object);
}

void ZylTypedListManager::end(ZylEnvI*) {
  if (_impl == nullptr) return;
  _impl->end();
  delete _impl;
  _impl = nullptr;
}
