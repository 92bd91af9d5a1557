// The boundary towards engines.
//
// The library holds no solver. An engine derives from `ZylAlgorithmI`: it is given the model object
// by object (extraction), keeps one opaque handle for each, and hears of every later edit of what
// it uses.

#ifndef ZYL_ALGORITHM_ALGORITHM_H
#define ZYL_ALGORITHM_ALGORITHM_H

#include <iosfwd>

#include "vorlane/env/timer.h"
#include "vorlane/expr/num_expr.h"
#include "vorlane/expr/variable.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/change.h"

class ZylAlgorithmI;
class ZylConstraintI;
class ZylIntSetVarI;
class ZylIntVarArray;
class ZylModelEvaluatorI;
class ZylNumVarArray;
class ZylObjectiveI;
class ZylSolutionManagerI;

/// An edit came during a search, and the engine that searches uses what was edited.
///
/// The model has changed all the same; the engine has not followed.
class ZYL_EXPORT ZylNoChangeDuringSearchException : public ZylException {
 public:
  ZylNoChangeDuringSearchException();
};

/// Where a client attaches a profiling callback to an algorithm: in the property of this name. It
/// is for engines that can be profiled; the library only states the name.
class ZYL_EXPORT ZylAlgorithmProfilerCallbackI {
 public:
  static const char* const PROPERTY_NAME;
};

/// An overlay of the extraction tables: one engine object for each binding of a loop index.
class ZYL_EXPORT ZylExtractionScope {
 public:
  virtual ~ZylExtractionScope();
  /// Non-zero if the id is known here.
  virtual void* lookUp(long id) const = 0;
  virtual void registerHandle(long id, void* handle) = 0;
};

/// What an engine derives from.
///
/// Constructed with its environment, whose list of algorithms it joins; made with plain `new`, or
/// on the stack if it dies before the environment. Tables indexed by extractable id hold the
/// engine's handle and the number of extractions of each object. Not synchronised.
class ZYL_EXPORT ZylAlgorithmI {
  ZYL_EXTENSION_OPERATIONS_BUT_ONE
 public:
  static constexpr long InitialIdCapacity = 1024;

  /// Raises `ZylMemoryException`.
  explicit ZylAlgorithmI(ZylEnvI* env);
  ZylAlgorithmI(const ZylAlgorithmI&) = delete;
  ZylAlgorithmI& operator=(const ZylAlgorithmI&) = delete;

  /// Deletes the set of properties: other owners only empty theirs.
  void removeAllProperties() { setProperties(nullptr); }

  virtual void* makeOpenIterator(ZylGenAlloc* alloc, ZylIntSetVarI* set);
  virtual ~ZylAlgorithmI();
  /// Called after the output stream was replaced.
  virtual void setOutCallback();
  virtual void initTime();
  virtual double getTime() const;
  virtual void printTime() const;
  virtual void resetTime();
  /// Extracts one object, at most once however often it is asked for; each call counts. Raises
  /// `ZylAlgorithm::ExtractFailure` if the engine refuses.
  virtual void extract(const ZylExtractableI* extractable);
  /// Delivers a change of one object.
  virtual void apply(const ZylChange& change, const ZylExtractableI* extractable);
  /// Delivers a change that concerns no single object.
  virtual void apply(const ZylChange& change);
  /// Takes one extraction back; the last one removes the engine's object. Raises
  /// `ZylAlgorithm::RemoveFailure` if the engine refuses.
  virtual void remove(const ZylExtractableI* extractable);
  /// The engine's own: builds its object, writes it through `handle`, which holds 0, and returns
  /// true; or false to refuse.
  virtual bool doExtract(const ZylExtractableI* extractable, void** handle) = 0;
  /// The engine's own: drops the object of the handle; false refuses.
  virtual bool doRemove(const ZylExtractableI* extractable, void* handle) = 0;
  /// The engine's own: follows a change; `handle` may be rewritten, `extractable` is null for a
  /// change with no single target; false refuses.
  virtual bool doApply(const ZylChange* change, void** handle,
                       const ZylExtractableI* extractable) = 0;
  virtual void handleForAllElement(void* element);
  /// Takes 1 from the use count, and nothing else.
  virtual void decreaseUsage(const ZylExtractableI* extractable);
  /// Clears, then loads; a null model leaves the algorithm cleared.
  virtual void load(const ZylModelI* model);
  virtual void loadWithoutClear(const ZylModelI* model);
  virtual bool solve();
  virtual ZylAlgorithm::Status getStatus() const;
  /// Forgets everything extracted. An override calls this one.
  virtual void clear();
  virtual double getObjValue() const = 0;
  virtual double getValue(const ZylNumVarI* variable) const = 0;
  /// Raises `ZylWrongUsage` if the rounded value is no exact integer.
  virtual long getIntValue(const ZylNumVarI* variable) const;
  virtual double getValue(const ZylObjectiveI* objective) const = 0;
  virtual double getValue(const ZylConstraintI* constraint) const;
  virtual void getValues(const ZylNumVarArray variables, const ZylNumArray values) const;
  virtual void getValues(const ZylIntVarArray variables, const ZylNumArray values) const;
  virtual void getIntValues(const ZylIntVarArray variables, const ZylIntArray values) const;
  virtual double getExprValue(const ZylNumExprI* expr) const;

