// Ranges and comparisons.

#ifndef ZYL_CONSTRAINT_H
#define ZYL_CONSTRAINT_H

#include "vorlane/constraint/comparison.h"          // IWYU pragma: export
#include "vorlane/constraint/constraint.h"          // IWYU pragma: export
#include "vorlane/constraint/for_all.h"             // IWYU pragma: export
#include "vorlane/constraint/for_all_change.h"      // IWYU pragma: export
#include "vorlane/constraint/indicator_variable.h"  // IWYU pragma: export
#include "vorlane/constraint/range.h"               // IWYU pragma: export
#include "vorlane/constraint/range_change.h"        // IWYU pragma: export

#endif
