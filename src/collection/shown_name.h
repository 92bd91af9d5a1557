// How a failure names a collection.

#ifndef ZYL_SRC_COLLECTION_SHOWN_NAME_H
#define ZYL_SRC_COLLECTION_SHOWN_NAME_H

#include "vorlane/collection/data_collection.h"

namespace zyl::detail {
inline const char* shownName(const ZylDataCollectionI* collection) {
  const char* name = collection->getName();
  return name != nullptr ? name : "unamed collection";
}
}  // namespace zyl::detail

#endif
