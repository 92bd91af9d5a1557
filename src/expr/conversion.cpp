// Conversions of one variable or many to another type, and what becomes of them when one goes.

#include "vorlane/expr/conversion.h"

#include "common/handle_check.h"
#include "vorlane/model/algorithm_handle.h"

ZYL_RECORD_DEF(ZylConversionI, ZylExtractableI)
ZYL_CHANGE_DEF(ZylConversionRemoveVar, ZylChange)

void ZylConversionI::atRemove(ZylExtractableI* removed, void*) {
  if (_env->getDeleterMode() == 0) {
    _variables.dropDead();
  } else if (auto* variable = zyl::as<ZylNumVarI>(removed)) {
    removeVar(ZylNumVar(variable));
  }
}

void ZylConversionI::removeVar(const ZylNumVar& variable) {
  for (long i = _variables->getSize() - 1; i >= 0; --i) {
    if (_variables->getI(i) != variable.getImpl()) continue;
    _variables->remove(i);
    notify(ZylConversionRemoveVar(variable.getImpl(), this));
  }
}

namespace {

using zyl::detail::ArrayCopy;

ArrayCopy<ZylNumVarArray> copyOf(const ZylEnv& env, const ZylExtractableArray& variables) {
  const ZylArrayI* elements = zyl::detail::checked(variables);
  zyl::detail::requireElements(variables);
  return ArrayCopy<ZylNumVarArray>(env.getImpl(), elements);
}

ArrayCopy<ZylNumVarArray> arrayOf(const ZylEnv& env, const ZylNumVar& variable) {
  static_cast<void>(zyl::detail::checked(variable));
  return ArrayCopy<ZylNumVarArray>(ZylNumVarArray(env, 1, variable));
}

ZylConversionI* make(const ZylEnv& env, ArrayCopy<ZylNumVarArray> variables, ZylNumVar::Type type,
                     const char* name) {
  return zyl::detail::build<ZylConversionI>(env.getImpl(), variables, type, name);
}

}  // namespace

ZylConversion::ZylConversion(const ZylEnv& env, const ZylNumVar& variable, ZylNumVar::Type type,
                             const char* name)
    : ZylExtractable(make(env, arrayOf(env, variable), type, name)) {}

ZylConversion::ZylConversion(const ZylEnv& env, const ZylNumVarArray& variables,
                             ZylNumVar::Type type, const char* name)
    : ZylExtractable(make(env, copyOf(env, variables), type, name)) {}

ZylConversion::ZylConversion(const ZylEnv& env, const ZylIntVarArray& variables,
                             ZylNumVar::Type type, const char* name)
    : ZylExtractable(make(env, copyOf(env, variables), type, name)) {}
