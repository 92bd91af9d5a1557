// Variables, expressions and the arithmetic of formulas.

#ifndef ZYL_EXPR_H
#define ZYL_EXPR_H

#include "vorlane/expr/conversion.h"        // IWYU pragma: export
#include "vorlane/expr/domain.h"            // IWYU pragma: export
#include "vorlane/expr/domain_table.h"      // IWYU pragma: export
#include "vorlane/expr/expr_array.h"        // IWYU pragma: export
#include "vorlane/expr/expression.h"        // IWYU pragma: export
#include "vorlane/expr/functions.h"         // IWYU pragma: export
#include "vorlane/expr/lin_term.h"          // IWYU pragma: export
#include "vorlane/expr/lin_term_change.h"   // IWYU pragma: export
#include "vorlane/expr/multi_criterion.h"   // IWYU pragma: export
#include "vorlane/expr/nodes.h"             // IWYU pragma: export
#include "vorlane/expr/num_expr.h"          // IWYU pragma: export
#include "vorlane/expr/objective.h"         // IWYU pragma: export
#include "vorlane/expr/objective_change.h"  // IWYU pragma: export
#include "vorlane/expr/operators.h"         // IWYU pragma: export
#include "vorlane/expr/special_variable.h"  // IWYU pragma: export
#include "vorlane/expr/var_array.h"         // IWYU pragma: export
#include "vorlane/expr/variable.h"          // IWYU pragma: export
#include "vorlane/expr/variable_change.h"   // IWYU pragma: export

#endif
