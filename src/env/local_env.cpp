// What a local environment leaves to its environment, and the one that locks.

#include "vorlane/env/local_env.h"

#include "vorlane/env/environment.h"

using zyl::detail::EnvLock;

ZylLocalEnvI::~ZylLocalEnvI() = default;

long ZylLocalEnvI::init(ZylExtractableI* object) { return _env->getIdManager()->newId(object); }
void ZylLocalEnvI::releaseId(long id) { _env->getIdManager()->freeId(id); }
long ZylLocalEnvI::bookId() { return _env->getIdManager()->bookId(); }

ZylMTSafeLocalEnvI::~ZylMTSafeLocalEnvI() = default;

void* ZylMTSafeLocalEnvI::alloc(unsigned long size) {
  EnvLock lock(_env->getMutex());
  return _env->getMemory()->alloc(static_cast<long>(size));
}

void ZylMTSafeLocalEnvI::free(void* block, unsigned long size) {
  EnvLock lock(_env->getMutex());
  _env->getMemory()->free(block, static_cast<long>(size));
}

long ZylMTSafeLocalEnvI::init(ZylExtractableI* object) {
  EnvLock lock(_env->getMutex());
  return ZylLocalEnvI::init(object);
}

void ZylMTSafeLocalEnvI::releaseId(long id) {
  EnvLock lock(_env->getMutex());
  ZylLocalEnvI::releaseId(id);
}

void ZylMTSafeLocalEnvI::saveValue(void**) {}
void ZylMTSafeLocalEnvI::saveValue(long*) {}
void ZylMTSafeLocalEnvI::saveValue(double*) {}
