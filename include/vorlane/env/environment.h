// The environment: root of every model. It allocates the objects of a model, numbers them, tells
// the interested parties about edits, and at its end disposes of whatever is left.

#ifndef ZYL_ENV_ENVIRONMENT_H
#define ZYL_ENV_ENVIRONMENT_H

#include <cstddef>
#include <iosfwd>
#include <new>

#include "vorlane/env/env_mutex.h"
#include "vorlane/env/extension.h"
#include "vorlane/env/gen_alloc.h"
#include "vorlane/env/id_manager.h"
#include "vorlane/env/local_env.h"
#include "vorlane/env/memory.h"
#include "vorlane/env/null_stream.h"
#include "vorlane/env/timer.h"
#include "vorlane/env/typed_list_manager.h"
#include "vorlane/env/types.h"
#include "vorlane/env/version.h"

class ZylAlgorithmI;
class ZylAny2BoolHashTable;
class ZylArrayI;
class ZylBaseDeleterI;
class ZylChange;
class ZylCloneManager;
class ZylComprehensionI;
class ZylDestroyableI;
class ZylDestroyableList;
class ZylExpanderI;
class ZylExtractableArray;
class ZylExtractableI;
class ZylGeneratorI;
class ZylIntRangeI;
class ZylIntSharedDomainHash;
class ZylKvlDisplayI;
class ZylModelEvaluatorI;
class ZylNumExprI;
class ZylNumRangeI;
class ZylNumSharedDomainHash;
class ZylNumVarI;
class ZylPlugInManager;
class ZylRecycleBinI;
class ZylRttiEnvObjectI;
class ZylSymbolI;
class ZylSymbolTable;
class ZylUniqueRandomI;
class ZylVarDomainI;

namespace zyl::detail {
template <class T>
class LifeWatch;
template <class T>
class Walk;
}  // namespace zyl::detail
struct ZylNumLinExprTermI;

/// The implementation of an environment.
///
/// Owns everything built in it. Its own storage comes from the global allocator. One thread, unless
/// `useMTSafeAllocation` and `useMTSafeNormalization` say otherwise; those cover allocation, id
/// issue and normalisation only, never the reading of model objects.
class ZYL_EXPORT ZylEnvI {
 public:
  using Extractors = void (*)(ZylModelEvaluatorI*);
  using Expanders = void (*)(ZylExpanderI*);
  using ModelEvaluatorFactory = ZylModelEvaluatorI* (*)(ZylEnvI*);
  using ExpanderFactory = ZylExpanderI* (*)(ZylEnvI*);

  /// Bits of the flags: the memory manager is in use; long display form of expressions.
  static constexpr long MemoryManagerFlag = 0x1;
  static constexpr long LongDisplayFlag = 0x20;

  /// The process-wide lock, null unless `ZylInitMT` set one, and whether `ZylEndMT` deletes it.
  static ZylBaseEnvMutex* Mutex;
  static long DeleteMutex;

  /// Comes up with the pools on, unless `ZYL_NO_MEMORY_MANAGER` is set in the process's
  /// environment. Raises `ZylMemoryException` with nothing left behind.
  ZylEnvI();
  ~ZylEnvI();
  ZylEnvI(const ZylEnvI&) = delete;
  ZylEnvI& operator=(const ZylEnvI&) = delete;

  /// Goes down: deletes destroyables and algorithms, and with the pools off every object that still
  /// lives. Called by the destructor; a second call does nothing.
  void end();

  // --- allocation ---------------------------------------------------------------------------

  /// Returns `size` bytes, null for 0. Raises `ZylMemoryException`.
  [[nodiscard]] void* alloc(unsigned long size) {
    if (ZYL_UNLIKELY(_localEnv != nullptr)) return _localEnv->alloc(size);
    return _memory.alloc(static_cast<long>(size));
  }
  /// Gives back a block with the size that it was asked for with.
  void free(void* block, unsigned long size) {
    if (ZYL_UNLIKELY(_localEnv != nullptr)) {
      _localEnv->free(block, size);
      return;
    }
    _memory.free(block, static_cast<long>(size));
  }
  /// Copies a text into the pools; null for null. The copy must not change its length.
  [[nodiscard]] char* strDup(const char* text);
  void strFree(char* text);
  /// Returns the environment's one copy of `text`, good until the environment ends.
  const char* intern(const char* text);

