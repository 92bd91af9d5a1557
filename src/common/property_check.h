// Argument checks that every handle with properties makes.

#ifndef ZYL_SRC_COMMON_PROPERTY_CHECK_H
#define ZYL_SRC_COMMON_PROPERTY_CHECK_H

#include "vorlane/env/property.h"

namespace zyl::detail {

inline ZylNamedPropertyI* checkedProperty(const ZylNamedProperty& property) {
  if (property.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylNamedProperty: Using empty handle");
  return property.getImpl();
}

inline ZylNamedPropertySetI* checkedSet(const ZylNamedPropertySet& set) {
  if (set.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylNamedPropertySet: Using empty handle");
  return set.getImpl();
}

inline const char* checkedName(const char* name, const char* text) {
  if (name == nullptr) ZylRaiseEmptyHandle(text);
  return name;
}

}  // namespace zyl::detail

#endif
