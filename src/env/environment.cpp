// Coming up and going down, in fixed orders: what a step needs has come up before it, and goes down
// after it.

#include "vorlane/env/environment.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "common/part.h"
#include "vorlane/env/array.h"
#include "vorlane/env/destroyable_list.h"
#include "vorlane/env/hash_table.h"
#include "vorlane/env/number.h"
#include "vorlane/env/symbol.h"

using zyl::detail::allocateGlobal;
using zyl::detail::destroyPart;
using zyl::detail::EnvLock;
using zyl::detail::makePart;
using zyl::detail::releaseGlobal;

namespace {

constexpr long TableBuckets = 31;

// A mark array is one block of words: link, in-use flag, capacity, then the marks.
constexpr long MarkLink = 0;
constexpr long MarkInUse = 1;
constexpr long MarkCapacity = 2;
constexpr long MarkHeader = 3;
constexpr long MarkSlack = 1000;

}  // namespace

ZylEnv::AbortException::AbortException() : ZylException("ZylEnv has been requested to abort.") {}

ZylEnv::IncompatibleMemoryManagerException::IncompatibleMemoryManagerException()
    : ZylException("Incompatible memory manager") {}

ZylEnv::ZylEnv() : _impl(makePart<ZylEnvI>()) {}

ZylEnv::ZylEnv(const ZylMemoryManager& manager) : _impl(ZylGetEnv(manager)) {
  if (_impl == nullptr) throw IncompatibleMemoryManagerException();
}

ZylEnvI::ZylEnvI()
    : _flags(0), _useMemoryManager(std::getenv("ZYL_NO_MEMORY_MANAGER") == nullptr ? 1 : 0),
      _memory(_useMemoryManager), _memoryMode(_useMemoryManager), _out(&std::cout),
      _warning(&std::cerr), _error(&std::cerr), _nullStream(&_nullBuf), _timer(ZylMemoryManager()) {
  clearFields();
  _version = "@(#)Vorlane library 12.3.0.0 (2010-07-01)";
  setDefaultFactories();
  ZylInitGlobals();
  if (_useMemoryManager != 0) _flags |= MemoryManagerFlag;
  _timer.start();
  try {
    makeParts();
  } catch (...) {
    releaseParts();
    throw;
  }
}

void ZylEnvI::clearFields() noexcept {
  _localEnv = nullptr;
  _mtSafeAllocation = 0;
  _mtSafeNormalization = 0;
  _markArrays = nullptr;
  _symbolTable = nullptr;
  _idManager = nullptr;
  _algorithms = nullptr;
  _normalizationInhibited = 0;
  _termSize = 0;
  _termAllocator = nullptr;
  _plugIns = nullptr;
  _cloneManager = nullptr;
  _destroyables = nullptr;
  _deleter = nullptr;
  _deleterMode = 0;
  _tearingDown = 0;
  _random = nullptr;
  _alloc = nullptr;
  _expander = nullptr;
  _decisionExprMap = nullptr;
  _mutex = nullptr;
  _extension = nullptr;
  _recycleBin = nullptr;
  _intSharedDomains = nullptr;
  _numSharedDomains = nullptr;
  _emptySharedDeletedArray = nullptr;
  _kvlDisplay = nullptr;
  _schedGlobalExtractable = nullptr;
  _extractors = nullptr;
  _expanders = nullptr;
  _ended = false;
  _mtLocalEnv = nullptr;
}

void ZylEnvI::makeParts() {
  _alloc = makePart<ZylVorlaneAlloc>(this);
  _destroyables = makePart<ZylDestroyableList>(this, 1, &ZylDestroyableList::HashPointer,
                                               &ZylDestroyableList::ComparePointers);
  _symbolTable = new (_alloc) ZylSymbolTable(ZylMemoryManager(_alloc), TableBuckets);
  _idManager = makePart<ZylIdManager>(&_memory);
  makeModelParts();
  makeExprParts();
  _decisionExprMap = new (_alloc) ZylAny2BoolHashTable(_alloc, TableBuckets);
}

ZylEnvI::~ZylEnvI() { end(); }

void ZylEnvI::end() {
  if (_ended) return;
  _ended = true;
  useMTSafeAllocation(0);

  destroyPart(_decisionExprMap);
  _extractors = nullptr;
  _expanders = nullptr;
  _modelEvaluatorPop = nullptr;
  _expanderPop = nullptr;
  zyl::detail::Extended::end(_alloc, &_extension);

  _tearingDown = 1;
  destroyPart(_kvlDisplay);
  while (ZylDestroyableI* object = _destroyables->getHead()) delete object;
  destroyPart(_destroyables);
  _tearingDown = 0;

  deleteAlgorithms();
  _typedLists.end(this);
  unsetDeleter();
  if (_useMemoryManager == 0) deleteLiveObjects();
  releaseParts();
}

// Also what undoes a coming up that failed half way: every part may still be missing.
void ZylEnvI::releaseParts() noexcept {
  if (_idManager != nullptr) _idManager->end();
  destroyPart(_emptySharedDeletedArray);
  destroyPart(_decisionExprMap);
  releaseExprParts();
  releaseModelParts();
  destroyPart(_destroyables);
  destroyPart(_idManager);
  destroyPart(_symbolTable);
  destroyPart(_termAllocator);
  destroyPart(_alloc);
  destroyPart(_mutex);
  freeMarks();
}

// --- memory --------------------------------------------------------------------------------------

char* ZylEnvI::strDup(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(alloc(size));
  std::memcpy(copy, text, size);
  return copy;
}

