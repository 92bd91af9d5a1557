// The simplex is not taken at its word. It has been seen to call feasible programs infeasible, to
// call optimal what is not, from a basis that edits had left, and to leave solutions that keep the
// rows of its scaled program only. So a solution is tested against the rows and proved by its
// duals, and an answer other than "optimal" is judged by two programs that have an optimum whatever
// the model is: how far the rows must give way for a point to exist, and whether there is a
// direction of unlimited gain.

#include "relaxation.h"

#include <algorithm>
#include <cmath>

#include <ClpEventHandler.hpp>
#include <ClpSimplex.hpp>
#include <ClpSolve.hpp>

namespace zyl::cbc {

namespace {

using Status = ZylAlgorithm::Status;

enum SimplexStatus { Solved = 0, CalledInfeasible = 1, CalledUnbounded = 2 };

// A program called infeasible is feasible if its rows can be kept this well; more slackness would
// take a near miss for a point, and the simplex, right, would find no way to the optimum.
constexpr double FeasibilityTolerance = 1e-8;
// A price below this is none; it is the tolerance of the simplex.
constexpr double PriceTolerance = 1e-7;
// Gain that the duals may leave open, relative to the cost.
constexpr double OptimalityTolerance = 1e-6;
// Gain along a direction, in a box of one unit, that is no rounding error of the solver; and the
// price at which it still looks for one.
constexpr double RayGain = 1e-9;

// Stops a linear solve that is interrupted or out of time.
class LinearEvents : public ClpEventHandler {
 public:
  explicit LinearEvents(const Task* task) : _task(task) {}
  int event(Event which) override { return which == endOfIteration && _task->isStopped() ? 5 : -1; }
  ClpEventHandler* clone() const override { return new LinearEvents(*this); }

