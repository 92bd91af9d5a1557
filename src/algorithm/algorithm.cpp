// What every engine inherits: counted extraction into tables by id, and the delivery of changes.

#include "vorlane/algorithm/algorithm.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>

#include "common/walk.h"
#include "vorlane/algorithm/model_evaluator.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/var_array.h"
#include "vorlane/model/model.h"
#include "vorlane/model/plug_in.h"

using zyl::detail::allocateGlobal;
using zyl::detail::releaseGlobal;

const char* const ZylAlgorithmProfilerCallbackI::PROPERTY_NAME = "__Alg_Profiler_CB";

ZylExtractionScope::~ZylExtractionScope() = default;

namespace {

template <class T>
T* zeroed(long count) {
  auto* table = static_cast<T*>(allocateGlobal(static_cast<std::size_t>(count) * sizeof(T)));
  std::fill_n(table, count, T());
  return table;
}

template <class T>
T* grown(const T* before, long count, long newCount) {
  T* table = zeroed<T>(newCount);
  std::copy_n(before, count, table);
  return table;
}

ZylExtractableI* mutableObject(const ZylExtractableI* object) {
  return const_cast<ZylExtractableI*>(object);  // NOLINT: listed in an array, not edited
}

}  // namespace

ZylAlgorithmI::ZylAlgorithmI(ZylEnvI* env)
    : _env(env), _model(nullptr), _nextAlgorithm(nullptr), _timer(env->getMemoryManager()),
      _outStream(&std::cout), _warningStream(&std::cerr), _errorStream(&std::cerr),
      _extractionHandles(nullptr), _usageCounts(nullptr), _idCapacity(0), _extractionScope(nullptr),
      _searchActive(0), _solutionManager(nullptr), _modelEvaluator(nullptr), _extension(nullptr) {
  try {
    _failedRemovals = ZylExtractableArray(getEnv());
    _failedExtractions = ZylExtractableArray(getEnv());
    _extractionHandles = zeroed<void*>(InitialIdCapacity);
    _usageCounts = zeroed<long>(InitialIdCapacity);
    _idCapacity = InitialIdCapacity;
  } catch (...) {
    releaseGlobal(_extractionHandles);
    _failedExtractions.end();
    _failedRemovals.end();
    throw;
  }
  env->addAlgorithm(this);
  _timer.start();
  _outStream = &env->out();
  _warningStream = &env->warning();
  _errorStream = &env->error();
}

ZylAlgorithmI::~ZylAlgorithmI() {
  zyl::detail::Extended::end(extensionAlloc(), &_extension);
  _env->removeAlgorithm(this);
  baseClear();
  releaseGlobal(_extractionHandles);
  releaseGlobal(_usageCounts);
  _extractionHandles = nullptr;
  _usageCounts = nullptr;
  _idCapacity = 0;
  delete std::exchange(_modelEvaluator, nullptr);
  while (_evaluators != nullptr) _evaluators->setAlgorithm(nullptr);
  _failedExtractions.end();
  _failedRemovals.end();
}

void* ZylAlgorithmI::makeOpenIterator(ZylGenAlloc*, ZylIntSetVarI*) {
  throw ZylAlgorithm::Exception("Cannot evaluate forall on dynamic sets.");
}

void ZylAlgorithmI::setOutCallback() {}

void ZylAlgorithmI::setOut(std::ostream& stream) {
  _outStream = &stream;
  setOutCallback();
}

void ZylAlgorithmI::initTime() {
  resetTime();
  _timer.start();
}

double ZylAlgorithmI::getTime() const { return _timer.getTime(); }

void ZylAlgorithmI::printTime() const {
  out() << "Elapsed time since last reset : " << getTime() << std::endl;
}

void ZylAlgorithmI::resetTime() { _timer.reset(); }

// --- tables --------------------------------------------------------------------------------------

void ZylAlgorithmI::setMaxId() { setMaxId(_env->getIdManager()->getMaxId()); }

