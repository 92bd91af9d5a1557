// One solve: the linear program, the plain search, the tree, and what is made of their answers.

#include "search.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <ostream>

#include "plain_search.h"
#include "relaxation.h"
#include "tightening.h"
#include "tree_search.h"

#include <ClpSimplex.hpp>
#include <OsiClpSolverInterface.hpp>

namespace zyl::cbc {

namespace {

using Status = ZylAlgorithm::Status;

// What can be proved of a value, relative to it.
constexpr double BoundTolerance = 1e-6;
// Integer columns without a bound are searched so far. A point that stands half as far out, in such
// a column, is taken for one that would go on.
constexpr double LargestSearched = 1e9;
// A program is small up to so many rows and columns; the plain search then takes it, if it needs no
// more nodes than this.
constexpr int SmallSize = 40;
constexpr long SmallNodes = 60;
// A doubtful answer is worth so much work, no more.
constexpr long DoubtfulNodes = 2000;

// Makes the point the answer of the store.
void writeValues(Task& task, const Point& point) {
  for (const auto& column : task.store.columns()) {
    column->value = point[static_cast<std::size_t>(column->position)];
    column->hasValue = true;
    column->reducedCost = 0.0;
  }
  for (const auto& row : task.store.rows()) {
    row->isSolved = true;
    row->dual = 0.0;
  }
}

ZylCbcResult finished(const Task& task, Status status) {
  ZylCbcResult result;
  result.status = status;
  // Nothing known: no value can be ruled out.
  result.bound = task.sign * -ZylInfinity;
  return result;
}

}  // namespace

double relativeGap(double value, double bound) {
  if (!std::isfinite(value) || !std::isfinite(bound)) return ZylInfinity;
  return std::fabs(value - bound) / std::max(std::fabs(value), 1e-10);
}

bool Task::isWithinGap(double value, double bound) const {
  return gapLimit > 0.0 && relativeGap(value, bound) <= gapLimit;
}

void Task::report(bool hasValue, double value, double bound, long nodes) {
  ZylCbcProgress progress{hasValue, value, bound, ZylInfinity, nodes, clock.elapsed()};
  if (hasValue) progress.gap = relativeGap(value, bound);
  try {
    tell(progress);
  } catch (...) {
    if (failure == nullptr) failure = std::current_exception();
  }
}

void Task::tell(const ZylCbcProgress& progress) const {
  if (listener != nullptr) listener->onProgress(progress);
  if (log == nullptr) return;
  *log << "cbc: nodes " << progress.nodes << ", value ";
  if (progress.hasValue) {
    *log << progress.value;
  } else {
    *log << "none";
  }
  *log << ", bound " << progress.bound << ", seconds " << progress.seconds << std::endl;
}

ZylCbcResult solveLinear(Task& task) {
  std::optional<Point> point;
  ZylCbcResult result = finished(task, solveRelaxation(task, &point));
  const ClpSimplex& program = task.store.program();
  result.iterations = program.numberIterations();
  if (!point.has_value()) return result;
  writeValues(task, *point);
  result.hasSolution = true;
  result.value = task.clientValue(costOf(task.store, *point));
  if (result.status == ZylAlgorithm::Optimal) {
    result.bound = result.value;
    result.hasDuals = true;
    for (const auto& row : task.store.rows()) {
      row->dual = task.sign * program.dualRowSolution()[row->position];
    }
    for (const auto& column : task.store.columns()) {
      column->reducedCost = task.sign * program.dualColumnSolution()[column->position];
    }
  }
  task.report(true, result.value, result.bound, 0);
  return result;
}

namespace {

Fixing startOf(const Task& task) {
  Fixing fixing;
  for (const auto& [column, value] : task.start) {
    if (column->integer) fixing.emplace_back(column, std::round(value));
  }
  return fixing;
}

// Bounds an integer column for the tree search, which ends the process on some programs with
// integer columns that have no bound. Returns whether it had none.
bool closeColumn(OsiSolverInterface* root, int column) {
  const double lower = root->getColLower()[column];
  const double upper = root->getColUpper()[column];
  if (lower >= -LargestSearched && upper <= LargestSearched) return false;
  if (lower < -LargestSearched) {
    root->setColLower(column, std::min(-LargestSearched, upper - LargestSearched));
  }
  if (upper > LargestSearched) {
    root->setColUpper(column, std::max(LargestSearched, lower + LargestSearched));
  }
  return true;
}

// Whether the point stands where the search was stopped and the model would go on.
bool isCutOff(const Point& point, const std::vector<int>& closed) {
  return std::any_of(closed.begin(), closed.end(), [&](int column) {
    return std::fabs(point[static_cast<std::size_t>(column)]) >= 0.5 * LargestSearched;
  });
}

bool isSmall(const LinearStore& store) {
  return store.columns().size() <= SmallSize && store.rows().size() <= SmallSize;
}

}  // namespace

ZylCbcResult solveInteger(Task& task) {
  Incumbent best;
  const Fixing start = startOf(task);
  if (!start.empty()) best.offer(task.store, completed(task, start));
  if (best.point.has_value()) {
    task.report(true, task.clientValue(best.cost), task.clientValue(-ZylInfinity), 0);
  }
  long iterations = 0;
  long nodes = 0;
  const auto finish = [&](Status status, double bound) {
    ZylCbcResult result = finished(task, status);
    result.iterations = iterations;
    result.nodes = nodes;
    result.hasSolution = best.point.has_value();
    if (result.hasSolution) {
      writeValues(task, *best.point);
      result.value = task.clientValue(best.cost);
    }
    result.bound = task.clientValue(std::min(bound, best.cost));
    task.report(result.hasSolution, result.value, result.bound, result.nodes);
    return result;
  };
  const auto finishStopped = [&](double bound) {
    return finish(best.point.has_value() ? ZylAlgorithm::Feasible : ZylAlgorithm::Unknown, bound);
  };

  const auto finishSearched = [&] {
    if (!best.point.has_value()) return finished(task, ZylAlgorithm::Infeasible);
    return finish(ZylAlgorithm::Optimal, best.cost);
  };

  std::optional<Point> unused;
  const Status relaxed = solveRelaxation(task, &unused);
  iterations = task.store.program().numberIterations();
  if (relaxed == ZylAlgorithm::Unbounded)
    return finished(task, ZylAlgorithm::InfeasibleOrUnbounded);
  if (relaxed == ZylAlgorithm::Infeasible && !best.point.has_value())
    return finished(task, relaxed);
  if (relaxed != ZylAlgorithm::Optimal && task.isStopped()) return finishStopped(-ZylInfinity);
  const double rootBound =
      relaxed == ZylAlgorithm::Optimal ? task.store.program().objectiveValue() : -ZylInfinity;
  const auto isNearEnough = [&](double bound) {
    return best.point.has_value() &&
           task.isWithinGap(task.clientValue(best.cost), task.clientValue(bound));
  };
  if (isNearEnough(rootBound)) return finish(ZylAlgorithm::Optimal, rootBound);

  if (isSmall(task.store) && searchPlainly(task, SmallNodes, &best)) return finishSearched();

  OsiClpSolverInterface root(tightened(task.store).release(), /*reallyOwn=*/true);
  root.setHintParam(OsiDoReducePrint, true, OsiHintTry);
  root.messageHandler()->setLogLevel(0);
  std::vector<int> closed;
  for (const auto& column : task.store.columns()) {
    if (!column->integer) continue;
    root.setInteger(column->position);
    if (closeColumn(&root, column->position)) closed.push_back(column->position);
  }
  Tree tree = searchTree(task, root, &best);
  nodes = tree.nodes;
  iterations += tree.iterations;
  if (tree.isDoubtful) tree.isFinished = searchPlainly(task, DoubtfulNodes, &best);
  if (tree.isFinished) {
    const double reached = rootBound + BoundTolerance * std::max(1.0, std::fabs(best.cost));
    const bool isOpen = best.point.has_value() && best.cost > reached;
    return isOpen && isCutOff(*best.point, closed) ? finishStopped(rootBound) : finishSearched();
  }
  const double bound = std::max(rootBound, tree.bound);
  if (isNearEnough(bound)) return finish(ZylAlgorithm::Optimal, bound);
  return finishStopped(bound);
}

}  // namespace zyl::cbc
