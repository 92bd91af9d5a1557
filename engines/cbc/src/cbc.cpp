// The engine as clients see it: settings, queries, and one solve after the other.

#include <algorithm>
#include <cmath>
#include <ostream>
#include <unordered_map>

#include "search.h"

using zyl::cbc::Column;
using zyl::cbc::Row;

ZylCbcListener::~ZylCbcListener() = default;

ZylCbcI::ZylCbcI(ZylEnvI* env) : ZylAlgorithmI(env), _engine(std::make_unique<Impl>()) {}
ZylCbcI::~ZylCbcI() = default;

namespace {

using Start = std::vector<std::pair<Column*, double>>;

// The client's values, or else those of the last solve.
Start startOf(const zyl::cbc::LinearStore& store,
              const std::vector<std::pair<long, double>>& given) {
  Start start;
  // Of a variable given twice the first value counts.
  const std::unordered_map<long, double> values(given.rbegin(), given.rend());
  for (const auto& column : store.columns()) {
    if (given.empty()) {
      if (column->integer && column->hasValue) start.emplace_back(column.get(), column->value);
      continue;
    }
    if (column->variable == nullptr) continue;
    const auto value = values.find(column->variable->getId());
    if (value != values.end()) start.emplace_back(column.get(), value->second);
  }
  return start;
}

}  // namespace

bool ZylCbcI::solve() {
  checkIdle();
  Impl& e = *_engine;
  // An engine that was emptied by a refused edit must not call that solved.
  if (e.roots.empty()) ZylRaiseWrongUsage("ZylCbc::solve: no model is loaded");
  if (e.isBehind) catchUp();
  e.store.synchronise();
  e.result = ZylCbcResult();
  e.result.bound = e.objective.sign * -ZylInfinity;

  zyl::cbc::Task task{e.store,
                      e.interrupted,
                      e.timeLimit,
                      e.gapLimit,
                      e.nodeLimit,
                      e.objective.sign,
                      e.objective.constant,
                      startOf(e.store, e.start),
                      e.logLevel > 0 ? &out() : nullptr,
                      e.listener,
                      {},
                      nullptr,
                      0.0};
  e.start.clear();

  struct Search {
    long* active;
    std::atomic<bool>* interrupted;
    ~Search() {
      *active = 0;
      *interrupted = false;
    }
  };
  ZylCbcResult result = e.result;
  {
    const Search search{&_searchActive, &e.interrupted};
    _searchActive = 1;
    if (e.store.hasCrossedBounds()) {
      result.status = ZylAlgorithm::Infeasible;
    } else if (e.store.hasIntegers()) {
      result = zyl::cbc::solveInteger(task);
    } else {
      result = zyl::cbc::solveLinear(task);
    }
  }
  if (task.failure == nullptr) e.result = result;
  if (!e.result.hasSolution) {
    for (const auto& column : e.store.columns()) column->hasValue = false;
  }
  if (task.failure != nullptr) std::rethrow_exception(task.failure);
  return e.result.hasSolution;
}

ZylAlgorithm::Status ZylCbcI::getStatus() const { return _engine->result.status; }

namespace {

[[noreturn]] void raiseNoSolution() {
  throw ZylAlgorithm::Exception("ZylCbc: no solution is available");
}

}  // namespace

double ZylCbcI::getObjValue() const {
  if (_engine->objective.objective == nullptr) throw ZylAlgorithm::NoObjectiveException(this);
  if (!_engine->result.hasSolution) raiseNoSolution();
  return _engine->result.value;
}

double ZylCbcI::getValue(const ZylNumVarI* variable) const {
  if (!isInUse(variable)) throw ZylAlgorithm::NotExtractedException(this, variable);
  const auto* column = static_cast<const Column*>(getHandle(variable));
  if (!column->hasValue) raiseNoSolution();
  return column->value;
}

double ZylCbcI::getValue(const ZylObjectiveI* objective) const {
  if (!isInUse(objective)) throw ZylAlgorithm::NotExtractedException(this, objective);
  return getExprValue(objective->getExpr());
}

double ZylCbcI::getDual(const ZylConstraintI* constraint) const {
  if (!isInUse(constraint)) throw ZylAlgorithm::NotExtractedException(this, constraint);
  if (!_engine->result.hasDuals) {
    throw ZylAlgorithm::Exception("ZylCbc: duals exist for solved linear programs only");
  }
  const auto* row = static_cast<const Row*>(getHandle(constraint));
  if (!row->isSolved) raiseNoSolution();
  return row->dual;
}