void ZylAlgorithmI::setMaxId(long id) {
  if (ZYL_LIKELY(id < _idCapacity)) return;
  long capacity = _idCapacity;
  while (capacity <= id) capacity *= 2;
  void** handles = grown(_extractionHandles, _idCapacity, capacity);
  long* counts = nullptr;
  try {
    counts = grown(_usageCounts, _idCapacity, capacity);
  } catch (...) {
    releaseGlobal(handles);
    throw;
  }
  releaseGlobal(_extractionHandles);
  releaseGlobal(_usageCounts);
  _extractionHandles = handles;
  _usageCounts = counts;
  _idCapacity = capacity;
}

bool ZylAlgorithmI::usesAtLeastOne(const ZylExtractableArray& extractables) const {
  if (extractables.getImpl() == nullptr) return false;
  for (long i = 0; i < extractables.getSize(); ++i) {
    if (extractables.getI(i) != nullptr && isInUse(extractables.getI(i))) return true;
  }
  return false;
}

// --- extraction ----------------------------------------------------------------------------------

void ZylAlgorithmI::extract(const ZylExtractableI* extractable) {
  if (_extractionScope != nullptr && !extractable->isGround()) {
    extractInScope(extractable);
    return;
  }
  extractGlobally(extractable, _extractionScope);
}

// Into the tables, and from there into the scope if there is one. The scope is away while the
// engine builds its object: what it extracts on the way is as ground as the object itself.
void ZylAlgorithmI::extractGlobally(const ZylExtractableI* extractable, ZylExtractionScope* scope) {
  const long id = extractable->getId();
  setMaxId(id);
  if (++_usageCounts[id] > 1) {
    if (scope != nullptr) scope->registerHandle(id, _extractionHandles[id]);
    return;
  }
  _extractionScope = nullptr;
  void* handle = nullptr;
  bool done = false;
  try {
    done = doExtract(extractable, &handle);
  } catch (...) {
    _extractionScope = scope;
    --_usageCounts[id];
    throw;
  }
  _extractionScope = scope;
  if (!done) {
    --_usageCounts[id];
    refuseExtraction(extractable);
  }
  _extractionHandles[id] = handle;
  if (scope != nullptr) scope->registerHandle(id, handle);
}

void ZylAlgorithmI::extractInScope(const ZylExtractableI* extractable) {
  const long id = extractable->getId();
  if (_extractionScope->lookUp(id) != nullptr) return;
  void* handle = nullptr;
  if (!doExtract(extractable, &handle)) refuseExtraction(extractable);
  _extractionScope->registerHandle(id, handle);
}

void ZylAlgorithmI::refuseExtraction(const ZylExtractableI* extractable) {
  _failedExtractions.addI(mutableObject(extractable));
  throw ZylAlgorithm::ExtractFailure(extractable->getRttiTypeName());
}

void ZylAlgorithmI::extract(const ZylExtractableArray& extractables) {
  if (extractables.getImpl() == nullptr) return;
  for (long i = 0; i < extractables.getSize(); ++i) {
    if (extractables.getI(i) != nullptr) extract(extractables.getI(i));
  }
}

void ZylAlgorithmI::remove(const ZylExtractableI* extractable) {
  const long id = extractable->getId();
  // What was never extracted has nothing to remove.
  if (id < 0 || id >= _idCapacity || _usageCounts[id] <= 0) return;
  if (--_usageCounts[id] > 0) return;
  if (!doRemove(extractable, _extractionHandles[id])) {
    _failedRemovals.addI(mutableObject(extractable));
    throw ZylAlgorithm::RemoveFailure();
  }
  _extractionHandles[id] = nullptr;
  _usageCounts[id] = 0;
}

void ZylAlgorithmI::remove(const ZylExtractableArray& extractables) {
  if (extractables.getImpl() == nullptr) return;
  for (long i = 0; i < extractables.getSize(); ++i) {
    if (extractables.getI(i) != nullptr) remove(extractables.getI(i));
  }
}

