// Points of the model, and whether they keep what it asks.

#ifndef ZYL_CBC_POINT_H
#define ZYL_CBC_POINT_H

#include <vector>

#include "linear_store.h"

namespace zyl::cbc {

/// A value for each column of a store, by position.
using Point = std::vector<double>;

/// The point that stands for what a solver answered: each value within the bounds of its column,
/// and integral where `rounded` is set and the column is.
///
/// Solvers work to tolerances of their own scaling, so what they answer is a proposal. Everything
/// that the engine tells of a solution (status, objective, values) is computed from the settled
/// point.
Point settled(const LinearStore& store, const double* values, bool rounded);

/// By how much a row may be missed, apart from the rounding errors of large terms.
inline constexpr double RowTolerance = 1e-6;
/// What rounding errors may add, relative to the largest term.
inline constexpr double RelativeRowTolerance = 1e-11;

/// Whether a settled point keeps every row, within both tolerances.
bool holds(const LinearStore& store, const Point& point, double tolerance = RowTolerance);

/// The minimised objective, without its constant.
double costOf(const LinearStore& store, const Point& point);

}  // namespace zyl::cbc

#endif
