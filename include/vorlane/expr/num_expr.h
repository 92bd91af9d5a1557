// The bases of all expressions, and their handles.
//
// A node is a temporary while its count is 0 and held while it is positive. Functions build nodes
// of count 0 and pass them on as argument handles, which count nothing; whatever stores a node adds
// one; the next operator may change a temporary in place, and works on a copy of a held node. A
// temporary that nobody adopts lives until its environment ends.

#ifndef ZYL_EXPR_NUM_EXPR_H
#define ZYL_EXPR_NUM_EXPR_H

#include "vorlane/model/extractable.h"

class ZylExpr;
class ZylIntLinExprTerm;
class ZylIntLinTermI;
class ZylNumExpr;
class ZylNumLinExprTerm;
class ZylNumLinTermI;

/// A numeric expression.
class ZYL_EXPORT ZylNumExprI : public ZylExtractableI {
  ZYL_EXTRACTABLE(ZylNumExprI, ZylExtractableI)
 public:
  explicit ZylNumExprI(ZylEnvI* env, const char* name = nullptr)
      : ZylExtractableI(env, name), _count(0) {}

  bool isRefCountedExpr() const override;
  /// Drops one reference. The last one destroys the node; so does ending a temporary.
  void end() override;

  /// The node to use as an independent expression: linear nodes give a deep copy, others
  /// themselves.
  virtual ZylNumExprI* copy();
  /// Drops one reference, unless the environment is going down.
  virtual void release();
  /// A linear node that denotes this expression: the node itself where it is one.
  virtual ZylNumLinTermI* toNumLinTermI();
  /// Whether the value is integral for all integral values of the variables.
  virtual bool isInteger() const;
  /// The value, with the variables' values from `algorithm`. Recursive; nothing is cached.
  virtual double eval(const ZylAlgorithm algorithm) const = 0;
  /// The additive constant.
  virtual double getNumConstant() const;

  /// Number of owners.
  long getCount() const noexcept { return _count; }
  bool isTemporary() const noexcept { return _count <= 0; }
  /// Adds one owner.
  void hold() noexcept { ++_count; }
  /// Takes an owner away without destroying anything: the node goes back to being passed on.
  void unhold() noexcept { --_count; }

 private:
  long _count;
};

/// An integer expression.
class ZYL_EXPORT ZylIntExprI : public ZylNumExprI {
  ZYL_EXTRACTABLE(ZylIntExprI, ZylNumExprI)
 public:
  explicit ZylIntExprI(ZylEnvI* env, const char* name = nullptr) : ZylNumExprI(env, name) {}

  ZylNumExprI* copy() override;
  bool isInteger() const override;

  virtual ZylIntExprI* intCopy();
  virtual ZylIntLinTermI* toIntLinTermI();
};

/// The transfer form of a numeric expression: one pointer that counts nothing.
class ZYL_EXPORT ZylNumExprArg : public ZylExtractable {
  ZYL_HANDLE(ZylNumExprArg, ZylExtractable, ZylNumExprI)
 public:
  /// A new linear node takes the term over. Implicit, so that `2 * x` stands wherever an
  /// expression does.
  ZylNumExprArg(const ZylNumLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  ZylNumExprArg(const ZylIntLinExprTerm& term);  // NOLINT(google-explicit-constructor)

  /// Whether the expression is a linear node without terms and non-linear parts.
  bool isConstant() const;
  /// The constant of a linear expression. Raises `ZylNumExpr::NonLinearExpression` for others.
  double getNumConstant() const;
  /// The clone in `env`, made at most once for each outermost call.
  ZylNumExprArg getClone(const ZylEnv& env) const;
  /// Makes `clone` what stands for this expression in copies made in `env`.
  void setClone(const ZylEnv& env, const ZylNumExprArg& clone) const;
};

/// The transfer form of an integer expression.
class ZYL_EXPORT ZylIntExprArg : public ZylNumExprArg {
  ZYL_HANDLE(ZylIntExprArg, ZylNumExprArg, ZylIntExprI)
 public:
  ZylIntExprArg(const ZylIntLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  ZylIntExprArg getClone(const ZylEnv& env) const;
};

namespace zyl::detail {
// Counting of the expression handles: construction and copying add one, assignment drops the old
// and adds to the new. The destructor does nothing, since a handle may outlive its environment.
inline void holdExpr(ZylNumExprI* expr) noexcept {
  if (expr != nullptr) expr->hold();
}
inline void swapHeldExpr(ZylNumExprI* before, ZylNumExprI* after) {
  holdExpr(after);
  if (before != nullptr) before->getEnv()->release(before);
}
}  // namespace zyl::detail

/// A handle that holds one reference on a numeric expression.
///
/// `end()` drops the reference; the destructor does not, as a handle may outlive its environment.
class ZYL_EXPORT ZylNumExpr : public ZylNumExprArg {
 public:
  /// The constant part of a non-linear expression was asked for or set.
  class ZYL_EXPORT NonLinearExpression : public ZylException {
   public:
    explicit NonLinearExpression(const ZylNumExprI* expr);
    void print(std::ostream& stream) const override;
    const ZylNumExprI* getExpression() const noexcept { return _expr; }

