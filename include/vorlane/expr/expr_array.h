// Arrays of expressions.

#ifndef ZYL_EXPR_EXPR_ARRAY_H
#define ZYL_EXPR_EXPR_ARRAY_H

#include <utility>

#include "vorlane/expr/expression.h"
#include "vorlane/model/extractable_array.h"

/// An array of numeric expressions, uncounted: a temporary in it is a temporary still. What stores
/// such an array copies it and locks the copy's elements.
class ZYL_EXPORT ZylNumExprArray : public zyl::detail::HandleArray<ZylNumExprArray, ZylNumExprArg> {
  ZYL_HANDLE_ARRAY(ZylNumExprArray, ZylNumExprArg, "n !=")
  using Family::operator[];

  /// Adds one reference to each element that is not empty.
  void lockExprs() const noexcept;
  /// Releases each element that is not empty. Raises
  /// `ZylEnv::IncompatibleMemoryManagerException` for an array outside an environment.
  void releaseExprs() const;
  /// `removeMarked` of an array with locked elements: releases each element that it drops.
  void releaseMarkedExprs() const;
  /// The element at the value of `index`; a value outside the array counts as 0. The array is
  /// copied. Raises `ZylEmptyHandleException` for an empty element, and `ZylWrongUsage` if one is
  /// of another environment than the index.
  ZylNumExprArg operator[](const ZylIntExprArg& index) const;
};

/// An array of integer expressions, uncounted.
class ZYL_EXPORT ZylIntExprArray : public zyl::detail::HandleArray<ZylIntExprArray, ZylIntExprArg> {
  ZYL_HANDLE_ARRAY(ZylIntExprArray, ZylIntExprArg, "n !=")
  using Family::operator[];

  void lockExprs() const noexcept;
  void releaseExprs() const;
  void releaseMarkedExprs() const;
  ZylIntExprArg operator[](const ZylIntExprArg& index) const;
  /// The same elements as numeric expressions, in a new array.
  [[nodiscard]] ZylNumExprArray toNumExprArray() const;
};

/// An array of linear expressions that can be edited in place: `a[i] += 2 * x`. Each slot is a
/// `ZylExpr` and holds a reference; `endElements` drops them, `end` alone does not.
class ZYL_EXPORT ZylExprArray : public zyl::detail::HandleArray<ZylExprArray, ZylExpr> {
  using Family = zyl::detail::HandleArray<ZylExprArray, ZylExpr>;

 public:
  static const char* Name() { return "ZylExprArray"; }
  static const char* Separator(long) { return "n !="; }
  static const char* EmptyText() { return "Using empty ZylExprArray handle."; }

  ZylExprArray() = default;
  explicit ZylExprArray(ZylArrayI* impl) noexcept : Family(impl) {}
  /// An array of `n` empty handles.
  explicit ZylExprArray(const ZylEnv& env, long n = 0) : Family(env, n) {}
  /// The array of the expressions given. Raises `ZylWrongUsage` if `n` is not their number.
  template <std::convertible_to<ZylExpr>... Rest>
  ZylExprArray(const ZylEnv& env, long n, ZylExpr first, Rest&&... rest) : Family(env) {
    constexpr long Count = 1 + static_cast<long>(sizeof...(rest));
    if (n != Count) {
      end();
      zyl::detail::raiseLiteralCount(Name(), Separator(Count), Count);
    }
    add(std::move(first));
    (add(ZylExpr(std::forward<Rest>(rest))), ...);
  }

  using Family::operator[];
  /// The slot takes the argument's reference over, hence by value.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  void add(ZylExpr element) const { checked()->append(element.getImpl()); }
  void add(long count, const ZylExpr& element) const;
  void add(const ZylExprArray& other) const;
  ZylNumExprArg operator[](const ZylIntExprArg& index) const;
};

#endif
