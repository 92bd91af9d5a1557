#include "vorlane/expr/multi_criterion.h"

#include <ostream>

#include "common/list_display.h"

ZylMultiCriterionExprI::ZylMultiCriterionExprI(ZylEnvI* env, const ZylNumExprArray& exprs,
                                               Type type, const char* name)
    : ZylEnvObjectI(env), _type(type), _exprs(exprs), _name(env->strDup(name)) {
  _exprs.lockExprs();
}

ZylMultiCriterionExprI::~ZylMultiCriterionExprI() {
  _exprs.releaseExprs();
  _exprs.end();
  _env->strFree(_name);
}

void ZylMultiCriterionExprI::setName(const char* name) {
  char* copy = _env->strDup(name);
  _env->strFree(_name);
  _name = copy;
}

namespace {

ZylMultiCriterionExprI* make(ZylEnvI* env, ZylNumExprArray exprs, ZylMultiCriterionExprI::Type type,
                             const char* name) {
  try {
    return new (env) ZylMultiCriterionExprI(env, exprs, type, name);
  } catch (...) {
    exprs.end();
    throw;
  }
}

ZylMultiCriterionExprI* checkedMake(ZylEnvI* env, ZylNumExprArray exprs,
                                    ZylMultiCriterionExprI::Type type, const char* name) {
  for (long i = 0; i < exprs.getSize(); ++i) {
    const ZylExtractableI* expr = exprs.getI(i);
    if (expr == nullptr || expr->getEnv() == env) continue;
    exprs.end();
    ZylRaiseWrongUsage("mixing mismatch Environments");
  }
  return make(env, exprs, type, name);
}

ZylNumExprArray copyOf(const ZylEnv& env, const ZylNumExprArray& exprs) {
  ZylNumExprArray copy(env, 0);
  if (exprs.getImpl() != nullptr) copy.add(exprs);
  return copy;
}

}  // namespace

ZylMultiCriterionExprI* ZylMultiCriterionExprI::duplicate(ZylEnvI* env) const {
  return make(env, copyOf(ZylEnv(env), _exprs), _type, nullptr);
}

ZylMultiCriterionExprI* ZylMultiCriterionExprI::makeClone(ZylEnvI* env) const {
  ZylNumExprArray exprs = _exprs;
  exprs.replaceByClone(env);
  return make(env, exprs, _type, nullptr);
}

void ZylMultiCriterionExprI::display(std::ostream& stream) const {
  stream << (_name != nullptr ? _name : "{MultiCriterion}") << ", "
         << (_type == StaticLex ? "StaticLex" : "DynamicLex") << "(";
  if (_exprs.getSize() > 0) zyl::detail::displayList(stream, _exprs);
  stream << ")";
}

// --- handle --------------------------------------------------------------------------------------

ZylMultiCriterionExpr::ZylMultiCriterionExpr(const ZylEnv& env, const ZylNumExprArray& exprs,
                                             Type type, const char* name) {
  if (env.getImpl() == nullptr) ZylRaiseWrongUsage("ZylEnv: using empty handle");
  if (exprs.getImpl() == nullptr) ZylRaiseEmptyHandle(ZylNumExprArray::EmptyText());
  _impl = checkedMake(env.getImpl(), copyOf(env, exprs), type, name);
}

ZylNumExprArg ZylMultiCriterionExpr::getCriterion(long i) const {
  if (i < 0 || i >= getNumCriteria()) {
    ZylRaiseWrongUsage("ZylObjectiveI: Criterion index out of range");
  }
  return _impl->getExprs()[i];
}

void ZylMultiCriterionExpr::end() {
  delete _impl;
  _impl = nullptr;
}

std::ostream& operator<<(std::ostream& stream, const ZylMultiCriterionExpr& criteria) {
  criteria.display(stream);
  return stream;
}

namespace {

template <class... Exprs>
ZylMultiCriterionExpr staticLex(const ZylEnv& env, const Exprs&... exprs) {
  if (env.getImpl() == nullptr) ZylRaiseWrongUsage("ZylEnv: using empty handle");
  return ZylMultiCriterionExpr(checkedMake(
      env.getImpl(), ZylNumExprArray(env, static_cast<long>(sizeof...(exprs)), exprs...),
      ZylMultiCriterionExprI::StaticLex, nullptr));
}

}  // namespace

ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first) {
  return staticLex(env, first);
}
ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                   const ZylNumExprArg& second) {
  return staticLex(env, first, second);
}
ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                   const ZylNumExprArg& second, const ZylNumExprArg& third) {
  return staticLex(env, first, second, third);
}
ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                   const ZylNumExprArg& second, const ZylNumExprArg& third,
                                   const ZylNumExprArg& fourth) {
  return staticLex(env, first, second, third, fourth);
}
ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArray& exprs,
                                   const char* name) {
  return ZylMultiCriterionExpr(env, exprs, ZylMultiCriterionExprI::StaticLex, name);
}
ZylMultiCriterionExpr ZylDynamicLex(const ZylEnv& env, const ZylNumExprArray& exprs,
                                    const char* name) {
  return ZylMultiCriterionExpr(env, exprs, ZylMultiCriterionExprI::DynamicLex, name);
}
