// What the linear nodes share: their two text forms, and what becomes of their parts.

#ifndef ZYL_SRC_EXPR_LINEAR_NODE_H
#define ZYL_SRC_EXPR_LINEAR_NODE_H

#include <ostream>

#include "vorlane/expr/lin_term_change.h"
#include "vorlane/expr/term_list.h"

namespace zyl::detail {

inline void displayTermVar(std::ostream& stream, const ZylNumVarI* variable) {
  if (variable->getName() != nullptr) {
    stream << variable->getName() << " ";
  } else {
    variable->display(stream);
  }
}

inline void displayProduct(std::ostream& stream, const ZylNumLinExprTermI* term) {
  if (term->_coef != 1.0) stream << term->_coef << " * ";
  displayTermVar(stream, term->_var);
}

// Writes the parts; `some` tells whether anything stands before, and afterwards.
inline void displayItems(std::ostream& stream, const ItemList& items, bool* some) {
  for (const ZylLinExprNonLinearItem* item = items._head; item != nullptr; item = item->_next) {
    if (*some) stream << " + ";
    item->_expr->display(stream);
    *some = true;
  }
}

template <class Constant>
void displayLongLinear(std::ostream& stream, const TermList& terms, const ItemList& items,
                       Constant constant) {
  bool some = false;
  stream << "( ";
  for (const ZylNumLinExprTermI* term = terms._head; term != nullptr; term = term->_next) {
    if (some) stream << " + ";
    if (term->_coef == 0.0) {
      stream << "0 ";
    } else {
      displayProduct(stream, term);
    }
    some = true;
  }
  displayItems(stream, items, &some);
  if (constant != Constant(0)) {
    if (some) stream << " + ";
    stream << constant << " ";
  }
  stream << ") ";
}

// `Node::displayTerm` writes one term, and answers whether it wrote anything; the library's own
// writes nothing for a zero one. What joins two terms goes by the answer for the first alone: what
// comes next is not known yet.
template <class Node, class Constant>
void displayShortLinear(std::ostream& stream, const Node& node, const TermList& terms,
                        const ItemList& items, Constant constant) {
  bool some = false;
  bool wrote = false;
  for (const ZylNumLinExprTermI* term = terms._head; term != nullptr; term = term->_next) {
    if (wrote) stream << " + ";
    wrote = node.displayTerm(stream, term) != 0;
    some = some || wrote;
  }
  displayItems(stream, items, &some);
  if (constant == Constant(0) && some) return;
  if (some) stream << " + ";
  stream << constant << " ";
}

template <class Node, class Constant>
void displayLinear(std::ostream& stream, const Node& node, const TermList& terms,
                   const ItemList& items, Constant constant) {
  if (node.getEnv()->isLongDisplay()) {
    displayLongLinear(stream, terms, items, constant);
  } else {
    displayShortLinear(stream, node, terms, items, constant);
  }
}

inline long displayLinearTerm(std::ostream& stream, const ZylNumLinExprTermI* term) {
  if (term->_coef == 0.0) return 0;
  displayProduct(stream, term);
  return 1;
}

// `removed` leaves the node, which is told so by a `Change`.
template <class Change, class Node>
void leaveLinear(Node* node, ZylExtractableI* removed) {
  if (node->getEnv()->getDeleterMode() == 0) {
    node->removeMarked();
    return;
  }
  auto* variable = zyl::as<ZylNumVarI>(removed);
  if (variable == nullptr) return;
  node->remove(variable);
  node->notify(Change(node, variable));
}

// The parts changed one by one, as a list that replaces the old one: a failure changes nothing. The
// references that the old parts were held by stay: a part lives on under the new one.
template <class Operation>
ItemList rebuilt(ZylEnvI* env, const ItemList& items, Operation operation) {
  ItemList result;
  try {
    for (const ZylLinExprNonLinearItem* item = items._head; item != nullptr; item = item->_next) {
      result.append(env, operation(item->_expr));
    }
  } catch (...) {
    result.clear(env);
    throw;
  }
  return result;
}

}  // namespace zyl::detail

#endif