  ZylMemory* getMemory() noexcept { return &_memory; }
  /// Whether `object`, which has a `getEnv()`, is of this environment. In large models mostly
  /// without a look at it, which would be a cache miss.
  template <class Object>
  bool isEnvOf(const Object* object) const noexcept {
    return _memory.owns(object) || object->getEnv() == this;
  }
  /// This environment as an allocator.
  ZylVorlaneAlloc* getGenAlloc() const noexcept { return _alloc; }
  ZylMemoryManager getMemoryManager() const { return ZylMemoryManager(_alloc); }
  /// Bytes in use by objects, bytes taken from the system, bytes of the id table.
  long getMemoryUsage() const noexcept;
  long getTotalMemoryUsage() const noexcept;
  long getIdManagerMemoryUsage() const noexcept;
  bool usesMemoryManager() const noexcept { return _useMemoryManager != 0; }

  /// Lets an installed local environment note a word before it changes.
  void saveValue(void** word) {
    if (ZYL_UNLIKELY(_localEnv != nullptr)) _localEnv->saveValue(word);
  }
  void saveValue(long* word) {
    if (ZYL_UNLIKELY(_localEnv != nullptr)) _localEnv->saveValue(word);
  }
  void saveValue(double* word) {
    if (ZYL_UNLIKELY(_localEnv != nullptr)) _localEnv->saveValue(word);
  }
  ZylLocalEnvI* getLocalEnv() const noexcept { return _localEnv; }
  /// Installs `local`, which is not owned; null restores the environment's own ways. Returns the
  /// one that was installed.
  ZylLocalEnvI* setLocalEnv(ZylLocalEnvI* local) noexcept;
  /// Makes allocation and id issue safe for threads, or takes that back. Raises
  /// `ZylNotSupportedOperation` over another local environment.
  void useMTSafeAllocation(long use);
  /// Gives each normalisation marks of its own, or takes that back.
  void useMTSafeNormalization(long use);
  bool isMTSafeAllocation() const noexcept { return _mtSafeAllocation != 0; }
  bool isMTSafeNormalization() const noexcept { return _mtSafeNormalization != 0; }
  /// The environment's own lock, null until MT-safe allocation was first switched on.
  ZylBaseEnvMutex* getMutex() const noexcept { return _mutex; }

  // --- life and death of extractables ---------------------------------------------------------

  /// Gives a new extractable its id; called by the constructor of `ZylExtractableI`.
  void init(ZylExtractableI* object);
  /// Takes the id back and leaves -1 in the object.
  void finit(ZylExtractableI* object);
  /// Last step of a removal: tells (with `notify`), takes the id, and deletes the object unless
  /// `keep` is set.
  void destroy(ZylExtractableI* object, long keep, long notify);
  /// Takes objects out of all that refers to them; what depended on them goes, they stay.
  void removeFromAll(ZylExtractableI* object);
  void removeFromAll(ZylExtractableArray objects);
  /// Takes objects out of all that refers to them, and deletes them with what depended on them,
  /// last marked first; each batch is announced before any of it dies. `flag` is for a deleter. The
  /// array form clears the array; if it raises, the array lists what has not died. Like
  /// `removeFromAll`, raises `ZylEnvironmentMismatch` for what is of another environment, before
  /// anything happens.
  void removeFromAllAndDestroy(ZylExtractableI* object, long flag);
  void removeFromAllAndDestroy(ZylExtractableArray objects, long flag);
  /// Frees the object's id and deletes it without telling anybody. Nothing for null.
  void removeVerticalEnv(void* object);
  ZylIdManager* getIdManager() const noexcept { return _idManager; }
  ZylRecycleBinI* getRecycleBin() const noexcept { return _recycleBin; }
  /// Whether the object is finished or marked for removal.
  bool isMarked(const ZylExtractableI* object) const noexcept;
  /// Clears and returns the scratch array of removals.
  ZylExtractableArray getOrMakeEmptySharedDeletedArray();
  ZylTypedListManager& getTypedLists() noexcept { return _typedLists; }
  bool isTearingDown() const noexcept { return _tearingDown != 0; }
  /// Whether storage was asked for for an object whose `isAggregate` may be true: while there was
  /// none, no sum is searched for one.
  bool mayHoldAggregates() const noexcept {
    return __atomic_load_n(&_mayHoldAggregates, __ATOMIC_RELAXED);
  }
  void noteAggregates() noexcept { __atomic_store_n(&_mayHoldAggregates, true, __ATOMIC_RELAXED); }
  /// Drops a reference on an expression; nothing while the environment goes down, or for null.
  void release(ZylNumExprI* expr);
  void release(ZylGeneratorI* generator);
  void release(ZylComprehensionI* comprehension);

