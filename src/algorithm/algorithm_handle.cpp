// The handle of algorithms: tests what it is given, then forwards to the implementation.

#include "vorlane/algorithm/algorithm.h"

#include "vorlane/expr/objective.h"
#include "vorlane/expr/var_array.h"
#include "vorlane/model/model.h"

ZylAlgorithmI* ZylAlgorithm::used() const {
  if (_impl == nullptr) ZylRaiseWrongUsage("accessing ZylAlgorithm through 0 handle");
  return _impl;
}

ZylAlgorithmI* ZylAlgorithm::called() const {
  if (_impl == nullptr) ZylRaiseEmptyHandle("accessing ZylAlgorithm through 0 handle");
  return _impl;
}

ZylAlgorithmI* ZylAlgorithm::owner() const {
  if (_impl == nullptr) ZylRaiseEmptyHandle("ZylAlgorithm: Using empty handle");
  return _impl;
}

namespace {

ZylNumVarI* checkedVariable(ZylNumVarI* variable) {
  if (variable == nullptr) ZylRaiseWrongUsage("Using empty ZylNumVar handle.");
  return variable;
}

template <class Variables, class Values>
void checkArrays(const Variables& variables, const Values& values) {
  if (variables.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylNumVarArray.");
  if (values.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylNumArray.");
  for (long i = 0; i < variables.getSize(); ++i) {
    if (variables.getI(i) == nullptr) ZylRaiseWrongUsage("Using empty ZylNumVar handle.");
  }
}

}  // namespace

void ZylAlgorithm::end() {
  delete _impl;
  _impl = nullptr;
}

ZylEnv ZylAlgorithm::getEnv() const { return used()->getEnv(); }

ZylModel ZylAlgorithm::getModel() const {
  return ZylModel(const_cast<ZylModelI*>(used()->getModelI()));  // NOLINT: handles are mutable
}

void ZylAlgorithm::extract(const ZylModel& model) const {
  called();
  if (model.getImpl() == nullptr) ZylRaiseEmptyHandle("cannot extract empty model");
  _impl->load(model.getImpl());
}

void ZylAlgorithm::clear() const {
  if (_impl != nullptr) _impl->clear();
}

bool ZylAlgorithm::isExtracted(const ZylExtractable& extractable) const {
  used();
  if (extractable.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylExtractable handle.");
  return _impl->isInUse(extractable.getImpl());
}

bool ZylAlgorithm::solve() const { return called()->callSolve(); }

ZylAlgorithm::Status ZylAlgorithm::getStatus() const {
  used()->initTime();
  return _impl->getStatus();
}

double ZylAlgorithm::getObjValue() const { return used()->getObjValue(); }

double ZylAlgorithm::getValue(const ZylNumVar& variable) const {
  used();
  return _impl->getValue(checkedVariable(variable.getImpl()));
}

double ZylAlgorithm::getValue(const ZylIntVar& variable) const {
  used();
  return _impl->getValue(checkedVariable(variable.getImpl()));
}

double ZylAlgorithm::getValue(const ZylObjective& objective) const {
  used();
  if (objective.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylExtractable handle.");
  return _impl->getValue(objective.getImpl());
}

double ZylAlgorithm::getValue(const ZylNumExprArg& expr) const {
  if (_impl == nullptr) ZylRaiseWrongUsage("Using empty ZylAlgorithm.");
  if (expr.getImpl() == nullptr) ZylRaiseWrongUsage("Using empty ZylExprArg.");
  return _impl->getExprValue(expr.getImpl());
}

long ZylAlgorithm::getIntValue(const ZylIntVar& variable) const {
  used();
  return _impl->getIntValue(checkedVariable(variable.getImpl()));
}

void ZylAlgorithm::getValues(const ZylNumVarArray& variables, const ZylNumArray& values) const {
  used();
  checkArrays(variables, values);
  _impl->getValues(variables, values);
}

// Engines see one entry point for both kinds of array.
void ZylAlgorithm::getValues(const ZylIntVarArray& variables, const ZylNumArray& values) const {
  used();
  checkArrays(variables, values);
  _impl->getValues(ZylNumVarArray(variables.getImpl()), values);
}

void ZylAlgorithm::getIntValues(const ZylIntVarArray& variables, const ZylIntArray& values) const {
  used();
  checkArrays(variables, values);
  _impl->getIntValues(variables, values);
}

double ZylAlgorithm::getTime() const { return owner()->getTime(); }
void ZylAlgorithm::printTime() const { owner()->printTime(); }
void ZylAlgorithm::resetTime() const { owner()->resetTime(); }
std::ostream& ZylAlgorithm::out() const { return owner()->out(); }
std::ostream& ZylAlgorithm::warning() const { return owner()->warning(); }
std::ostream& ZylAlgorithm::error() const { return owner()->error(); }

void ZylAlgorithm::setOut(std::ostream& stream) const {
  if (_impl == nullptr) ZylRaiseWrongUsage("Using empty ZylEnv handle.");
  _impl->setOut(stream);
}

void ZylAlgorithm::setWarning(std::ostream& stream) const {
  if (_impl == nullptr) ZylRaiseWrongUsage("Using empty ZylEnv handle.");
  _impl->setWarning(stream);
}

void ZylAlgorithm::setError(std::ostream& stream) const {
  if (_impl == nullptr) ZylRaiseWrongUsage("Using empty ZylEnv handle.");
  _impl->setError(stream);
}

#define ZYL_HANDLE_CLASS ZylAlgorithm
#define ZYL_HANDLE_OWNER owner()
#define ZYL_HANDLE_NO_NAME "ZylAlgorithm: Using empty string"
#include "common/property_operations.inc"
