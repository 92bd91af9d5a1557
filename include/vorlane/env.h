// The environment and what all objects rest on.

#ifndef ZYL_ENV_H
#define ZYL_ENV_H

#include "vorlane/env/allocation_stack.h"   // IWYU pragma: export
#include "vorlane/env/array.h"              // IWYU pragma: export
#include "vorlane/env/destroyable_list.h"   // IWYU pragma: export
#include "vorlane/env/env_mutex.h"          // IWYU pragma: export
#include "vorlane/env/environment.h"        // IWYU pragma: export
#include "vorlane/env/exception.h"          // IWYU pragma: export
#include "vorlane/env/extension.h"          // IWYU pragma: export
#include "vorlane/env/gen_alloc.h"          // IWYU pragma: export
#include "vorlane/env/hash_table.h"         // IWYU pragma: export
#include "vorlane/env/id_manager.h"         // IWYU pragma: export
#include "vorlane/env/local_env.h"          // IWYU pragma: export
#include "vorlane/env/locale.h"             // IWYU pragma: export
#include "vorlane/env/memory.h"             // IWYU pragma: export
#include "vorlane/env/null_stream.h"        // IWYU pragma: export
#include "vorlane/env/number.h"             // IWYU pragma: export
#include "vorlane/env/object.h"             // IWYU pragma: export
#include "vorlane/env/property.h"           // IWYU pragma: export
#include "vorlane/env/rtti.h"               // IWYU pragma: export
#include "vorlane/env/scoped.h"             // IWYU pragma: export
#include "vorlane/env/simple_hash_table.h"  // IWYU pragma: export
#include "vorlane/env/symbol.h"             // IWYU pragma: export
#include "vorlane/env/timer.h"              // IWYU pragma: export
#include "vorlane/env/types.h"              // IWYU pragma: export
#include "vorlane/env/version.h"            // IWYU pragma: export

#endif