  void addDestroyable(ZylDestroyableI* object);
  void removeDestroyable(ZylDestroyableI* object);

  // --- the deleter, an optional plug-in that governs removals ---------------------------------

  /// Installs a deleter, owned from now on, and its mode.
  void setDeleter(ZylBaseDeleterI* deleter, long mode) noexcept;
  ZylBaseDeleterI* getDeleter() const noexcept { return _deleter; }
  long getDeleterMode() const noexcept { return _deleterMode; }
  void setDeleterMode(long mode) noexcept { _deleterMode = mode; }
  /// Forwarded to the deleter; nothing without one, except that `inhibitDeleter` raises
  /// `ZylWrongUsage`.
  void removeAndDelete(ZylExtractableI* object, long flag);
  void removeAndDelete(ZylExtractableArray objects, long flag);
  void inhibitDeleter(long inhibit);
  void setDeleterVerbosityLevel(long level);
  /// Deletes the deleter.
  void unsetDeleter();

  // --- changes --------------------------------------------------------------------------------

  /// Tells the plug-ins, then every algorithm. Refusals are gathered and raised at the end, as one
  /// `ZylAlgorithm::CannotChangeException`; any other exception passes at once.
  void change(const ZylChange& change);
  /// Tells the plug-ins, then every algorithm that has extracted `object`.
  void change(const ZylExtractableI* object, const ZylChange& change);
  void addAlgorithm(ZylAlgorithmI* algorithm);
  /// Unlinks the algorithm and tells the plug-ins.
  void removeAlgorithm(ZylAlgorithmI* algorithm);
  /// Only unlinks: the algorithm hears no more, and does not end with the environment.
  void emancipateAlgorithm(ZylAlgorithmI* algorithm);
  ZylAlgorithmI* getAlgorithms() const noexcept { return _algorithms; }
  ZylPlugInManager* getPlugInManager() const noexcept { return _plugIns; }

  // --- symbols ----------------------------------------------------------------------------------

  ZylSymbolI* makeSymbol(const char* text);
  /// Raises `ZylUndefinedSymbol` for a text that is no symbol; null for null.
  ZylSymbolI* getSymbol(const char* text) const;
  bool hasSymbol(const char* text) const;
  ZylSymbolTable* getSymbolTable() const noexcept { return _symbolTable; }

  // --- marks: zeroed arrays indexed by id, for normalisation -----------------------------------

  /// Returns a mark array with a slot for each id in use, all zero; the caller clears what it
  /// marked, then releases it. Raises `ZylNotSupportedOperation` without
  /// `useMTSafeNormalization`.
  void** getMarkArray();
  void releaseMarkArray(void** marks);
  /// Frees all mark arrays; none of them is in use.
  void freeMarks();

  // --- cloning ---------------------------------------------------------------------------------

