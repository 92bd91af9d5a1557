// Changes: the record of each is followed where it stands, or read anew from the object.

#include <algorithm>

#include "protocol.h"

using zyl::cbc::isUsable;
using zyl::cbc::Term;
using zyl::cbc::valuesOf;

namespace {

double coefIn(const std::vector<Term>& terms, const ZylNumVarI* variable) {
  const auto term = std::find_if(terms.begin(), terms.end(), [variable](const Term& t) {
    return t.column->variable == variable;
  });
  return term != terms.end() ? term->coef : 0.0;
}

bool isEnumerated(const ZylNumVarI* variable) {
  return variable->getNumValues().getImpl() != nullptr ||
         variable->getIntValues().getImpl() != nullptr;
}

}  // namespace

// --- rows ----------------------------------------------------------------------------------------

bool ZylCbcProtocol::rangeBounds(const ZylSetRangeBounds& change, Row* row) {
  return setRowBounds(row, change.getLB(), change.getUB());
}

bool ZylCbcProtocol::rangeArrayBounds(const ZylSetRangeArrayBounds& change, void*) {
  for (long i = 0; i < change.getRanges().getSize(); ++i) {
    const ZylRangeI* range = change.getRanges()[i].getImpl();
    if (range == nullptr || !_engine->isInUse(range)) continue;
    auto* row = static_cast<Row*>(_engine->getHandle(range));
    if (!setRowBounds(row, range->getLB(), range->getUB())) return false;
  }
  return true;
}

bool ZylCbcProtocol::rangeCoef(const ZylSetRangeCoef& change, Row* row) {
  return setRowCoef(row, change.getVar().getImpl(), change.getNewValue());
}

bool ZylCbcProtocol::rangeCoefs(const ZylSetRangeCoefs& change, Row* row) {
  for (long i = 0; i < change.getVars().getSize(); ++i) {
    if (!setRowCoef(row, change.getVars()[i].getImpl(), change.getNewValues()[i])) return false;
  }
  return true;
}

bool ZylCbcProtocol::rangeEntry(const ZylAddValueToRange& change, Row* row) {
  const double before = coefIn(row->terms, change.getVarI());
  return setRowCoef(row, change.getVarI(), before + change.getValue());
}

bool ZylCbcProtocol::rangeExpr(const ZylSetRangeExpr& change, Row* row) {
  const ZylRangeI* range = change.getRange().getImpl();
  double constant = 0.0;
  if (!collect(range->getExprI(), 1.0, &constant)) return false;
  std::vector<Term> before = row->terms;
  std::vector<Term> after = useTouched();
  for (const Term& term : before) {
    const bool stays = std::any_of(after.begin(), after.end(),
                                   [&](const Term& t) { return t.column == term.column; });
    if (!stays && !term.column->gone) _impl.store.setCoef(row, term.column, 0.0);
  }
  for (const Term& term : after) _impl.store.setCoef(row, term.column, term.coef);
  row->constant = constant;
  _impl.store.setBounds(row, range->getLB() - constant, range->getUB() - constant);
  dropUses(before);
  return true;
}

bool ZylCbcProtocol::setRowBounds(Row* row, double lower, double upper) {
  if (std::isnan(lower) || std::isnan(upper)) return false;
  _impl.store.setBounds(row, lower - row->constant, upper - row->constant);
  return true;
}

bool ZylCbcProtocol::setRowCoef(Row* row, const ZylNumVarI* variable, double coef) {
  if (!isUsable(coef)) return false;
  // A use for the new term; given back if there was a term already, or is none now.
  _engine->extract(variable);
  const double before = _impl.store.setCoef(row, columnOf(variable), coef);
  if (before != 0.0) _engine->ZylAlgorithmI::remove(variable);
  if (coef == 0.0) _engine->ZylAlgorithmI::remove(variable);
  return true;
}

// --- variables -----------------------------------------------------------------------------------

bool ZylCbcProtocol::variableBounds(const ZylSetNumVarBounds&, Column* column) {
  return refreshChecked(column);
}
bool ZylCbcProtocol::variableValues(const ZylSetNumVarPossibleValues&, Column* column) {
  return refreshChecked(column);
}
// Each variable of the array was announced before.
bool ZylCbcProtocol::variableArrayBounds(const ZylSetNumVarArrayBounds&, void*) { return true; }

bool ZylCbcProtocol::leftConversion(const ZylConversionRemoveVar& change, void*) {
  releaseConverted(change.getVar().getImpl());
  return true;
}

bool ZylCbcProtocol::refreshChecked(Column* column) {
  if (!isUsable(column->variable)) return false;
  refresh(column);
  return true;
}

// Bounds, type and values of a column, as its variable and the conversions say now.
void ZylCbcProtocol::refresh(Column* column) {
  const ZylNumVarI* variable = column->variable;
  const zyl::VariableType type =
      column->conversion != nullptr ? column->conversion->getType() : variable->getType();
  double lower = variable->getLB();
  double upper = variable->getUB();
  if (type == zyl::Bool && variable->getType() != zyl::Bool) {
    lower = std::max(lower, 0.0);
    upper = std::min(upper, 1.0);
  }
  const bool integer = type != zyl::Float;
  _impl.store.setBounds(column, lower, upper);
  _impl.store.setInteger(column, integer);
  if (column->enumeration != nullptr || isEnumerated(variable)) {
    refreshValues(column, variable, type);
  }
}

