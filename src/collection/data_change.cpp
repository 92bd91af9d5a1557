// The list of listeners of a collection, and its tour of them.

#include "vorlane/collection/data_change.h"

ZYL_TYPE_DEF(ZylDataChangeListenerI, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylDataChangeNotifierI, ZylRttiEnvObjectI)

ZylDataChangeNotifierI::~ZylDataChangeNotifierI() {
  while (_first != nullptr) unlink(&_first);
}

void ZylDataChangeNotifierI::registerListener(ZylDataChangeListenerI* listener) {
  if (listener == nullptr) {
    ZylRaiseWrongUsage("ZylDataChangeNotifierI::registerListener: the listener is null");
  }
  auto* node = static_cast<Node*>(_env->alloc(sizeof(Node)));
  *node = Node{listener, _first};
  _first = node;
}

void ZylDataChangeNotifierI::unregisterListener(const ZylDataChangeListenerI* listener) {
  for (Node** link = &_first; *link != nullptr;) {
    if ((*link)->listener == listener) {
      unlink(link);
    } else {
      link = &(*link)->next;
    }
  }
}

void ZylDataChangeNotifierI::change() const {
  for (const Node* node = _first; node != nullptr; node = node->next) node->listener->change();
}

void ZylDataChangeNotifierI::unlink(Node** link) {
  Node* node = *link;
  *link = node->next;
  zyl::detail::freeInEnv(_env, node, sizeof(Node));
}
