// Sums of terms, and the uses of their variables.

#include <algorithm>

#include "protocol.h"

using zyl::cbc::Column;
using zyl::cbc::isUsable;
using zyl::cbc::Term;

std::vector<double> zyl::cbc::valuesOf(const ZylNumVarI* variable) {
  std::vector<double> values;
  const ZylNumArray nums = variable->getNumValues();
  for (long i = 0; nums.getImpl() != nullptr && i < nums.getSize(); ++i) values.push_back(nums[i]);
  const ZylIntArray ints = variable->getIntValues();
  for (long i = 0; ints.getImpl() != nullptr && i < ints.getSize(); ++i) {
    values.push_back(static_cast<double>(ints[i]));
  }
  return values;
}

bool zyl::cbc::isUsable(const ZylNumVarI* variable) {
  const std::vector<double> values = valuesOf(variable);
  return !std::isnan(variable->getLB()) && !std::isnan(variable->getUB()) &&
         std::all_of(values.begin(), values.end(),
                     [](double value) { return zyl::cbc::isUsable(value); });
}

Column* ZylCbcProtocol::columnOf(const ZylNumVarI* variable) const {
  return static_cast<Column*>(_engine->getHandle(variable));
}

// Adds `sign` times the expression to the sum under collection. False, with nothing collected,
// for what is not linear or not finite.
bool ZylCbcProtocol::collect(const ZylNumExprI* expr, double sign, double* constant) {
  if (zyl::isExactly<ZylNumVarI>(expr)) {
    addTerm(static_cast<const ZylNumVarI*>(expr), sign);
    return true;
  }
  const auto* sum = zyl::as<ZylNumLinTermI>(expr);
  if (sum == nullptr || sum->hasNonLinearPart() || !isUsable(sum->getConstant())) {
    takeTouched();
    return false;
  }
  for (const ZylNumLinExprTermI* term = sum->getTermHead(); term != nullptr; term = term->_next) {
    if (!isUsable(term->_coef)) {
      takeTouched();
      return false;
    }
    addTerm(term->_var, sign * term->_coef);
  }
  *constant += sign * sum->getConstant();
  return true;
}

// A variable that occurs twice is summed here, whether the client's sum is normalised or not.
void ZylCbcProtocol::addTerm(const ZylNumVarI* variable, double coef) {
  const auto id = static_cast<std::size_t>(variable->getId());
  if (id >= _impl.coefficients.size()) {
    _impl.coefficients.resize(std::max(id + 1, 2 * _impl.coefficients.size()), 0.0);
  }
  _impl.touched.push_back(variable);
  _impl.coefficients[id] += coef;
}

// Ends a collection: what was collected, without zeros, in order of first occurrence.
std::vector<ZylCbcProtocol::Collected> ZylCbcProtocol::takeTouched() {
  std::vector<Collected> sum;
  sum.reserve(_impl.touched.size());
  for (const ZylNumVarI* variable : _impl.touched) {
    double& coef = _impl.coefficients[static_cast<std::size_t>(variable->getId())];
    if (coef != 0.0) sum.push_back({variable, coef});
    coef = 0.0;
  }
  _impl.touched.clear();
  return sum;
}

// Ends a collection with one extraction of each variable. If one is refused the others are given
// back.
std::vector<Term> ZylCbcProtocol::useTouched() {
  std::vector<Term> terms;
  const std::vector<Collected> sum = takeTouched();
  terms.reserve(sum.size());
  bool refused = false;
  for (const Collected& part : sum) {
    try {
      _engine->extract(part.variable);
      terms.push_back({columnOf(part.variable), part.coef});
    } catch (const ZylAlgorithm::ExtractFailure&) {
      refused = true;
    }
  }
  if (refused) {
    dropUses(terms);
    throw ZylAlgorithm::ExtractFailure();
  }
  return terms;
}

void ZylCbcProtocol::dropUses(const std::vector<Term>& terms) {
  for (const Term& term : terms) {
    const ZylNumVarI* variable = term.column->variable;
    if (!term.column->gone && variable != nullptr) _engine->ZylAlgorithmI::remove(variable);
  }
}

void ZylCbcProtocol::writeCosts() {
  for (const Term& term : _impl.objective.terms) {
    if (!term.column->gone) _impl.store.setCost(term.column, _impl.objective.sign * term.coef);
  }
}

bool ZylCbcProtocol::isLeaving(const ZylExtractableI* object) const {
  return _engine->getEnvI()->isMarked(object);
}
