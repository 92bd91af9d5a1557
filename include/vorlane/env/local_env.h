// Local environments: what takes over allocation and id issue of an environment while installed.

#ifndef ZYL_ENV_LOCAL_ENV_H
#define ZYL_ENV_LOCAL_ENV_H

#include "vorlane/env/export.h"

class ZylEnvI;
class ZylExtractableI;

/// Replaces an environment's own allocation and id issue, for backtracking or for threads.
class ZYL_EXPORT ZylLocalEnvI {
 public:
  explicit ZylLocalEnvI(ZylEnvI* env) : _env(env) {}
  virtual ~ZylLocalEnvI();
  ZylLocalEnvI(const ZylLocalEnvI&) = delete;
  ZylLocalEnvI& operator=(const ZylLocalEnvI&) = delete;

  virtual void* alloc(unsigned long size) = 0;
  virtual void free(void* block, unsigned long size) = 0;
  /// Returns an id for a new extractable.
  virtual long init(ZylExtractableI* object);
  virtual void saveValue(void** word) = 0;
  virtual void saveValue(long* word) = 0;
  virtual void saveValue(double* word) = 0;
  virtual void releaseId(long id);

  /// Returns an id with no object yet.
  long bookId();
  ZylEnvI* getEnv() const noexcept { return _env; }

 protected:
  ZylEnvI* _env;
};

/// The environment's own operations under its lock.
class ZYL_EXPORT ZylMTSafeLocalEnvI final : public ZylLocalEnvI {
 public:
  ZylMTSafeLocalEnvI(ZylEnvI* env, ZylLocalEnvI* previous)
      : ZylLocalEnvI(env), _previous(previous) {}
  ~ZylMTSafeLocalEnvI() override;
  void* alloc(unsigned long size) override;
  void free(void* block, unsigned long size) override;
  long init(ZylExtractableI* object) override;
  void saveValue(void** word) override;
  void saveValue(long* word) override;
  void saveValue(double* word) override;
  void releaseId(long id) override;

  ZylLocalEnvI* getPrevious() const noexcept { return _previous; }

 private:
  ZylLocalEnvI* _previous;
};

#endif
