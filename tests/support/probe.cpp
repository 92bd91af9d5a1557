#include "support/probe.h"

#include "vorlane/algorithm.h"
#include "vorlane/model/visitor.h"

namespace zyl::test {

ZYL_EXTRACTABLE_DEF(Probe, ZylExtractableI)
ZYL_EXTRACTABLE_DEF(BareProbe, ZylExtractableI)

long Probe::Living = 0;
std::vector<std::string> Probe::Died;

Probe::~Probe() {
  --Living;
  if (getName() != nullptr) Died.emplace_back(getName());
  if (onDeath) onDeath();
}

ZylExtractableI* Probe::makeClone(ZylEnvI* env) const {
  return new (env) Probe(env, getName(), env->getClone(left), env->getClone(right));
}

void Probe::visitSubExtractables(ZylExtractableVisitor* visitor) {
  ++visits;
  visitor->beginVisit(this);
  if (left != nullptr) visitor->visitChildren(this, left);
  if (right != nullptr) visitor->visitChildren(this, right);
  visitor->endVisit(this);
}

void Probe::atRemove(ZylExtractableI* removed, void* extra) {
  if (onAtRemove) onAtRemove();
  ZylExtractableI::atRemove(removed, extra);
}

void BareProbe::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->endVisit(this);
}

}  // namespace zyl::test
