// News of edits of data, for whoever has copied or indexed them.

#ifndef ZYL_COLLECTION_DATA_CHANGE_H
#define ZYL_COLLECTION_DATA_CHANGE_H

#include "vorlane/env/object.h"

/// Hears of changes of data.
class ZYL_EXPORT ZylDataChangeListenerI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylDataChangeListenerI, ZylRttiEnvObjectI)
 public:
  explicit ZylDataChangeListenerI(ZylEnvI* env) : ZylRttiEnvObjectI(env) {}
  /// The data have changed. Must not register or unregister a listener.
  virtual void change() = 0;
};

/// Tells its listeners of changes, the newest first. Listeners are not owned.
class ZYL_EXPORT ZylDataChangeNotifierI : public ZylRttiEnvObjectI {
  ZYL_TYPE(ZylDataChangeNotifierI, ZylRttiEnvObjectI)
 public:
  explicit ZylDataChangeNotifierI(ZylEnvI* env) : ZylRttiEnvObjectI(env) {}
  ~ZylDataChangeNotifierI() override;

  /// One more call per change, also for a listener that is there already. Raises `ZylWrongUsage`
  /// for null.
  void registerListener(ZylDataChangeListenerI* listener);
  /// Takes back all registrations of a listener.
  void unregisterListener(const ZylDataChangeListenerI* listener);
  /// Calls each listener. What one of them raises passes, and the later ones hear nothing.
  void change() const;

 private:
  struct Node {
    ZylDataChangeListenerI* listener;
    Node* next;
  };
  // Frees the node and lets the link pass over it.
  ZYL_LOCAL void unlink(Node** link);

  Node* _first = nullptr;
};

#endif
