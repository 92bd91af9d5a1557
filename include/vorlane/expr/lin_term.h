// Linear sums: one node holds a list of coefficient-times-variable records, a list of non-linear
// parts, and a constant. Records come from a pool of their own. A node is normalised lazily: until
// then the same variable may occur twice.

#ifndef ZYL_EXPR_LIN_TERM_H
#define ZYL_EXPR_LIN_TERM_H

#include "vorlane/expr/term_list.h"
#include "vorlane/model/change.h"

class ZylNumVarArray;

namespace zyl::detail {

/// What the two term handles share: a variable and a coefficient, on the way to one operator.
///
/// The record comes into being when it is asked for, which is mostly by the sum that takes it over:
/// that one knows the environment, so that stating a term looks at no variable.
class ZYL_EXPORT TermHandle {
 public:
  TermHandle(ZylNumVarI* variable, double coefficient) noexcept
      : _variable(variable), _coef(coefficient) {}
  /// On a record that no node owns.
  explicit TermHandle(ZylNumLinExprTermI* record) noexcept
      : _variable(record != nullptr ? record->_var : nullptr), _coef(0.0), _record(record) {}

  /// The record, the same at each call. Raises `ZylMemoryException`.
  ZylNumLinExprTermI* getImpl() const {
    if (_record == nullptr && _variable != nullptr) _record = makeRecord(_variable->getEnv());
    return _record;
  }
  /// The same, where the environment is known to be `env`. For the one operator that takes it over.
  [[nodiscard]] ZylNumLinExprTermI* takeRecord(ZylEnvI* env) const {
    return ZYL_UNLIKELY(_record != nullptr) ? _record : makeRecord(env);
  }
  ZylNumVarI* getVarI() const noexcept { return _variable; }
  ZylEnvI* getEnvI() const noexcept { return _variable->getEnv(); }
  double getCoef() const noexcept { return _record != nullptr ? _record->_coef : _coef; }
  void negate() noexcept {
    double& coefficient = _record != nullptr ? _record->_coef : _coef;
    coefficient = -coefficient;
  }

 private:
  ZylNumLinExprTermI* makeRecord(ZylEnvI* env) const { return env->newTerm(_variable, _coef); }

  ZylNumVarI* _variable;
  double _coef;
  mutable ZylNumLinExprTermI* _record = nullptr;
};

}  // namespace zyl::detail

/// Writes what a sum of this one term would. The term is not consumed.
ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const zyl::detail::TermHandle& term);

/// The value of `3.5 * x`: a term that no node owns yet, to be consumed by exactly one operator.
class ZYL_EXPORT ZylNumLinExprTerm : public zyl::detail::TermHandle {
 public:
  using TermHandle::TermHandle;
};

/// The value of `3 * i` for an integer variable.
class ZYL_EXPORT ZylIntLinExprTerm : public zyl::detail::TermHandle {
 public:
  using TermHandle::TermHandle;
};

/// A linear sum with a double constant.
class ZYL_EXPORT ZylNumLinTermI : public ZylNumExprI {
  ZYL_EXTRACTABLE(ZylNumLinTermI, ZylNumExprI)
 public:
  /// An empty sum with the constant.
  ZylNumLinTermI(ZylEnvI* env, double constant);
  /// One term, taken over.
  explicit ZylNumLinTermI(const ZylNumLinExprTerm& term);
  explicit ZylNumLinTermI(const ZylIntLinExprTerm& term);
  ~ZylNumLinTermI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  /// A deep copy of the lists; non-linear parts are shared.
  ZylNumExprI* copy() override;
  ZylNumLinTermI* toNumLinTermI() override;
  bool isInteger() const override;
  double eval(const ZylAlgorithm algorithm) const override;
  double getNumConstant() const override;
  /// Writes one term of the short display; returns 0 if that was nothing.
  virtual long displayTerm(std::ostream& stream, const ZylNumLinExprTermI* term) const;

