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
  void* block =
      ZYL_UNLIKELY(_localEnv != nullptr) ? allocLocalTerm() : _termAllocator->alloc(&_memory);
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

/// Records in order, each with its `_next`. Owns nothing by itself.
template <class Record>
struct RecordList {
  Record* _head = nullptr;
  Record* _tail = nullptr;

  bool isEmpty() const noexcept { return _head == nullptr; }
  void append(Record* record) noexcept { link(record, record); }
  /// Moves all records of `other` to the end of this list.
  void splice(RecordList* other) noexcept {
    if (other->_head == nullptr) return;
    link(other->_head, other->_tail);
    *other = RecordList();
  }

 private:
  void link(Record* first, Record* last) noexcept {
    if (_tail != nullptr) {
      _tail->_next = first;
    } else {
      _head = first;
    }
    _tail = last;
  }
};

/// Term records; their node says when to recycle them.
struct TermList : RecordList<ZylNumLinExprTermI> {
  void prepend(ZylNumLinExprTermI* term) noexcept {
    term->_next = _head;
    _head = term;
    if (_tail == nullptr) _tail = term;
  }
  /// Appends copies of all records of `other`. Raises `ZylMemoryException`.
  void appendCopies(ZylEnvI* env, const TermList& other);
  /// Appends records in `env` of the clones that `other`'s variables have there.
  void appendClones(ZylEnvI* env, const TermList& other);
  /// Gives all records back.
  void clear(ZylEnvI* env);
  /// Removes the first term of the variable.
  void removeFirst(ZylEnvI* env, const ZylNumVarI* variable);
  /// Removes at most `limit` terms of finished or marked variables; returns their number.
  long removeMarked(ZylEnvI* env, long limit = NoLimit);
};

/// Non-linear parts; each record holds one reference on its expression.
struct ItemList : RecordList<ZylLinExprNonLinearItem> {
  /// Holds the expression. Raises `ZylMemoryException`.
  void append(ZylEnvI* env, ZylNumExprI* expr) {
    auto* item = static_cast<ZylLinExprNonLinearItem*>(env->alloc(sizeof(ZylLinExprNonLinearItem)));
    *item = {expr, nullptr};
    expr->hold();
    RecordList::append(item);
  }
  /// Appends and holds all expressions of `other`. Raises `ZylMemoryException`.
  void appendCopies(ZylEnvI* env, const ItemList& other);
  /// Appends and holds the clones that the expressions of `other` have in `env`.
  void appendClones(ZylEnvI* env, const ItemList& other);
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