void ZylAlgorithmI::decreaseUsage(const ZylExtractableI* extractable) {
  const long id = extractable->getId();
  if (id >= 0 && id < _idCapacity) --_usageCounts[id];
}

void ZylAlgorithmI::handleForAllElement(void*) {}

// A failure destroys the whole extraction: what the engine holds no longer matches the model.
template <class Refusal>
void ZylAlgorithmI::raiseRefusal(const ZylExtractableArray& objects) {
  std::optional<Refusal> refusal;
  try {
    refusal.emplace(this);
    refusal->getExtractables().add(objects);
  } catch (const ZylMemoryException&) {
    if (refusal.has_value()) refusal->end();
    clear();
    throw;
  }
  clear();
  throw *refusal;
}

void ZylAlgorithmI::load(const ZylModelI* model) {
  clear();
  loadWithoutClear(model);
}

void ZylAlgorithmI::loadWithoutClear(const ZylModelI* model) {
  if (model == nullptr) return;
  _model = model;
  setMaxId();
  try {
    extract(model);
  } catch (const ZylAlgorithm::ExtractFailure&) {
    raiseRefusal<ZylAlgorithm::CannotExtractException>(_failedExtractions);
  }
}

void ZylAlgorithmI::clear() { baseClear(); }

void ZylAlgorithmI::baseClear() {
  _failedRemovals.clear();
  _failedExtractions.clear();
  std::fill_n(_extractionHandles, _idCapacity, nullptr);
  std::fill_n(_usageCounts, _idCapacity, 0L);
  _model = nullptr;
  ZylAlgorithmI* evaluator = _modelEvaluator;
  if (evaluator != nullptr && evaluator != this) evaluator->clear();
}

// --- changes -------------------------------------------------------------------------------------

// Calls the engine, turning its internal signals into what clients see.
bool ZylAlgorithmI::deliver(const ZylChange& change, void** handle,
                            const ZylExtractableI* extractable) {
  try {
    if (extractable == nullptr && change.isApplyingOnArray() &&
        !usesAtLeastOne(change.getChangedExtractableArray())) {
      return true;
    }
    return doApply(&change, handle, extractable);
  } catch (const ZylAlgorithm::ExtractFailure&) {
    raiseRefusal<ZylAlgorithm::CannotExtractException>(_failedExtractions);
  } catch (const ZylAlgorithm::RemoveFailure&) {
    raiseRefusal<ZylAlgorithm::CannotRemoveException>(_failedRemovals);
  }
}

void ZylAlgorithmI::apply(const ZylChange& change, const ZylExtractableI* extractable) {
  setMaxId(extractable->getId());
  if (!isInUse(extractable)) return;
  if (_searchActive != 0) throw ZylNoChangeDuringSearchException();
  const long id = extractable->getId();
  void* const before = _extractionHandles[id];
  void* handle = before;
  if (!deliver(change, &handle, extractable)) {
    ZylAlgorithm::CannotChangeException refusal(this);
    refusal.getExtractables().addI(mutableObject(extractable));
    throw refusal;
  }
  // An engine that ended itself meanwhile has no table any more.
  if (handle != before) _extractionHandles[id] = handle;
}

void ZylAlgorithmI::apply(const ZylChange& change) {
  setMaxId();
  if (_searchActive != 0) {
    // Objects that the engine does not use may come and go during a search.
    const ZylTypeInfo type = change.getTypeInfo();
    if (type != ZylRemoveFromAllChange::GetTypeInfo() &&
        type != ZylDestroyExtractableArray::GetTypeInfo()) {
      throw ZylNoChangeDuringSearchException();
    }
    if (usesAtLeastOne(change.getChangedExtractableArray()))
      throw ZylNoChangeDuringSearchException();
    return;
  }
  void* handle = nullptr;
  if (!deliver(change, &handle, nullptr)) throw ZylAlgorithm::CannotChangeException(this);
}

