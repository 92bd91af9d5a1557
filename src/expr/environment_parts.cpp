// What an environment holds for its expressions: the shared domains, and the pool of terms.

#include "common/part.h"
#include "vorlane/expr/domain_table.h"
#include "vorlane/expr/lin_term.h"

namespace {
constexpr long DomainBuckets = 31;
}

void ZylEnvI::makeExprParts() {
  _termSize = sizeof(ZylNumLinExprTermI);
  _termAllocator = zyl::detail::makePart<ZylFixedSizeAllocatorI>(_termSize);
  if (_useMemoryManager == 0) _termAllocator->setUseIt(0);
  _intSharedDomains = new (_alloc) ZylIntSharedDomainHash(this, DomainBuckets);
  _numSharedDomains = new (_alloc) ZylNumSharedDomainHash(this, DomainBuckets);
}

// The pool of terms stays: what goes down later may still give terms back.
void ZylEnvI::releaseExprParts() noexcept {
  zyl::detail::destroyPart(_intSharedDomains);
  zyl::detail::destroyPart(_numSharedDomains);
}

// Terms stay with their pool while allocation is locked: they may be given back when it no longer
// is. Another local environment serves them as everything else.
void* ZylEnvI::allocLocalTerm() {
  if (_localEnv != _mtLocalEnv) return _localEnv->alloc(sizeof(ZylNumLinExprTermI));
  const zyl::detail::EnvLock lock(_mutex);
  return _termAllocator->alloc(&_memory);
}

void ZylEnvI::freeLocalTerm(void* term) {
  if (_localEnv != _mtLocalEnv) {
    _localEnv->free(term, sizeof(ZylNumLinExprTermI));
    return;
  }
  const zyl::detail::EnvLock lock(_mutex);
  _termAllocator->free(term);
}
