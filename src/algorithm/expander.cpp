#include "vorlane/algorithm/expander.h"

#include <new>

#include "vorlane/algorithm/model_evaluator.h"

ZylExpanderI::ZylExpanderI(ZylEnvI* env) : ZylAlgorithmI(env) {}

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
  ZylModelEvaluatorI* before = _modelEvaluator;
  _modelEvaluator = evaluator;
  delete before;
}

ZylExpanderI* defaultExpander(ZylEnvI* env) {
  void* block = zyl::detail::allocateGlobal(sizeof(ZylExpanderI));
  try {
    return ::new (block) ZylExpanderI(env);
  } catch (...) {
    zyl::detail::releaseGlobal(block);
    throw;
  }
}
