// All that an engine uses: what clients use, the implementation classes and the changes among it.

#ifndef ZYL_ENGINE_H
#define ZYL_ENGINE_H

#include "vorlane/algorithm/dispatch.h"  // IWYU pragma: export
#include "vorlane/vorlane.h"             // IWYU pragma: export

#endif