// --- answers -------------------------------------------------------------------------------------

bool ZylAlgorithmI::solve() { return false; }
ZylAlgorithm::Status ZylAlgorithmI::getStatus() const { return ZylAlgorithm::Error; }

bool ZylAlgorithmI::callSolve() {
  struct Stop {
    ZylTimer* timer;
    ~Stop() { timer->stop(); }
  } stop{&_timer};
  _timer.start();
  return solve();
}

long ZylAlgorithmI::getIntValue(const ZylNumVarI* variable) const {
  const double value = ZylRound(getValue(variable));
  // Written so that a NaN fails too.
  if (!(value <= static_cast<double>(ZylIntMax) && value >= static_cast<double>(ZylIntMin))) {
    throw ZylWrongUsage("overflow occurred during the computation of the variable value");
  }
  return static_cast<long>(value);
}

double ZylAlgorithmI::getValue(const ZylConstraintI*) const {
  throw ZylNotImplemented("ZylAlgorithm::getValue(ZylConstraint) is not implemented");
}

void ZylAlgorithmI::getValues(const ZylNumVarArray variables, const ZylNumArray values) const {
  values.clear();
  for (long i = 0; i < variables.getSize(); ++i) values.add(getValue(variables[i].getImpl()));
}

void ZylAlgorithmI::getValues(const ZylIntVarArray variables, const ZylNumArray values) const {
  values.clear();
  for (long i = 0; i < variables.getSize(); ++i) values.add(getValue(variables[i].getImpl()));
}

void ZylAlgorithmI::getIntValues(const ZylIntVarArray variables, const ZylIntArray values) const {
  values.clear();
  for (long i = 0; i < variables.getSize(); ++i) values.add(getIntValue(variables[i].getImpl()));
}

double ZylAlgorithmI::getExprValue(const ZylNumExprI* expr) const {
  return expr->eval(ZylAlgorithm(const_cast<ZylAlgorithmI*>(this)));  // NOLINT: handles are mutable
}

ZylModelEvaluatorI* ZylAlgorithmI::getModelEvaluator() {
  ZylModelEvaluatorI* evaluator = __atomic_load_n(&_modelEvaluator, __ATOMIC_ACQUIRE);
  if (evaluator != nullptr) return evaluator;
  const zyl::detail::EnvLock lock(_env->getMutex());
  if (_modelEvaluator != nullptr) return _modelEvaluator;
  if (const auto make = _env->getModelEvaluatorPop()) evaluator = make(_env);
  if (evaluator == nullptr) ZylRaiseWrongUsage("can not call expander");
  evaluator->setAlgorithm(this);
  __atomic_store_n(&_modelEvaluator, evaluator, __ATOMIC_RELEASE);
  return evaluator;
}

// --- the environment's list ----------------------------------------------------------------------

void ZylEnvI::addAlgorithm(ZylAlgorithmI* algorithm) {
  zyl::detail::EnvLock lock(_mutex);
  algorithm->_nextAlgorithm = _algorithms;
  _algorithms = algorithm;
}

void ZylEnvI::emancipateAlgorithm(ZylAlgorithmI* algorithm) {
  zyl::detail::EnvLock lock(_mutex);
  for (ZylAlgorithmI** link = &_algorithms; *link != nullptr; link = &(*link)->_nextAlgorithm) {
    if (*link != algorithm) continue;
    zyl::detail::Walk<ZylAlgorithmI>::leave(_algorithmWalks, algorithm);
    *link = algorithm->_nextAlgorithm;
    algorithm->_nextAlgorithm = nullptr;
    return;
  }
}

void ZylEnvI::removeAlgorithm(ZylAlgorithmI* algorithm) {
  emancipateAlgorithm(algorithm);
  if (_plugIns != nullptr) _plugIns->removeAlgorithm(algorithm);
}

void ZylEnvI::deleteAlgorithms() {
  while (_algorithms != nullptr) delete _algorithms;
  _expander = nullptr;
}
