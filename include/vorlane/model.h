// Extractables, changes, models and objectives.

#ifndef ZYL_MODEL_H
#define ZYL_MODEL_H

#include "vorlane/model/algorithm_handle.h"   // IWYU pragma: export
#include "vorlane/model/change.h"             // IWYU pragma: export
#include "vorlane/model/clone_manager.h"      // IWYU pragma: export
#include "vorlane/model/display.h"            // IWYU pragma: export
#include "vorlane/model/extractable.h"        // IWYU pragma: export
#include "vorlane/model/extractable_array.h"  // IWYU pragma: export
#include "vorlane/model/extractable_list.h"   // IWYU pragma: export
#include "vorlane/model/model.h"              // IWYU pragma: export
#include "vorlane/model/model_change.h"       // IWYU pragma: export
#include "vorlane/model/plug_in.h"            // IWYU pragma: export
#include "vorlane/model/record.h"             // IWYU pragma: export
#include "vorlane/model/recycle_bin.h"        // IWYU pragma: export
#include "vorlane/model/typed_list.h"         // IWYU pragma: export
#include "vorlane/model/visitor.h"            // IWYU pragma: export

#endif