void ZylCbcProtocol::refreshValues(Column* column, const ZylNumVarI* variable,
                                   zyl::VariableType type) {
  std::vector<double> values = valuesOf(variable);
  std::erase_if(values, [=](double v) { return v < column->lower || v > column->upper; });
  if (isEnumerated(variable) && values.empty()) {
    // Nothing is left to take: crossed bounds say so.
    _impl.store.setValues(column, {}, false);
    _impl.store.setBounds(column, 1.0, 0.0);
    return;
  }
  // A discrete float variable takes its values only; the relaxation of an integer one does not.
  const bool relaxed = type == zyl::Float && variable->getType() != zyl::Float;
  _impl.store.setValues(column, values, relaxed);
}

// --- the objective -------------------------------------------------------------------------------

bool ZylCbcProtocol::objectiveExpr(const ZylSetObjExpr& change, void*) {
  double constant = 0.0;
  if (!collect(change.getObjective().getImpl()->getLinear(), 1.0, &constant)) return false;
  const std::vector<Term> before = std::move(_impl.objective.terms);
  _impl.objective.terms = useTouched();
  _impl.objective.constant = constant;
  for (const Term& term : before) {
    if (!term.column->gone) _impl.store.setCost(term.column, 0.0);
  }
  writeCosts();
  dropUses(before);
  return true;
}

bool ZylCbcProtocol::objectiveCoef(const ZylSetObjCoef& change, void*) {
  return setObjectiveCoef(change.getVar().getImpl(), change.getNewValue());
}

bool ZylCbcProtocol::objectiveCoefs(const ZylSetObjCoefs& change, void*) {
  for (long i = 0; i < change.getVars().getSize(); ++i) {
    if (!setObjectiveCoef(change.getVars()[i].getImpl(), change.getNewValues()[i])) return false;
  }
  return true;
}

bool ZylCbcProtocol::objectiveEntry(const ZylAddValueToObj& change, void*) {
  const double before = coefIn(_impl.objective.terms, change.getVarI());
  return setObjectiveCoef(change.getVarI(), before + change.getValue());
}

bool ZylCbcProtocol::objectiveConstant(const ZylSetObjConst& change, void*) {
  if (!isUsable(change.getNewValue())) return false;
  _impl.objective.constant = change.getNewValue();
  return true;
}

bool ZylCbcProtocol::objectiveSense(const ZylSetObjSense& change, void*) {
  _impl.objective.sign = change.getSense() == ZylObjective::Maximize ? -1.0 : 1.0;
  writeCosts();
  return true;
}

bool ZylCbcProtocol::setObjectiveCoef(const ZylNumVarI* variable, double coef) {
  if (!isUsable(coef)) return false;
  _engine->extract(variable);
  Column* column = columnOf(variable);
  auto& terms = _impl.objective.terms;
  const auto term =
      std::find_if(terms.begin(), terms.end(), [=](const Term& t) { return t.column == column; });
  const bool was = term != terms.end();
  if (was && coef == 0.0) {
    terms.erase(term);
  } else if (was) {
    term->coef = coef;
  } else if (coef != 0.0) {
    terms.push_back({column, coef});
  }
  _impl.store.setCost(column, _impl.objective.sign * coef);
  if (was) _engine->ZylAlgorithmI::remove(variable);
  if (coef == 0.0) _engine->ZylAlgorithmI::remove(variable);
  return true;
}

// --- models --------------------------------------------------------------------------------------

bool ZylCbcProtocol::oneJoined(const ZylAddOneToModel& change, void*) {
  _engine->extract(change.getElement());
  return true;
}

bool ZylCbcProtocol::joined(const ZylAddToModel& change, void*) {
  const ZylExtractableArray& elements = change.getElements();
  std::vector<const ZylExtractableI*> objects;
  for (long i = 0; i < elements.getSize(); ++i) {
    if (elements.getI(i) != nullptr) objects.push_back(elements.getI(i));
  }
  extractEach(objects);
  return true;
}

bool ZylCbcProtocol::left(const ZylRemoveFromModel& change, void*) {
  _engine->ZylAlgorithmI::remove(change.getElements());
  return true;
}

// --- death ---------------------------------------------------------------------------------------

bool ZylCbcProtocol::dies(const ZylDestroyExtractable& change, void*) {
  forgetOne(change.getChangedExtractable());
  dropGoneCosts();
  return true;
}

bool ZylCbcProtocol::die(const ZylDestroyExtractableArray& change, void*) {
  forgetAll(change.getChangedExtractableArray());
  return true;
}

bool ZylCbcProtocol::removed(const ZylRemoveFromAllChange& change, void*) {
  forgetAll(change.getChangedExtractableArray());
  return true;
}
