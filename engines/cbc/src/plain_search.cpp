// A search of our own for small programs, and for what the tree leaves in doubt.

#include "plain_search.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "relaxation.h"

#include <ClpSimplex.hpp>

namespace zyl::cbc {

namespace {

struct Interval {
  double lower;
  double upper;
};

// The integer columns that branching has narrowed, by position.
using Node = std::map<int, Interval>;

Interval intervalOf(const Node& node, const Column& column) {
  const auto narrowed = node.find(column.position);
  if (narrowed != node.end()) return narrowed->second;
  return {programLower(column.lower, true), programUpper(column.upper, true)};
}

// The integer column that is farthest from an integer, or else any that is not fixed; null if all
// are.
const Column* branchingColumn(const LinearStore& store, const Node& node, const double* values) {
  const Column* chosen = nullptr;
  double farthest = -1.0;
  for (const auto& column : store.columns()) {
    if (!column->integer) continue;
    const Interval interval = intervalOf(node, *column);
    const double value = values[column->position];
    const double distance = std::fabs(value - std::round(value));
    if (interval.lower >= interval.upper || distance <= farthest) continue;
    chosen = column.get();
    farthest = distance;
  }
  return chosen;
}

// The two halves of a node, the one nearer to the value last.
void branch(const Node& node, const Column& column, double value, std::vector<Node>* open) {
  const Interval interval = intervalOf(node, column);
  value = std::clamp(value, interval.lower, interval.upper);
  const double below = std::min(std::floor(value), interval.upper - 1.0);
  Node down = node;
  Node up = node;
  down[column.position] = {interval.lower, below};
  up[column.position] = {below + 1.0, interval.upper};
  if (value - below > 0.5) std::swap(down, up);
  open->push_back(std::move(up));
  open->push_back(std::move(down));
}

}  // namespace

bool searchPlainly(Task& task, long maxNodes, Incumbent* best) {
  const LinearStore& store = task.store;
  std::vector<Node> open(1);
  for (long nodes = 0; !open.empty(); ++nodes) {
    if (task.isStopped() || nodes >= maxNodes) return false;
    const Node node = std::move(open.back());
    open.pop_back();
    ClpSimplex program(task.store.program());
    program.setLogLevel(0);
    for (const auto& [position, interval] : node) {
      program.setColumnBounds(position, interval.lower, interval.upper);
    }
    const int status = solveCarefully(task, program);
    if (status == 1) continue;
    if (status != 0) return false;
    if (program.objectiveValue() >= best->cost) continue;
    Point point = settled(store, program.primalColumnSolution(), /*rounded=*/true);
    const bool isPoint = holds(store, point);
    const double cost = costOf(store, point);
    if (isPoint) best->offer(store, std::move(point));
    // Nothing in the node is better than the point that its relaxation is.
    const double tolerance = 1e-9 * std::max(1.0, std::fabs(cost));
    if (isPoint && cost <= program.objectiveValue() + tolerance) continue;
    const Column* column = branchingColumn(store, node, program.primalColumnSolution());
    if (column == nullptr) continue;
    branch(node, *column, program.primalColumnSolution()[column->position], &open);
  }
  return true;
}

}  // namespace zyl::cbc
