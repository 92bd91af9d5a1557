#include "search.h"

#include <algorithm>
#include <cmath>
#include <ostream>

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
#include <ClpEventHandler.hpp>
#include <ClpSimplex.hpp>
#include <ClpSolve.hpp>
#include <OsiClpSolverInterface.hpp>

namespace zyl::cbc {

namespace {

using Status = ZylAlgorithm::Status;

constexpr double NoLimit = 1e20;
// An integer column is this close to an integer in every solution.
constexpr double IntegerTolerance = 1e-5;
// A search need not look for what is better by less, relative to the value known.
constexpr double Improvement = 1e-9;

// Stops a linear solve that is interrupted or out of time.
class LinearEvents : public ClpEventHandler {
 public:
  explicit LinearEvents(const Task* task) : _task(task) {}
  int event(Event which) override {
    const bool stop = which == endOfIteration && (_task->interrupted || _task->isOutOfTime());
    return stop ? 5 : -1;
  }
  ClpEventHandler* clone() const override { return new LinearEvents(*this); }

 private:
  const Task* _task;
};

// Reports a tree search, and stops it.
class TreeEvents : public CbcEventHandler {
 public:
  explicit TreeEvents(Task* task) : _task(task) {}
  CbcAction event(CbcEvent which) override {
    if (_task->interrupted || _task->isOutOfTime()) return stop;
    if (which == node || which == solution || which == heuristicSolution || which == treeStatus) {
      const bool hasValue = model_->getSolutionCount() > 0 && model_->getObjValue() < 1e50;
      _task->report(hasValue, _task->clientValue(hasValue ? model_->getObjValue() : 0.0),
                    _task->clientValue(model_->getBestPossibleObjValue()), model_->getNodeCount());
    }
    return noAction;
  }
  CbcEventHandler* clone() const override { return new TreeEvents(*this); }

