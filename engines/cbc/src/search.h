// One solve.

#ifndef ZYL_CBC_SEARCH_H
#define ZYL_CBC_SEARCH_H

#include <chrono>
#include <exception>
#include <optional>

#include "engine_impl.h"
#include "point.h"

namespace zyl::cbc {

/// Seconds since it was made.
class Clock {
 public:
  double elapsed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
  }

 private:
  std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};

/// What a solve is given, and what it reports to while it runs.
struct Task {
  LinearStore& store;
  std::atomic<bool>& interrupted;
  double timeLimit;  // negative for none
  double gapLimit;
  long nodeLimit;
  double sign;      // of the client's objective against the minimisation
  double constant;  // of the client's objective
  std::vector<std::pair<Column*, double>> start;
  // Called with the state of the search; may be empty.
  std::ostream* log;
  ZylCbcListener* listener;
  Clock clock;
  // What a listener threw. The solver's frames are not made for exceptions, so it is kept until
  // they are left; meanwhile the search stops.
  std::exception_ptr failure;
  // Until then nothing counts as stopped: what a search has found by then is worth completing.
  double extraTime = 0.0;

  double remaining() const {
    return timeLimit < 0.0 ? -1.0 : std::max(0.0, timeLimit - clock.elapsed());
  }
  bool isOutOfTime() const { return timeLimit >= 0.0 && clock.elapsed() >= timeLimit; }
  bool isStopped() const {
    return (interrupted || failure != nullptr || isOutOfTime()) && clock.elapsed() >= extraTime;
  }
  bool isWithinGap(double value, double bound) const;
  double clientValue(double minimum) const { return sign * minimum + constant; }
  void report(bool hasValue, double value, double bound, long nodes);

 private:
  void tell(const ZylCbcProgress& progress) const;
};

/// The best solution known, of the minimisation.
struct Incumbent {
  std::optional<Point> point;
  double cost = ZylInfinity;

  void offer(const LinearStore& store, std::optional<Point> other) {
    if (!other.has_value()) return;
    const double otherCost = costOf(store, *other);
    if (point.has_value() && cost <= otherCost) return;
    point = std::move(other);
    cost = otherCost;
  }
};

/// Relative distance of a value and a bound.
double relativeGap(double value, double bound);

/// Solve the program of the store, which is up to date, and write values into its columns.
ZylCbcResult solveLinear(Task& task);
ZylCbcResult solveInteger(Task& task);

}  // namespace zyl::cbc

#endif
