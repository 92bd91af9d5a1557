#include "vorlane/env/plug_in.h"

#include <cstring>

#include "vorlane/algorithm/algorithm.h"

ZYL_TYPE_DEF(ZylPlugIn, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylNotifiedPlugIn, ZylPlugIn)
ZYL_TYPE_DEF(ZylPlugInAddon, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylBaseDeleterI, ZylNotifiedPlugIn)

using zyl::detail::EnvLock;

void ZylNotifiedPlugIn::removeAlgorithm(ZylAlgorithmI*) {}

void ZylPlugInManager::ZylCell::end(ZylEnvI* env) {
  env->strFree(_name);
  while (ZylPlugIn* plugIn = _plugIns) {
    _plugIns = plugIn->_next;
    delete plugIn;
  }
  while (ZylPlugInAddon* addon = _addons) {
    _addons = addon->_next;
    delete addon;
  }
}

ZylPlugInManager::~ZylPlugInManager() {
  while (ZylCell* cell = _cells) {
    _cells = cell->_next;
    cell->end(_env);
    _env->free(cell, sizeof(ZylCell));
  }
  while (NotifiedCell* cell = _notified) {
    _notified = cell->next;
    _env->free(cell, sizeof(NotifiedCell));
  }
}

ZylPlugInManager::ZylCell* ZylPlugInManager::findCell(const char* name) const {
  for (ZylCell* cell = _cells; cell != nullptr; cell = cell->_next) {
    if (std::strcmp(cell->_name, name) == 0) return cell;
  }
  return nullptr;
}

ZylPlugInManager::ZylCell* ZylPlugInManager::findOrCreateCell(const char* name) {
  const EnvLock lock(_env->getMutex());
  if (ZylCell* known = findCell(name)) return known;
  char* copy = _env->strDup(name);
  try {
    auto* cell = static_cast<ZylCell*>(_env->alloc(sizeof(ZylCell)));
    *cell = ZylCell{copy, nullptr, nullptr, _cells};
    _cells = cell;
    return cell;
  } catch (...) {
    _env->strFree(copy);
    throw;
  }
}

void ZylPlugInManager::add(ZylPlugIn* plugIn, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findOrCreateCell(name);
  plugIn->_next = cell->_plugIns;
  cell->_plugIns = plugIn;
  for (ZylPlugInAddon* addon = cell->_addons; addon != nullptr;) {
    // The add-on may take itself off while it hears of the plug-in; the same below.
    ZylPlugInAddon* next = addon->_next;
    addon->plugInAdded(plugIn);
    addon = next;
  }
}

void ZylPlugInManager::add(ZylPlugInAddon* addon, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findOrCreateCell(name);
  addon->_next = cell->_addons;
  cell->_addons = addon;
  for (ZylPlugIn* plugIn = cell->_plugIns; plugIn != nullptr;) {
    ZylPlugIn* next = plugIn->_next;
    addon->plugInAdded(plugIn);
    plugIn = next;
  }
}

namespace {
// The link that leads to `object` in a chain, null if it is not in it.
template <class T, class Next>
T** findLink(T** link, const T* object, Next next) {
  for (; *link != nullptr; link = next(*link)) {
    if (*link == object) return link;
  }
  return nullptr;
}
}  // namespace

// The link is looked for again behind the calls, which may have taken others off the chain.
void ZylPlugInManager::remove(ZylPlugIn* plugIn, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findCell(name);
  const auto link = [&] {
    return findLink(&cell->_plugIns, plugIn, [](ZylPlugIn* other) { return &other->_next; });
  };
  if (cell == nullptr || link() == nullptr) return;
  for (ZylPlugInAddon* addon = cell->_addons; addon != nullptr;) {
    ZylPlugInAddon* next = addon->_next;
    addon->plugInRemoved(plugIn);
    addon = next;
  }
  if (ZylPlugIn** found = link()) {
    *found = plugIn->_next;
    plugIn->_next = nullptr;
  }
}

void ZylPlugInManager::remove(ZylPlugInAddon* addon, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findCell(name);
  const auto link = [&] {
    return findLink(&cell->_addons, addon, [](ZylPlugInAddon* other) { return &other->_next; });
  };
  if (cell == nullptr || link() == nullptr) return;
  for (ZylPlugIn* plugIn = cell->_plugIns; plugIn != nullptr;) {
    ZylPlugIn* next = plugIn->_next;
    addon->plugInRemoved(plugIn);
    plugIn = next;
  }
  if (ZylPlugInAddon** found = link()) {
    *found = addon->_next;
    addon->_next = nullptr;
  }
}

void ZylPlugInManager::addNotified(ZylNotifiedPlugIn* plugIn) {
  const EnvLock lock(_env->getMutex());
  auto* cell = static_cast<NotifiedCell*>(_env->alloc(sizeof(NotifiedCell)));
  *cell = NotifiedCell{plugIn, _notified};
  _notified = cell;
}

void ZylPlugInManager::removeNotified(ZylNotifiedPlugIn* plugIn) {
  const EnvLock lock(_env->getMutex());
  for (NotifiedCell** link = &_notified; *link != nullptr; link = &(*link)->next) {
    NotifiedCell* cell = *link;
    if (cell->plugIn != plugIn) continue;
    *link = cell->next;
    _env->free(cell, sizeof(NotifiedCell));
    return;
  }
}

bool ZylPlugInManager::isCreated(ZylTypeInfo type, const char* name) const {
  const zyl::detail::EnvLock lock(_env->getMutex());
  const ZylCell* cell = findCell(name);
  if (cell == nullptr) return false;
  for (const ZylPlugIn* plugIn = cell->_plugIns; plugIn != nullptr; plugIn = plugIn->_next) {
    if (plugIn->getTypeInfo() == type) return true;
  }
  return false;
}

void ZylPlugInManager::apply(const ZylChange& change, const ZylExtractableI* object) {
  for (const NotifiedCell* cell = _notified; cell != nullptr;) {
    // The plug-in may take itself off the list while it hears of the change.
    const NotifiedCell* next = cell->next;
    const ZylAlgorithmI* algorithm = cell->plugIn->_algorithm;
    if (algorithm == nullptr || object == nullptr || algorithm->isInUse(object)) {
      cell->plugIn->notification(change, object);
    }
    cell = next;
  }
}

void ZylPlugInManager::removeAlgorithm(ZylAlgorithmI* algorithm) {
  const zyl::detail::EnvLock lock(_env->getMutex());
  for (const NotifiedCell* cell = _notified; cell != nullptr;) {
    const NotifiedCell* next = cell->next;
    ZylNotifiedPlugIn* plugIn = cell->plugIn;
    if (plugIn->_algorithm == algorithm) plugIn->_algorithm = nullptr;
    plugIn->removeAlgorithm(algorithm);
    cell = next;
  }
}
