// Three steps, repeated while they find anything:
//   - bounds of integer columns follow from what the others leave in a row;
//   - in a row with one side, a coefficient larger than what it takes to keep the row shrinks to
//     that (Savelsbergh, 1994): 2534 x + ... >= 200 says no more than 200 x + ... >= 200;
//   - a column that no row and no cost wants away from a bound is fixed there.
//
// The solver's own preprocessing does more, but has been seen to lose the optimum of small models.
// Here every step leaves room for the rounding errors that a point may have in the store's eyes.

#include "tightening.h"

#include <algorithm>
#include <cmath>

#include <ClpSimplex.hpp>

#include "point.h"
#include "vorlane/env/types.h"

namespace zyl::cbc {

namespace {

constexpr int MaxPasses = 10;
// By how much a value may miss an integer and still mean it.
constexpr double IntegralityTolerance = 1e-9;
// Smaller changes and coefficients gain nothing that rounding errors would not take back.
constexpr double LeastChange = 1e-6;
// Beyond this the sums of a row have rounding errors of its tolerance.
constexpr double LargestActivity = 1e9;

struct Interval {
  double lower;
  double upper;
  bool isFixed() const { return lower >= upper; }
};

bool isFinite(double bound) { return std::fabs(bound) < COIN_DBL_MAX; }

// A sum of which some parts may be infinite: those are counted.
struct Sum {
  double finite = 0.0;
  int infinite = 0;

  void add(double coef, double bound, int count) {
    if (isFinite(bound)) {
      finite += count * coef * bound;
    } else {
      infinite += count;
    }
  }
  bool isUsable() const { return infinite == 0 && std::fabs(finite) < LargestActivity; }
  // Without one of its parts.
  Sum without(double coef, double bound) const {
    Sum rest = *this;
    rest.add(coef, bound, -1);
    return rest;
  }
};

class Tightening {
 public:
  explicit Tightening(const LinearStore& store) : _store(store) {
    for (const auto& column : store.columns()) {
      _bounds.push_back({programLower(column->lower, column->integer),
                         programUpper(column->upper, column->integer)});
    }
    for (const auto& row : store.rows()) {
      _rows.push_back({row->position, programLower(row->lower, false),
                       programUpper(row->upper, false), row->terms, false});
    }
  }

  std::unique_ptr<ClpSimplex> program() {
    for (int pass = 0; pass < MaxPasses && !_isEmpty; ++pass) {
      _hasChanged = false;
      for (WorkRow& row : _rows) tighten(row);
      fixIdleColumns();
      if (!_hasChanged) break;
    }
    auto program = std::make_unique<ClpSimplex>(_store.program());
    if (!_isEmpty) write(program.get());
    return program;
  }

 private:
  struct WorkRow {
    int position;
    double lower;
    double upper;
    std::vector<Term> terms;
    bool isChanged;

    bool isGone() const { return !isFinite(lower) && !isFinite(upper); }
  };

  Interval& boundsOf(const Term& term) {
    return _bounds[static_cast<std::size_t>(term.column->position)];
  }

  // The bound of a term's column that makes the row least, or greatest.
  double least(const Term& term) {
    return term.coef > 0.0 ? boundsOf(term).lower : boundsOf(term).upper;
  }
  double greatest(const Term& term) {
    return term.coef > 0.0 ? boundsOf(term).upper : boundsOf(term).lower;
  }

  void tighten(WorkRow& row) {
    if (row.isGone()) return;
    Sum low;
    Sum high;
    double largest = 0.0;
    for (const Term& term : row.terms) {
      low.add(term.coef, least(term), 1);
      high.add(term.coef, greatest(term), 1);
      for (const double bound : {least(term), greatest(term)}) {
        if (isFinite(bound)) largest = std::max(largest, std::fabs(term.coef * bound));
      }
    }
    const double slack = RowTolerance + RelativeRowTolerance * largest;
    for (const Term& term : row.terms) {
      if (term.column->integer) narrow(row, term, slack, &low, &high);
      if (_isEmpty) return;
    }
    dropIdleSides(row, low, high);
    if (isFinite(row.lower) == isFinite(row.upper)) return;
    for (Term& term : row.terms) {
      if (!term.column->integer || boundsOf(term).isFixed()) continue;
      if (isFinite(row.lower)) {
        shrink(row, term, 1.0, &row.lower, &low);
      } else {
        shrink(row, term, -1.0, &row.upper, &high);
      }
    }
  }

