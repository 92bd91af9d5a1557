#include "search.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <ostream>

#include "plain_search.h"
#include "relaxation.h"

// The other headers of the solver take this one for included.
#include <CbcNode.hpp>

#include <CbcCutGenerator.hpp>
#include <CbcEventHandler.hpp>
#include <CbcHeuristicFPump.hpp>
#include <CbcHeuristicLocal.hpp>
#include <CbcHeuristicRINS.hpp>
#include <CbcModel.hpp>
#include <CglClique.hpp>
#include <CglFlowCover.hpp>
#include <CglGomory.hpp>
#include <CglKnapsackCover.hpp>
#include <CglMixedIntegerRounding2.hpp>
#include <CglProbing.hpp>
#include <CglTwomir.hpp>
#include <ClpSimplex.hpp>
#include <OsiClpSolverInterface.hpp>

namespace zyl::cbc {

namespace {

using Status = ZylAlgorithm::Status;

constexpr double NoLimit = 1e20;
// What the tree search takes for an integer where no coefficient asks for less, and the least that
// rounding errors leave sense in.
constexpr double IntegerTolerance = 1e-9;
constexpr double LeastIntegerTolerance = 1e-13;
// A value that a search claims may miss the one of its point by this, relative to it.
constexpr double ClaimTolerance = 1e-6;
// Integer columns without a bound are searched so far.
constexpr double LargestSearched = 1e9;
// A search need not look for what is better by less, relative to the value known.
constexpr double Improvement = 1e-9;

// Reports a tree search, and stops it.
class TreeEvents : public CbcEventHandler {
 public:
  TreeEvents(Task* task, const CbcModel* tree, bool* hadCandidate)
      : _task(task), _tree(tree), _hadCandidate(hadCandidate) {}
  CbcAction event(CbcEvent which) override {
    if (_task->isStopped()) return stop;
    // Heuristics search small trees of their own, whose bounds say nothing of the model.
    if (model_ != _tree) return noAction;
    if (which == beforeSolution2 || which == solution) *_hadCandidate = true;
    if (which != node && which != solution && which != heuristicSolution && which != treeStatus) {
      return noAction;
    }
    const bool hasValue = model_->getSolutionCount() > 0 && model_->getObjValue() < 1e50;
    const double value = _task->clientValue(hasValue ? model_->getObjValue() : 0.0);
    const double bound = _task->clientValue(model_->getBestPossibleObjValue());
    _task->report(hasValue, value, bound, model_->getNodeCount());
    return _task->isStopped() || (hasValue && _task->isWithinGap(value, bound)) ? stop : noAction;
  }
  CbcEventHandler* clone() const override { return new TreeEvents(*this); }

