#include "vorlane/env/timer.h"

#include <sys/times.h>
#include <unistd.h>

#include "vorlane/env/environment.h"

ZylTimer::ZylTimer(const ZylEnv& env) : ZylTimer(env.getMemoryManager()) {}

ZylTimer::ZylTimer(const ZylMemoryManager& manager)
    : _manager(manager.getImpl()), _accumulated(0.0), _started(-1.0), _running(0) {}

double ZylTimer::start() {
  if (_running != 0) return getTime();
  _running = 1;
  _started = getCPUtime();
  return _accumulated;
}

double ZylTimer::stop() {
  if (_running != 0) {
    _accumulated = getTime();
    _running = 0;
  }
  return _accumulated;
}

void ZylTimer::reset() noexcept {
  _accumulated = 0.0;
  _started = -1.0;
  _running = 0;
}

double ZylTimer::getTime() const {
  return _running != 0 ? _accumulated + (getCPUtime() - _started) : _accumulated;
}

double ZylTimer::getCPUtime() {
  tms ticks{};
  times(&ticks);
  // The clock of `times` ticks 100 times a second.
  return static_cast<double>(ticks.tms_utime + ticks.tms_stime) / 1000000.0 * 10000.0;
}

ZylEnvI* ZylTimer::getEnv() const { return ZylGetEnv(_manager); }
