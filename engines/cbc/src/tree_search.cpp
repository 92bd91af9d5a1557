// Two things keep a client's process safe from the solver's own habits.
//
// It asserts on its memory where it starts hot, which branching by pseudo costs does at every node:
// one program in some thousands, small ones mostly, would end the process. `TreeProgram` leaves
// that code out: it starts each branch from the basis kept, and whatever the solver copies of it is
// a `TreeProgram` again.
//
// And it looks up from its work between nodes only. So the linear programs look as well, at each
// iteration, and end the time of the tree when the client wants to stop.

#include "tree_search.h"

#include <algorithm>
#include <cmath>

#include "relaxation.h"

// The other headers of the solver take this one for included.
#include <CbcNode.hpp>

#include <CbcCutGenerator.hpp>
#include <CbcEventHandler.hpp>
#include <CbcHeuristicDiveCoefficient.hpp>
#include <CbcHeuristicFPump.hpp>
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
#include <CoinError.hpp>
#include <OsiClpSolverInterface.hpp>

namespace zyl::cbc {

namespace {

constexpr double NoValue = 1e50;
// What the tree search takes for an integer where no coefficient asks for less, and the least that
// rounding errors leave sense in.
constexpr double IntegerTolerance = 1e-9;
constexpr double LeastIntegerTolerance = 1e-13;
// A value that a search claims may miss the one of its point by this, relative to it.
constexpr double ClaimTolerance = 1e-6;
// A search need not look for what is better by less, relative to the value known.
constexpr double Improvement = 1e-9;
// Columns.
constexpr int SmallSize = 40;
// A linear program that is under way when the search is stopped may take so long to end by itself;
// cut off in the middle it leaves the solver with numbers that mean nothing.
constexpr double LastSeconds = 0.05;
// What it takes to complete what a stopped search has found.
constexpr double CompletionSeconds = 0.2;

class TreeProgram : public OsiClpSolverInterface {
 public:
  // The virtual base takes its part of the program, and its operations are what is wanted.
  // NOLINTBEGIN(cppcoreguidelines-slicing,bugprone-parent-virtual-call)
  explicit TreeProgram(const OsiClpSolverInterface& program)
      : OsiSolverInterface(program), OsiClpSolverInterface(program) {}
  OsiSolverInterface* clone(bool copyData) const override {
    return copyData ? new TreeProgram(*this) : new TreeProgram(OsiClpSolverInterface());
  }
  void markHotStart() override { OsiSolverInterface::markHotStart(); }
  void solveFromHotStart() override {
    int most = 0;
    int mostHot = 0;
    getIntParam(OsiMaxNumIteration, most);
    getIntParam(OsiMaxNumIterationHotStart, mostHot);
    setIntParam(OsiMaxNumIteration, mostHot);
    OsiSolverInterface::solveFromHotStart();
    setIntParam(OsiMaxNumIteration, most);
  }
  void unmarkHotStart() override { OsiSolverInterface::unmarkHotStart(); }
  // NOLINTEND(cppcoreguidelines-slicing,bugprone-parent-virtual-call)
};

// What the events of a search share; outlives the copies that the solver makes of them.
struct Watch {
  Task* task;
  CbcModel* tree = nullptr;
  bool hadCandidate = false;
  double bound = -ZylInfinity;  // the last that was proved before the search was stopped
  double stopped = -1.0;        // when that was heard; negative if it was not

  bool mustStop() {
    if (stopped < 0.0 && task->isStopped()) stop();
    return stopped >= 0.0;
  }
  void stop() {
    stopped = task->clock.elapsed();
    tree->setMaximumSeconds(0.0);
  }
};

class ProgramEvents : public ClpEventHandler {
 public:
  explicit ProgramEvents(Watch* watch) : _watch(watch) {}
  int event(Event which) override {
    if (which != endOfIteration || !_watch->mustStop()) return -1;
    return _watch->task->clock.elapsed() > _watch->stopped + LastSeconds ? 5 : -1;
  }
  ClpEventHandler* clone() const override { return new ProgramEvents(*this); }

 private:
  Watch* _watch;
};

// Reports a tree search, and stops it.
class TreeEvents : public CbcEventHandler {
 public:
  explicit TreeEvents(Watch* watch) : _watch(watch) {}
  CbcAction event(CbcEvent which) override {
    if (_watch->mustStop()) return CbcEventHandler::stop;
    // Heuristics search small trees of their own, whose bounds say nothing of the model.
    if (model_ != _watch->tree) return noAction;
    if (which == beforeSolution2 || which == solution) _watch->hadCandidate = true;
    if (which != node && which != solution && which != heuristicSolution && which != treeStatus) {
      return noAction;
    }
    Task& task = *_watch->task;
    const bool hasValue = model_->getSolutionCount() > 0 && model_->getObjValue() < NoValue;
    const double value = task.clientValue(hasValue ? model_->getObjValue() : 0.0);
    if (std::fabs(model_->getBestPossibleObjValue()) < NoValue) {
      _watch->bound = model_->getBestPossibleObjValue();
    }
    const double bound = task.clientValue(_watch->bound);
    task.report(hasValue, value, bound, model_->getNodeCount());
    if (hasValue && task.isWithinGap(value, bound) && _watch->stopped < 0.0) _watch->stop();
    return _watch->mustStop() ? CbcEventHandler::stop : noAction;
  }
  CbcEventHandler* clone() const override { return new TreeEvents(*this); }

