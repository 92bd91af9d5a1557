// The protocol: how the model becomes rows and columns, and how edits reach them.
//
// Usage is counted by the base class. Each use of a variable (by a model, a row, the objective, a
// conversion) is one extraction of it, taken back with one removal, so a column lives exactly as
// long as something uses its variable. Handles in the base's tables are the engine's records.

#include <algorithm>
#include <cmath>

#include "engine_impl.h"

using zyl::cbc::Column;
using zyl::cbc::Row;
using zyl::cbc::Term;

namespace {

template <class T>
bool is(const ZylExtractableI* object) {
  return zyl::isExactly<T>(object);
}

template <class T>
const T* cast(const ZylExtractableI* object) {
  return static_cast<const T*>(object);
}

// Nothing but finite numbers goes into the linear program.
bool isUsable(double value) { return std::isfinite(value); }

std::vector<double> valuesOf(const ZylNumVarI* variable) {
  std::vector<double> values;
  const ZylNumArray nums = variable->getNumValues();
  for (long i = 0; nums.getImpl() != nullptr && i < nums.getSize(); ++i) values.push_back(nums[i]);
  const ZylIntArray ints = variable->getIntValues();
  for (long i = 0; ints.getImpl() != nullptr && i < ints.getSize(); ++i) {
    values.push_back(static_cast<double>(ints[i]));
  }
  return values;
}

bool isUsable(const ZylNumVarI* variable) {
  const std::vector<double> values = valuesOf(variable);
  return !std::isnan(variable->getLB()) && !std::isnan(variable->getUB()) &&
         std::all_of(values.begin(), values.end(), [](double value) { return isUsable(value); });
}

bool isEnumerated(const ZylNumVarI* variable) {
  return variable->getNumValues().getImpl() != nullptr ||
         variable->getIntValues().getImpl() != nullptr;
}

}  // namespace

/// The protocol's helpers, with the engine's own rights.
class ZylCbcSearch {
 public:
  ZylCbcSearch(ZylCbcI* engine) : _engine(engine), _impl(*engine->_engine) {}  // NOLINT

  // --- extraction -----------------------------------------------------------------------------

