// All that a client uses to state models.

#ifndef ZYL_VORLANE_H
#define ZYL_VORLANE_H

#include "vorlane/algorithm.h"   // IWYU pragma: export
#include "vorlane/collection.h"  // IWYU pragma: export
#include "vorlane/constraint.h"  // IWYU pragma: export
#include "vorlane/env.h"         // IWYU pragma: export
#include "vorlane/expr.h"        // IWYU pragma: export
#include "vorlane/model.h"       // IWYU pragma: export

#endif
