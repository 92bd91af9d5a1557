// The JNI binding layer: loads a Java runtime, attaches threads, maps Java exceptions.
//
// Stands on jni.h alone and knows nothing of the rest of the library.

#ifndef ZYL_JACE_H
#define ZYL_JACE_H

#include "vorlane/jace/counted_ptr.h"        // IWYU pragma: export
#include "vorlane/jace/exception.h"          // IWYU pragma: export
#include "vorlane/jace/helper.h"             // IWYU pragma: export
#include "vorlane/jace/option.h"             // IWYU pragma: export
#include "vorlane/jace/option_list.h"        // IWYU pragma: export
#include "vorlane/jace/unix_vm_loader.h"     // IWYU pragma: export
#include "vorlane/jace/vm_loader.h"          // IWYU pragma: export
#include "vorlane/jace/wrapper_vm_loader.h"  // IWYU pragma: export

#endif
