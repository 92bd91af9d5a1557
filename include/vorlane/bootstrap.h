// Starting a Java runtime inside the process.
//
// The whole of it is single-threaded: everything here belongs to the thread that starts the
// runtime. Searches run once per process and their results are final.

#ifndef ZYL_BOOTSTRAP_H
#define ZYL_BOOTSTRAP_H

#include "vorlane/bootstrap/discovery.h"        // IWYU pragma: export
#include "vorlane/bootstrap/launch.h"           // IWYU pragma: export
#include "vorlane/bootstrap/logger.h"           // IWYU pragma: export
#include "vorlane/bootstrap/message_handler.h"  // IWYU pragma: export

#endif
