// The allocators of the library, on pools and on a stack, and the way from one to its environment.

#include "vorlane/env/gen_alloc.h"

#include "vorlane/env/allocation_stack.h"
#include "vorlane/env/environment.h"
#include "vorlane/env/symbol.h"

ZYL_TYPE_DEF(ZylGenAlloc, ZylRtti)
ZYL_TYPE_DEF(ZylVorlaneAlloc, ZylGenAlloc)
ZYL_TYPE_DEF(ZylStackGenAlloc, ZylGenAlloc)

void* ZylVorlaneAlloc::alloc(unsigned long size) const { return _env->alloc(size); }

void ZylVorlaneAlloc::free(void* block, unsigned long size) const {
  if (block != nullptr && size != 0) _env->free(block, size);
}

void ZylVorlaneAlloc::saveValue(void**) const {}
void ZylVorlaneAlloc::saveValue(long*) const {}
void ZylVorlaneAlloc::saveValue(double*) const {}
const char* ZylVorlaneAlloc::intern(const char* text) const { return _env->intern(text); }

void* ZylStackGenAlloc::alloc(unsigned long size) const { return _stack->allocate(size); }

void ZylStackGenAlloc::free(void* block, unsigned long size) const {
  if (block != nullptr && size != 0) _stack->free(block, size);
}

void ZylStackGenAlloc::saveValue(void**) const {}
void ZylStackGenAlloc::saveValue(long*) const {}
void ZylStackGenAlloc::saveValue(double*) const {}

const char* ZylStackGenAlloc::intern(const char* text) const {
  return text != nullptr ? _symbols->make(text)->getText() : nullptr;
}

ZylMemoryManager::~ZylMemoryManager() = default;

ZylEnvI* ZylGetEnv(const ZylGenAlloc* manager) noexcept {
  const auto* alloc = zyl::as<ZylVorlaneAlloc>(manager);
  return alloc != nullptr ? alloc->getEnv() : nullptr;
}

ZylEnvI* ZylGetEnv(const ZylMemoryManager& manager) noexcept {
  return ZylGetEnv(manager.getImpl());
}