  // Bounds of a column from what the row leaves to it.
  void narrow(const WorkRow& row, const Term& term, double slack, Sum* low, Sum* high) {
    const Interval before = boundsOf(term);
    const Sum lowRest = low->without(term.coef, least(term));
    const Sum highRest = high->without(term.coef, greatest(term));
    double atLeast = -COIN_DBL_MAX;  // of coefficient times value
    double atMost = COIN_DBL_MAX;
    if (isFinite(row.lower) && highRest.isUsable()) atLeast = row.lower - highRest.finite - slack;
    if (isFinite(row.upper) && lowRest.isUsable()) atMost = row.upper - lowRest.finite + slack;
    if (term.coef < 0.0) std::swap(atLeast, atMost);
    Interval after = before;
    if (isFinite(atLeast)) {
      after.lower = std::max(after.lower, std::ceil(atLeast / term.coef - IntegralityTolerance));
    }
    if (isFinite(atMost)) {
      after.upper = std::min(after.upper, std::floor(atMost / term.coef + IntegralityTolerance));
    }
    if (after.lower > after.upper) _isEmpty = true;
    if (after.lower <= before.lower && after.upper >= before.upper) return;
    boundsOf(term) = after;
    *low = lowRest;
    *high = highRest;
    low->add(term.coef, least(term), 1);
    high->add(term.coef, greatest(term), 1);
    _hasChanged = true;
  }

  // A side that every point within the bounds keeps is none.
  void dropIdleSides(WorkRow& row, const Sum& low, const Sum& high) {
    const bool lower = isFinite(row.lower) && low.isUsable() && low.finite >= row.lower;
    const bool upper = isFinite(row.upper) && high.isUsable() && high.finite <= row.upper;
    if (lower) row.lower = -COIN_DBL_MAX;
    if (upper) row.upper = COIN_DBL_MAX;
    row.isChanged |= lower || upper;
    _hasChanged |= lower || upper;
  }

  // `sign` times the row is at least `sign` times `side`, and at least `sign` times `extreme`. One
  // step of the column away from where it makes the row least may then keep the row by itself; what
  // the coefficient has beyond that is taken off.
  void shrink(WorkRow& row, Term& term, double sign, double* side, Sum* extreme) {
    if (!extreme->isUsable()) return;
    const double needed = sign * (*side - extreme->finite);
    const double size = std::fabs(term.coef);
    const double excess = size - needed;
    if (needed < LeastChange * std::max(1.0, size) || excess < LeastChange * size) return;
    const double change = term.coef > 0.0 ? -excess : excess;
    const Interval& bounds = boundsOf(term);
    const double at = sign * term.coef > 0.0 ? bounds.lower : bounds.upper;
    if (std::fabs(change * at) >= LargestActivity) return;
    term.coef += change;
    *side += change * at;
    extreme->finite += change * at;
    row.isChanged = true;
    _hasChanged = true;
  }

  void fixIdleColumns() {
    struct Locks {
      bool down = false;
      bool up = false;
    };
    std::vector<Locks> locks(_bounds.size());
    for (const WorkRow& row : _rows) {
      for (const Term& term : row.terms) {
        Locks& lock = locks[static_cast<std::size_t>(term.column->position)];
        const bool rises = term.coef > 0.0;
        if (isFinite(row.lower)) (rises ? lock.down : lock.up) = true;
        if (isFinite(row.upper)) (rises ? lock.up : lock.down) = true;
      }
    }
    for (const auto& column : _store.columns()) {
      const auto position = static_cast<std::size_t>(column->position);
      Interval& bounds = _bounds[position];
      if (bounds.isFixed()) continue;
      if (column->cost >= 0.0 && !locks[position].down && isFinite(bounds.lower)) {
        bounds.upper = bounds.lower;
      } else if (column->cost <= 0.0 && !locks[position].up && isFinite(bounds.upper)) {
        bounds.lower = bounds.upper;
      } else {
        continue;
      }
      _hasChanged = true;
    }
  }

  void write(ClpSimplex* program) {
    for (std::size_t j = 0; j < _bounds.size(); ++j) {
      program->setColumnBounds(static_cast<int>(j), _bounds[j].lower, _bounds[j].upper);
    }
    std::vector<int> gone;
    for (const WorkRow& row : _rows) {
      if (row.isGone()) gone.push_back(row.position);
      if (row.isGone() || !row.isChanged) continue;
      program->setRowBounds(row.position, row.lower, row.upper);
      for (const Term& term : row.terms) {
        program->modifyCoefficient(row.position, term.column->position, term.coef);
      }
    }
    if (!gone.empty()) program->deleteRows(static_cast<int>(gone.size()), gone.data());
  }

  const LinearStore& _store;
  std::vector<Interval> _bounds;  // by position of the column
  std::vector<WorkRow> _rows;
  bool _hasChanged = false;
  bool _isEmpty = false;
};

}  // namespace

std::unique_ptr<ClpSimplex> tightened(const LinearStore& store) {
  return Tightening(store).program();
}

}  // namespace zyl::cbc
