// The mark of a collection that a front end keeps sorted.

#ifndef ZYL_COLLECTION_SORT_SET_PROPERTY_H
#define ZYL_COLLECTION_SORT_SET_PROPERTY_H

#include "vorlane/env/property.h"

/// A property without a value: its presence alone tells.
class ZYL_EXPORT ZylSortSetPropertyI final : public ZylNamedPropertyI {
  ZYL_TYPE_MANAGED(ZylSortSetPropertyI, ZylNamedPropertyI)
 public:
  /// The name of each such property, "SortSet".
  static const char* const SortSet;

  explicit ZylSortSetPropertyI(ZylGenAlloc* manager) : ZylNamedPropertyI(manager) {}
  const char* getName() const override;
  /// Raises `ZylWrongUsage`: the order belongs to one collection.
  [[nodiscard]] ZylNamedPropertyI* makeClone(const ZylMemoryManager& manager) const override;
};

#endif
