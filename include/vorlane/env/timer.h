// A stop watch of processor time.

#ifndef ZYL_ENV_TIMER_H
#define ZYL_ENV_TIMER_H

#include "vorlane/env/gen_alloc.h"

/// Accumulates the processor time of the process between `start` and `stop`, in seconds.
class ZYL_EXPORT ZylTimer {
 public:
  explicit ZylTimer(const ZylEnv& env);
  explicit ZylTimer(const ZylMemoryManager& manager);

  /// Starts the watch and returns the time accumulated so far; does nothing more if it runs.
  double start();
  /// Stops the watch if it runs; returns the time accumulated.
  double stop();
  /// Forgets the time accumulated, without starting.
  void reset() noexcept;
  /// Returns the time accumulated, the present run included.
  double getTime() const;

  /// Processor time of the process in seconds.
  static double getCPUtime();

  /// The environment given, null if there was none.
  ZylEnvI* getEnv() const;
  ZylMemoryManager getMemoryManager() const { return ZylMemoryManager(_manager); }

 private:
  ZylGenAlloc* _manager;
  double _accumulated;
  double _started;
  long _running;
};

#endif
