// The library's own expander, which expands nothing, and those who ask an environment's expander.

#include "vorlane/algorithm/expander.h"

#include <utility>

#include "common/part.h"
#include "vorlane/algorithm/model_evaluator.h"
#include "vorlane/model/clone_manager.h"

ZylExpanderI::ZylExpanderI(ZylEnvI* env) : ZylAlgorithmI(env) {}
ZylExpanderI::~ZylExpanderI() { _env->forgetExpander(this); }

bool ZylExpanderI::doExtract(const ZylExtractableI*, void**) { return true; }
bool ZylExpanderI::doRemove(const ZylExtractableI*, void*) { return true; }
bool ZylExpanderI::doApply(const ZylChange*, void**, const ZylExtractableI*) { return true; }
double ZylExpanderI::getObjValue() const { ZylRaiseWrongUsage("can not call expander"); }
double ZylExpanderI::getValue(const ZylNumVarI*) const {
  ZylRaiseWrongUsage("can not call expander");
}
double ZylExpanderI::getValue(const ZylObjectiveI*) const {
  ZylRaiseWrongUsage("can not call expander");
}
void ZylExpanderI::registerAll() {}
void ZylExpanderI::expand(ZylModelI*, const ZylExtractableI*, const char*, const char*) {
  ZylRaiseWrongUsage("can not call expand");
}
ZylExtractableI* ZylExpanderI::substitute(ZylExtractableI*) {
  ZylRaiseWrongUsage("can not call substitute");
}

void ZylExpanderI::setEvaluator(ZylModelEvaluatorI* evaluator) {
  if (_modelEvaluator == evaluator) return;
  if (evaluator != nullptr) {
    if (evaluator->getEnvI() != _env) throw ZylEnvironmentMismatch();
    if (evaluator->getAlgorithm() != nullptr && evaluator->getAlgorithm() != this) {
      ZylRaiseWrongUsage("ZylExpanderI::setEvaluator: the evaluator is another algorithm's");
    }
    evaluator->setAlgorithm(this);
  }
  delete std::exchange(_modelEvaluator, evaluator);
}

ZylExpanderI* defaultExpander(ZylEnvI* env) { return zyl::detail::makePart<ZylExpanderI>(env); }

// --- what is asked of an environment's expander --------------------------------------------------

void ZylEnvI::setDefaultFactories() noexcept {
  _modelEvaluatorPop = &defaultModelEvaluator;
  _expanderPop = &defaultExpander;
}

ZylExpanderI* ZylEnvI::getExpander() {
  // Readers of a model come here, several at a time: hence tested again inside the lock.
  ZylExpanderI* expander = __atomic_load_n(&_expander, __ATOMIC_ACQUIRE);
  if (expander != nullptr) return expander;
  const zyl::detail::EnvLock lock(_mutex);
  if (_expander != nullptr) return _expander;
  // There is no factory any more while the environment goes down.
  if (_expanderPop != nullptr) expander = _expanderPop(this);
  if (expander == nullptr) ZylRaiseWrongUsage("can not call expander");
  __atomic_store_n(&_expander, expander, __ATOMIC_RELEASE);
  return expander;
}

void ZylEnvI::forgetExpander(const ZylExpanderI* expander) noexcept {
  if (_expander == expander) _expander = nullptr;
}

ZylModelEvaluatorI* ZylEnvI::getModelEvaluator() { return getExpander()->getModelEvaluator(); }

void ZylExtractableI::expandTo(ZylModelI* model, const char* first, const char* second) const {
  _env->getExpander()->expand(model, this, first, second);
}

ZylExtractableI* ZylCloneManager::makeClone(const ZylExtractableI* object) {
  if (_expander != nullptr) {
    auto* original = const_cast<ZylExtractableI*>(object);  // NOLINT: only read
    if (ZylExtractableI* clone = _expander->substitute(original)) return clone;
  }
  return object->makeClone(_env);
}
