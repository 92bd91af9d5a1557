// Data collections.

#ifndef ZYL_COLLECTION_H
#define ZYL_COLLECTION_H

#include "vorlane/collection/collection_exception.h"  // IWYU pragma: export
#include "vorlane/collection/collection_helper.h"     // IWYU pragma: export
#include "vorlane/collection/data_change.h"           // IWYU pragma: export
#include "vorlane/collection/data_collection.h"       // IWYU pragma: export
#include "vorlane/collection/data_iterator.h"         // IWYU pragma: export
#include "vorlane/collection/discrete_collection.h"   // IWYU pragma: export
#include "vorlane/collection/object_base.h"           // IWYU pragma: export
#include "vorlane/collection/range.h"                 // IWYU pragma: export
#include "vorlane/collection/sort_set_property.h"     // IWYU pragma: export
#include "vorlane/collection/typed_collection.h"      // IWYU pragma: export

#endif
