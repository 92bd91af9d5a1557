// A stronger form of a program, for the tree search.

#ifndef ZYL_CBC_TIGHTENING_H
#define ZYL_CBC_TIGHTENING_H

#include <memory>

#include "linear_store.h"

namespace zyl::cbc {

/// A copy of the store's program whose relaxation lies closer to its integer points.
///
/// It has the same columns, and fewer rows. Of the best points of the store it keeps at least one,
/// and no point of it is none of the store. What it cannot improve safely stays as it is, also
/// where it finds that there are no points at all.
std::unique_ptr<ClpSimplex> tightened(const LinearStore& store);

}  // namespace zyl::cbc

#endif
