// The model as the engine keeps it: rows and columns, and the linear program made of them.

#ifndef ZYL_CBC_LINEAR_STORE_H
#define ZYL_CBC_LINEAR_STORE_H

#include <memory>
#include <utility>
#include <vector>

class ClpSimplex;
class ZylConstraintI;
class ZylConversionI;
class ZylNumVarI;

namespace zyl::cbc {

struct Enumeration;

/// A variable, or a selector of an enumerated one (then without `variable`).
struct Column {
  const ZylNumVarI* variable = nullptr;
  const ZylConversionI* conversion = nullptr;  // the last one extracted that lists the variable
  double lower = 0.0;
  double upper = 0.0;
  double cost = 0.0;  // of the minimisation
  bool integer = false;
  bool gone = false;
  int position = -1;  // in the linear program; -1 until the next synchronisation
  double value = 0.0;
  double reducedCost = 0.0;
  bool hasValue = false;
  std::unique_ptr<Enumeration> enumeration;
};

struct Term {
  Column* column;
  double coef;
};

/// lower <= sum of terms <= upper.
struct Row {
  const ZylConstraintI* constraint = nullptr;
  double lower = 0.0;
  double upper = 0.0;
  double constant = 0.0;    // of the expression: what the bounds of the model are moved by
  std::vector<Term> terms;  // each column once, no zeros
  bool gone = false;
  int position = -1;
  bool isSolved = false;  // whether it took part in the last solve
  double dual = 0.0;
};

/// x = sum of value_k * selector_k, sum of selector_k = 1.
struct Enumeration {
  std::vector<Column*> selectors;
  Row* choice = nullptr;
  Row* link = nullptr;
};

/// Rows and columns in order of creation, with the linear program behind them.
///
/// Invariants after `synchronise`: nothing in the lists is gone; the position of each is its index.
/// Between synchronisations, edits of what has a position are written through at once; what joins
/// or leaves is gathered, so that n removals cost one pass.
class LinearStore {
 public:
  LinearStore();
  ~LinearStore();
  LinearStore(const LinearStore&) = delete;
  LinearStore& operator=(const LinearStore&) = delete;

  Column* addColumn(const ZylNumVarI* variable, double lower, double upper, bool integer);
  Row* addRow(const ZylConstraintI* constraint, double lower, double upper, double constant,
              std::vector<Term> terms);
  void removeColumn(Column* column);
  void removeRow(Row* row);
  void setBounds(Column* column, double lower, double upper);
  void setInteger(Column* column, bool integer);
  void setCost(Column* column, double cost);
  void setBounds(Row* row, double lower, double upper);
  /// Sets the coefficient of a column in a row; 0 drops the term. Returns what it was.
  double setCoef(Row* row, Column* column, double coef);
  /// Makes the column take one of the values only; an empty list frees it again.
  void setValues(Column* column, const std::vector<double>& values, bool relaxed);
  void clear();

  /// Brings the linear program up to date.
  void synchronise();
  /// Makes the linear program anew from rows and columns that are up to date, without the history
  /// that edits have left in it.
  void rebuild();
  ClpSimplex& program() noexcept { return *_program; }
  const ClpSimplex& program() const noexcept { return *_program; }
  const std::vector<std::unique_ptr<Column>>& columns() const noexcept { return _columns; }
  const std::vector<std::unique_ptr<Row>>& rows() const noexcept { return _rows; }
  bool hasIntegers() const noexcept;
  /// Whether bounds alone rule every point out.
  bool hasCrossedBounds() const noexcept;

 private:
  void dropGone();
  void loadAll();
  void appendColumns(int first);
  void appendRows(int first);
  void writePending();

  std::unique_ptr<ClpSimplex> _program;
  std::vector<std::unique_ptr<Column>> _columns;
  std::vector<std::unique_ptr<Row>> _rows;
  // Coefficients of new columns in rows that have a position already.
  std::vector<std::pair<Row*, Column*>> _pending;
  bool _anyGone = false;
};

/// Bounds as the linear program wants them: what is infinite becomes its own infinity, integer
/// columns get integral ones.
double programLower(double bound, bool integer) noexcept;
double programUpper(double bound, bool integer) noexcept;

}  // namespace zyl::cbc

#endif