  /// Returns the clone of `object` in this environment, making it at most once for each outermost
  /// call or lock. Null for null. If a part cannot be cloned, the clones finished before it stay
  /// in this environment, unused: a class may answer with an object that was there already, so
  /// none of them is known to be this call's own.
  ZylExtractableI* getClone(const ZylExtractableI* object);
  bool hasClone(const ZylExtractableI* object) const;
  void setClone(const ZylExtractableI* object, ZylExtractableI* clone);
  /// `getClone` with the environment's expander deciding first. Null for null.
  ZylExtractableI* substitute(const ZylExtractableI* object);
  /// Keeps clones known over several calls; returns 0 if that was so already.
  long lockCloning();
  void unlockCloning();
  long lockCloningLevel();
  void unlockCloningLevel(long level);
  bool isCloningLocked() const;
  ZylRttiEnvObjectI* getKvlClone(const ZylRttiEnvObjectI* object);
  ZylCloneManager* getCloneManager() const noexcept { return _cloneManager; }

  // --- evaluator and expander -------------------------------------------------------------------

  /// Made on first use and kept until it ends, under the lock where there is one. Raises
  /// `ZylWrongUsage` if there is no factory, as while the environment goes down, or if it answers
  /// null.
  ZylExpanderI* getExpander();
  /// Called by an expander that ends: the next demand makes a new one.
  void forgetExpander(const ZylExpanderI* expander) noexcept;
  /// The expander's evaluator.
  ZylModelEvaluatorI* getModelEvaluator();
  void setExtractors(Extractors extractors) noexcept { _extractors = extractors; }
  Extractors getExtractors() const noexcept { return _extractors; }
  void setExpanders(Expanders expanders) noexcept { _expanders = expanders; }
  Expanders getExpanders() const noexcept { return _expanders; }
  void setModelEvaluatorPop(ModelEvaluatorFactory factory) noexcept {
    _modelEvaluatorPop = factory;
  }
  ModelEvaluatorFactory getModelEvaluatorPop() const noexcept { return _modelEvaluatorPop; }
  void setExpanderPop(ExpanderFactory factory) noexcept { _expanderPop = factory; }
  ExpanderFactory getExpanderPop() const noexcept { return _expanderPop; }
  ZylAny2BoolHashTable* getDecisionExprMap() const noexcept { return _decisionExprMap; }

  // --- domains and linear terms -----------------------------------------------------------------

  /// Return the one domain of these bounds, null for the float domain from 0 to infinity.
  ZylVarDomainI* getOrMakeSharedDomain(ZylIntRangeI* range);
  ZylVarDomainI* getOrMakeSharedDomain(ZylNumRangeI* range);
  ZylVarDomainI* getOrMakeSharedDomain(long lower, long upper);
  ZylVarDomainI* getOrMakeSharedDomain(double lower, double upper);
  /// A fresh term record that no node owns yet; defined in expr/lin_term.h. Raises
  /// `ZylMemoryException`.
  inline ZylNumLinExprTermI* newTerm(ZylNumVarI* variable, double coefficient);
  inline void recycleTerm(ZylNumLinExprTermI* term);
  bool isNormalizationInhibited() const noexcept { return _normalizationInhibited != 0; }
  void inhibitNormalization(long inhibit) noexcept { _normalizationInhibited = inhibit; }

  // --- name, user object, properties ------------------------------------------------------------

  ZYL_EXTENSION_OPERATIONS

 public:
  // --- streams, time, display --------------------------------------------------------------------

  std::ostream& out() const noexcept { return *_out; }
  std::ostream& warning() const noexcept { return *_warning; }
  std::ostream& error() const noexcept { return *_error; }
  void setOut(std::ostream& stream) noexcept { _out = &stream; }
  void setWarning(std::ostream& stream) noexcept { _warning = &stream; }
  void setError(std::ostream& stream) noexcept { _error = &stream; }
  std::ostream& getNullStream() noexcept { return _nullStream; }
  /// Processor seconds since the environment came up.
  double getTime() const { return _timer.getTime(); }
  void printTime() const;
  /// The build banner, in the form that what(1) finds.
  const char* getVersion() const noexcept { return _version; }
  long getFlags() const noexcept { return _flags; }
  /// Chooses the long or the short form in which expressions and constraints print.
  void setLongDisplay(bool on) noexcept {
    _flags = on ? (_flags | LongDisplayFlag) : (_flags & ~LongDisplayFlag);
  }
  bool isLongDisplay() const noexcept { return (_flags & LongDisplayFlag) != 0; }
  ZylKvlDisplayI* getKvlDisplay() const noexcept { return _kvlDisplay; }

