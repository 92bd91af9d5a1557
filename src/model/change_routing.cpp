// The road of an edit: plug-ins first, then each algorithm concerned, last added first.

#include "vorlane/env/environment.h"
#include "vorlane/model/change.h"
#include "vorlane/model/plug_in.h"

void ZylEnvI::change(const ZylExtractableI* object, const ZylChange& change) {
  // Most edits are made while a model is built, before anybody listens.
  if (_algorithms == nullptr && _mtSafeAllocation == 0 && !_plugIns->hasNotified()) return;
  zyl::detail::EnvLock lock(_mtSafeAllocation != 0 ? _mutex : nullptr);
  if (_plugIns->hasNotified()) _plugIns->apply(change, object);
  tellAlgorithms(change, object);
}

void ZylEnvI::change(const ZylChange& change) {
  if (_plugIns->hasNotified()) _plugIns->apply(change, nullptr);
  tellAlgorithms(change);
}
