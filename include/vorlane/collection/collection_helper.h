// Ways down from a collection of any kind to one that is known.

#ifndef ZYL_COLLECTION_COLLECTION_HELPER_H
#define ZYL_COLLECTION_COLLECTION_HELPER_H

#include "vorlane/collection/range.h"

/// Checked conversions of handles.
class ZYL_EXPORT ZylCollectionHelper {
 public:
  /// A handle on the same collection. Raise `ZylWrongUsage` "Collection is not of the correct type"
  /// for another kind, `ZylEmptyHandleException` for an empty handle.
  static ZylIntRange asIntRange(const ZylDataCollection& collection);
  static ZylNumRange asNumRange(const ZylDataCollection& collection);
};

#endif
