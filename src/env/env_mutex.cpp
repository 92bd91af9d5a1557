#include "vorlane/env/env_mutex.h"

#include <new>

#include "vorlane/env/environment.h"

void ZylBaseEnvMutex::lock() {}
void ZylBaseEnvMutex::unlock() {}
ZylBaseEnvMutex::~ZylBaseEnvMutex() = default;

void ZylEnvMutex::lock() { _held.lock(); }
void ZylEnvMutex::unlock() { _held.unlock(); }
ZylEnvMutex::~ZylEnvMutex() = default;

ZylEnvMutex* ZylMakeEnvMutex() {
  return new (zyl::detail::allocateGlobal(sizeof(ZylEnvMutex))) ZylEnvMutex();
}

ZylBaseEnvMutex* ZylEnvI::Mutex = nullptr;
long ZylEnvI::DeleteMutex = 0;

long* ZylInitMT(ZylBaseEnvMutex* mutex) {
  ZylEnvI::Mutex = mutex;
  ZylEnvI::DeleteMutex = 0;
  return &ZylEnvI::DeleteMutex;
}

bool ZylIsMTEnabled() { return ZylEnvI::Mutex != nullptr; }

void ZylEndMT() {
  if (ZylEnvI::DeleteMutex != 0) delete ZylEnvI::Mutex;
  ZylEnvI::Mutex = nullptr;
  ZylEnvI::DeleteMutex = 0;
}
