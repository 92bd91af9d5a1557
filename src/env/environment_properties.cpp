// Name, user object and properties of an environment, through its handle.

#include "common/property_check.h"
#include "vorlane/env/environment.h"

namespace {

constexpr const char* NoName = "ZylEnv: Using empty string";

ZylEnvI* owner(const ZylEnv& env) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylEnv: Using empty handle");
  return env.getImpl();
}

}  // namespace

ZylNamedPropertyI* ZylEnv::getPropertyI(const char* name) const {
  return owner(*this)->getProperty(zyl::detail::checkedName(name, NoName));
}

#define ZYL_HANDLE_CLASS ZylEnv
#define ZYL_HANDLE_OWNER owner(*this)
#define ZYL_HANDLE_NO_NAME NoName
#include "common/property_operations.inc"
