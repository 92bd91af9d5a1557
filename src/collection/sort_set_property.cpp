#include "vorlane/collection/sort_set_property.h"

ZYL_TYPE_DEF(ZylSortSetPropertyI, ZylNamedPropertyI)

constinit const char* const ZylSortSetPropertyI::SortSet = "SortSet";

const char* ZylSortSetPropertyI::getName() const { return SortSet; }

ZylNamedPropertyI* ZylSortSetPropertyI::makeClone(const ZylMemoryManager&) const {
  throw ZylWrongUsage("can not clone this property");
}
