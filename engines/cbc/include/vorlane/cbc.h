// An engine over COIN-OR CBC and CLP: linear and mixed integer programs.

#ifndef ZYL_ENGINES_CBC_H
#define ZYL_ENGINES_CBC_H

#include <memory>

#include "vorlane/engine.h"

/// What a running search knows.
struct ZylCbcProgress {
  bool hasValue;   ///< whether a solution was found yet
  double value;    ///< objective of the best solution
  double bound;    ///< what no solution can beat
  double gap;      ///< relative distance of the two, infinite without a solution
  long nodes;      ///< nodes of the search tree so far
  double seconds;  ///< elapsed since the search began
};

class ZylCbcProtocol;

/// Hears of the progress of a search, on the thread that searches. It may throw, which ends the
/// search, but not end the engine.
class ZYL_EXPORT ZylCbcListener {
 public:
  virtual ~ZylCbcListener();
  virtual void onProgress(const ZylCbcProgress& progress) = 0;
};

/// The engine.
///
/// It takes models (nested ones too), numeric, integer and boolean variables with bounds or
/// enumerated values, ranges and comparisons of linear expressions, one objective of one criterion,
/// and conversions. Everything else it refuses: `load` raises
/// `ZylAlgorithm::CannotExtractException` with every object refused. Edits are followed without a
/// reload, and the next `solve` starts from what the last one left.
///
/// An edit that raised (the engine cannot follow it, or was searching) has changed the model all
/// the same. The engine then knows that it is behind: it answers of the last solve, takes no
/// further edits, and the next `solve` loads afresh, which raises what `load` would.
///
/// Integer variables without a bound on a side are searched up to 1e9 beyond the other one, or
/// beyond zero; a solution with a value beyond half of that is called Feasible unless nothing can
/// be better.
///
/// Installs no class hooks: any number of engines live side by side. One thread; only `interrupt`
/// may be called from another.
class ZYL_EXPORT ZylCbcI : public ZylAlgorithmI {
 public:
  explicit ZylCbcI(ZylEnvI* env);
  ~ZylCbcI() override;

  // What would pull the model from under a search (from a listener, say) raises
  // `ZylNoChangeDuringSearchException`: these, `solve` and `clear`.
  using ZylAlgorithmI::extract;
  void extract(const ZylExtractableI* extractable) override;
  using ZylAlgorithmI::remove;
  void remove(const ZylExtractableI* extractable) override;
  void loadWithoutClear(const ZylModelI* model) override;
  void apply(const ZylChange& change, const ZylExtractableI* extractable) override;
  void apply(const ZylChange& change) override;
  bool doExtract(const ZylExtractableI* extractable, void** handle) override;
  bool doRemove(const ZylExtractableI* extractable, void* handle) override;
  bool doApply(const ZylChange* change, void** handle, const ZylExtractableI* extractable) override;
  /// True if a solution is known afterwards. During the call edits of what the engine uses raise
  /// `ZylNoChangeDuringSearchException`. Raises `ZylWrongUsage` if no model is loaded, as after an
  /// edit that made the engine drop it, and what `load` raises if the engine had to load afresh.
  /// What a listener throws stops the search and comes out here; there is no solution then.
  bool solve() override;
  /// A promise: Optimal and Feasible have a point that keeps rows (within 1e-6, and 1e-11 of the
  /// largest term), bounds and integrality; Infeasible and Unbounded are shown; what a limit leaves
  /// open is Unknown.
  ZylAlgorithm::Status getStatus() const override;
  void clear() override;
  // Values of the last solution. Raise `ZylAlgorithm::NotExtractedException` for what the engine
  // was not given, `ZylAlgorithm::Exception` while there is no solution, or for what came later.
  double getObjValue() const override;
  using ZylAlgorithmI::getValue;
  double getValue(const ZylNumVarI* variable) const override;
  double getValue(const ZylObjectiveI* objective) const override;

