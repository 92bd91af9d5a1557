// Ranges: an expression between two numbers, the one constraint that a linear engine reads
// directly.

#ifndef ZYL_CONSTRAINT_RANGE_H
#define ZYL_CONSTRAINT_RANGE_H

#include "vorlane/constraint/constraint.h"
#include "vorlane/expr/expr_array.h"
#include "vorlane/expr/expression.h"
#include "vorlane/expr/var_array.h"

/// The constraint lb <= e <= ub over the reals.
///
/// A bound beyond plus or minus `ZylNumMax` is none. The expression is a linear node, which may
/// hold non-linear parts; that of a range with any bound has constant 0, as `x + 2 <= 5` is stored
/// as `x <= 3`. Equal bounds make an equation; crossed bounds are accepted, and nothing satisfies
/// them.
class ZYL_EXPORT ZylRangeI final : public ZylConstraintI {
  ZYL_EXTRACTABLE(ZylRangeI, ZylConstraintI)
 public:
  /// Walks the terms of an expression in order.
  class ZYL_EXPORT LinearIterator {
   public:
    /// Normalises the node first.
    explicit LinearIterator(ZylNumLinTermI* node)
        : _term((node->normalize(), node->getTermHead())) {}
    explicit LinearIterator(const ZylIntLinTermI* node) : _term(node->getTermHead()) {}
    bool ok() const noexcept { return _term != nullptr; }
    void operator++() noexcept { _term = _term->_next; }
    ZylNumVar getVar() const { return ZylNumVar(_term->_var); }
    double getVal() const noexcept { return _term->_coef; }

   private:
    const ZylNumLinExprTermI* _term;
  };

  /// A range over an empty sum.
  ZylRangeI(ZylEnvI* env, double lower, double upper, const char* name = nullptr);
  /// Holds the linear form of `expr`, its constant moved to the bounds; an expression with other
  /// owners is copied for that.
  ZylRangeI(ZylEnvI* env, double lower, ZylNumExprI* expr, double upper,
            const char* name = nullptr);
  ~ZylRangeI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;

  ZylNumLinTermI* getExprI() const noexcept { return _expr; }
  double getLB() const noexcept { return _lower; }
  double getUB() const noexcept { return _upper; }
  /// Each sends one `ZylSetRangeBounds`.
  void setLB(double lower) { setBounds(lower, _upper); }
  void setUB(double upper) { setBounds(_lower, upper); }
  void setBounds(double lower, double upper);
  /// Sets both without telling anybody, for changes that are announced as one.
  void writeBounds(double lower, double upper) noexcept {
    _lower = lower;
    _upper = upper;
  }
  /// Replaces the expression; bounds and the new constant stay as they are. Sends
  /// `ZylSetRangeExpr`. `expr` is not empty.
  void setExpr(const ZylNumExprArg& expr);
  /// Sets coefficients on an expression of the range's own. Raise `ZylWrongUsage` for an aggregate
  /// or non-linear expression. Send `ZylSetRangeCoef`, `ZylSetRangeCoefs`. O(number of terms).
  void setCoef(const ZylNumVar& variable, double coefficient);
  void setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs);
  /// Appends a term for a new variable; sends nothing.
  void addVar(ZylNumVarI* variable, double coefficient);
  /// Normalises the expression; returns 0.
  long normalize();

 private:
  ZylNumLinTermI* _expr;
  double _lower;
  double _upper;
};

class ZylAddValueToRange;

/// Handle of a range. Operations on an empty handle raise `ZylEmptyHandleException`.
class ZYL_EXPORT ZylRange : public ZylConstraint {
  ZYL_HANDLE(ZylRange, ZylConstraint, ZylRangeI)
 public:
  /// lower <= expr <= upper.
  ZylRange(const ZylEnv& env, double lower, const ZylNumExprArg& expr, double upper,
           const char* name = nullptr);
  /// expr <= upper, and lower <= expr.
  ZylRange(const ZylEnv& env, const ZylNumExprArg& expr, double upper, const char* name = nullptr);
  ZylRange(const ZylEnv& env, double lower, const ZylNumExprArg& expr, const char* name = nullptr);
  /// A range over an empty sum.
  explicit ZylRange(const ZylEnv& env, double lower = -ZylInfinity, double upper = ZylInfinity,
                    const char* name = nullptr);

