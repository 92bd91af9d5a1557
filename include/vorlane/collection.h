// Data collections.

#ifndef ZYL_COLLECTION_H
#define ZYL_COLLECTION_H

#include "vorlane/collection/data_collection.h"  // IWYU pragma: export
#include "vorlane/collection/range.h"  // IWYU pragma: export

#endif
