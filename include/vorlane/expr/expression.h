// The modifiable linear expression, in which clients build sums.

#ifndef ZYL_EXPR_EXPRESSION_H
#define ZYL_EXPR_EXPRESSION_H

#include "vorlane/expr/lin_term.h"

namespace zyl::detail {
[[noreturn]] ZYL_EXPORT void raiseExprAddMismatch();
[[noreturn]] ZYL_EXPORT void raiseNumExprAddMismatch();
[[noreturn]] ZYL_EXPORT void raiseExprSubtractMismatch();
}  // namespace zyl::detail

/// A linear sum that is built and edited in place, holding one reference on a `ZylNumLinTermI`.
///
/// Copies share the node until one of them is modified: every edit first gives the handle a node of
/// its own. `e += c * x` costs one term record, 24 bytes, and constant time; nothing is normalised.
/// Edits of an empty handle raise `ZylEmptyHandleException`, operands of another environment
/// `ZylWrongUsage`.
class ZYL_EXPORT ZylExpr : public ZylNumExpr {
 public:
  using ImplClass = ZylNumLinTermI;

  /// Walks the terms in order: `for (auto it = e.getLinearIterator(); it.ok(); ++it)`. Good until
  /// the expression is edited or normalised.
  class ZYL_EXPORT LinearIterator {
   public:
    explicit LinearIterator(ZylNumLinExprTermI* term = nullptr) noexcept : _term(term) {}
    bool ok() const noexcept { return _term != nullptr; }
    ZylNumVar getVar() const { return ZylNumVar(_term->_var); }
    double getCoef() const noexcept { return _term->_coef; }
    LinearIterator& operator++() noexcept {
      _term = _term->_next;
      return *this;
    }
    ZylNumLinExprTermI* getImpl() const noexcept { return _term; }
    bool operator==(const LinearIterator& other) const noexcept = default;

   private:
    ZylNumLinExprTermI* _term;
  };

  ZylExpr() = default;
  explicit ZylExpr(const ZylEnv& env, double constant = 0.0);
  /// The expression as a linear sum: a held one is copied, a temporary taken over.
  ZylExpr(const ZylNumExprArg& arg);       // NOLINT(google-explicit-constructor)
  ZylExpr(const ZylNumLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  ZylExpr(const ZylIntLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  /// Takes the pointer without counting.
  explicit ZylExpr(ZylNumLinTermI* impl) noexcept : ZylNumExpr(impl) {}

  ZylNumLinTermI* getImpl() const noexcept { return static_cast<ZylNumLinTermI*>(_impl); }

  /// A deep copy with one reference; non-linear parts are shared.
  [[nodiscard]] ZylExpr copy() const;
  ZylExpr getClone(const ZylEnv& env) const;

  ZylExpr& operator+=(double constant);
  ZylExpr& operator-=(double constant);
  ZylExpr& operator*=(double factor);
  ZylExpr& operator/=(double divisor);
  ZylExpr& operator+=(const ZylNumLinExprTerm& term) { return addTerm(term); }
  ZylExpr& operator+=(const ZylIntLinExprTerm& term) { return addTerm(term); }
  ZylExpr& operator-=(const ZylNumLinExprTerm& term) { return subtractTerm(term); }
  ZylExpr& operator-=(const ZylIntLinExprTerm& term) { return subtractTerm(term); }
  ZylExpr& operator+=(const ZylNumVar& variable) { return addVar(variable.getImpl()); }
  ZylExpr& operator+=(const ZylIntVar& variable) { return addVar(variable.getImpl()); }
  ZylExpr& operator-=(const ZylNumVar& variable) { return subtractVar(variable.getImpl()); }
  ZylExpr& operator-=(const ZylIntVar& variable) { return subtractVar(variable.getImpl()); }
  /// A linear argument is merged in, which normalises the sum: O(number of terms). Others become
  /// non-linear parts.
  ZylExpr& operator+=(const ZylNumExprArg& arg);
  ZylExpr& operator-=(const ZylNumExprArg& arg);

  /// Sets the coefficient of the variable, after normalising. Raises `ZylWrongUsage` if there is a
  /// non-linear part. O(number of terms).
  void setLinearCoef(const ZylNumVar& variable, double coefficient);
  /// The same for arrays in one pass. Raises `ZylArrayError` if the sizes differ.
  void setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs);
  /// Removes the terms and parts of the objects.
  void remove(const ZylExtractableArray& objects);
  /// Empties the sum; the constant becomes 0.
  void clear();
  /// Merges terms of equal variables and drops zero terms. True if nothing was merged.
  bool normalize();
  bool isNormalized() const;
  /// Raises `ZylNumExpr::NonLinearExpression` if there is a non-linear part.
  void setNumConstant(double constant);
  double getConstant() const { return checkedNode()->getConstant(); }
  /// On the first term.
  LinearIterator getLinearIterator() const { return LinearIterator(checkedNode()->getTermHead()); }

 private:
  ZylNumLinTermI* checkedNode() const {
    if (ZYL_UNLIKELY(_impl == nullptr)) ZylRaiseEmptyHandle();
    return getImpl();
  }
  // The node, after it has been made this handle's own.
  ZylNumLinTermI* writable() {
    ZylNumLinTermI* node = checkedNode();
    if (ZYL_UNLIKELY(node->getCount() > 1)) node = unshare();
    return node;
  }
  ZylNumLinTermI* unshare();

  ZylExpr& addTerm(const zyl::detail::TermHandle& term) {
    ZylEnvI* env = checkedNode()->getEnv();
    if (ZYL_UNLIKELY(!env->isEnvOf(term.getVarI()))) zyl::detail::raiseExprAddMismatch();
    ZylNumLinTermI* node = writable();
    node->append(term.takeRecord(env));
    return *this;
  }
  ZylExpr& subtractTerm(const zyl::detail::TermHandle& term) {
    ZylEnvI* env = checkedNode()->getEnv();
    if (ZYL_UNLIKELY(!env->isEnvOf(term.getVarI()))) zyl::detail::raiseExprSubtractMismatch();
    ZylNumLinTermI* node = writable();
    ZylNumLinExprTermI* record = term.takeRecord(env);
    record->_coef = -record->_coef;
    node->append(record);
    return *this;
  }
  ZylExpr& addVar(ZylNumVarI* variable) {
    if (ZYL_UNLIKELY(variable == nullptr)) ZylRaiseEmptyHandle();
    return addTerm(zyl::detail::TermHandle(variable, 1.0));
  }
  ZylExpr& subtractVar(ZylNumVarI* variable) {
    if (ZYL_UNLIKELY(variable == nullptr)) ZylRaiseEmptyHandle();
    return subtractTerm(zyl::detail::TermHandle(variable, 1.0));
  }
};

#endif
