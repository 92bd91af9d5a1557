// Objects that come and go.

#include <algorithm>

#include "protocol.h"

using zyl::cbc::Column;
using zyl::cbc::isUsable;
using zyl::cbc::Row;
using zyl::cbc::Term;

// --- models --------------------------------------------------------------------------------------

// Every object, also behind one that is refused, so that the client hears of all refusals.
void ZylCbcProtocol::extractEach(const std::vector<const ZylExtractableI*>& objects) {
  bool refused = false;
  for (const ZylExtractableI* object : objects) {
    try {
      _engine->extract(object);
    } catch (const ZylAlgorithm::ExtractFailure&) {
      refused = true;
    }
  }
  // The culprits are listed already; what holds them is none.
  if (refused) throw ZylAlgorithm::ExtractFailure();
}

ZylCbcI::Impl* ZylCbcProtocol::takeModel(const ZylModelI* model) {
  std::vector<const ZylExtractableI*> elements;
  for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) elements.push_back(*it);
  extractEach(elements);
  return &_impl;
}

// Elements that leave with the same removal are taken out on their own account.
void ZylCbcProtocol::releaseModel(const ZylModelI* model, ZylCbcI::Impl*) {
  for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) {
    if (!isLeaving(*it)) _engine->ZylAlgorithmI::remove(*it);
  }
}

// --- variables -----------------------------------------------------------------------------------

Column* ZylCbcProtocol::takeVariable(const ZylNumVarI* variable) {
  if (!isUsable(variable)) return nullptr;
  Column* column = _impl.store.addColumn(variable, 0.0, 0.0, false);
  refresh(column);
  return column;
}

void ZylCbcProtocol::releaseVariable(const ZylNumVarI*, Column* column) {
  _impl.store.removeColumn(column);
}

// --- rows ----------------------------------------------------------------------------------------

Row* ZylCbcProtocol::takeRange(const ZylRangeI* range) {
  double constant = 0.0;
  if (!collect(range->getExprI(), 1.0, &constant)) return nullptr;
  if (std::isnan(range->getLB()) || std::isnan(range->getUB())) {
    takeTouched();
    return nullptr;
  }
  return _impl.store.addRow(range, range->getLB() - constant, range->getUB() - constant, constant,
                            useTouched());
}

Row* ZylCbcProtocol::takeComparison(const ZylBinaryNumConstraintI* comparison) {
  struct Relation {
    ZylTypeInfo type;
    double lower;
    double upper;
  };
  // Both sides are integral where a strict relation could be stated.
  const Relation relations[] = {{ZylNumEqI::GetTypeInfo(), 0.0, 0.0},
                                {ZylNumLeI::GetTypeInfo(), -ZylInfinity, 0.0},
                                {ZylNumGeI::GetTypeInfo(), 0.0, ZylInfinity},
                                {ZylNumLTI::GetTypeInfo(), -ZylInfinity, -1.0},
                                {ZylNumGTI::GetTypeInfo(), 1.0, ZylInfinity}};
  const auto* relation = std::find_if(
      std::begin(relations), std::end(relations),
      [type = comparison->getTypeInfo()](const Relation& r) { return r.type == type; });
  double constant = 0.0;
  if (relation == std::end(relations) || !collect(comparison->getLeft(), 1.0, &constant) ||
      !collect(comparison->getRight(), -1.0, &constant)) {
    takeTouched();
    return nullptr;
  }
  return _impl.store.addRow(comparison, relation->lower - constant, relation->upper - constant,
                            constant, useTouched());
}

void ZylCbcProtocol::releaseRow(const ZylConstraintI*, Row* row) {
  const std::vector<Term> terms = std::move(row->terms);
  row->terms.clear();
  _impl.store.removeRow(row);
  dropUses(terms);
}

// --- the objective -------------------------------------------------------------------------------

ZylCbcObjective* ZylCbcProtocol::takeObjective(const ZylObjectiveI* objective) {
  if (_impl.objective.objective != nullptr || objective->isMultiCriterion()) return nullptr;
  double constant = 0.0;
  if (!collect(objective->getLinear(), 1.0, &constant)) return nullptr;
  _impl.objective.objective = objective;
  _impl.objective.sign = objective->getSense() == ZylObjective::Maximize ? -1.0 : 1.0;
  _impl.objective.constant = constant;
  _impl.objective.terms = useTouched();
  writeCosts();
  return &_impl.objective;
}

void ZylCbcProtocol::releaseObjective(const ZylObjectiveI*, ZylCbcObjective* kept) {
  const std::vector<Term> terms = std::move(kept->terms);
  for (const Term& term : terms) {
    if (!term.column->gone) _impl.store.setCost(term.column, 0.0);
  }
  *kept = ZylCbcObjective();
  dropUses(terms);
}

// --- conversions ---------------------------------------------------------------------------------

ZylCbcI::Impl* ZylCbcProtocol::takeConversion(const ZylConversionI* conversion) {
  _impl.conversions.push_back(conversion);
  for (long i = 0; i < conversion->getVars().getSize(); ++i) {
    const ZylNumVarI* variable = conversion->getVars()[i].getImpl();
    if (variable == nullptr) continue;
    _engine->extract(variable);
    columnOf(variable)->conversion = conversion;
    refresh(columnOf(variable));
  }
  return &_impl;
}

void ZylCbcProtocol::releaseConversion(const ZylConversionI* conversion, ZylCbcI::Impl*) {
  std::erase(_impl.conversions, conversion);
  for (long i = 0; i < conversion->getVars().getSize(); ++i) {
    releaseConverted(conversion->getVars()[i].getImpl());
  }
}

void ZylCbcProtocol::releaseConverted(const ZylNumVarI* variable) {
  if (variable == nullptr || isLeaving(variable)) return;
  if (Column* column = columnOf(variable)) {
    column->conversion = lastConversionOf(variable);
    refresh(column);
  }
  _engine->ZylAlgorithmI::remove(variable);
}

// Asked when a conversion goes; while one comes, it is the last.
const ZylConversionI* ZylCbcProtocol::lastConversionOf(const ZylNumVarI* variable) const {
  const auto lists = [variable](const ZylConversionI* conversion) {
    const ZylNumVarArray& variables = conversion->getVars();
    for (long i = 0; i < variables.getSize(); ++i) {
      if (variables[i].getImpl() == variable) return true;
    }
    return false;
  };
  const auto last = std::find_if(_impl.conversions.rbegin(), _impl.conversions.rend(), lists);
  return last != _impl.conversions.rend() ? *last : nullptr;
}

// --- death ---------------------------------------------------------------------------------------

// The object is about to die, and its id will be issued again at once: nothing may be kept by
// this id, however often the object was extracted.
void ZylCbcProtocol::forgetOne(const ZylExtractableI* object) {
  if (object == nullptr || !_engine->isInUse(object)) return;
  const long id = object->getId();
  void* handle = _engine->_extractionHandles[id];
  _engine->_usageCounts[id] = 0;
  _engine->_extractionHandles[id] = nullptr;
  ZylCbcI::table().remove(this, object, handle);
  std::erase(_impl.roots, object);
  if (_engine->_model == object) _engine->_model = nullptr;
}

void ZylCbcProtocol::forgetAll(const ZylExtractableArray& objects) {
  for (long i = 0; i < objects.getSize(); ++i) forgetOne(objects.getI(i));
  dropGoneCosts();
}

void ZylCbcProtocol::dropGoneCosts() {
  std::erase_if(_impl.objective.terms, [](const Term& term) { return term.column->gone; });
}