  /// Change of the objective for each unit of the constraint's bound, and for each unit of the
  /// variable. Raise `ZylAlgorithm::Exception` unless the last solve was of a linear program, to
  /// optimality.
  double getDual(const ZylConstraintI* constraint) const;
  double getReducedCost(const ZylNumVarI* variable) const;
  /// Distance of the constraint's expression, at the last solution, to its nearer bound, both as
  /// they are now; negative if it is violated.
  double getSlack(const ZylConstraintI* constraint) const;
  /// What no solution can beat; `ZylInfinity`, or its negative, if nothing is known.
  double getBestBound() const;
  /// |value - bound| / max(|value|, 1e-10); infinite without a solution.
  double getGap() const;
  long getNodeCount() const;
  long getIterationCount() const;
  /// Whether the model has integer variables.
  bool isMip() const;
  long getColumnCount() const;
  long getRowCount() const;

  /// Elapsed seconds for a solve; negative for no limit.
  void setTimeLimit(double seconds);
  /// Relative gap at which a search may stop and call its solution optimal. The bound then tells
  /// how far from the optimum the solution may be.
  void setGapLimit(double gap);
  void setNodeLimit(long nodes);
  /// A point to start from: the values of some variables. The next solve fixes the integer ones
  /// among them and uses what it can complete; a point that cannot be completed is dropped.
  void setStart(const ZylNumVarArray& variables, const ZylNumArray& values);
  /// 0 is silent, 1 writes the progress of a search to `out()`.
  void setLogLevel(int level);
  /// Not owned; null for none.
  void setListener(ZylCbcListener* listener);
  /// Makes the running solve, or the next one, stop as soon as it can, with the best solution so
  /// far: within some tenths of a second. From any thread, and from a signal handler.
  void interrupt() noexcept;

 private:
  friend class ZylCbcProtocol;
  class Impl;
  class Nested;
  static const zyl::EngineTable<ZylCbcProtocol>& table();
  void checkIdle() const;
  void fallBehind() noexcept;
  void catchUp();
  std::unique_ptr<Impl> _engine;
};

/// Handle of the engine.
class ZYL_EXPORT ZylCbc : public ZylAlgorithm {
 public:
  using ImplClass = ZylCbcI;
  using Progress = ZylCbcProgress;

  ZylCbc() = default;
  explicit ZylCbc(ZylCbcI* impl) noexcept : ZylAlgorithm(impl) {}
  /// An empty engine, deleted by `end` or with the environment.
  explicit ZylCbc(const ZylEnv& env);
  /// An engine with the model loaded.
  explicit ZylCbc(const ZylModel& model);
  ZylCbcI* getImpl() const noexcept { return static_cast<ZylCbcI*>(_impl); }

  double getDual(const ZylConstraint& constraint) const;
  double getReducedCost(const ZylNumVar& variable) const;
  double getSlack(const ZylConstraint& constraint) const;
  double getBestBound() const { return checked()->getBestBound(); }
  double getGap() const { return checked()->getGap(); }
  long getNodeCount() const { return checked()->getNodeCount(); }
  long getIterationCount() const { return checked()->getIterationCount(); }
  bool isMip() const { return checked()->isMip(); }
  void setTimeLimit(double seconds) const { checked()->setTimeLimit(seconds); }
  void setGapLimit(double gap) const { checked()->setGapLimit(gap); }
  void setNodeLimit(long nodes) const { checked()->setNodeLimit(nodes); }
  void setStart(const ZylNumVarArray& variables, const ZylNumArray& values) const {
    checked()->setStart(variables, values);
  }
  void setLogLevel(int level) const { checked()->setLogLevel(level); }
  void setListener(ZylCbcListener* listener) const { checked()->setListener(listener); }
  void interrupt() const { checked()->interrupt(); }

 private:
  ZylCbcI* checked() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle("Using empty ZylCbc handle.");
    return getImpl();
  }
};

#endif
