// The way of a change through the algorithms of its environment.
//
// The model has changed already when a change is sent, so one refusal must not keep the others from
// hearing of it: refusals are gathered, and raised as one when everybody has been told.

#include "common/walk.h"
#include "vorlane/algorithm/algorithm.h"
#include "vorlane/env/environment.h"
#include "vorlane/model/plug_in.h"

using zyl::detail::Walk;

namespace {

/// The refusals of one change: the first algorithm to refuse, and what all of them refused.
class Refusals {
 public:
  Refusals() = default;
  // Something is left only when another exception passes.
  ~Refusals() { _objects.end(); }
  Refusals(const Refusals&) = delete;
  Refusals& operator=(const Refusals&) = delete;

  void add(ZylAlgorithm::CannotChangeException& refusal) {
    if (!_any) _algorithm = refusal.getAlgorithmI();
    _any = true;
    if (_objects.getImpl() == nullptr) {
      _objects = refusal.takeExtractables();
      return;
    }
    if (refusal.getExtractables().getImpl() != nullptr) _objects.add(refusal.getExtractables());
    refusal.end();
  }

  void raiseIfAny() {
    if (!_any) return;
    const ZylExtractableArray objects = _objects;
    _objects = ZylExtractableArray();
    throw ZylAlgorithm::CannotChangeException(_algorithm, objects);
  }

 private:
  bool _any = false;
  ZylAlgorithmI* _algorithm = nullptr;
  ZylExtractableArray _objects;
};

}  // namespace

void ZylEnvI::tellAlgorithms(const ZylChange& change, const ZylExtractableI* object) {
  Refusals refusals;
  // A receiver may end itself or another while it hears of the change.
  Walk walk(&_algorithmWalks, _algorithms);
  while (ZylAlgorithmI* algorithm = walk.next()) {
    if (!algorithm->isInUse(object)) continue;
    try {
      algorithm->apply(change, object);
    } catch (ZylAlgorithm::CannotChangeException& refusal) {
      refusals.add(refusal);
    }
  }
  refusals.raiseIfAny();
}

void ZylEnvI::tellAlgorithms(const ZylChange& change) {
  Refusals refusals;
  Walk walk(&_algorithmWalks, _algorithms);
  while (ZylAlgorithmI* algorithm = walk.next()) {
    try {
      algorithm->apply(change);
    } catch (ZylAlgorithm::CannotChangeException& refusal) {
      refusals.add(refusal);
    }
  }
  refusals.raiseIfAny();
}

bool ZylNotifiedPlugIn::concerns(const ZylExtractableI* object) const {
  return _algorithm == nullptr || object == nullptr || _algorithm->isInUse(object);
}
