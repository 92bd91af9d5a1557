// The objects of one removal: marking, then dying batch by batch.

#include "vorlane/model/recycle_bin.h"

#include <cstdint>

#include "vorlane/model/change.h"

ZylRecycleBinI::ZylRecycleBinI(ZylEnvI* env)
    : _env(env), _marked(ZylEnv(env)), _releaseMode(0),
      _dying(1, &HashExtractable, &CompareExtractables) {
  try {
    _arrivals = ZylExtractableArray(ZylEnv(env));
  } catch (const ZylMemoryException&) {
    _marked.end();
    throw;
  }
}

long ZylRecycleBinI::HashExtractable(ZylExtractableI* object, long buckets) {
  const auto address = reinterpret_cast<std::uintptr_t>(object);
  return static_cast<long>((address >> 5) % static_cast<std::uintptr_t>(buckets));
}

long ZylRecycleBinI::CompareExtractables(ZylExtractableI* a, ZylExtractableI* b) {
  return a == b ? 1 : 0;
}

void ZylRecycleBinI::add(ZylExtractableI* object) {
  if (_env->isMarked(object)) return;
  if (isReleasing()) {
    _arrivals.addI(object);
    return;
  }
  _marked.addI(object);
  _env->getIdManager()->mark(object->getId());
}

void ZylRecycleBinI::makeRoom(long count) {
  const ZylExtractableArray& entered = isReleasing() ? _arrivals : _marked;
  entered.getImpl()->grow(entered.getSize() + count);
}

namespace {

/// The elements of an array from one on, in an array of their own.
class Tail {
 public:
  Tail(ZylEnvI* env, const ZylExtractableArray& objects, long first) : _tail(ZylEnv(env)) {
    try {
      for (long i = first; i < objects.getSize(); ++i) _tail.addI(objects.getI(i));
    } catch (...) {
      _tail.end();
      throw;
    }
  }
  ~Tail() { _tail.end(); }
  Tail(const Tail&) = delete;
  Tail& operator=(const Tail&) = delete;
  const ZylExtractableArray& get() const noexcept { return _tail; }

 private:
  ZylExtractableArray _tail;
};

}  // namespace

void ZylRecycleBinI::removeFromAll() {
  _env->scanForDependants(_env->getIdManager()->getMaxId());
  long told = _marked.getSize();
  _env->change(ZylRemoveFromAllChange(_marked));
  // What a receiver ended in its turn.
  while (_marked.getSize() > told) {
    _env->scanForDependants(_env->getIdManager()->getMaxId());
    const Tail late(_env, _marked, told);
    told = _marked.getSize();
    _env->change(ZylRemoveFromAllChange(late.get()));
  }
}

void ZylRecycleBinI::keepFirst() {
  ZylExtractableI* first = _marked.getI(0);
  _marked.remove(0);
  _env->getIdManager()->set(first->getId(), first);
}

void ZylRecycleBinI::endReleaseMode() {
  _releaseMode = 0;
  _marked.getImpl()->truncate(0);
  for (long i = 0; i < _arrivals.getSize(); ++i) {
    ZylExtractableI* object = _arrivals.getI(i);
    // An object may have arrived twice.
    if (_env->isMarked(object)) continue;
    _marked.addI(object);
    _env->getIdManager()->mark(object->getId());
  }
  _arrivals.getImpl()->truncate(0);
}

void ZylRecycleBinI::end() {
  _marked.end();
  _arrivals.end();
  _dying.end();
}

void ZylRecycleBinI::addDying(ZylExtractableI* object) { _dying.add(object, object); }

bool ZylRecycleBinI::isDying(const ZylExtractableI* object) const {
  return _dying.contains(const_cast<ZylExtractableI*>(object));  // NOLINT: a key, never written
}

bool ZylRecycleBinI::contains(const ZylExtractableI* object) const {
  return isDying(object) || _env->isMarked(object);
}