 private:
  Task* _task;
  const CbcModel* _tree;
  bool* _hadCandidate;  // outlives the copies that the solver makes
};

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

void addCuts(CbcModel& model) {
  CglProbing probing;
  probing.setUsingObjective(1);
  probing.setMaxPass(3);
  probing.setMaxPassRoot(3);
  probing.setMaxProbe(10);
  probing.setMaxLook(50);
  probing.setRowCuts(3);
  CglGomory gomory;
  gomory.setLimit(300);
  CglKnapsackCover cover;
  CglClique clique;
  clique.setStarCliqueReport(false);
  clique.setRowCliqueReport(false);
  CglMixedIntegerRounding2 rounding;
  CglFlowCover flow;
  CglTwomir twomir;
  model.addCutGenerator(&probing, -1, "Probing");
  model.addCutGenerator(&gomory, -1, "Gomory");
  model.addCutGenerator(&cover, -1, "Knapsack");
  model.addCutGenerator(&clique, -1, "Clique");
  model.addCutGenerator(&rounding, -1, "MIR");
  model.addCutGenerator(&flow, -1, "FlowCover");
  model.addCutGenerator(&twomir, -1, "TwoMir");
  for (int i = 0; i < model.numberCutGenerators(); ++i) model.cutGenerator(i)->setTiming(false);
}

void addHeuristics(CbcModel& model) {
  CbcRounding rounding(model);
  model.addHeuristic(&rounding);
  CbcHeuristicLocal local(model);
  model.addHeuristic(&local);
  CbcHeuristicFPump pump(model);
  pump.setMaximumPasses(20);
  model.addHeuristic(&pump);
  CbcHeuristicRINS rins(model);
  model.addHeuristic(&rins);
}

// What a tree search left.
struct Tree {
  bool isFinished = false;  // nothing is better than what was found, or known before
  bool isDoubtful = false;  // solutions were met that turned out to be none
  double bound = 0.0;       // of the minimisation
  long nodes = 0;
  long iterations = 0;
};

// What is taken for an integer is rounded later, which must not break a row: b = 5e-8 in
// x <= 1e8 * b is no zero while x is 5.
double integerTolerance(const LinearStore& store) {
  double largest = 1.0;
  for (const auto& row : store.rows()) {
    for (const Term& term : row->terms) {
      if (term.column->integer) largest = std::max(largest, std::fabs(term.coef));
    }
  }
  return std::max(LeastIntegerTolerance, std::min(IntegerTolerance, 0.1 * RowTolerance / largest));
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
bool isCutOff(const Point& point, const OsiSolverInterface& root, const std::vector<int>& closed) {
  return std::any_of(closed.begin(), closed.end(), [&](int column) {
    const double value = point[static_cast<std::size_t>(column)];
    return std::fabs(value) >= LargestSearched &&
           (value >= root.getColUpper()[column] || value <= root.getColLower()[column]);
  });
}

Tree search(Task& task, const OsiSolverInterface& root, Incumbent* best) {
  CbcModel model(root);
  model.setLogLevel(0);
  model.messageHandler()->setLogLevel(0);
  model.solver()->setHintParam(OsiDoReducePrint, true, OsiHintTry);
  bool hadCandidate = false;
  TreeEvents events(&task, &model, &hadCandidate);
  model.passInEventHandler(&events);
  model.setUseElapsedTime(true);
  model.setIntegerTolerance(integerTolerance(task.store));
  if (task.timeLimit >= 0.0) model.setMaximumSeconds(task.remaining());
  if (task.nodeLimit >= 0) model.setMaximumNodes(static_cast<int>(task.nodeLimit));
  if (best->point.has_value()) {
    model.setCutoff(best->cost - Improvement * std::max(1.0, std::fabs(best->cost)));
  }
  addCuts(model);
  addHeuristics(model);
  model.setMaximumCutPassesAtRoot(-100);
  // Branching by pseudo costs starts hot, which fails an assertion of the solver on small programs.
  model.setNumberBeforeTrust(0);
  model.initialSolve();
  model.branchAndBound();

  Tree tree;
  tree.nodes = model.getNodeCount();
  tree.iterations = model.getIterationCount();
  tree.bound = model.getBestPossibleObjValue();
  tree.isFinished = model.status() == 0 && !model.isContinuousUnbounded();
  if (model.bestSolution() == nullptr) {
    tree.isDoubtful = tree.isFinished && hadCandidate;
    return tree;
  }
  const Point found = settled(task.store, model.bestSolution(), /*rounded=*/true);
  if (holds(task.store, found)) best->offer(task.store, found);
  // The continuous columns at their best for the integer ones found.
  Fixing fixing;
  for (const auto& column : task.store.columns()) {
    if (!column->integer) continue;
    fixing.emplace_back(column.get(), found[static_cast<std::size_t>(column->position)]);
  }
  best->offer(task.store, completed(task, fixing));
  // What was proved for a value that no point has, says nothing of the values above it.
  const double claimed = model.getObjValue();
  if (best->cost > claimed + ClaimTolerance * std::max(1.0, std::fabs(claimed))) {
    tree.isFinished = false;
    tree.isDoubtful = true;
    tree.bound = std::min(tree.bound, claimed);
  }
  return tree;
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

  // A copy: the search works on it.
  OsiClpSolverInterface root(new ClpSimplex(task.store.program()), /*reallyOwn=*/true);
  root.setHintParam(OsiDoReducePrint, true, OsiHintTry);
  root.messageHandler()->setLogLevel(0);
  std::vector<int> closed;
  for (const auto& column : task.store.columns()) {
    if (!column->integer) continue;
    root.setInteger(column->position);
    if (closeColumn(&root, column->position)) closed.push_back(column->position);
  }
  // No preprocessing: that of this solver has been seen to lose the optimum of small models.
  root.initialSolve();
  Tree tree = search(task, root, &best);
  nodes = tree.nodes;
  iterations += tree.iterations;
  if (tree.isDoubtful) tree.isFinished = searchPlainly(task, &best);
  if (tree.isFinished) {
    if (!best.point.has_value()) return finished(task, ZylAlgorithm::Infeasible);
    const double reached = rootBound + ClaimTolerance * std::max(1.0, std::fabs(rootBound));
    if (best.cost > reached && isCutOff(*best.point, root, closed)) return finishStopped(rootBound);
    return finish(ZylAlgorithm::Optimal, best.cost);
  }
  // The tree knows no bound before its root is solved.
  const double bound =
      std::fabs(tree.bound) < NoLimit ? std::max(rootBound, tree.bound) : rootBound;
  if (isNearEnough(bound)) return finish(ZylAlgorithm::Optimal, bound);
  return finishStopped(bound);
}

}  // namespace zyl::cbc
