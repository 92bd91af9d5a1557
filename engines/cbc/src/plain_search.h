// A search for programs that are small, or that the tree search has failed on.

#ifndef ZYL_CBC_PLAIN_SEARCH_H
#define ZYL_CBC_PLAIN_SEARCH_H

#include "point.h"
#include "search.h"

namespace zyl::cbc {

/// Depth-first branching without cuts, heuristics and tolerance of integrality, on linear programs
/// solved with care: slow, and right where coefficients lie many orders apart.
///
/// Offers every point that it finds. True if it came to its end, so that nothing is better than
/// `best`; false if it was stopped, or gave up after `maxNodes`.
bool searchPlainly(Task& task, long maxNodes, Incumbent* best);

}  // namespace zyl::cbc

#endif