 private:
  const Task* _task;
};

template <class Solve>
int run(const Task& task, ClpSimplex& program, Solve solve) {
  const LinearEvents events(&task);
  program.passInEventHandler(&events);
  program.setMaximumSeconds(-1.0);
  solve(program);
  const ClpEventHandler none;
  program.passInEventHandler(&none);
  return program.status();
}

void dual(ClpSimplex& program) { program.dual(); }
void primal(ClpSimplex& program) { program.primal(); }

// From the basis at hand, or from scratch with presolve where there is none.
void solveOn(ClpSimplex& program) {
  if (program.problemStatus() >= 0 && program.statusExists()) {
    program.dual();
  } else {
    program.initialSolve();
  }
}

// Slower, but what comes out keeps the rows as they stand.
void makeCareful(ClpSimplex& program) {
  program.scaling(0);
  program.setPerturbation(100);
  program.setPrimalTolerance(1e-9);
}

// The solution of the program, if it holds.
std::optional<Point> pointOf(const Task& task, const ClpSimplex& program, bool rounded,
                             double tolerance = RowTolerance) {
  Point point = settled(task.store, program.primalColumnSolution(), rounded);
  if (!holds(task.store, point, tolerance)) return std::nullopt;
  return point;
}

// What the duals leave to be gained by moving a value away from where a price pushes it: down for a
// positive one.
double openGain(double price, double value, double lower, double upper) {
  if (std::fabs(price) <= PriceTolerance) return 0.0;
  return std::fabs(price) * std::max(0.0, price > 0.0 ? value - lower : upper - value);
}

// Whether the duals prove that no point costs less than this one (weak duality), up to rounding.
bool isProved(const LinearStore& store, const ClpSimplex& program, const Point& point) {
  Point prices(point.size());
  for (const auto& column : store.columns()) {
    prices[static_cast<std::size_t>(column->position)] = column->cost;
  }
  double gain = 0.0;
  for (const auto& row : store.rows()) {
    const double price = program.dualRowSolution()[row->position];
    double activity = 0.0;
    for (const Term& term : row->terms) {
      const auto position = static_cast<std::size_t>(term.column->position);
      activity += term.coef * point[position];
      prices[position] -= price * term.coef;
    }
    gain +=
        openGain(price, activity, programLower(row->lower, false), programUpper(row->upper, false));
  }
  for (const auto& column : store.columns()) {
    const auto position = static_cast<std::size_t>(column->position);
    gain +=
        openGain(prices[position], point[position], programLower(column->lower, column->integer),
                 programUpper(column->upper, column->integer));
  }
  return gain <= OptimalityTolerance * std::max(1.0, std::fabs(costOf(store, point)));
}

// Whether the program holds an optimal solution, whatever its status says. Points of a relaxation
// are only on the way to an answer: they need not hold.
bool isOptimal(const Task& task, std::optional<Point>* point) {
  const ClpSimplex& program = task.store.program();
  if (program.status() != Solved) return false;
  Point found = settled(task.store, program.primalColumnSolution(), false);
  if (!isProved(task.store, program, found)) return false;
  if (task.store.hasIntegers()) return true;
  if (!holds(task.store, found)) return false;
  *point = std::move(found);
  return true;
}

// What is not optimal is asked again on a program without history: presolve does not tell an
// infeasible program from an unbounded one, and a basis that edits have left may lead astray.
bool runSimplex(Task& task, std::optional<Point>* point) {
  run(task, task.store.program(), solveOn);
  if (isOptimal(task, point)) return true;
  if (task.isStopped()) return false;
  task.store.rebuild();
  int status = run(task, task.store.program(), dual);
  for (int again = 0; again < 3 && status > CalledInfeasible && !task.isStopped(); ++again) {
    status = run(task, task.store.program(), primal);
    if (status == CalledUnbounded) break;
  }
  return isOptimal(task, point);
}

// The point for which the rows must give way least, if they need not at all.
std::optional<Point> findFeasible(Task& task) {
  ClpSimplex elastic(task.store.program());
  elastic.setLogLevel(0);
  const int rows = elastic.numberRows();
  const Point zeros(task.store.columns().size(), 0.0);
  elastic.chgObjCoefficients(zeros.data());
  // Two columns a row: one lifts its activity, one lowers it.
  const auto count = 2 * static_cast<std::size_t>(rows);
  std::vector<CoinBigIndex> starts(count + 1);
  std::vector<int> indices(count);
  std::vector<double> elements(count);
  for (std::size_t k = 0; k < count; ++k) {
    starts[k + 1] = static_cast<CoinBigIndex>(k + 1);
    indices[k] = static_cast<int>(k / 2);
    elements[k] = k % 2 == 0 ? 1.0 : -1.0;
  }
  const std::vector<double> lower(count, 0.0);
  const std::vector<double> upper(count, COIN_DBL_MAX);
  const std::vector<double> costs(count, 1.0);
  if (count > 0) {
    elastic.addColumns(2 * rows, lower.data(), upper.data(), costs.data(), starts.data(),
                       indices.data(), elements.data());
  }
  elastic.createStatus();
  run(task, elastic, primal);
  std::optional<Point> point = pointOf(task, elastic, false, FeasibilityTolerance);
  if (point.has_value() || task.isStopped()) return point;
  makeCareful(elastic);
  run(task, elastic, primal);
  return pointOf(task, elastic, false, FeasibilityTolerance);
}

// Whether the objective gains without limit along some direction that leaves no bound and no row.
bool hasRay(Task& task) {
  ClpSimplex directions(task.store.program());
  directions.setLogLevel(0);
  makeCareful(directions);
  directions.setDualTolerance(RayGain);
  double largest = 0.0;
  for (const auto& column : task.store.columns()) {
    const bool down = programLower(column->lower, column->integer) <= -COIN_DBL_MAX;
    const bool up = programUpper(column->upper, column->integer) >= COIN_DBL_MAX;
    if (down || up) largest = std::max(largest, std::fabs(column->cost));
    directions.setColumnBounds(column->position, down ? -1.0 : 0.0, up ? 1.0 : 0.0);
  }
  if (largest == 0.0) return false;
  for (const auto& row : task.store.rows()) {
    const bool down = programLower(row->lower, false) <= -COIN_DBL_MAX;
    const bool up = programUpper(row->upper, false) >= COIN_DBL_MAX;
    directions.setRowBounds(row->position, down ? -COIN_DBL_MAX : 0.0, up ? COIN_DBL_MAX : 0.0);
  }
  for (const auto& column : task.store.columns()) {
    directions.setObjectiveCoefficient(column->position, column->cost / largest);
  }
  directions.createStatus();
  return run(task, directions, primal) == Solved && directions.objectiveValue() < -RayGain;
}

// For a program that has an optimum, where the first way to it failed.
bool insist(Task& task, std::optional<Point>* point) {
  for (const auto& solve : {dual, primal}) {
    task.store.rebuild();
    makeCareful(task.store.program());
    run(task, task.store.program(), solve);
    if (isOptimal(task, point)) return true;
    if (task.isStopped()) return false;
  }
  // A search finds its own way from a relaxation that is nearly optimal.
  return task.store.hasIntegers() && task.store.program().status() == Solved;
}

}  // namespace

Status solveRelaxation(Task& task, std::optional<Point>* point) {
  if (runSimplex(task, point)) return ZylAlgorithm::Optimal;
  if (task.isStopped()) {
    *point = pointOf(task, task.store.program(), false);
    return point->has_value() ? ZylAlgorithm::Feasible : ZylAlgorithm::Unknown;
  }
  const std::optional<Point> feasible = findFeasible(task);
  if (!feasible.has_value()) {
    return task.isStopped() ? ZylAlgorithm::Unknown : ZylAlgorithm::Infeasible;
  }
  if (hasRay(task)) return ZylAlgorithm::Unbounded;
  if (insist(task, point)) return ZylAlgorithm::Optimal;
  *point = feasible;
  return ZylAlgorithm::Feasible;
}

int solveCarefully(const Task& task, ClpSimplex& program) {
  makeCareful(program);
  int status = run(task, program, dual);
  // Without a scale some programs get nowhere, from the basis at hand others do.
  for (const int scaling : {0, 1, 3}) {
    if (status == Solved || status == CalledInfeasible || task.isStopped()) break;
    program.scaling(scaling);
    program.allSlackBasis(/*resetSolution=*/true);
    status = run(task, program, primal);
  }
  return status;
}

std::optional<Point> completed(const Task& task, const Fixing& fixing) {
  ClpSimplex program(task.store.program());
  program.setLogLevel(0);
  for (const auto& [column, value] : fixing) {
    if (value < programLower(column->lower, true) || value > programUpper(column->upper, true)) {
      return std::nullopt;
    }
    program.setColumnBounds(column->position, value, value);
  }
  if (run(task, program, solveOn) == Solved) {
    if (std::optional<Point> point = pointOf(task, program, true)) return point;
    // Rounding has moved integer columns: the others must follow.
    const Point near = settled(task.store, program.primalColumnSolution(), true);
    for (const auto& column : task.store.columns()) {
      if (!column->integer) continue;
      const double value = near[static_cast<std::size_t>(column->position)];
      program.setColumnBounds(column->position, value, value);
    }
  }
  solveCarefully(task, program);
  return pointOf(task, program, true);
}

}  // namespace zyl::cbc