  double getLB() const { return checkedRange()->getLB(); }
  double getUB() const { return checkedRange()->getUB(); }
  void setLB(double lower) const { checkedRange()->setLB(lower); }
  void setUB(double upper) const { checkedRange()->setUB(upper); }
  void setBounds(double lower, double upper) const { checkedRange()->setBounds(lower, upper); }
  ZylNumExprArg getExpr() const { return ZylNumExprArg(checkedRange()->getExprI()); }
  void setExpr(const ZylNumExprArg& expr) const;
  void setLinearCoef(const ZylNumVar& variable, double coefficient) const;
  void setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs) const;
  /// Normalises the expression, and walks its terms.
  ZylRangeI::LinearIterator getLinearIterator() const {
    return ZylRangeI::LinearIterator(checkedRange()->getExprI());
  }
  ZylRange getClone(const ZylEnv& env) const;
  /// The entry of a new variable with this coefficient.
  ZylAddValueToRange operator()(double value) const;

 private:
  ZylRangeI* checkedRange() const { return checked("Using empty ZylRange handle."); }
};

/// What `lb <= expr` hands to a second `<=`: the range, and the constant that its expression had.
/// Everywhere else it stands for the range, as a constraint among the operands of an operator too.
class ZYL_EXPORT ZylRangeBase {
 public:
  ZylRangeBase(const ZylRange& range, double constant)
      : _range(range.getImpl()), _constant(constant) {}
  /// A range by itself.
  ZylRangeBase(const ZylRange& range) : ZylRangeBase(range, 0.0) {}  // NOLINT
  operator ZylRange() const { return ZylRange(_range); }  // NOLINT(google-explicit-constructor)
  ZylRangeI* getImpl() const noexcept { return _range; }
  double getConstant() const noexcept { return _constant; }
  double getLB() const { return ZylRange(_range).getLB(); }
  double getUB() const { return ZylRange(_range).getUB(); }
  void setName(const char* name) const { ZylRange(_range).setName(name); }

 private:
  ZylRangeI* _range;
  double _constant;
};

/// Sets the upper bound to `upper` minus the constant. Raises `ZylWrongUsage` on an empty range.
ZYL_EXPORT ZylRange operator<=(const ZylRangeBase& range, double upper);
namespace zyl::detail {
// The same under a name, for numbers of other types.
inline ZylRange bounded(const ZylRangeBase& range, double upper) { return range <= upper; }
}  // namespace zyl::detail
ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylRangeBase& range);

/// An array of ranges. The bulk constructors make one unnamed range a slot; the length is that of
/// the first array given; an empty array handle raises `ZylEmptyHandleException`.
class ZYL_EXPORT ZylRangeArray : public zyl::detail::HandleArray<ZylRangeArray, ZylRange> {
  ZYL_HANDLE_ARRAY(ZylRangeArray, ZylRange, "n !=")
  ZylRangeArray(const ZylEnv& env, long n, double lower, double upper);
  ZylRangeArray(const ZylEnv& env, const ZylNumArray& lower, const ZylNumArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylIntArray& lower, const ZylIntArray& upper);
  ZylRangeArray(const ZylEnv& env, double lower, const ZylNumArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylNumArray& lower, double upper);
  ZylRangeArray(const ZylEnv& env, double lower, const ZylIntArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylIntArray& lower, double upper);
  ZylRangeArray(const ZylEnv& env, double lower, const ZylNumExprArray& exprs, double upper);
  ZylRangeArray(const ZylEnv& env, const ZylNumArray& lower, const ZylNumExprArray& exprs,
                const ZylNumArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylIntArray& lower, const ZylNumExprArray& exprs,
                const ZylIntArray& upper);
  ZylRangeArray(const ZylEnv& env, double lower, const ZylNumExprArray& exprs,
                const ZylNumArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylNumArray& lower, const ZylNumExprArray& exprs,
                double upper);
  ZylRangeArray(const ZylEnv& env, double lower, const ZylNumExprArray& exprs,
                const ZylIntArray& upper);
  ZylRangeArray(const ZylEnv& env, const ZylIntArray& lower, const ZylNumExprArray& exprs,
                double upper);

  /// Sets the bounds of each range that is there, announced as one `ZylSetRangeArrayBounds`.
  void setBounds(const ZylNumArray& lower, const ZylNumArray& upper) const;
  void setBounds(const ZylIntArray& lower, const ZylIntArray& upper) const;
};

#endif