void ZylEnvI::strFree(char* text) {
  if (text != nullptr) free(text, std::strlen(text) + 1);
}

long ZylEnvI::getMemoryUsage() const noexcept {
  return _memory.getMemoryUsage() + _termAllocator->getMemoryUsage();
}

long ZylEnvI::getTotalMemoryUsage() const noexcept {
  return _memory.getTotalMemoryUsage() + _termAllocator->getTotalMemoryUsage();
}

long ZylEnvI::getIdManagerMemoryUsage() const noexcept {
  return _idManager->getCapacity() * static_cast<long>(sizeof(void*));
}

ZylLocalEnvI* ZylEnvI::setLocalEnv(ZylLocalEnvI* local) noexcept {
  ZylLocalEnvI* before = _localEnv;
  _localEnv = local;
  return before;
}

void ZylEnvI::useMTSafeAllocation(long use) {
  if (_mtSafeAllocation == 0 && use != 0) {
    if (_localEnv != nullptr) throw ZylNotSupportedOperation();
    if (_mutex == nullptr) _mutex = ZylMakeEnvMutex();
    _mtLocalEnv = makePart<ZylMTSafeLocalEnvI>(this, _localEnv);
    _localEnv = _mtLocalEnv;
  } else if (_mtSafeAllocation != 0 && use == 0) {
    // A client may have put another one in its place.
    if (_localEnv == _mtLocalEnv) _localEnv = _mtLocalEnv->getPrevious();
    destroyPart(_mtLocalEnv);
  }
  _mtSafeAllocation = use;
}

// --- marks ---------------------------------------------------------------------------------------

namespace {
void** linkOf(void** block) { return reinterpret_cast<void**>(block[MarkLink]); }
long* wordOf(void** block, long word) { return reinterpret_cast<long*>(block + word); }
}  // namespace

void* ZylEnvI::newMarkArray() {
  const long capacity = _idManager->getMaxId() + MarkSlack;
  const std::size_t bytes = static_cast<std::size_t>(capacity + MarkHeader) * sizeof(void*);
  auto** block = static_cast<void**>(allocateGlobal(bytes));
  std::memset(block, 0, bytes);
  *wordOf(block, MarkCapacity) = capacity;
  return block;
}

void** ZylEnvI::getMarkArray() {
  if (_mtSafeNormalization == 0) throw ZylNotSupportedOperation();
  EnvLock lock(_mutex);
  void** before = nullptr;
  void** block = _markArrays;
  while (block != nullptr && *wordOf(block, MarkInUse) != 0) {
    before = block;
    block = linkOf(block);
  }
  if (block == nullptr || *wordOf(block, MarkCapacity) < _idManager->getMaxId()) {
    auto** fresh = static_cast<void**>(newMarkArray());
    if (block != nullptr) fresh[MarkLink] = block[MarkLink];
    if (before != nullptr) {
      before[MarkLink] = fresh;
    } else {
      _markArrays = fresh;
    }
    releaseGlobal(block);
    block = fresh;
  }
  *wordOf(block, MarkInUse) = 1;
  return block + MarkHeader;
}

void ZylEnvI::releaseMarkArray(void** marks) {
  EnvLock lock(_mutex);
  *wordOf(marks - MarkHeader, MarkInUse) = 0;
}

void ZylEnvI::freeMarks() {
  while (_markArrays != nullptr) {
    void** next = linkOf(_markArrays);
    releaseGlobal(_markArrays);
    _markArrays = next;
  }
}

void ZylEnvI::useMTSafeNormalization(long use) {
  if (_mtSafeNormalization == 0 && use != 0) {
    _markArrays = static_cast<void**>(newMarkArray());
  } else if (_mtSafeNormalization != 0 && use == 0) {
    freeMarks();
  }
  _mtSafeNormalization = use;
}

// --- services ------------------------------------------------------------------------------------

const char* ZylEnvI::intern(const char* text) {
  if (text == nullptr) return nullptr;
  EnvLock lock(_mutex);
  return makeSymbol(text)->getText();
}

ZylSymbolI* ZylEnvI::makeSymbol(const char* text) { return _symbolTable->make(text); }
ZylSymbolI* ZylEnvI::getSymbol(const char* text) const { return _symbolTable->get(text); }

bool ZylEnvI::hasSymbol(const char* text) const {
  return text != nullptr && _symbolTable->contains(text);
}

ZylSymbolI* ZylEnv::getSymbol(const char* text) const { return checked()->getSymbol(text); }
ZylSymbolI* ZylEnv::makeSymbol(const char* text) const { return checked()->makeSymbol(text); }

void ZylEnvI::addDestroyable(ZylDestroyableI* object) { _destroyables->add(object); }

void ZylEnvI::removeDestroyable(ZylDestroyableI* object) {
  if (_destroyables != nullptr) _destroyables->remove(object);
}

void ZylEnvI::printTime() const {
  *_out << "Elapsed time since creation : " << getTime() << std::endl;
}

ZylKvlDisplayI::~ZylKvlDisplayI() = default;

ZylKvlDisplayI* ZylKvlDisplayI::Register(ZylEnvI* env, ZylKvlDisplayI* display) {
  ZylKvlDisplayI* before = env->_kvlDisplay;
  if (before != nullptr && before != display) {
    throw ZylWrongUsage("ZylKvlDisplayI::Register : callback is already set");
  }
  env->_kvlDisplay = display;
  return before;
}

void ZylKvlDisplayI::Unregister(ZylEnvI* env, ZylKvlDisplayI*) { env->_kvlDisplay = nullptr; }