 private:
  friend class ZylKvlDisplayI;
  friend class ZylExtractable;
  friend class ZylLocalEnvI;
  friend class ZylMTSafeLocalEnvI;
  friend class ZylRecycleBinI;

  class RemovalScope;
  class DyingArray;
  ZYL_LOCAL void clearFields() noexcept;
  ZYL_LOCAL void makeParts();
  ZYL_LOCAL void releaseParts() noexcept;
  // Parts whose classes stand above this one: each floor makes and gives back its own.
  ZYL_LOCAL void makeModelParts();
  ZYL_LOCAL void releaseModelParts() noexcept;
  ZYL_LOCAL void makeExprParts();
  ZYL_LOCAL void releaseExprParts() noexcept;
  ZYL_LOCAL void setDefaultFactories() noexcept;
  ZYL_LOCAL void deleteAlgorithms();
  // The way of a change through the algorithms: all of them, or those that have extracted `object`.
  ZYL_LOCAL void tellAlgorithms(const ZylChange& change, const ZylExtractableI* object);
  ZYL_LOCAL void tellAlgorithms(const ZylChange& change);
  ZYL_LOCAL void runBatches(DyingArray* listed = nullptr);
  ZYL_LOCAL void destroyBatch(DyingArray* listed);
  ZYL_LOCAL void scanForDependants(long maxId);
  ZYL_LOCAL void deleteLiveObjects();
  void* allocLocalTerm();
  void freeLocalTerm(void* term);
  ZYL_LOCAL void* newMarkArray();
  ZylGenAlloc* extensionAlloc() const noexcept { return _alloc; }

  long _flags;
  long _useMemoryManager;
  ZylMemory _memory;
  long _memoryMode;
  ZylLocalEnvI* _localEnv;
  long _mtSafeAllocation;
  long _mtSafeNormalization;
  void** _markArrays;  // first block; word 0 of a block leads to the next
  ZylSymbolTable* _symbolTable;
  ZylIdManager* _idManager;
  ZylTypedListManager _typedLists;
  ZylAlgorithmI* _algorithms;
  long _normalizationInhibited;
  long _termSize;
  ZylFixedSizeAllocatorI* _termAllocator;
  ZylPlugInManager* _plugIns;
  std::ostream* _out;
  std::ostream* _warning;
  std::ostream* _error;
  ZylPrivateBuf _nullBuf;
  ZylNullStream _nullStream;
  ZylTimer _timer;
  ZylCloneManager* _cloneManager;
  ZylDestroyableList* _destroyables;
  ZylBaseDeleterI* _deleter;
  long _deleterMode;
  long _tearingDown;
  ZylUniqueRandomI* _random;
  ZylVorlaneAlloc* _alloc;
  ZylExpanderI* _expander;
  ZylAny2BoolHashTable* _decisionExprMap;
  ZylBaseEnvMutex* _mutex;
  const char* _version;
  ZylExtension* _extension;
  ZylRecycleBinI* _recycleBin;
  ZylIntSharedDomainHash* _intSharedDomains;
  ZylNumSharedDomainHash* _numSharedDomains;
  ZylArrayI* _emptySharedDeletedArray;
  ZylKvlDisplayI* _kvlDisplay;
  ZylExtractableI* _schedGlobalExtractable;
  Extractors _extractors;
  Expanders _expanders;
  ModelEvaluatorFactory _modelEvaluatorPop;
  ExpanderFactory _expanderPop;
  bool _ended;
  bool _mayHoldAggregates = false;
  ZylMTSafeLocalEnvI* _mtLocalEnv;  // ours, null unless MT-safe allocation is on
  zyl::detail::Walk<ZylAlgorithmI>* _algorithmWalks = nullptr;      // under way, innermost first
  zyl::detail::LifeWatch<ZylExtractableI>* _lifeWatches = nullptr;  // innermost first
};