 private:
  Task* _task;
};

double minimumOf(const Task& task, const std::vector<double>& values) {
  double sum = 0.0;
  for (const auto& column : task.store.columns()) {
    sum += column->cost * values[static_cast<std::size_t>(column->position)];
  }
  return sum;
}

void writeValues(Task& task, const std::vector<double>& values) {
  for (const auto& column : task.store.columns()) {
    double value = values[static_cast<std::size_t>(column->position)];
    if (column->integer) value = std::round(value);
    // What a bound excludes by no more than a tolerance is the bound.
    value = std::clamp(value, programLower(column->lower, column->integer),
                       std::max(programLower(column->lower, column->integer),
                                programUpper(column->upper, column->integer)));
    column->value = value;
    column->hasValue = true;
    column->reducedCost = 0.0;
  }
  for (const auto& row : task.store.rows()) {
    row->dual = 0.0;
    row->activity = 0.0;
    for (const Term& term : row->terms) row->activity += term.coef * term.column->value;
  }
}

std::vector<double> valuesOf(const double* values, int count) {
  return std::vector<double>(values, values + count);
}

ZylCbcResult finished(const Task& task, Status status) {
  ZylCbcResult result;
  result.status = status;
  // Nothing known: no value can be ruled out.
  result.bound = task.sign * -ZylInfinity;
  return result;
}

// Whether a program has any feasible point, by its own rows and bounds alone.
bool isFeasible(const ClpSimplex& program) {
  ClpSimplex copy(program);
  copy.setLogLevel(0);
  const std::vector<double> zeros(static_cast<std::size_t>(copy.numberColumns()), 0.0);
  copy.chgObjCoefficients(zeros.data());
  copy.initialSolve();
  return copy.status() == 0;
}

// Solves from the basis at hand, or from scratch with presolve where there is none. What is not
// optimal is asked again on a program without history: presolve does not tell an infeasible program
// from an unbounded one, and a basis that edits have left may lead astray.
void runSimplex(Task& task) {
  const LinearEvents events(&task);
  const auto run = [&](auto solve) {
    ClpSimplex& program = task.store.program();
    program.passInEventHandler(&events);
    program.setMaximumSeconds(-1.0);
    solve(program);
    const ClpEventHandler none;
    program.passInEventHandler(&none);
    return program.status();
  };
  const ClpSimplex& known = task.store.program();
  const bool warm = known.problemStatus() >= 0 && known.statusExists();
  const int first = run([&](ClpSimplex& program) {
    if (warm) {
      program.dual();
    } else {
      program.initialSolve();
    }
  });
  const auto isStopped = [&] { return task.interrupted || task.isOutOfTime(); };
  if (first == 0 || isStopped()) return;
  task.store.rebuild();
  int status = run([](ClpSimplex& program) { program.dual(); });
  for (int again = 0; again < 3 && status > 1 && !isStopped(); ++again) {
    status = run([](ClpSimplex& program) { program.primal(); });
    if (status == 2) break;
  }
}

}  // namespace

double relativeGap(double value, double bound) {
  if (!std::isfinite(value) || !std::isfinite(bound)) return ZylInfinity;
  return std::fabs(value - bound) / std::max(std::fabs(value), 1e-10);
}

void Task::report(bool hasValue, double value, double bound, long nodes) {
  ZylCbcProgress progress{hasValue, value, bound, ZylInfinity, nodes, clock.elapsed()};
  if (hasValue) progress.gap = relativeGap(value, bound);
  if (listener != nullptr) listener->onProgress(progress);
  if (log == nullptr) return;
  *log << "cbc: nodes " << nodes << ", value ";
  if (hasValue) {
    *log << value;
  } else {
    *log << "none";
  }
  *log << ", bound " << bound << ", seconds " << progress.seconds << std::endl;
}

ZylCbcResult solveLinear(Task& task) {
  runSimplex(task);
  ClpSimplex& program = task.store.program();
  ZylCbcResult result = finished(task, ZylAlgorithm::Unknown);
  result.iterations = program.numberIterations();
  switch (program.status()) {
    case 0: result.status = ZylAlgorithm::Optimal; break;
    case 1: result.status = ZylAlgorithm::Infeasible; return result;
    case 2:
      result.status = isFeasible(program) ? ZylAlgorithm::Unbounded : ZylAlgorithm::Infeasible;
      return result;
    default:
      // Stopped: a point that satisfies everything is worth keeping.
      if (!program.primalFeasible()) return result;
      result.status = ZylAlgorithm::Feasible;
  }
  const std::vector<double> values =
      valuesOf(program.primalColumnSolution(), program.numberColumns());
  writeValues(task, values);
  result.hasSolution = true;
  result.value = task.clientValue(minimumOf(task, values));
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

// Completes a start: integer columns fixed at the values given, the rest by a linear solve.
bool completeStart(Task& task, std::vector<double>* values) {
  if (task.start.empty()) return false;
  ClpSimplex fixed(task.store.program());
  fixed.setLogLevel(0);
  for (const auto& [column, value] : task.start) {
    if (!column->integer) continue;
    const double rounded = std::round(value);
    if (rounded < programLower(column->lower, true) || rounded > programUpper(column->upper, true)) {
      return false;
    }
    fixed.setColumnBounds(column->position, rounded, rounded);
  }
  fixed.initialSolve();
  if (fixed.status() != 0) return false;
  *values = valuesOf(fixed.primalColumnSolution(), fixed.numberColumns());
  // Integer columns that the start did not name must have come out integral.
  return std::all_of(task.store.columns().begin(), task.store.columns().end(), [&](const auto& c) {
    const double value = (*values)[static_cast<std::size_t>(c->position)];
    return !c->integer || std::fabs(value - std::round(value)) <= IntegerTolerance;
  });
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
  bool hasSolution = false;
  Status status = ZylAlgorithm::Unknown;
  double bound = 0.0;  // of the minimisation, as far as it is known
  long nodes = 0;
  long iterations = 0;
};

Tree search(Task& task, OsiSolverInterface& root, double cutoff) {
  CbcModel model(root);
  model.setLogLevel(0);
  model.messageHandler()->setLogLevel(0);
  model.solver()->setHintParam(OsiDoReducePrint, true, OsiHintTry);
  TreeEvents events(&task);
  model.passInEventHandler(&events);
  model.setUseElapsedTime(true);
  if (task.timeLimit >= 0.0) model.setMaximumSeconds(task.remaining());
  if (task.gapLimit >= 0.0) model.setAllowableFractionGap(task.gapLimit);
  if (task.nodeLimit >= 0) model.setMaximumNodes(static_cast<int>(task.nodeLimit));
  if (cutoff < NoLimit) model.setCutoff(cutoff);
  addCuts(model);
  addHeuristics(model);
  model.setMaximumCutPassesAtRoot(-100);
  model.setNumberBeforeTrust(5);
  model.initialSolve();
  model.branchAndBound();

  Tree tree;
  tree.nodes = model.getNodeCount();
  tree.iterations = model.getIterationCount();
  tree.hasSolution = model.bestSolution() != nullptr;
  tree.bound = model.getBestPossibleObjValue();
  if (model.isContinuousUnbounded()) {
    tree.status = ZylAlgorithm::InfeasibleOrUnbounded;
  } else if (model.status() == 0) {
    // The search has come to its end.
    tree.status = tree.hasSolution ? ZylAlgorithm::Optimal : ZylAlgorithm::Infeasible;
  }
  if (tree.hasSolution) {
    // The continuous columns at their best for the integer ones found.
    for (int j = 0; j < root.getNumCols(); ++j) {
      if (!root.isInteger(j)) continue;
      const double value = std::round(model.bestSolution()[j]);
      root.setColBounds(j, value, value);
    }
    root.resolve();
  }
  return tree;
}

}  // namespace

ZylCbcResult solveInteger(Task& task) {
  ZylCbcResult result = finished(task, ZylAlgorithm::Unknown);
  std::vector<double> best;
  double bestValue = ZylInfinity;
  if (completeStart(task, &best)) {
    bestValue = minimumOf(task, best);
    task.report(true, task.clientValue(bestValue), task.clientValue(-ZylInfinity), 0);
  } else {
    best.clear();
  }
  const auto keepBest = [&](Status status, double bound) {
    result.status = status;
    result.hasSolution = !best.empty();
    if (!best.empty()) {
      writeValues(task, best);
      result.value = task.clientValue(bestValue);
    }
    result.bound = status == ZylAlgorithm::Optimal ? result.value : task.clientValue(bound);
    task.report(result.hasSolution, result.value, result.bound, result.nodes);
    return result;
  };

  runSimplex(task);
  result.iterations = task.store.program().numberIterations();
  switch (task.store.program().status()) {
    case 0: break;
    case 1: return finished(task, ZylAlgorithm::Infeasible);
    case 2:
      return finished(task, isFeasible(task.store.program()) ? ZylAlgorithm::InfeasibleOrUnbounded
                                                             : ZylAlgorithm::Infeasible);
    default:
      return keepBest(best.empty() ? ZylAlgorithm::Unknown : ZylAlgorithm::Feasible, -ZylInfinity);
  }
  const double rootBound = task.store.program().objectiveValue();

  // A copy: the search fixes columns in it.
  OsiClpSolverInterface root(new ClpSimplex(task.store.program()), /*reallyOwn=*/true);
  root.setHintParam(OsiDoReducePrint, true, OsiHintTry);
  root.messageHandler()->setLogLevel(0);
  for (const auto& column : task.store.columns()) {
    if (column->integer) root.setInteger(column->position);
  }
  // No preprocessing: that of this solver has been seen to lose the optimum of small models.
  root.initialSolve();
  const double cutoff =
      best.empty() ? NoLimit * 10 : bestValue - Improvement * std::max(1.0, std::fabs(bestValue));
  const Tree tree = search(task, root, cutoff);
  result.nodes = tree.nodes;
  result.iterations += tree.iterations;
  if (tree.hasSolution) {
    best = valuesOf(root.getColSolution(), root.getNumCols());
    bestValue = minimumOf(task, best);
  }
  switch (tree.status) {
    case ZylAlgorithm::Optimal: return keepBest(ZylAlgorithm::Optimal, bestValue);
    case ZylAlgorithm::Infeasible:
      // Nothing better than the start.
      if (!best.empty()) return keepBest(ZylAlgorithm::Optimal, bestValue);
      return finished(task, ZylAlgorithm::Infeasible);
    case ZylAlgorithm::InfeasibleOrUnbounded:
      return finished(task, ZylAlgorithm::InfeasibleOrUnbounded);
    default: break;
  }
  const double bound = std::max(rootBound, std::fabs(tree.bound) < 1e50 ? tree.bound : rootBound);
  return keepBest(best.empty() ? ZylAlgorithm::Unknown : ZylAlgorithm::Feasible,
                  std::min(bound, best.empty() ? bound : bestValue));
}

}  // namespace zyl::cbc