  // Every element, also behind one that is refused, so that the client hears of all refusals.
  bool extractModel(const ZylModelI* model) {
    bool refused = false;
    for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) {
      try {
        _engine->extract(*it);
      } catch (const ZylAlgorithm::ExtractFailure&) {
        refused = true;
      }
    }
    // The culprits are listed already; the model itself is none.
    if (refused) throw ZylAlgorithm::ExtractFailure();
    return true;
  }

  bool extractAll(const ZylExtractableArray& elements) {
    bool refused = false;
    for (long i = 0; i < elements.getSize(); ++i) {
      if (elements.getI(i) == nullptr) continue;
      try {
        _engine->extract(elements.getI(i));
      } catch (const ZylAlgorithm::ExtractFailure&) {
        refused = true;
      }
    }
    if (refused) throw ZylAlgorithm::ExtractFailure();
    return true;
  }

  bool extractVariable(const ZylNumVarI* variable, void** handle) {
    if (!isUsable(variable)) return false;
    Column* column = _impl.store.addColumn(variable, 0.0, 0.0, false);
    *handle = column;
    refresh(column);
    return true;
  }

  bool extractRange(const ZylRangeI* range, void** handle) {
    double constant = 0.0;
    if (!collect(range->getExprI(), 1.0, &constant)) return false;
    if (std::isnan(range->getLB()) || std::isnan(range->getUB())) {
      takeTouched();
      return false;
    }
    *handle = _impl.store.addRow(range, range->getLB() - constant, range->getUB() - constant,
                                 constant, useTouched());
    return true;
  }

  // left - right between the bounds.
  bool extractComparison(const ZylBinaryNumConstraintI* comparison, double lower, double upper,
                         void** handle) {
    double constant = 0.0;
    if (!collect(comparison->getLeft(), 1.0, &constant) ||
        !collect(comparison->getRight(), -1.0, &constant)) {
      takeTouched();
      return false;
    }
    *handle =
        _impl.store.addRow(comparison, lower - constant, upper - constant, constant, useTouched());
    return true;
  }

  bool extractObjective(const ZylObjectiveI* objective, void** handle) {
    if (_impl.objective.objective != nullptr || objective->isMultiCriterion()) return false;
    double constant = 0.0;
    if (!collect(objective->getLinear(), 1.0, &constant)) return false;
    _impl.objective.objective = objective;
    _impl.objective.sign = objective->getSense() == ZylObjective::Maximize ? -1.0 : 1.0;
    _impl.objective.constant = constant;
    _impl.objective.terms = useTouched();
    writeCosts();
    *handle = &_impl.objective;
    return true;
  }

  bool extractConversion(const ZylConversionI* conversion, void** handle) {
    _impl.conversions.push_back(conversion);
    *handle = &_impl.conversions;
    for (long i = 0; i < conversion->getVars().getSize(); ++i) {
      const ZylNumVarI* variable = conversion->getVars()[i].getImpl();
      if (variable == nullptr) continue;
      _engine->extract(variable);
      columnOf(variable)->conversion = conversion;
      refresh(columnOf(variable));
    }
    return true;
  }

  // Asked when a conversion goes; while one comes, it is the last.
  const ZylConversionI* lastConversionOf(const ZylNumVarI* variable) const {
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

  bool extract(const ZylExtractableI* object, void** handle) {
    constexpr double Inf = ZylInfinity;
    if (is<ZylModelI>(object)) return extractModel(cast<ZylModelI>(object));
    if (is<ZylNumVarI>(object)) return extractVariable(cast<ZylNumVarI>(object), handle);
    if (is<ZylRangeI>(object)) return extractRange(cast<ZylRangeI>(object), handle);
    if (is<ZylObjectiveI>(object)) return extractObjective(cast<ZylObjectiveI>(object), handle);
    if (is<ZylConversionI>(object)) return extractConversion(cast<ZylConversionI>(object), handle);
    if (!object->isType(ZylBinaryNumConstraintI::GetTypeInfo())) return false;
    const auto* comparison = cast<ZylBinaryNumConstraintI>(object);
    if (is<ZylNumEqI>(object)) return extractComparison(comparison, 0.0, 0.0, handle);
    if (is<ZylNumLeI>(object)) return extractComparison(comparison, -Inf, 0.0, handle);
    if (is<ZylNumGeI>(object)) return extractComparison(comparison, 0.0, Inf, handle);
    // Both sides are integral where a strict relation could be stated.
    if (is<ZylNumLTI>(object)) return extractComparison(comparison, -Inf, -1.0, handle);
    if (is<ZylNumGTI>(object)) return extractComparison(comparison, 1.0, Inf, handle);
    return false;
  }

  // --- removal --------------------------------------------------------------------------------

  void removeRow(Row* row) {
    std::vector<Term> terms = std::move(row->terms);
    row->terms.clear();
    _impl.store.removeRow(row);
    dropUses(terms);
  }

  void removeObjective() {
    const std::vector<Term> terms = std::move(_impl.objective.terms);
    for (const Term& term : terms) {
      if (!term.column->gone) _impl.store.setCost(term.column, 0.0);
    }
    _impl.objective = ZylCbcObjective();
    dropUses(terms);
  }

  void removeConversion(const ZylConversionI* conversion) {
    std::erase(_impl.conversions, conversion);
    for (long i = 0; i < conversion->getVars().getSize(); ++i) {
      releaseConverted(conversion->getVars()[i].getImpl());
    }
  }

  void releaseConverted(const ZylNumVarI* variable) {
    if (variable == nullptr || isLeaving(variable)) return;
    if (Column* column = columnOf(variable)) {
      column->conversion = lastConversionOf(variable);
      refresh(column);
    }
    _engine->ZylAlgorithmI::remove(variable);
  }

  // Elements that leave with the same removal are taken out on their own account.
  void removeElements(const ZylModelI* model) {
    for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) {
      if (!isLeaving(*it)) _engine->ZylAlgorithmI::remove(*it);
    }
  }

  bool remove(const ZylExtractableI* object, void* handle) {
    if (is<ZylModelI>(object)) {
      removeElements(cast<ZylModelI>(object));
    } else if (is<ZylNumVarI>(object)) {
      _impl.store.removeColumn(static_cast<Column*>(handle));
    } else if (is<ZylObjectiveI>(object)) {
      removeObjective();
    } else if (is<ZylConversionI>(object)) {
      removeConversion(cast<ZylConversionI>(object));
    } else {
      removeRow(static_cast<Row*>(handle));
    }
    return true;
  }

  // The object is about to die, and its id will be issued again at once: nothing may be kept by
  // this id, however often the object was extracted.
  void forgetOne(const ZylExtractableI* object) {
    if (object == nullptr || !_engine->isInUse(object)) return;
    const long id = object->getId();
    void* handle = _engine->_extractionHandles[id];
    _engine->_usageCounts[id] = 0;
    _engine->_extractionHandles[id] = nullptr;
    remove(object, handle);
    std::erase(_impl.roots, object);
    if (_engine->_model == object) _engine->_model = nullptr;
  }

  void forget(const ZylExtractableI* object) {
    forgetOne(object);
    dropGoneCosts();
  }

  void forgetAll(const ZylExtractableArray& objects) {
    for (long i = 0; i < objects.getSize(); ++i) forgetOne(objects.getI(i));
    dropGoneCosts();
  }

  void dropGoneCosts() {
    std::erase_if(_impl.objective.terms, [](const Term& term) { return term.column->gone; });
  }

  // --- edits ----------------------------------------------------------------------------------

  // Bounds, type and values of a column, as its variable and the conversions say now.
  void refresh(Column* column) {
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

  bool refreshChecked(Column* column) {
    if (!isUsable(column->variable)) return false;
    refresh(column);
    return true;
  }

  void refreshValues(Column* column, const ZylNumVarI* variable, zyl::VariableType type) {
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

  bool setRowExpr(Row* row, const ZylRangeI* range) {
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

  bool setRowBounds(Row* row, double lower, double upper) {
    if (std::isnan(lower) || std::isnan(upper)) return false;
    _impl.store.setBounds(row, lower - row->constant, upper - row->constant);
    return true;
  }

  bool setRowCoef(Row* row, const ZylNumVarI* variable, double coef) {
    if (!isUsable(coef)) return false;
    // A use for the new term; given back if there was a term already, or is none now.
    _engine->extract(variable);
    const double before = _impl.store.setCoef(row, columnOf(variable), coef);
    if (before != 0.0) _engine->ZylAlgorithmI::remove(variable);
    if (coef == 0.0) _engine->ZylAlgorithmI::remove(variable);
    return true;
  }

  bool addRowCoef(Row* row, const ZylNumVarI* variable, double value) {
    double before = 0.0;
    for (const Term& term : row->terms) {
      if (term.column->variable == variable) before = term.coef;
    }
    return setRowCoef(row, variable, before + value);
  }

  bool setObjectiveExpr(const ZylObjectiveI* objective) {
    double constant = 0.0;
    if (!collect(objective->getLinear(), 1.0, &constant)) return false;
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

  bool setObjectiveCoef(const ZylNumVarI* variable, double coef) {
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

  bool addObjectiveCoef(const ZylNumVarI* variable, double value) {
    double before = 0.0;
    for (const Term& term : _impl.objective.terms) {
      if (term.column->variable == variable) before = term.coef;
    }
    return setObjectiveCoef(variable, before + value);
  }

  bool setObjectiveConstant(double constant) {
    if (!isUsable(constant)) return false;
    _impl.objective.constant = constant;
    return true;
  }

  void setSense(ZylObjective::Sense sense) {
    _impl.objective.sign = sense == ZylObjective::Maximize ? -1.0 : 1.0;
    writeCosts();
  }

  // --- parts ----------------------------------------------------------------------------------

  Column* columnOf(const ZylNumVarI* variable) const {
    return static_cast<Column*>(_engine->getHandle(variable));
  }

  // Adds `sign` times the expression to the sum under collection. False, with nothing collected,
  // for what is not linear or not finite.
  bool collect(const ZylNumExprI* expr, double sign, double* constant) {
    if (is<ZylNumVarI>(expr)) {
      addTerm(cast<ZylNumVarI>(expr), sign);
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
  void addTerm(const ZylNumVarI* variable, double coef) {
    const auto id = static_cast<std::size_t>(variable->getId());
    if (id >= _impl.coefficients.size()) {
      _impl.coefficients.resize(std::max(id + 1, 2 * _impl.coefficients.size()), 0.0);
    }
    _impl.touched.push_back(variable);
    _impl.coefficients[id] += coef;
  }

  struct Collected {
    const ZylNumVarI* variable;
    double coef;
  };

  // Ends a collection: what was collected, without zeros, in order of first occurrence.
  std::vector<Collected> takeTouched() {
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
  std::vector<Term> useTouched() {
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

  void dropUses(const std::vector<Term>& terms) {
    for (const Term& term : terms) {
      const ZylNumVarI* variable = term.column->variable;
      if (!term.column->gone && variable != nullptr) _engine->ZylAlgorithmI::remove(variable);
    }
  }

  void writeCosts() {
    for (const Term& term : _impl.objective.terms) {
      if (!term.column->gone) _impl.store.setCost(term.column, _impl.objective.sign * term.coef);
    }
  }

  bool isLeaving(const ZylExtractableI* object) const {
    return _engine->getEnvI()->isMarked(object);
  }

 private:
  ZylCbcI* _engine;
  ZylCbcI::Impl& _impl;
};

// --- what the client gives and takes -------------------------------------------------------------

// Tells what the client asks of the engine from what the protocol asks of itself.
class ZylCbcI::Nested {
 public:
  explicit Nested(ZylCbcI* engine) : _depth(&engine->_engine->depth) { ++*_depth; }
  ~Nested() { --*_depth; }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

 private:
  long* _depth;
};

void ZylCbcI::checkIdle() const {
  if (_searchActive != 0) throw ZylNoChangeDuringSearchException();
}

void ZylCbcI::extract(const ZylExtractableI* extractable) {
  checkIdle();
  ZylAlgorithmI::extract(extractable);
  if (_engine->depth == 0) _engine->roots.push_back(extractable);
}

void ZylCbcI::remove(const ZylExtractableI* extractable) {
  checkIdle();
  ZylAlgorithmI::remove(extractable);
  if (_engine->depth > 0) return;
  const auto root = std::find(_engine->roots.begin(), _engine->roots.end(), extractable);
  if (root != _engine->roots.end()) _engine->roots.erase(root);
}

void ZylCbcI::loadWithoutClear(const ZylModelI* model) {
  checkIdle();
  ZylAlgorithmI::loadWithoutClear(model);
}

bool ZylCbcI::doExtract(const ZylExtractableI* extractable, void** handle) {
  const Nested nested(this);
  return ZylCbcSearch(this).extract(extractable, handle);
}

bool ZylCbcI::doRemove(const ZylExtractableI* extractable, void* handle) {
  const Nested nested(this);
  return ZylCbcSearch(this).remove(extractable, handle);
}

// --- edits ---------------------------------------------------------------------------------------

namespace {

// A list of what the engine does for each class of change. The handle is that of the object
// changed.
using Apply = bool (*)(ZylCbcI* engine, ZylCbcSearch& search, const ZylChange& change,
                       void* handle);

template <class Change>
const Change& as(const ZylChange& change) {
  return static_cast<const Change&>(change);
}

struct Entry {
  ZylTypeInfo type;
  Apply apply;
};

const Entry* entries(long* count) {
  static const Entry table[] = {
      {ZylSetRangeBounds::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void* handle) {
         auto* row = static_cast<Row*>(handle);
         const auto& c = as<ZylSetRangeBounds>(change);
         return search.setRowBounds(row, c.getLB(), c.getUB());
       }},
      {ZylSetRangeArrayBounds::GetTypeInfo(),
       [](ZylCbcI* engine, ZylCbcSearch& search, const ZylChange& change, void*) {
         const auto& c = as<ZylSetRangeArrayBounds>(change);
         for (long i = 0; i < c.getRanges().getSize(); ++i) {
           const ZylRangeI* range = c.getRanges()[i].getImpl();
           if (range == nullptr || !engine->isInUse(range)) continue;
           auto* row = static_cast<Row*>(engine->getHandle(range));
           if (!search.setRowBounds(row, range->getLB(), range->getUB())) return false;
         }
         return true;
       }},
      {ZylSetRangeCoef::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void* handle) {
         const auto& c = as<ZylSetRangeCoef>(change);
         return search.setRowCoef(static_cast<Row*>(handle), c.getVar().getImpl(), c.getNewValue());
       }},
      {ZylSetRangeCoefs::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void* handle) {
         const auto& c = as<ZylSetRangeCoefs>(change);
         for (long i = 0; i < c.getVars().getSize(); ++i) {
           if (!search.setRowCoef(static_cast<Row*>(handle), c.getVars()[i].getImpl(),
                                  c.getNewValues()[i])) {
             return false;
           }
         }
         return true;
       }},
      {ZylSetRangeExpr::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void* handle) {
         return search.setRowExpr(static_cast<Row*>(handle),
                                  as<ZylSetRangeExpr>(change).getRange().getImpl());
       }},
      {ZylAddValueToRange::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void* handle) {
         const auto& c = as<ZylAddValueToRange>(change);
         return search.addRowCoef(static_cast<Row*>(handle), c.getVarI(), c.getValue());
       }},
      {ZylSetNumVarBounds::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange&, void* handle) {
         return search.refreshChecked(static_cast<Column*>(handle));
       }},
      {ZylSetNumVarPossibleValues::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange&, void* handle) {
         return search.refreshChecked(static_cast<Column*>(handle));
       }},
      // Each variable of the array was announced before.
      {ZylSetNumVarArrayBounds::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch&, const ZylChange&, void*) { return true; }},
      {ZylSetObjExpr::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         return search.setObjectiveExpr(as<ZylSetObjExpr>(change).getObjective().getImpl());
       }},
      {ZylSetObjCoef::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         const auto& c = as<ZylSetObjCoef>(change);
         return search.setObjectiveCoef(c.getVar().getImpl(), c.getNewValue());
       }},
      {ZylSetObjCoefs::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         const auto& c = as<ZylSetObjCoefs>(change);
         for (long i = 0; i < c.getVars().getSize(); ++i) {
           if (!search.setObjectiveCoef(c.getVars()[i].getImpl(), c.getNewValues()[i]))
             return false;
         }
         return true;
       }},
      {ZylSetObjConst::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         return search.setObjectiveConstant(as<ZylSetObjConst>(change).getNewValue());
       }},
      {ZylSetObjSense::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         search.setSense(as<ZylSetObjSense>(change).getSense());
         return true;
       }},
      {ZylAddValueToObj::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         const auto& c = as<ZylAddValueToObj>(change);
         return search.addObjectiveCoef(c.getVarI(), c.getValue());
       }},
      {ZylAddOneToModel::GetTypeInfo(),
       [](ZylCbcI* engine, ZylCbcSearch&, const ZylChange& change, void*) {
         engine->extract(as<ZylAddOneToModel>(change).getElement());
         return true;
       }},
      {ZylAddToModel::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         return search.extractAll(as<ZylAddToModel>(change).getElements());
       }},
      {ZylRemoveFromModel::GetTypeInfo(),
       [](ZylCbcI* engine, ZylCbcSearch&, const ZylChange& change, void*) {
         engine->ZylAlgorithmI::remove(as<ZylRemoveFromModel>(change).getElements());
         return true;
       }},
      {ZylConversionRemoveVar::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         search.releaseConverted(as<ZylConversionRemoveVar>(change).getVar().getImpl());
         return true;
       }},
      {ZylDestroyExtractable::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         search.forget(change.getChangedExtractable());
         return true;
       }},
      {ZylRemoveFromAllChange::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         search.forgetAll(change.getChangedExtractableArray());
         return true;
       }},
      {ZylDestroyExtractableArray::GetTypeInfo(),
       [](ZylCbcI*, ZylCbcSearch& search, const ZylChange& change, void*) {
         search.forgetAll(change.getChangedExtractableArray());
         return true;
       }},
  };
  *count = static_cast<long>(std::size(table));
  return table;
}

}  // namespace

