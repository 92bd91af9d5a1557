// What a solver proposes, as the point that clients will read.

#include "point.h"

#include <algorithm>
#include <cmath>

namespace zyl::cbc {

namespace {

double valueOf(const Point& point, const Column& column) {
  return point[static_cast<std::size_t>(column.position)];
}

// Crossed bounds never come here: they are infeasible before anything is solved.
double withinBounds(const Column& column, double value) {
  const double lower = programLower(column.lower, column.integer);
  const double upper = programUpper(column.upper, column.integer);
  return std::min(std::max(value, lower), upper);
}

bool holds(const Row& row, const Point& point, double absolute) {
  double activity = 0.0;
  double largest = 0.0;
  for (const Term& term : row.terms) {
    const double part = term.coef * valueOf(point, *term.column);
    activity += part;
    largest = std::max(largest, std::fabs(part));
  }
  const double tolerance = absolute + RelativeRowTolerance * largest;
  return activity >= row.lower - tolerance && activity <= row.upper + tolerance;
}

}  // namespace

Point settled(const LinearStore& store, const double* values, bool rounded) {
  Point point(values, values + store.columns().size());
  for (const auto& column : store.columns()) {
    double& value = point[static_cast<std::size_t>(column->position)];
    if (rounded && column->integer) value = std::round(value);
    value = withinBounds(*column, value);
  }
  return point;
}

bool holds(const LinearStore& store, const Point& point, double tolerance) {
  return std::all_of(store.rows().begin(), store.rows().end(),
                     [&](const auto& row) { return holds(*row, point, tolerance); });
}

double costOf(const LinearStore& store, const Point& point) {
  double sum = 0.0;
  for (const auto& column : store.columns()) {
    if (column->cost != 0.0) sum += column->cost * valueOf(point, *column);
  }
  return sum;
}

}  // namespace zyl::cbc