  /// Puts a term at the end, without normalising.
  void append(ZylNumLinExprTermI* term) noexcept { _terms.append(term); }
  /// Steals the lists of `other`, ends it, and normalises.
  void append(ZylNumLinTermI* other);
  /// Adds a non-linear part, holding it, and normalises. Raises `ZylMemoryException`.
  void append(ZylNumExprI* expr);
  /// Puts a term in front and normalises.
  void prepend(ZylNumLinExprTermI* term);
  /// Multiplies the whole sum. A failed allocation changes nothing.
  void multiply(double factor);
  void divide(double divisor);
  /// Sets the coefficient of a variable and returns the old one, after normalising. Raises
  /// `ZylWrongUsage` if there is a non-linear part. O(number of terms).
  double setCoef(const ZylNumVar& variable, double coefficient);
  /// The same for arrays in one pass; `oldCoefs`, which may be empty, receives the old ones. Raises
  /// `ZylArrayError` if the sizes differ.
  void setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs,
               const ZylNumArray& oldCoefs);
  /// Removes the first term of the variable; sends nothing.
  void remove(ZylNumVarI* variable);
  /// Removes the terms and parts of the objects given, and of those marked, at most as many as the
  /// array has elements; sends nothing.
  void remove(const ZylExtractableArray& objects);
  /// Drops the terms and parts of finished or marked objects.
  void removeMarked();
  /// Gives everything back; the constant becomes 0.
  void clear();
  /// Merges the terms of equal variables and drops zero terms: two linear passes, no hashing, no
  /// sorting, no allocation. The surviving term of a variable stands where its last one stood.
  /// Returns the number of terms merged; 0 while the environment inhibits normalisation.
  long normalize();
  /// Folds what the model evaluator can express of the non-linear parts into the linear part.
  void kvlNormalization();
  /// Whether an aggregate occurs in the sum. O(1) without non-linear parts, unless the environment
  /// may hold aggregate variables.
  bool containsAggregate();

  ZylNumLinExprTermI* getTermHead() const noexcept { return _terms._head; }
  ZylLinExprNonLinearItem* getNonLinearHead() const noexcept { return _items._head; }
  bool hasNonLinearPart() const noexcept { return !_items.isEmpty(); }
  bool isConstant() const noexcept { return _terms.isEmpty() && _items.isEmpty(); }
  double getConstant() const noexcept { return _constant; }
  void setConstant(double constant) noexcept { _constant = constant; }
  bool isNormalized() const noexcept { return _normalized != 0; }
  void setNormalized(bool normalized) noexcept { _normalized = normalized ? 1 : 0; }

 private:
  friend class ZylIntLinTermI;
  ZYL_LOCAL long normalizeTerms();
  ZYL_LOCAL void writeCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs,
                            const ZylNumArray& oldCoefs);
  ZYL_LOCAL void sendCoefChanges(const ZylNumVarArray& variables, const ZylNumArray& coefs,
                                 const ZylNumArray& oldCoefs);

  zyl::detail::TermList _terms;
  double _constant;
  zyl::detail::ItemList _items;
  long _normalized = 0;
};

/// A linear sum of integer variables with an integer constant. Never normalised itself: it is after
/// conversion to a `ZylNumLinTermI`.
class ZYL_EXPORT ZylIntLinTermI : public ZylIntExprI {
  ZYL_EXTRACTABLE(ZylIntLinTermI, ZylIntExprI)
 public:
  ZylIntLinTermI(ZylEnvI* env, long constant);
  explicit ZylIntLinTermI(const ZylIntLinExprTerm& term);
  ~ZylIntLinTermI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  /// A new node; of a temporary it takes the lists and ends the temporary.
  ZylNumLinTermI* toNumLinTermI() override;
  double eval(const ZylAlgorithm algorithm) const override;
  double getNumConstant() const override;
  ZylIntExprI* intCopy() override;
  ZylIntLinTermI* toIntLinTermI() override;
  virtual long displayTerm(std::ostream& stream, const ZylNumLinExprTermI* term) const;

  void append(ZylNumLinExprTermI* term) noexcept { _terms.append(term); }
  /// Steals the lists of `other` and ends it. Raises `ZylIntExpr::ZylOverflowOccurred` if the sum
  /// of the constants is not exact; then nothing has changed.
  void append(ZylIntLinTermI* other);
  void append(ZylIntExprI* expr);
  void prepend(ZylNumLinExprTermI* term) noexcept { _terms.prepend(term); }
  /// Raises `ZylIntExpr::ZylOverflowOccurred`; coefficients met before stay multiplied.
  void multiply(long factor);
  void remove(ZylNumVarI* variable);
  void remove(const ZylExtractableArray& objects);
  void removeMarked();
  /// Gives everything back; the constant becomes 0.
  void clear();

  ZylNumLinExprTermI* getTermHead() const noexcept { return _terms._head; }
  ZylLinExprNonLinearItem* getNonLinearHead() const noexcept { return _items._head; }
  bool hasNonLinearPart() const noexcept { return !_items.isEmpty(); }
  bool isConstant() const noexcept { return _terms.isEmpty() && _items.isEmpty(); }
  long getConstant() const noexcept { return _constant; }
  void setConstant(long constant) noexcept { _constant = constant; }

 private:
  zyl::detail::TermList _terms;
  long _constant;
  zyl::detail::ItemList _items;
};

/// Raises `ZylNumExpr::NonLinearExpression` unless the expression is a linear node without
/// non-linear parts, `ZylEmptyHandleException` for null.
ZYL_EXPORT void ZylTestIsLinear(const ZylNumExprI* expr);

#endif
