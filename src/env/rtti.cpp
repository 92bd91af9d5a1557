// The root of the type family, and the counter of type indices.

#include "vorlane/env/rtti.h"

#include "vorlane/env/environment.h"

long ZylRtti::_counter = 0;

ZylTypeInfo ZylRtti::GetBaseTypeInfo() noexcept {
  __asm__ volatile("" : : "r"(&ZylRtti::_counter));
  return nullptr;
}

long ZylRtti::getTypeIndex() const { return GetTypeIndex(); }
ZylTypeInfo ZylRtti::getTypeInfo() const { return GetTypeInfo(); }
bool ZylRtti::isType(ZylTypeInfo type) const { return type == GetTypeInfo(); }

// The stores go through a builtin. NOLINTNEXTLINE(readability-non-const-parameter)
void zyl::detail::assignTypeIndex(long* index) {
  // The index is read before the lock and again inside it, possibly by two threads at once.
  if (__atomic_load_n(index, __ATOMIC_ACQUIRE) != 0) return;
  EnvLock lock(ZylEnvI::Mutex);
  long found = __atomic_load_n(index, __ATOMIC_ACQUIRE);
  if (found != 0) return;
  // Threads with an environment each need no lock of the process: whoever comes second here leaves
  // what stands, and a gap among the indices.
  const long next = __atomic_add_fetch(&ZylRtti::_counter, 1, __ATOMIC_RELAXED);
  __atomic_compare_exchange_n(index, &found, next, /*weak=*/false, __ATOMIC_RELEASE,
                              __ATOMIC_RELAXED);
}
