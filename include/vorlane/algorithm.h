// The boundary towards engines.

#ifndef ZYL_ALGORITHM_H
#define ZYL_ALGORITHM_H

#include "vorlane/algorithm/algorithm.h"        // IWYU pragma: export
#include "vorlane/algorithm/expander.h"         // IWYU pragma: export
#include "vorlane/algorithm/label_callback.h"   // IWYU pragma: export
#include "vorlane/algorithm/model_evaluator.h"  // IWYU pragma: export

#endif
