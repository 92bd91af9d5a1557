// Life and release of objects by their base: the environment's, a manager's, or nobody's.

#include "vorlane/env/object.h"

#include "vorlane/env/destroyable_list.h"

ZYL_TYPE_DEF(ZylRttiEnvObjectI, ZylRtti)
ZYL_TYPE_DEF(ZylExtensibleRttiEnvObjectI, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylRttiMemoryManagerObjectI, ZylRtti)
ZYL_TYPE_DEF(ZylExtensibleRttiMemoryManagerObjectI, ZylRttiMemoryManagerObjectI)
ZYL_TYPE_DEF(ZylDestroyableI, ZylRttiEnvObjectI)
ZYL_TYPE_DEF(ZylKvlBaseObjectI, ZylRttiEnvObjectI)

using zyl::detail::ReleaseToEnv;
using zyl::detail::ReleaseToManager;

namespace {

ZylEnvI* requireEnv(const ZylGenAlloc* manager) {
  ZylEnvI* env = ZylGetEnv(manager);
  if (env == nullptr) throw ZylEnv::IncompatibleMemoryManagerException();
  return env;
}

}  // namespace

ZylEnvObjectI::~ZylEnvObjectI() noexcept(false) = default;

void ZylEnvObjectI::operator delete(ZylEnvObjectI* object, std::destroying_delete_t,
                                    std::size_t size) noexcept(false) {
  ReleaseToEnv release{object->_env, object, size};
  object->~ZylEnvObjectI();
}

bool ZylRttiEnvObjectI::isKvlRefCounted() const { return false; }

ZylRttiEnvObjectI* ZylRttiEnvObjectI::makeKvlClone(ZylEnvI*) const {
  throw ZylWrongUsage("ZylRttiEnvObjectI::makeKvlClone not implemented");
}

void ZylRttiEnvObjectI::operator delete(ZylRttiEnvObjectI* object, std::destroying_delete_t,
                                        std::size_t size) noexcept(false) {
  ReleaseToEnv release{object->_env, object, size};
  object->~ZylRttiEnvObjectI();
}

ZylExtensibleRttiEnvObjectI::~ZylExtensibleRttiEnvObjectI() {
  zyl::detail::Extended::end(extensionAlloc(), &_extension);
}

ZylMemoryManagerObjectI::~ZylMemoryManagerObjectI() noexcept(false) = default;

void ZylMemoryManagerObjectI::operator delete(ZylMemoryManagerObjectI* object,
                                              std::destroying_delete_t,
                                              std::size_t size) noexcept(false) {
  ReleaseToManager release{object->_manager, object, size};
  object->~ZylMemoryManagerObjectI();
}

ZylEnvI* ZylMemoryManagerObjectI::getEnv() const { return requireEnv(_manager); }

void ZylRttiMemoryManagerObjectI::operator delete(ZylRttiMemoryManagerObjectI* object,
                                                  std::destroying_delete_t,
                                                  std::size_t size) noexcept(false) {
  ReleaseToManager release{object->_manager, object, size};
  object->~ZylRttiMemoryManagerObjectI();
}

ZylEnvI* ZylRttiMemoryManagerObjectI::getEnv() const { return requireEnv(_manager); }

ZylExtensibleRttiMemoryManagerObjectI::~ZylExtensibleRttiMemoryManagerObjectI() {
  zyl::detail::Extended::end(extensionAlloc(), &_extension);
}

ZylDestroyableI::ZylDestroyableI(ZylEnvI* env) : ZylRttiEnvObjectI(env) {
  if (env->getLocalEnv() == nullptr) env->addDestroyable(this);
}

ZylDestroyableI::~ZylDestroyableI() {
  // Under a local environment too: one that entered before must not be deleted a second time.
  _env->removeDestroyable(this);
}

bool ZylKvlBaseObjectI::isSymbol() const { return false; }