double ZylCbcI::getReducedCost(const ZylNumVarI* variable) const {
  if (!isInUse(variable)) throw ZylAlgorithm::NotExtractedException(this, variable);
  if (!_engine->result.hasDuals) {
    throw ZylAlgorithm::Exception("ZylCbc: reduced costs exist for solved linear programs only");
  }
  const auto* column = static_cast<const Column*>(getHandle(variable));
  if (!column->hasValue) raiseNoSolution();
  return column->reducedCost;
}

double ZylCbcI::getSlack(const ZylConstraintI* constraint) const {
  if (!isInUse(constraint)) throw ZylAlgorithm::NotExtractedException(this, constraint);
  const auto* row = static_cast<const Row*>(getHandle(constraint));
  if (!_engine->result.hasSolution || !row->isSolved) raiseNoSolution();
  double activity = 0.0;
  for (const zyl::cbc::Term& term : row->terms) {
    if (term.column->gone) continue;
    if (!term.column->hasValue) raiseNoSolution();
    activity += term.coef * term.column->value;
  }
  return std::min(activity - row->lower, row->upper - activity);
}

double ZylCbcI::getBestBound() const { return _engine->result.bound; }

double ZylCbcI::getGap() const {
  if (!_engine->result.hasSolution) return ZylInfinity;
  return zyl::cbc::relativeGap(_engine->result.value, _engine->result.bound);
}

long ZylCbcI::getNodeCount() const { return _engine->result.nodes; }
long ZylCbcI::getIterationCount() const { return _engine->result.iterations; }
bool ZylCbcI::isMip() const { return _engine->store.hasIntegers(); }

namespace {
template <class List>
long countOf(const List& list) {
  return std::count_if(list.begin(), list.end(), [](const auto& part) { return !part->gone; });
}
}  // namespace

long ZylCbcI::getColumnCount() const { return countOf(_engine->store.columns()); }
long ZylCbcI::getRowCount() const { return countOf(_engine->store.rows()); }

void ZylCbcI::setTimeLimit(double seconds) { _engine->timeLimit = seconds; }
void ZylCbcI::setGapLimit(double gap) { _engine->gapLimit = gap; }
void ZylCbcI::setNodeLimit(long nodes) { _engine->nodeLimit = nodes; }
void ZylCbcI::setLogLevel(int level) { _engine->logLevel = level; }
void ZylCbcI::setListener(ZylCbcListener* listener) { _engine->listener = listener; }
void ZylCbcI::interrupt() noexcept { _engine->interrupted = true; }

void ZylCbcI::setStart(const ZylNumVarArray& variables, const ZylNumArray& values) {
  if (variables.getSize() != values.getSize()) {
    ZylRaiseWrongUsage("ZylCbc::setStart: arrays have different size");
  }
  _engine->start.clear();
  for (long i = 0; i < variables.getSize(); ++i) {
    const ZylNumVarI* variable = variables[i].getImpl();
    if (variable == nullptr) ZylRaiseEmptyHandle("Using empty ZylNumVar handle.");
    _engine->start.emplace_back(variable->getId(), values[i]);
  }
}

// --- handle --------------------------------------------------------------------------------------

ZylCbc::ZylCbc(const ZylEnv& env) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle("Using empty ZylEnv handle.");
  _impl = new ZylCbcI(env.getImpl());
}

ZylCbc::ZylCbc(const ZylModel& model) : ZylCbc(model.getEnv()) {
  try {
    extract(model);
  } catch (...) {
    end();
    throw;
  }
}

namespace {
template <class Handle>
auto* checkedArgument(const Handle& handle) {
  if (handle.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylExtractable handle.");
  return handle.getImpl();
}
}  // namespace

double ZylCbc::getDual(const ZylConstraint& constraint) const {
  return checked()->getDual(checkedArgument(constraint));
}

double ZylCbc::getReducedCost(const ZylNumVar& variable) const {
  return checked()->getReducedCost(checkedArgument(variable));
}

double ZylCbc::getSlack(const ZylConstraint& constraint) const {
  return checked()->getSlack(checkedArgument(constraint));
}
