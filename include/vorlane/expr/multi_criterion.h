// Several criteria, in decreasing order of importance.

#ifndef ZYL_EXPR_MULTI_CRITERION_H
#define ZYL_EXPR_MULTI_CRITERION_H

#include "vorlane/env/object.h"
#include "vorlane/expr/expr_array.h"
#include "vorlane/model/record.h"

/// A lexicographic list of expressions.
///
/// No extractable: models know it only through an objective. Owns its array and holds a reference
/// on each criterion. As it hears of no removal, it must go before a variable of its criteria does;
/// objectives, which have lists of their own, need no such care.
class ZYL_EXPORT ZylMultiCriterionExprI final : public ZylEnvObjectI {
  ZYL_POOLED(ZylMultiCriterionExprI, ZylEnvObjectI)
 public:
  enum Type : int { StaticLex = 0, DynamicLex = 1 };

  /// Takes the array over. Raises `ZylMemoryException`, which leaves the array to the caller.
  ZylMultiCriterionExprI(ZylEnvI* env, const ZylNumExprArray& exprs, Type type,
                         const char* name = nullptr);
  ~ZylMultiCriterionExprI() override;

  Type getType() const noexcept { return _type; }
  const ZylNumExprArray& getExprs() const noexcept { return _exprs; }
  const char* getName() const noexcept { return _name; }
  /// Copies the name; null clears it.
  void setName(const char* name);
  /// Of the same type on the same criteria, without a name.
  [[nodiscard]] ZylMultiCriterionExprI* duplicate(ZylEnvI* env) const;
  /// Of the same type on clones of the criteria, without a name.
  [[nodiscard]] ZylMultiCriterionExprI* makeClone(ZylEnvI* env) const;
  void display(std::ostream& stream) const;

 private:
  Type _type;
  zyl::Owned<ZylNumExprArray> _exprs;
  char* _name;
};

/// Handle of a list of criteria. Operations raise `ZylEmptyHandleException` on an empty handle.
class ZYL_EXPORT ZylMultiCriterionExpr {
 public:
  using ImplClass = ZylMultiCriterionExprI;
  using Type = ZylMultiCriterionExprI::Type;

  ZylMultiCriterionExpr() = default;
  explicit ZylMultiCriterionExpr(ZylMultiCriterionExprI* impl) noexcept : _impl(impl) {}
  /// Copies the array, which stays the client's. Raises `ZylEmptyHandleException` for an
  /// empty element, `ZylWrongUsage` on an empty environment,
  /// and for a criterion of another one.
  ZylMultiCriterionExpr(const ZylEnv& env, const ZylNumExprArray& exprs, Type type,
                        const char* name = nullptr);
  ZylMultiCriterionExprI* getImpl() const noexcept { return _impl; }

  Type getType() const { return checked()->getType(); }
  long getNumCriteria() const { return checked()->getExprs().getSize(); }
  ZylNumExprArg getCriterion(long i) const;
  const char* getName() const { return checked()->getName(); }
  void setName(const char* name) const { checked()->setName(name); }
  ZylEnv getEnv() const { return ZylEnv(checked()->getEnv()); }
  void display(std::ostream& stream) const { checked()->display(stream); }
  /// Deletes the list; nothing on an empty handle.
  void end();

 private:
  ZylMultiCriterionExprI* checked() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle("ZylMultiCriterionExpr: using empty handle");
    return _impl;
  }
  ZylMultiCriterionExprI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylMultiCriterionExpr& criteria);

/// Criteria compared in the order given, always.
ZYL_EXPORT ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first);
ZYL_EXPORT ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                              const ZylNumExprArg& second);
ZYL_EXPORT ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                              const ZylNumExprArg& second,
                                              const ZylNumExprArg& third);
ZYL_EXPORT ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArg& first,
                                              const ZylNumExprArg& second,
                                              const ZylNumExprArg& third,
                                              const ZylNumExprArg& fourth);
ZYL_EXPORT ZylMultiCriterionExpr ZylStaticLex(const ZylEnv& env, const ZylNumExprArray& exprs,
                                              const char* name = nullptr);
/// Criteria whose order an engine may change as it goes.
ZYL_EXPORT ZylMultiCriterionExpr ZylDynamicLex(const ZylEnv& env, const ZylNumExprArray& exprs,
                                               const char* name = nullptr);

#endif