 private:
  Watch* _watch;
};

void addCuts(CbcModel& model) {
  CglProbing probing;
  probing.setUsingObjective(1);
  probing.setMaxPass(3);
  probing.setMaxPassRoot(3);
  probing.setMaxProbe(10);
  probing.setMaxLook(50);
  // Its row cuts have been seen to cut the optimum off, with general integers in a row of two
  // sides: 3 of 40,000 small programs, none without them.
  probing.setRowCuts(0);
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

void addHeuristics(CbcModel& model, bool isSmall) {
  CbcRounding rounding(model);
  model.addHeuristic(&rounding);
  // Also between the rounds of cuts at the root: where these have reached the optimum already, one
  // dive often finds a point that has it.
  CbcHeuristicDiveCoefficient dive(model);
  if (!isSmall) dive.setWhereFrom(dive.whereFrom() | 2);
  model.addHeuristic(&dive);
  CbcHeuristicFPump pump(model);
  pump.setMaximumPasses(20);
  model.addHeuristic(&pump);
  CbcHeuristicRINS rins(model);
  model.addHeuristic(&rins);
}

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

void configure(CbcModel& model, const Task& task, const Incumbent& best) {
  model.setLogLevel(0);
  model.messageHandler()->setLogLevel(0);
  model.solver()->setHintParam(OsiDoReducePrint, true, OsiHintTry);
  model.setUseElapsedTime(true);
  model.setIntegerTolerance(integerTolerance(task.store));
  if (task.timeLimit >= 0.0) model.setMaximumSeconds(task.remaining());
  if (task.nodeLimit >= 0) model.setMaximumNodes(static_cast<int>(task.nodeLimit));
  if (best.point.has_value()) {
    model.setCutoff(best.cost - Improvement * std::max(1.0, std::fabs(best.cost)));
  }
  addCuts(model);
  // Branching by pseudo costs, and diving, cost more than they save where a node costs nothing.
  const bool isSmall = model.getNumCols() < SmallSize;
  addHeuristics(model, isSmall);
  // Rounds of cuts end when they gain less than the least drop.
  model.setMaximumCutPassesAtRoot(model.getNumCols() < 5000 ? 100 : 20);
  model.setMaximumCutPasses(4);
  model.setNumberBeforeTrust(isSmall ? 0 : 10);
  model.setNumberStrong(10);
}

// Offers the point of the tree, and completes it. False if no point has what the tree claims.
bool takeSolution(Task& task, const Watch& watch, const CbcModel& model, Incumbent* best) {
  const Point found = settled(task.store, model.bestSolution(), /*rounded=*/true);
  if (holds(task.store, found)) best->offer(task.store, found);
  // The continuous columns at their best for the integer ones found.
  Fixing fixing;
  for (const auto& column : task.store.columns()) {
    if (!column->integer) continue;
    fixing.emplace_back(column.get(), found[static_cast<std::size_t>(column->position)]);
  }
  if (watch.stopped >= 0.0) task.extraTime = task.clock.elapsed() + CompletionSeconds;
  best->offer(task.store, completed(task, fixing));
  task.extraTime = 0.0;
  const double claimed = model.getObjValue();
  return best->cost <= claimed + ClaimTolerance * std::max(1.0, std::fabs(claimed));
}

}  // namespace

Tree searchTree(Task& task, const OsiClpSolverInterface& root, Incumbent* best) {
  TreeProgram program(root);
  Watch watch{&task};
  const ProgramEvents programEvents(&watch);
  program.getModelPtr()->passInEventHandler(&programEvents);
  // Between points of equal value it matters which of them the simplex ends at: with perturbation
  // that is more often one of integers.
  program.getModelPtr()->setPerturbation(50);
  // Keep the work areas from one program to the next.
  program.setSpecialOptions(1);
  CbcModel model(program);
  watch.tree = &model;
  TreeEvents events(&watch);
  model.passInEventHandler(&events);
  configure(model, task, *best);
  Tree tree;
  try {
    model.initialSolve();
    const double value = std::fabs(model.solver()->getObjValue());
    model.setMinimumDrop(std::min(5e-2, 1e-5 * value + 1e-5));
    if (!watch.mustStop()) model.branchAndBound();
  } catch (const CoinError&) {
    tree.isDoubtful = true;
    return tree;
  }
  tree.nodes = model.getNodeCount();
  tree.iterations = model.getIterationCount();
  tree.bound = watch.bound;
  if (watch.stopped < 0.0) {
    tree.isFinished = model.status() == 0 && !model.isContinuousUnbounded();
    if (std::fabs(model.getBestPossibleObjValue()) < NoValue) {
      tree.bound = model.getBestPossibleObjValue();
    }
  }
  if (model.bestSolution() == nullptr) {
    tree.isDoubtful = tree.isFinished && watch.hadCandidate;
    return tree;
  }
  if (!takeSolution(task, watch, model, best)) {
    // What was proved for a value that no point has, says nothing of the values above it.
    tree.isFinished = false;
    tree.isDoubtful = true;
    tree.bound = std::min(tree.bound, model.getObjValue());
  }
  return tree;
}

}  // namespace zyl::cbc
