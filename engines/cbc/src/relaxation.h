// The linear program without its integrality, solved and judged.

#ifndef ZYL_CBC_RELAXATION_H
#define ZYL_CBC_RELAXATION_H

#include <optional>
#include <utility>
#include <vector>

#include "point.h"
#include "search.h"

class ClpSimplex;

namespace zyl::cbc {

/// Solves the linear program of the store. Answers
///   - Optimal: the program holds an optimal basis with its solution;
///   - Infeasible, Unbounded: shown by a program that has an optimum in any case;
///   - Feasible: stopped, or optimality could not be shown;
///   - Unknown: stopped, or the numbers are beyond the solver.
/// `point` is set with Feasible, and with Optimal of a program without integers; it then holds.
ZylAlgorithm::Status solveRelaxation(Task& task, std::optional<Point>* point);

/// Solves a program so that what comes out keeps its rows as they stand, which takes longer;
/// returns the status of the simplex.
int solveCarefully(const Task& task, ClpSimplex& program);

/// Values for some integer columns.
using Fixing = std::vector<std::pair<const Column*, double>>;

/// The best point that holds and has these values, others than these having come out integral; none
/// if none is found.
std::optional<Point> completed(const Task& task, const Fixing& fixing);

}  // namespace zyl::cbc

#endif
