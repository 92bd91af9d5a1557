// Lists of extractables by class, kept only for environments that ask.

#ifndef ZYL_ENV_TYPED_LIST_MANAGER_H
#define ZYL_ENV_TYPED_LIST_MANAGER_H

#include "vorlane/env/export.h"

class ZylEnvI;
class ZylExtractableI;
class ZylTypedListManagerI;

/// One pointer to the lists, null until they are first wanted.
class ZYL_EXPORT ZylTypedListManager {
 public:
  ZylTypedListManager() = default;
  ZylTypedListManager(const ZylTypedListManager&) = delete;
  ZylTypedListManager& operator=(const ZylTypedListManager&) = delete;

  /// Returns the lists, making them on the first call. Raises `ZylMemoryException`.
  static ZylTypedListManagerI* getOrMake(ZylTypedListManager& manager, ZylEnvI* env);

  bool isEmpty() const noexcept { return _impl == nullptr; }
  ZylTypedListManagerI* getImpl() const noexcept { return _impl; }
  /// Enters a new object, or takes one out. Nothing happens without lists.
  void add(ZylExtractableI* object);
  void remove(ZylExtractableI* object);
  /// Gives the lists back; the next `getOrMake` starts afresh.
  void end(ZylEnvI* env);

 private:
  ZylTypedListManagerI* _impl = nullptr;
};

#endif