/// Handle of an environment: one pointer, copied freely, owning nothing.
///
/// The client ends the environment once, through any copy; every other handle on it or on something
/// in it dangles from then on.
class ZYL_EXPORT ZylEnv {
 public:
  /// A client asked for an end; nothing in the library raises it.
  class ZYL_EXPORT AbortException : public ZylException {
   public:
    AbortException();
  };
  /// The memory manager given belongs to no environment.
  class ZYL_EXPORT IncompatibleMemoryManagerException : public ZylException {
   public:
    IncompatibleMemoryManagerException();
  };

  /// Makes an environment. Raises `ZylMemoryException`.
  ZylEnv();
  explicit ZylEnv(ZylEnvI* impl) noexcept : _impl(impl) {}
  /// The environment behind a memory manager. Raises `IncompatibleMemoryManagerException`.
  explicit ZylEnv(const ZylMemoryManager& manager);

  ZylEnvI* getImpl() const noexcept { return _impl; }
  /// Ends the environment with all that it owns; nothing on an empty handle.
  void end() {
    delete _impl;
    _impl = nullptr;
  }

  // Each raises `ZylEmptyHandleException` "ZylEnv: Using empty handle" on an empty handle, and, for
  // a null name, "ZylEnv: Using empty string".
  ZYL_PROPERTY_OPERATIONS
  ZylNamedPropertyI* getPropertyI(const char* name) const;

  // These raise with the default text.
  ZylSymbolI* getSymbol(const char* text) const;
  ZylSymbolI* makeSymbol(const char* text) const;

  // Thin reads of the environment; the same failure on an empty handle.
  std::ostream& out() const { return checked()->out(); }
  std::ostream& warning() const { return checked()->warning(); }
  std::ostream& error() const { return checked()->error(); }
  std::ostream& getNullStream() const { return checked()->getNullStream(); }
  void setOut(std::ostream& stream) const { checked()->setOut(stream); }
  void setWarning(std::ostream& stream) const { checked()->setWarning(stream); }
  void setError(std::ostream& stream) const { checked()->setError(stream); }
  double getTime() const { return checked()->getTime(); }
  void printTime() const { checked()->printTime(); }
  const char* getVersion() const { return checked()->getVersion(); }
  long getMemoryUsage() const { return checked()->getMemoryUsage(); }
  long getTotalMemoryUsage() const { return checked()->getTotalMemoryUsage(); }
  ZylMemoryManager getMemoryManager() const { return checked()->getMemoryManager(); }
  /// See `ZylEnvI::setLongDisplay`.
  void setLongDisplay(bool on) const { checked()->setLongDisplay(on); }

 private:
  ZylEnvI* checked() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle();
    return _impl;
  }
  ZylEnvI* _impl;
};

/// A display callback of a language front end; an environment has at most one.
class ZYL_EXPORT ZylKvlDisplayI {
 public:
  virtual ~ZylKvlDisplayI();
  /// Stores `display`, owned by the environment from now on, and returns the one before. Raises
  /// `ZylWrongUsage` if a different one is set.
  static ZylKvlDisplayI* Register(ZylEnvI* env, ZylKvlDisplayI* display);
  /// Takes the callback away without deleting it.
  static void Unregister(ZylEnvI* env, ZylKvlDisplayI* display);
};

namespace zyl::detail {
// Placement deletes of throwing constructors.
inline void freeInEnv(ZylEnvI* env, void* block, std::size_t size) noexcept {
  if (env != nullptr) env->free(block, size);
}
// What a handle stands for; raises `ZylEmptyHandleException` for an empty one.
inline ZylEnvI* ownerOf(const ZylEnv& env) {
  if (ZYL_UNLIKELY(env.getImpl() == nullptr)) ZylRaiseEmptyHandle();
  return env.getImpl();
}
}  // namespace zyl::detail

/// Placement in an environment. Without these, `new (env) T` of a class with no form of its own
/// would fall to the standard placement form and build the object on top of the environment.
inline void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
inline void* operator new(std::size_t size, const ZylEnv& env) {
  return zyl::detail::ownerOf(env)->alloc(size);
}
/// A constructor that raised: the size is unknown here, so the block waits for its pool's end.
inline void operator delete(void*, ZylEnvI*) noexcept {}
inline void operator delete(void*, const ZylEnv&) noexcept {}

#endif
