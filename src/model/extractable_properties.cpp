// Name, user object and properties of an extractable, through its handle.

#include "vorlane/model/extractable.h"

#define ZYL_HANDLE_CLASS ZylExtractable
#define ZYL_HANDLE_OWNER checked()
#define ZYL_HANDLE_NO_NAME "Using empty Handle"
#include "common/property_operations.inc"
