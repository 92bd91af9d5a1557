// Semi-continuous variables: a domain, and a threshold beside it.

#include "vorlane/expr/special_variable.h"

#include <ostream>

#include "common/handle_check.h"
#include "vorlane/expr/variable_change.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/display.h"

ZYL_EXTRACTABLE_DEF(ZylSemiContVarI, ZylNumVarI)

ZylSemiContVarI::ZylSemiContVarI(ZylEnvI* env, double threshold, double upper, Type type,
                                 const char* name)
    : ZylNumVarI(env, 0.0, upper, type, name), _threshold(threshold) {}

ZylSemiContVarI::ZylSemiContVarI(ZylEnvI* env, double threshold)
    : ZylNumVarI(env), _threshold(threshold) {}

ZylExtractableI* ZylSemiContVarI::makeClone(ZylEnvI* env) const {
  return new (env) ZylSemiContVarI(env, _threshold);
}

void ZylSemiContVarI::display(std::ostream& stream) const {
  zyl::detail::displayHead(stream, "ZylSemiContI", this);
  ZylNumVarI::display(stream);
  stream << "  _threshold " << _threshold << std::endl;
}

void ZylSemiContVarI::setBd(double threshold) {
  if (threshold == _threshold) return;
  const double before = _threshold;
  _threshold = threshold;
  notify(ZylSetSemiContBound(this, before, threshold));
}

// --- handle --------------------------------------------------------------------------------------

namespace {

constexpr const char* EmptyVariable = "Using empty ZylNumVar handle.";

ZylEnvI* checkedEnv(const ZylEnv& env) { return zyl::detail::checked(env, zyl::detail::EmptyEnv); }

}  // namespace

ZylSemiContVar::ZylSemiContVar(const ZylEnv& env, double threshold, double upper, Type type,
                               const char* name) {
  ZylEnvI* owner = checkedEnv(env);
  _impl = new (owner) ZylSemiContVarI(owner, threshold, upper, type, name);
}

double ZylSemiContVar::getSemiContinuousLb() const { return checked(EmptyVariable)->getBd(); }
void ZylSemiContVar::setSemiContinuousLb(double threshold) const {
  checked(EmptyVariable)->setBd(threshold);
}

ZylSemiContVar ZylSemiContVar::getClone(const ZylEnv& env) const {
  return ZylSemiContVar(
      static_cast<ZylSemiContVarI*>(checkedEnv(env)->getClone(checked(EmptyVariable))));
}

void ZylSemiContVar::setClone(const ZylSemiContVar& clone) const {
  clone.checked(EmptyVariable)->getEnv()->setClone(checked(EmptyVariable), clone.getImpl());
}
