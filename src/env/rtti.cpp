#include "vorlane/env/rtti.h"

#include "vorlane/env/environment.h"

long ZylRtti::_counter = 0;

ZylTypeInfo ZylRtti::GetBaseTypeInfo() noexcept {
  __asm__ volatile("" : : "r"(&ZylRtti::_counter));
  return nullptr;
}

long ZylRtti::getTypeIndex() const noexcept { return GetTypeIndex(); }
ZylTypeInfo ZylRtti::getTypeInfo() const noexcept { return GetTypeInfo(); }
bool ZylRtti::isType(ZylTypeInfo type) const noexcept { return type == GetTypeInfo(); }

// The stores go through a builtin. NOLINTNEXTLINE(readability-non-const-parameter)
void zyl::detail::assignTypeIndex(long* index) {
  // The flag is read before the lock and again inside it, possibly by two threads at once.
  if (__atomic_load_n(index, __ATOMIC_ACQUIRE) != 0) return;
  EnvLock lock(ZylEnvI::Mutex);
  if (__atomic_load_n(index, __ATOMIC_RELAXED) == 0) {
    __atomic_store_n(index, ++ZylRtti::_counter, __ATOMIC_RELEASE);
  }
}
