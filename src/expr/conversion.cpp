#include "vorlane/expr/conversion.h"

#include <ostream>

#include "common/list_display.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_TYPE_DEF(ZylConversionI, ZylExtractableI)
ZYL_CP_HOOKS_DEF(ZylConversionI)

ZylConversionI::ZylConversionI(ZylEnvI* env, const ZylNumVarArray& variables, ZylNumVar::Type type,
                               const char* name)
    : ZylExtractableI(env, name), _variables(variables), _type(type) {}

ZylConversionI::~ZylConversionI() { _variables.end(); }

ZylExtractableI* ZylConversionI::makeClone(ZylEnvI* env) const {
  ZylNumVarArray variables = _variables;
  variables.replaceByClone(env);
  try {
    return new (env) ZylConversionI(env, variables, _type);
  } catch (...) {
    variables.end();
    throw;
  }
}

void ZylConversionI::atRemove(ZylExtractableI* removed, void*) {
  if (_env->getDeleterMode() == 0) {
    _variables.removeMarked();
    return;
  }
  if (auto* variable = zyl::as<ZylNumVarI>(removed)) removeVar(ZylNumVar(variable));
}

void ZylConversionI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _variables);
  visitor->endVisit(this);
}

void ZylConversionI::display(std::ostream& stream) const {
  zyl::detail::displayHead(stream, "ZylConversionI", this);
  stream << "  vars ";
  zyl::detail::displayList(stream, _variables);
  stream << std::endl << "  type " << static_cast<int>(_type) << std::endl;
}

void ZylConversionI::removeVar(const ZylNumVar& variable) {
  for (long i = _variables.getSize() - 1; i >= 0; --i) {
    if (_variables.getI(i) != variable.getImpl()) continue;
    _variables.remove(i);
    notify(ZylConversionRemoveVar(variable.getImpl(), this));
  }
}

namespace {

ZylNumVarArray copyOf(const ZylEnv& env, const ZylExtractableArray& variables) {
  if (variables.getImpl() == nullptr) ZylRaiseEmptyHandle();
  ZylNumVarArray copy(env, 0);
  static_cast<ZylExtractableArray&>(copy).add(variables);
  return copy;
}

ZylNumVarArray arrayOf(const ZylEnv& env, const ZylNumVar& variable) {
  if (variable.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return ZylNumVarArray(env, 1, variable);
}

ZylConversionI* make(const ZylEnv& env, ZylNumVarArray variables, ZylNumVar::Type type,
                     const char* name) {
  try {
    return new (env.getImpl()) ZylConversionI(env.getImpl(), variables, type, name);
  } catch (...) {
    variables.end();
    throw;
  }
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
