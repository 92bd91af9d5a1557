// Linear sums among the integers; what they share with the numeric ones is in linear_node.h.

#include "common/build.h"
#include "expr/linear_node.h"
#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/operators.h"
#include "vorlane/model/algorithm_handle.h"

ZYL_EXTRACTABLE_DEF(ZylIntLinTermI, ZylIntExprI)

using zyl::detail::ItemList;
using zyl::detail::Unfinished;

ZylIntLinTermI::ZylIntLinTermI(ZylEnvI* env, long constant)
    : ZylIntExprI(env), _constant(constant) {}

ZylIntLinTermI::ZylIntLinTermI(const ZylIntLinExprTerm& term) : ZylIntLinTermI(term.getEnvI(), 0) {
  _terms.append(term.getImpl());
}

ZylIntLinTermI::~ZylIntLinTermI() {
  _terms.clear(_env);
  _items.clear(_env);
}

ZylExtractableI* ZylIntLinTermI::makeClone(ZylEnvI* env) const {
  Unfinished clone(new (env) ZylIntLinTermI(env, _constant));
  clone->_items.appendClones(env, _items);
  clone->_terms.appendClones(env, _terms);
  return clone.finish();
}

void ZylIntLinTermI::atRemove(ZylExtractableI* removed, void*) {
  zyl::detail::leaveLinear<ZylIntLinTermRemoveVar>(this, removed);
}

void ZylIntLinTermI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  zyl::detail::visitLinear(this, _terms, _items, visitor);
}

void ZylIntLinTermI::display(std::ostream& stream) const {
  zyl::detail::displayLinear(stream, *this, _terms, _items, _constant);
}

long ZylIntLinTermI::displayTerm(std::ostream& stream, const ZylNumLinExprTermI* term) const {
  return zyl::detail::displayLinearTerm(stream, term);
}

ZylNumLinTermI* ZylIntLinTermI::toNumLinTermI() {
  Unfinished result(new (_env) ZylNumLinTermI(_env, getNumConstant()));
  if (!isTemporary()) {
    result->_items.appendCopies(_env, _items);
    result->_terms.appendCopies(_env, _terms);
    return result.finish();
  }
  result->_terms.splice(&_terms);
  result->_items.splice(&_items);
  end();
  return result.finish();
}

ZylIntExprI* ZylIntLinTermI::intCopy() {
  Unfinished result(new (_env) ZylIntLinTermI(_env, _constant));
  result->_items.appendCopies(_env, _items);
  result->_terms.appendCopies(_env, _terms);
  return result.finish();
}

ZylIntLinTermI* ZylIntLinTermI::toIntLinTermI() { return this; }

double ZylIntLinTermI::eval(const ZylAlgorithm algorithm) const {
  return zyl::detail::evalLinear(_terms, _items, algorithm) + getNumConstant();
}

double ZylIntLinTermI::getNumConstant() const { return static_cast<double>(_constant); }

void ZylIntLinTermI::append(ZylIntLinTermI* other) {
  _constant = ZylSumOverflow(getNumConstant(), other->getNumConstant());
  _terms.splice(&other->_terms);
  _items.splice(&other->_items);
  other->end();
}

void ZylIntLinTermI::append(ZylIntExprI* expr) { _items.append(_env, expr); }

void ZylIntLinTermI::multiply(long factor) {
  const auto scaled = [factor](ZylNumExprI* expr) {
    return zyl::detail::scaleInt(static_cast<ZylIntExprI*>(expr), factor);
  };
  const ItemList items = zyl::detail::rebuilt(_env, _items, scaled);
  _items.forget(_env);
  _items = items;
  const auto number = static_cast<double>(factor);
  for (ZylNumLinExprTermI* term = _terms._head; term != nullptr; term = term->_next) {
    term->_coef = static_cast<double>(ZylTimesOverflow(term->_coef, number));
  }
  _constant = ZylTimesOverflow(getNumConstant(), number);
}

void ZylIntLinTermI::remove(ZylNumVarI* variable) { _terms.removeFirst(_env, variable); }

void ZylIntLinTermI::remove(const ZylExtractableArray& objects) {
  zyl::detail::removeObjects(_env, &_terms, &_items, objects);
}

void ZylIntLinTermI::removeMarked() {
  _items.removeMarked(_env);
  _terms.removeMarked(_env);
}

void ZylIntLinTermI::clear() {
  _constant = 0;
  _terms.clear(_env);
  _items.clear(_env);
}
