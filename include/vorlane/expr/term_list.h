// The two lists that linear nodes are made of: term records, and non-linear parts.

#ifndef ZYL_EXPR_TERM_LIST_H
#define ZYL_EXPR_TERM_LIST_H

#include <limits>

#include "vorlane/expr/num_expr.h"
#include "vorlane/expr/variable.h"

class ZylAlgorithm;
class ZylExtractableArray;

/// One term, 24 bytes. Belongs to exactly one node or one term handle.
struct ZylNumLinExprTermI {
  ZylNumVarI* _var;
  ZylNumLinExprTermI* _next;
  double _coef;
};

/// One non-linear part; holds a reference on it.
struct ZylLinExprNonLinearItem {
  ZylNumExprI* _expr;
  ZylLinExprNonLinearItem* _next;
};

inline ZylNumLinExprTermI* ZylEnvI::newTerm(ZylNumVarI* variable, double coefficient) {
  void* block = ZYL_UNLIKELY(_localEnv != nullptr) ? allocLocalTerm()
                                                   : _termAllocator->alloc(&_memory);
  return new (block) ZylNumLinExprTermI{variable, nullptr, coefficient};
}

inline void ZylEnvI::recycleTerm(ZylNumLinExprTermI* term) {
  if (ZYL_UNLIKELY(_localEnv != nullptr)) {
    freeLocalTerm(term);
    return;
  }
  _termAllocator->free(term);
}

namespace zyl::detail {

inline constexpr long NoLimit = std::numeric_limits<long>::max();

/// Singly linked term records in order. Owns nothing by itself: its node says when to recycle.
struct TermList {
  ZylNumLinExprTermI* _head = nullptr;
  ZylNumLinExprTermI* _tail = nullptr;

  bool isEmpty() const noexcept { return _head == nullptr; }
  void append(ZylNumLinExprTermI* term) noexcept {
    if (_tail != nullptr) {
      _tail->_next = term;
    } else {
      _head = term;
    }
    _tail = term;
  }
  void prepend(ZylNumLinExprTermI* term) noexcept {
    term->_next = _head;
    _head = term;
    if (_tail == nullptr) _tail = term;
  }
  /// Moves all records of `other` to the end of this list.
  void splice(TermList* other) noexcept {
    if (other->_head == nullptr) return;
    if (_tail != nullptr) {
      _tail->_next = other->_head;
    } else {
      _head = other->_head;
    }
    _tail = other->_tail;
    *other = TermList();
  }
  /// Appends copies of all records of `other`. Raises `ZylMemoryException`.
  void appendCopies(ZylEnvI* env, const TermList& other);
  /// Gives all records back.
  void clear(ZylEnvI* env);
  /// Removes the first term of the variable.
  void removeFirst(ZylEnvI* env, const ZylNumVarI* variable);
  /// Removes at most `limit` terms of finished or marked variables; returns their number.
  long removeMarked(ZylEnvI* env, long limit = NoLimit);
};

/// Non-linear parts in order; each record holds one reference on its expression.
struct ItemList {
  ZylLinExprNonLinearItem* _head = nullptr;
  ZylLinExprNonLinearItem* _tail = nullptr;

  bool isEmpty() const noexcept { return _head == nullptr; }
  /// Holds the expression. Raises `ZylMemoryException`.
  void append(ZylEnvI* env, ZylNumExprI* expr) {
    auto* item = static_cast<ZylLinExprNonLinearItem*>(env->alloc(sizeof(ZylLinExprNonLinearItem)));
    *item = {expr, nullptr};
    expr->hold();
    if (_tail != nullptr) {
      _tail->_next = item;
    } else {
      _head = item;
    }
    _tail = item;
  }
  void splice(ItemList* other) noexcept {
    if (other->_head == nullptr) return;
    if (_tail != nullptr) {
      _tail->_next = other->_head;
    } else {
      _head = other->_head;
    }
    _tail = other->_tail;
    *other = ItemList();
  }
  /// Appends and holds all expressions of `other`. Raises `ZylMemoryException`.
  void appendCopies(ZylEnvI* env, const ItemList& other);
  /// Frees the records and releases their expressions; consistent at each release, since one may
  /// come back here.
  void clear(ZylEnvI* env);
  /// Frees the records and leaves the references where they are.
  void forget(ZylEnvI* env) noexcept;
  /// Frees at most `limit` records of finished or marked expressions, without releasing these;
  /// returns their number.
  long removeMarked(ZylEnvI* env, long limit = NoLimit);
};

/// Removes the terms and parts of the objects given, and of those marked already, at most as many
/// as the array has elements. Raises `ZylMemoryException`, which changes nothing.
void removeObjects(ZylEnvI* env, TermList* terms, ItemList* items,
                   const ZylExtractableArray& objects);
/// Shows the parts, then the variables whose coefficient is not 0.
void visitLinear(ZylExtractableI* node, const TermList& terms, const ItemList& items,
                 ZylExtractableVisitor* visitor);
/// The value without the constant: parts first, then terms.
double evalLinear(const TermList& terms, const ItemList& items, const ZylAlgorithm& algorithm);

}  // namespace zyl::detail

#endif