   private:
    const ZylNumExprI* _expr;
  };

  ZylNumExpr() = default;
  /// Takes the pointer without counting.
  explicit ZylNumExpr(ZylNumExprI* impl) noexcept : ZylNumExprArg(impl) {}
  ZylNumExpr(const ZylNumExprArg& arg);       // NOLINT(google-explicit-constructor)
  ZylNumExpr(const ZylNumLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  ZylNumExpr(const ZylIntLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  /// The constant as an expression.
  explicit ZylNumExpr(const ZylEnv& env, double constant = 0.0);
  ZylNumExpr(const ZylNumExpr& other) : ZylNumExprArg(other) { zyl::detail::holdExpr(getImpl()); }
  /// Moving hands the reference over, so that `e = e + x` leaves none behind.
  ZylNumExpr(ZylNumExpr&& other) noexcept : ZylNumExprArg(other) { other._impl = nullptr; }
  ZylNumExpr& operator=(const ZylNumExpr& other) {
    assign(other.getImpl());
    return *this;
  }
  // Releasing what stood here may raise. NOLINTNEXTLINE(performance-noexcept-move-constructor)
  ZylNumExpr& operator=(ZylNumExpr&& other) {
    if (this != &other) adopt(other);
    return *this;
  }
  ~ZylNumExpr() = default;

  ZylNumExpr& operator+=(double constant);
  ZylNumExpr& operator-=(double constant);
  ZylNumExpr& operator*=(double factor);
  ZylNumExpr& operator/=(double divisor);
  /// Raise `ZylWrongUsage` if the environments differ.
  ZylNumExpr& operator+=(const ZylNumExprArg& arg);
  ZylNumExpr& operator-=(const ZylNumExprArg& arg);
  ZylNumExpr getClone(const ZylEnv& env) const;
  /// Drops the reference and empties this handle; a variable stays.
  void end();

 protected:
  void assign(ZylNumExprI* impl) {
    ZylNumExprI* before = getImpl();
    _impl = impl;
    zyl::detail::swapHeldExpr(before, impl);
  }
  ZylNumExpr& add(ZylNumExprI* addend);
  void adopt(ZylNumExpr& other) {
    ZylNumExprI* before = getImpl();
    _impl = other._impl;
    other._impl = nullptr;
    if (before != nullptr) before->getEnv()->release(before);
  }
};

/// A handle that holds one reference on an integer expression.
class ZYL_EXPORT ZylIntExpr : public ZylIntExprArg {
 public:
  /// A checked integer operation left the range of exact integers.
  class ZYL_EXPORT ZylOverflowOccurred : public ZylException {
   public:
    explicit ZylOverflowOccurred(const char* message);
  };

  ZylIntExpr() = default;
  /// Takes the pointer without counting.
  explicit ZylIntExpr(ZylIntExprI* impl) noexcept : ZylIntExprArg(impl) {}
  ZylIntExpr(const ZylIntExprArg& arg);       // NOLINT(google-explicit-constructor)
  ZylIntExpr(const ZylIntLinExprTerm& term);  // NOLINT(google-explicit-constructor)
  explicit ZylIntExpr(const ZylEnv& env, long constant = 0);
  ZylIntExpr(const ZylIntExpr& other) : ZylIntExprArg(other) { zyl::detail::holdExpr(getImpl()); }
  ZylIntExpr(ZylIntExpr&& other) noexcept : ZylIntExprArg(other) { other._impl = nullptr; }
  ZylIntExpr& operator=(const ZylIntExpr& other) {
    assign(other.getImpl());
    return *this;
  }
  // Releasing what stood here may raise. NOLINTNEXTLINE(performance-noexcept-move-constructor)
  ZylIntExpr& operator=(ZylIntExpr&& other) {
    if (this == &other) return *this;
    ZylNumExprI* before = getImpl();
    _impl = other._impl;
    other._impl = nullptr;
    if (before != nullptr) before->getEnv()->release(before);
    return *this;
  }
  ~ZylIntExpr() = default;

  ZylIntExpr& operator+=(long constant);
  ZylIntExpr& operator-=(long constant);
  ZylIntExpr& operator*=(long factor);
  ZylIntExpr& operator+=(const ZylIntExprArg& arg);
  ZylIntExpr& operator-=(const ZylIntExprArg& arg);
  ZylIntExpr getClone(const ZylEnv& env) const;
  /// Drops the reference and empties this handle; a variable stays.
  void end();

 private:
  void assign(ZylIntExprI* impl) {
    ZylNumExprI* before = getImpl();
    _impl = impl;
    zyl::detail::swapHeldExpr(before, impl);
  }
};

#endif
