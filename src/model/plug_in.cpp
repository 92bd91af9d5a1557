// The registry of plug-ins by name; its walks survive what plug-ins do to it meanwhile.

#include "vorlane/model/plug_in.h"

#include <cstring>

#include "common/walk.h"

ZYL_TYPE_DEF(ZylPlugIn, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylNotifiedPlugIn, ZylPlugIn)
ZYL_TYPE_DEF(ZylPlugInAddon, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylBaseDeleterI, ZylNotifiedPlugIn)

using zyl::detail::EnvLock;
using zyl::detail::Walk;

void ZylNotifiedPlugIn::removeAlgorithm(ZylAlgorithmI*) {}

// The link that leads to `object` in a chain, null if it is not in it.
template <class T>
T** ZylPlugInManager::findLink(T** link, const T* object) {
  for (; *link != nullptr; link = &(*link)->_next) {
    if (*link == object) return link;
  }
  return nullptr;
}

// Takes what `link` leads to off its chain; nothing for null.
template <class T>
void ZylPlugInManager::unlink(T** link, Walk<T>* walks) {
  if (link == nullptr) return;
  T* element = *link;
  Walk<T>::leave(walks, element);
  *link = element->_next;
  element->_next = nullptr;
}

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
    _notified = cell->_next;
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
  Walk walk(&_addonWalks, cell->_addons);
  while (ZylPlugInAddon* addon = walk.next()) addon->plugInAdded(plugIn);
}

void ZylPlugInManager::add(ZylPlugInAddon* addon, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findOrCreateCell(name);
  addon->_next = cell->_addons;
  cell->_addons = addon;
  Walk walk(&_plugInWalks, cell->_plugIns);
  while (ZylPlugIn* plugIn = walk.next()) addon->plugInAdded(plugIn);
}

void ZylPlugInManager::remove(ZylPlugIn* plugIn, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findCell(name);
  if (cell == nullptr || findLink(&cell->_plugIns, plugIn) == nullptr) return;
  Walk walk(&_addonWalks, cell->_addons);
  while (ZylPlugInAddon* addon = walk.next()) addon->plugInRemoved(plugIn);
  unlink(findLink(&cell->_plugIns, plugIn), _plugInWalks);
}

void ZylPlugInManager::remove(ZylPlugInAddon* addon, const char* name) {
  const EnvLock lock(_env->getMutex());
  ZylCell* cell = findCell(name);
  if (cell == nullptr || findLink(&cell->_addons, addon) == nullptr) return;
  Walk walk(&_plugInWalks, cell->_plugIns);
  while (ZylPlugIn* plugIn = walk.next()) addon->plugInRemoved(plugIn);
  unlink(findLink(&cell->_addons, addon), _addonWalks);
}

void ZylPlugInManager::addNotified(ZylNotifiedPlugIn* plugIn) {
  const EnvLock lock(_env->getMutex());
  auto* cell = static_cast<NotifiedCell*>(_env->alloc(sizeof(NotifiedCell)));
  *cell = NotifiedCell{plugIn, _notified};
  _notified = cell;
}

void ZylPlugInManager::removeNotified(ZylNotifiedPlugIn* plugIn) {
  const EnvLock lock(_env->getMutex());
  NotifiedCell** link = &_notified;
  while (*link != nullptr && (*link)->plugIn != plugIn) link = &(*link)->_next;
  NotifiedCell* cell = *link;
  if (cell == nullptr) return;
  unlink(link, _notifiedWalks);
  _env->free(cell, sizeof(NotifiedCell));
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
  Walk walk(&_notifiedWalks, _notified);
  while (const NotifiedCell* cell = walk.next()) {
    if (cell->plugIn->concerns(object)) cell->plugIn->notification(change, object);
  }
}

void ZylPlugInManager::removeAlgorithm(ZylAlgorithmI* algorithm) {
  const zyl::detail::EnvLock lock(_env->getMutex());
  Walk walk(&_notifiedWalks, _notified);
  while (const NotifiedCell* cell = walk.next()) {
    ZylNotifiedPlugIn* plugIn = cell->plugIn;
    if (plugIn->_algorithm == algorithm) plugIn->_algorithm = nullptr;
    plugIn->removeAlgorithm(algorithm);
  }
}
