// Extractables, changes, models and objectives.

#ifndef ZYL_MODEL_H
#define ZYL_MODEL_H

#include "vorlane/model/change.h"             // IWYU pragma: export
#include "vorlane/model/extractable.h"        // IWYU pragma: export
#include "vorlane/model/extractable_array.h"  // IWYU pragma: export
#include "vorlane/model/extractable_list.h"   // IWYU pragma: export
#include "vorlane/model/model.h"              // IWYU pragma: export
#include "vorlane/model/multi_criterion.h"    // IWYU pragma: export
#include "vorlane/model/objective.h"          // IWYU pragma: export
#include "vorlane/model/objective_change.h"   // IWYU pragma: export
#include "vorlane/model/visitor.h"            // IWYU pragma: export

#endif
