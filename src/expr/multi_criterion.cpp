// Lists of criteria, which lock their expressions, and what their handle refuses.

#include "vorlane/expr/multi_criterion.h"

#include "common/handle_check.h"

#include <ostream>
#include <utility>

ZylMultiCriterionExprI::ZylMultiCriterionExprI(ZylEnvI* env, const ZylNumExprArray& exprs,
                                               Type type, const char* name)
    : ZylEnvObjectI(env), _type(type), _exprs(exprs), _name(env->strDup(name)) {}

ZylMultiCriterionExprI::~ZylMultiCriterionExprI() {
  _env->strFree(_name);
  _exprs.giveBack(_env);
}

void ZylMultiCriterionExprI::setName(const char* name) {
  char* copy = _env->strDup(name);
  _env->strFree(_name);
  _name = copy;
}

namespace {

using zyl::detail::checked;
using Exprs = zyl::detail::ArrayCopy<ZylNumExprArray>;

constexpr auto EmptyEnv = zyl::detail::wrongUsage("ZylEnv: using empty handle");

ZylMultiCriterionExprI* make(ZylEnvI* env, Exprs exprs, ZylMultiCriterionExprI::Type type,
                             const char* name) {
  return zyl::detail::build<ZylMultiCriterionExprI>(env, exprs, type, name);
}

ZylMultiCriterionExprI* checkedMake(ZylEnvI* env, Exprs exprs, ZylMultiCriterionExprI::Type type,
                                    const char* name) {
  zyl::detail::requireElements(exprs.get());
  zyl::detail::requireEnv(env, exprs.get(), "mixing mismatch Environments");
  return make(env, std::move(exprs), type, name);
}

}  // namespace

ZylMultiCriterionExprI* ZylMultiCriterionExprI::duplicate(ZylEnvI* env) const {
  return make(env, Exprs(env, getExprs().getImpl()), _type, nullptr);
}

ZylMultiCriterionExprI* ZylMultiCriterionExprI::makeClone(ZylEnvI* env) const {
  return make(env, _exprs.cloned(env), _type, nullptr);
}

void ZylMultiCriterionExprI::display(std::ostream& stream) const {
  stream << (_name != nullptr ? _name : "{MultiCriterion}") << ", "
         << (_type == StaticLex ? "StaticLex" : "DynamicLex") << "(";
  if (_exprs->getSize() > 0) _exprs.display(stream);
  stream << ")";
}

// --- handle --------------------------------------------------------------------------------------

ZylMultiCriterionExpr::ZylMultiCriterionExpr(const ZylEnv& env, const ZylNumExprArray& exprs,
                                             Type type, const char* name) {
  ZylEnvI* owner = zyl::detail::checked(env, EmptyEnv);
  static_cast<void>(zyl::detail::checkedArray(exprs));
  _impl = checkedMake(owner, Exprs(owner, exprs.getImpl()), type, name);
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

template <class... Each>
ZylMultiCriterionExpr staticLex(const ZylEnv& env, const Each&... exprs) {
  return ZylMultiCriterionExpr(
      checkedMake(checked(env, EmptyEnv),
                  Exprs(ZylNumExprArray(env, static_cast<long>(sizeof...(exprs)), exprs...)),
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
