// What an environment holds for its models: the memo of clones, and the plug-ins.

#include "common/part.h"
#include "vorlane/env/environment.h"
#include "vorlane/model/clone_manager.h"
#include "vorlane/model/plug_in.h"

using zyl::detail::destroyPart;
using zyl::detail::makePart;

void ZylEnvI::makeModelParts() {
  _cloneManager = makePart<ZylCloneManager>(this);
  _plugIns = makePart<ZylPlugInManager>(this);
}

// The plug-ins first: what they end in their destructors leaves the memo.
void ZylEnvI::releaseModelParts() noexcept {
  _tearingDown = 1;
  destroyPart(_plugIns);
  _tearingDown = 0;
  destroyPart(_cloneManager);
}
