// The lists of terms and of non-linear parts that linear nodes are made of.

#include "vorlane/expr/term_list.h"

#include <ostream>

#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/extractable_array.h"
#include "vorlane/model/visitor.h"

namespace zyl::detail {

namespace {

// Unlinks every record for which `drop` holds, at most `limit`, giving each to `free`.
template <class List, class Drop, class Free>
long removeIf(List* list, long limit, Drop drop, Free free) {
  long removed = 0;
  auto** link = &list->_head;
  decltype(list->_head) last = nullptr;
  while (*link != nullptr && removed < limit) {
    auto* record = *link;
    if (!drop(record)) {
      last = record;
      link = &record->_next;
      continue;
    }
    *link = record->_next;
    // The tail moves back before anything can fail.
    if (*link == nullptr) list->_tail = last;
    free(record);
    ++removed;
  }
  return removed;
}

// Marks objects in the id table, and gives them their slots back whatever leaves.
class SlotMarks {
 public:
  explicit SlotMarks(ZylEnvI* env) noexcept : _env(env) {}
  ~SlotMarks() {
    while (_saved != nullptr) {
      Record* record = _saved;
      _saved = record->_next;
      _env->getIdManager()->set(record->_extractable->getId(), record->_extractable);
      _env->free(record, sizeof(Record));
    }
  }
  SlotMarks(const SlotMarks&) = delete;
  SlotMarks& operator=(const SlotMarks&) = delete;

  // Ids mean nothing across environments.
  void mark(ZylExtractableI* object) {
    if (object->getEnv() != _env || _env->isMarked(object)) return;
    auto* record = static_cast<Record*>(_env->alloc(sizeof(Record)));
    *record = {_saved, object};
    _saved = record;
    _env->getIdManager()->mark(object->getId());
  }

 private:
  struct Record {
    Record* _next;
    ZylExtractableI* _extractable;
  };
  ZylEnvI* _env;
  Record* _saved = nullptr;
};

}  // namespace

void TermList::appendCopies(ZylEnvI* env, const TermList& other) {
  for (const ZylNumLinExprTermI* term = other._head; term != nullptr; term = term->_next) {
    append(env->newTerm(term->_var, term->_coef));
  }
}

void TermList::appendClones(ZylEnvI* env, const TermList& other) {
  for (const ZylNumLinExprTermI* term = other._head; term != nullptr; term = term->_next) {
    append(env->newTerm(static_cast<ZylNumVarI*>(env->getClone(term->_var)), term->_coef));
  }
}

void TermList::clear(ZylEnvI* env) {
  while (_head != nullptr) {
    ZylNumLinExprTermI* term = _head;
    _head = term->_next;
    env->recycleTerm(term);
  }
  _tail = nullptr;
}

void TermList::removeFirst(ZylEnvI* env, const ZylNumVarI* variable) {
  removeIf(
      this, 1, [variable](const ZylNumLinExprTermI* term) { return term->_var == variable; },
      [env](ZylNumLinExprTermI* term) { env->recycleTerm(term); });
}

long TermList::removeMarked(ZylEnvI* env, long limit) {
  return removeIf(
      this, limit, [env](const ZylNumLinExprTermI* term) { return env->isMarked(term->_var); },
      [env](ZylNumLinExprTermI* term) { env->recycleTerm(term); });
}

void ItemList::appendCopies(ZylEnvI* env, const ItemList& other) {
  for (const ZylLinExprNonLinearItem* item = other._head; item != nullptr; item = item->_next) {
    append(env, item->_expr);
  }
}

void ItemList::appendClones(ZylEnvI* env, const ItemList& other) {
  for (const ZylLinExprNonLinearItem* item = other._head; item != nullptr; item = item->_next) {
    append(env, static_cast<ZylNumExprI*>(env->getClone(item->_expr)));
  }
}

void ItemList::clear(ZylEnvI* env) {
  while (_head != nullptr) {
    ZylLinExprNonLinearItem* item = _head;
    ZylNumExprI* expr = item->_expr;
    _head = item->_next;
    if (_head == nullptr) _tail = nullptr;
    env->free(item, sizeof(ZylLinExprNonLinearItem));
    env->release(expr);
  }
}

void ItemList::forget(ZylEnvI* env) noexcept {
  while (_head != nullptr) {
    ZylLinExprNonLinearItem* item = _head;
    _head = item->_next;
    env->free(item, sizeof(ZylLinExprNonLinearItem));
  }
  _tail = nullptr;
}

long ItemList::removeMarked(ZylEnvI* env, long limit) {
  return removeIf(
      this, limit,
      [env](const ZylLinExprNonLinearItem* item) { return env->isMarked(item->_expr); },
      [env](ZylLinExprNonLinearItem* item) { env->free(item, sizeof(ZylLinExprNonLinearItem)); });
}

void removeObjects(ZylEnvI* env, TermList* terms, ItemList* items,
                   const ZylExtractableArray& objects) {
  SlotMarks marks(env);
  const long size = objects.getSize();
  for (long i = 0; i < size; ++i) {
    if (objects.getI(i) != nullptr) marks.mark(objects.getI(i));
  }
  const long removed = items->removeMarked(env, size);
  terms->removeMarked(env, size - removed);
}

void visitLinear(ZylExtractableI* node, const TermList& terms, const ItemList& items,
                 ZylExtractableVisitor* visitor) {
  visitor->beginVisit(node);
  for (const ZylLinExprNonLinearItem* item = items._head; item != nullptr; item = item->_next) {
    visitor->visitChildren(node, item->_expr);
  }
  for (const ZylNumLinExprTermI* term = terms._head; term != nullptr; term = term->_next) {
    if (term->_coef != 0.0) visitor->visitChildren(node, term->_var);
  }
  visitor->endVisit(node);
}

double evalLinear(const TermList& terms, const ItemList& items, const ZylAlgorithm& algorithm) {
  double value = 0.0;
  for (const ZylLinExprNonLinearItem* item = items._head; item != nullptr; item = item->_next) {
    value += item->_expr->eval(algorithm);
  }
  for (const ZylNumLinExprTermI* term = terms._head; term != nullptr; term = term->_next) {
    value += term->_coef * term->_var->eval(algorithm);
  }
  return value;
}

}  // namespace zyl::detail
