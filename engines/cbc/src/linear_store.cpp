// Rows and columns, and how they reach the linear program.

#include "linear_store.h"

#include <algorithm>
#include <cmath>

#include <ClpSimplex.hpp>
#include <CoinPackedMatrix.hpp>

#include "vorlane/env/types.h"

namespace zyl::cbc {

namespace {

// Bounds of integer columns may miss an integer by this and still mean it.
constexpr double IntegralityTolerance = 1e-6;

template <class T>
int sizeOf(const std::vector<T>& list) {
  return static_cast<int>(list.size());
}

// Rows in compressed form.
struct Compressed {
  std::vector<CoinBigIndex> starts{0};
  std::vector<int> columns;
  std::vector<double> elements;
  std::vector<double> lower;
  std::vector<double> upper;

  void add(const Row& row) {
    for (const Term& term : row.terms) {
      columns.push_back(term.column->position);
      elements.push_back(term.coef);
    }
    starts.push_back(static_cast<CoinBigIndex>(columns.size()));
    lower.push_back(programLower(row.lower, false));
    upper.push_back(programUpper(row.upper, false));
  }
};

}  // namespace

// The largest integer of the library says of an integer variable that it has no bound.
constexpr double LargestInteger = static_cast<double>(ZylIntMax);

double programLower(double bound, bool integer) noexcept {
  if (bound < -ZylNumMax || (integer && bound <= -LargestInteger)) return -COIN_DBL_MAX;
  if (bound > ZylNumMax) return COIN_DBL_MAX;
  return integer ? std::ceil(bound - IntegralityTolerance) : bound;
}

double programUpper(double bound, bool integer) noexcept {
  if (bound < -ZylNumMax) return -COIN_DBL_MAX;
  if (bound > ZylNumMax || (integer && bound >= LargestInteger)) return COIN_DBL_MAX;
  return integer ? std::floor(bound + IntegralityTolerance) : bound;
}

LinearStore::LinearStore() : _program(std::make_unique<ClpSimplex>()) { clear(); }
LinearStore::~LinearStore() = default;

void LinearStore::clear() {
  _program = std::make_unique<ClpSimplex>();
  _program->setLogLevel(0);
  _columns.clear();
  _rows.clear();
  _pending.clear();
  _anyGone = false;
}

Column* LinearStore::addColumn(const ZylNumVarI* variable, double lower, double upper,
                               bool integer) {
  auto& column = _columns.emplace_back(std::make_unique<Column>());
  column->variable = variable;
  column->lower = lower;
  column->upper = upper;
  column->integer = integer;
  return column.get();
}

Row* LinearStore::addRow(const ZylConstraintI* constraint, double lower, double upper,
                         double constant, std::vector<Term> terms) {
  auto& row = _rows.emplace_back(std::make_unique<Row>());
  row->constraint = constraint;
  row->lower = lower;
  row->upper = upper;
  row->constant = constant;
  row->terms = std::move(terms);
  return row.get();
}

void LinearStore::removeColumn(Column* column) {
  setValues(column, {}, false);
  column->gone = true;
  column->variable = nullptr;
  _anyGone = true;
}

void LinearStore::removeRow(Row* row) {
  row->gone = true;
  row->constraint = nullptr;
  _anyGone = true;
}

void LinearStore::setBounds(Column* column, double lower, double upper) {
  column->lower = lower;
  column->upper = upper;
  if (column->position >= 0) {
    _program->setColumnBounds(column->position, programLower(lower, column->integer),
                              programUpper(upper, column->integer));
  }
}

void LinearStore::setInteger(Column* column, bool integer) {
  column->integer = integer;
  if (column->position < 0) return;
  if (integer) {
    _program->setInteger(column->position);
  } else {
    _program->setContinuous(column->position);
  }
  setBounds(column, column->lower, column->upper);
}

void LinearStore::setCost(Column* column, double cost) {
  column->cost = cost;
  if (column->position >= 0) _program->setObjectiveCoefficient(column->position, cost);
}

void LinearStore::setBounds(Row* row, double lower, double upper) {
  row->lower = lower;
  row->upper = upper;
  if (row->position >= 0) {
    _program->setRowBounds(row->position, programLower(lower, false), programUpper(upper, false));
  }
}

double LinearStore::setCoef(Row* row, Column* column, double coef) {
  double before = 0.0;
  const auto term = std::find_if(row->terms.begin(), row->terms.end(),
                                 [=](const Term& t) { return t.column == column; });
  if (term != row->terms.end()) {
    before = term->coef;
    if (coef == 0.0) {
      row->terms.erase(term);
    } else {
      term->coef = coef;
    }
  } else if (coef != 0.0) {
    row->terms.push_back({column, coef});
  }
  if (row->position < 0 || before == coef) return before;
  if (column->position >= 0) {
    _program->modifyCoefficient(row->position, column->position, coef);
  } else {
    _pending.emplace_back(row, column);
  }
  return before;
}

void LinearStore::setValues(Column* column, const std::vector<double>& values, bool relaxed) {
  if (column->enumeration != nullptr) {
    for (Column* selector : column->enumeration->selectors) {
      selector->gone = true;
    }
    removeRow(column->enumeration->choice);
    removeRow(column->enumeration->link);
    column->enumeration.reset();
    _anyGone = true;
  }
  if (values.empty()) return;
  auto enumeration = std::make_unique<Enumeration>();
  std::vector<Term> choice;
  std::vector<Term> link{{column, -1.0}};
  for (const double value : values) {
    Column* selector = addColumn(nullptr, 0.0, 1.0, !relaxed);
    enumeration->selectors.push_back(selector);
    choice.push_back({selector, 1.0});
    if (value != 0.0) link.push_back({selector, value});
  }
  enumeration->choice = addRow(nullptr, 1.0, 1.0, 0.0, std::move(choice));
  enumeration->link = addRow(nullptr, 0.0, 0.0, 0.0, std::move(link));
  column->enumeration = std::move(enumeration);
}

bool LinearStore::hasIntegers() const noexcept {
  return std::any_of(_columns.begin(), _columns.end(),
                     [](const auto& column) { return !column->gone && column->integer; });
}

bool LinearStore::hasCrossedBounds() const noexcept {
  const auto crossed = [](double lower, double upper) {
    // A bound at the wrong infinity leaves nothing either.
    return lower > upper || lower > ZylNumMax || upper < -ZylNumMax;
  };
  for (const auto& column : _columns) {
    const double lower = programLower(column->lower, column->integer);
    const double upper = programUpper(column->upper, column->integer);
    if (lower > upper || lower >= COIN_DBL_MAX || upper <= -COIN_DBL_MAX) return true;
  }
  return std::any_of(_rows.begin(), _rows.end(),
                     [&](const auto& row) { return crossed(row->lower, row->upper); });
}

// --- synchronisation -----------------------------------------------------------------------------

void LinearStore::dropGone() {
  if (!_anyGone) return;
  _anyGone = false;
  std::erase_if(_pending, [](const auto& p) { return p.first->gone || p.second->gone; });
  std::vector<int> columns;
  std::vector<int> rows;
  for (const auto& column : _columns) {
    if (column->gone && column->position >= 0) columns.push_back(column->position);
  }
  for (const auto& row : _rows) {
    if (row->gone && row->position >= 0) rows.push_back(row->position);
    if (row->gone) continue;
    std::erase_if(row->terms, [](const Term& term) { return term.column->gone; });
  }
  if (!rows.empty()) _program->deleteRows(sizeOf(rows), rows.data());
  if (!columns.empty()) _program->deleteColumns(sizeOf(columns), columns.data());
  const auto isGone = [](const auto& part) { return part->gone; };
  std::erase_if(_columns, isGone);
  std::erase_if(_rows, isGone);
  int position = 0;
  for (const auto& column : _columns) {
    if (column->position >= 0) column->position = position++;
  }
  position = 0;
  for (const auto& row : _rows) {
    if (row->position >= 0) row->position = position++;
  }
}

void LinearStore::synchronise() {
  dropGone();
  // What is new stands behind what has a position.
  const int oldColumns = _program->numberColumns();
  const int oldRows = _program->numberRows();
  for (int i = oldColumns; i < sizeOf(_columns); ++i)
    _columns[static_cast<std::size_t>(i)]->position = i;
  if (oldColumns == 0 && oldRows == 0) {
    loadAll();
  } else {
    appendColumns(oldColumns);
    writePending();
    appendRows(oldRows);
  }
  _pending.clear();
  for (int i = oldRows; i < sizeOf(_rows); ++i) _rows[static_cast<std::size_t>(i)]->position = i;
  for (int i = oldColumns; i < sizeOf(_columns); ++i) {
    if (_columns[static_cast<std::size_t>(i)]->integer) _program->setInteger(i);
  }
}

void LinearStore::rebuild() {
  _program = std::make_unique<ClpSimplex>();
  _program->setLogLevel(0);
  loadAll();
  for (int i = 0; i < sizeOf(_columns); ++i) {
    if (_columns[static_cast<std::size_t>(i)]->integer) _program->setInteger(i);
  }
}

void LinearStore::loadAll() {
  Compressed rows;
  for (const auto& row : _rows) rows.add(*row);
  std::vector<double> lower;
  std::vector<double> upper;
  std::vector<double> costs;
  for (const auto& column : _columns) {
    lower.push_back(programLower(column->lower, column->integer));
    upper.push_back(programUpper(column->upper, column->integer));
    costs.push_back(column->cost);
  }
  const CoinPackedMatrix matrix(
      false, sizeOf(_columns), sizeOf(_rows), static_cast<CoinBigIndex>(rows.elements.size()),
      rows.elements.data(), rows.columns.data(), rows.starts.data(), nullptr);
  _program->loadProblem(matrix, lower.data(), upper.data(), costs.data(), rows.lower.data(),
                        rows.upper.data());
}

void LinearStore::appendColumns(int first) {
  const int count = sizeOf(_columns) - first;
  if (count <= 0) return;
  std::vector<double> lower;
  std::vector<double> upper;
  std::vector<double> costs;
  for (std::size_t i = static_cast<std::size_t>(first); i < _columns.size(); ++i) {
    const Column& column = *_columns[i];
    lower.push_back(programLower(column.lower, column.integer));
    upper.push_back(programUpper(column.upper, column.integer));
    costs.push_back(column.cost);
  }
  const std::vector<CoinBigIndex> starts(static_cast<std::size_t>(count) + 1, 0);
  const int index = 0;
  const double element = 0.0;
  _program->addColumns(count, lower.data(), upper.data(), costs.data(), starts.data(), &index,
                       &element);
}

void LinearStore::writePending() {
  for (const auto& [row, column] : _pending) {
    for (const Term& term : row->terms) {
      if (term.column != column) continue;
      _program->modifyCoefficient(row->position, column->position, term.coef);
    }
  }
}

void LinearStore::appendRows(int first) {
  if (sizeOf(_rows) <= first) return;
  Compressed rows;
  for (std::size_t i = static_cast<std::size_t>(first); i < _rows.size(); ++i) rows.add(*_rows[i]);
  if (rows.columns.empty()) {
    rows.columns.push_back(0);
    rows.elements.push_back(0.0);
  }
  _program->addRows(sizeOf(rows.lower), rows.lower.data(), rows.upper.data(), rows.starts.data(),
                    rows.columns.data(), rows.elements.data());
}

}  // namespace zyl::cbc