  /// Each element in order through the virtual form; nothing for an empty handle.
  void extract(const ZylExtractableArray& extractables);
  void remove(const ZylExtractableArray& extractables);
  /// Whether any element is in use.
  bool usesAtLeastOne(const ZylExtractableArray& extractables) const;
  /// Whether the object was extracted and not removed; a scope decides where there is one.
  bool isInUse(const ZylExtractableI* extractable) const noexcept {
    const long id = extractable->getId();
    if (ZYL_UNLIKELY(_extractionScope != nullptr)) return _extractionScope->lookUp(id) != nullptr;
    return static_cast<unsigned long>(id) < static_cast<unsigned long>(_idCapacity) &&
           _usageCounts[id] > 0;
  }
  /// The engine's handle of an object, null if there is none.
  void* getHandle(const ZylExtractableI* extractable) const noexcept {
    const long id = extractable->getId();
    return static_cast<unsigned long>(id) < static_cast<unsigned long>(_idCapacity)
               ? _extractionHandles[id]
               : nullptr;
  }
  long getUsageCount(const ZylExtractableI* extractable) const noexcept {
    const long id = extractable->getId();
    return static_cast<unsigned long>(id) < static_cast<unsigned long>(_idCapacity)
               ? _usageCounts[id]
               : 0;
  }
  /// Makes the tables hold the highest id of the environment, or `id`.
  void setMaxId();
  void setMaxId(long id);
  long getIdCapacity() const noexcept { return _idCapacity; }

  /// Timer on, `solve`, timer off.
  bool callSolve();
  /// Returns the evaluator, made on the first call, under the environment's lock where there is
  /// one. Raises `ZylWrongUsage` if there is no factory, or if it answers null.
  ZylModelEvaluatorI* getModelEvaluator();
  /// Forgets the evaluator without deleting it.
  void unlinkEvaluator() noexcept { _modelEvaluator = nullptr; }

  ZylEnvI* getEnvI() const noexcept { return _env; }
  ZylEnv getEnv() const noexcept { return ZylEnv(_env); }
  const ZylModelI* getModelI() const noexcept { return _model; }
  ZylAlgorithmI* getNextAlgorithm() const noexcept { return _nextAlgorithm; }
  std::ostream& out() const noexcept { return *_outStream; }
  std::ostream& warning() const noexcept { return *_warningStream; }
  std::ostream& error() const noexcept { return *_errorStream; }
  void setOut(std::ostream& stream);
  void setWarning(std::ostream& stream) noexcept { _warningStream = &stream; }
  void setError(std::ostream& stream) noexcept { _errorStream = &stream; }
  bool isSearchActive() const noexcept { return _searchActive != 0; }
  const ZylExtractableArray& getFailedExtractions() const noexcept { return _failedExtractions; }
  const ZylExtractableArray& getFailedRemovals() const noexcept { return _failedRemovals; }

 private:
  friend class ZylEnvI;
  friend class ZylModelEvaluatorI;
  ZylGenAlloc* extensionAlloc() const noexcept { return _env->getGenAlloc(); }
  ZYL_LOCAL void baseClear();
  ZYL_LOCAL void extractGlobally(const ZylExtractableI* extractable, ZylExtractionScope* scope);
  ZYL_LOCAL void extractInScope(const ZylExtractableI* extractable);
  [[noreturn]] ZYL_LOCAL void refuseExtraction(const ZylExtractableI* extractable);
  template <class Refusal>
  [[noreturn]] void raiseRefusal(const ZylExtractableArray& objects);
  ZYL_LOCAL bool deliver(const ZylChange& change, void** handle,
                         const ZylExtractableI* extractable);

 protected:
  // An engine writes `_extractionScope` and `_searchActive` itself; the library only reads them.
  ZylEnvI* _env;
  const ZylModelI* _model;
  ZylAlgorithmI* _nextAlgorithm;
  ZylTimer _timer;
  std::ostream* _outStream;
  std::ostream* _warningStream;
  std::ostream* _errorStream;
  void** _extractionHandles;
  long* _usageCounts;
  long _idCapacity;
  ZylExtractionScope* _extractionScope;
  ZylExtractableArray _failedRemovals;
  ZylExtractableArray _failedExtractions;
  long _searchActive;
  ZylSolutionManagerI* _solutionManager;
  ZylModelEvaluatorI* _modelEvaluator;
  ZylExtension* _extension;

 private:
  // The evaluators that name this algorithm as theirs, owned or not: they hear of its end.
  ZylModelEvaluatorI* _evaluators = nullptr;
};

#endif