namespace {

bool isDeath(const ZylChange& change) {
  const ZylTypeInfo type = change.getTypeInfo();
  return type == ZylDestroyExtractable::GetTypeInfo() ||
         type == ZylRemoveFromAllChange::GetTypeInfo() ||
         type == ZylDestroyExtractableArray::GetTypeInfo();
}

}  // namespace

// What raises has changed the model and not the engine. From there on rows and columns are no
// ground for following anything; only what dies must still be forgotten, until all is loaded again.
void ZylCbcI::apply(const ZylChange& change, const ZylExtractableI* extractable) {
  if (_engine->isBehind && _searchActive == 0 && !isDeath(change)) return;
  try {
    ZylAlgorithmI::apply(change, extractable);
  } catch (...) {
    fallBehind();
    throw;
  }
}

void ZylCbcI::apply(const ZylChange& change) {
  if (_engine->isBehind && _searchActive == 0 && !isDeath(change)) return;
  try {
    ZylAlgorithmI::apply(change);
  } catch (...) {
    fallBehind();
    throw;
  }
}

// A failure that has emptied the engine leaves nothing to load.
void ZylCbcI::fallBehind() noexcept { _engine->isBehind = !_engine->roots.empty(); }

void ZylCbcI::catchUp() {
  const std::vector<const ZylExtractableI*> roots = std::move(_engine->roots);
  std::vector<std::pair<long, double>> start = std::move(_engine->start);
  clear();
  for (const ZylExtractableI* root : roots) {
    if (is<ZylModelI>(root)) {
      loadWithoutClear(cast<ZylModelI>(root));
    } else {
      extract(root);
    }
  }
  _engine->start = std::move(start);
}

bool ZylCbcI::doApply(const ZylChange* change, void** handle, const ZylExtractableI* extractable) {
  long count = 0;
  const Entry* table = entries(&count);
  const Entry* end = table + count;
  const ZylTypeInfo type = change->getTypeInfo();
  const Entry* entry = std::find_if(table, end, [=](const Entry& e) { return e.type == type; });
  if (entry == end) return false;
  const Nested nested(this);
  ZylCbcSearch search(this);
  const bool done = entry->apply(this, search, *change, *handle);
  // The object may have been forgotten in the course of its own change.
  if (extractable != nullptr) *handle = getHandle(extractable);
  return done;
}

void ZylCbcI::clear() {
  checkIdle();
  ZylAlgorithmI::clear();
  _engine->roots.clear();
  _engine->isBehind = false;
  _engine->store.clear();
  _engine->objective = ZylCbcObjective();
  _engine->result = ZylCbcResult();
  _engine->conversions.clear();
  _engine->start.clear();
  _engine->touched.clear();
  std::fill(_engine->coefficients.begin(), _engine->coefficients.end(), 0.0);
}
