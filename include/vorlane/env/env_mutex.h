// The locks of the environment.

#ifndef ZYL_ENV_ENV_MUTEX_H
#define ZYL_ENV_ENV_MUTEX_H

#include <mutex>

#include "vorlane/env/export.h"

/// Interface of a recursive lock; this base locks nothing.
class ZYL_EXPORT ZylBaseEnvMutex {
 public:
  virtual void lock();
  virtual void unlock();
  virtual ~ZylBaseEnvMutex();
};

/// A recursive lock.
class ZYL_EXPORT ZylEnvMutex : public ZylBaseEnvMutex {
 public:
  void lock() override;
  void unlock() override;
  ~ZylEnvMutex() override;

 private:
  std::recursive_mutex _held;
};

/// Returns a new recursive lock, deleted by the caller. Raises `ZylMemoryException`.
[[nodiscard]] ZYL_EXPORT ZylEnvMutex* ZylMakeEnvMutex();

/// Makes `mutex` the process-wide lock and returns the flag by which the caller can hand over its
/// ownership: set non-zero, `ZylEndMT` deletes the lock.
ZYL_EXPORT long* ZylInitMT(ZylBaseEnvMutex* mutex);
/// Whether a process-wide lock is set.
ZYL_EXPORT bool ZylIsMTEnabled();
/// Takes the process-wide lock away, deleting it if it was handed over.
ZYL_EXPORT void ZylEndMT();

namespace zyl::detail {
/// Holds a lock that may be absent.
class EnvLock {
 public:
  explicit EnvLock(ZylBaseEnvMutex* mutex) : _mutex(mutex) {
    if (_mutex != nullptr) _mutex->lock();
  }
  ~EnvLock() {
    if (_mutex != nullptr) _mutex->unlock();
  }
  EnvLock(const EnvLock&) = delete;
  EnvLock& operator=(const EnvLock&) = delete;

 private:
  ZylBaseEnvMutex* _mutex;
};
}  // namespace zyl::detail

#endif
