// Branch and cut by the solver's own tree search.

#ifndef ZYL_CBC_TREE_SEARCH_H
#define ZYL_CBC_TREE_SEARCH_H

#include "search.h"

class OsiClpSolverInterface;

namespace zyl::cbc {

/// What a tree search left.
struct Tree {
  bool isFinished = false;      // nothing is better than what was found, or known before
  bool isDoubtful = false;      // solutions were met that turned out to be none
  double bound = -ZylInfinity;  // of the minimisation
  long nodes = 0;
  long iterations = 0;
};

/// Searches a program that has the columns of the task's store, and no points but those of the
/// store. Offers the points that it finds.
Tree searchTree(Task& task, const OsiClpSolverInterface& root, Incumbent* best);

}  // namespace zyl::cbc

#endif
