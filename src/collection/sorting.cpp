// Sorts arrays of data, with a permutation that records what went where.

#include <functional>
#include <utility>

#include "vorlane/collection/data_collection.h"

namespace {

template <class Array>
void swapElements(const Array& array, long i, long j) {
  std::swap(array[i], array[j]);
}

void requireInside(long low, long high, long size) {
  if (low < 0 || high >= size) {
    throw ZylArrayError("ZylDataCollection::sort: the range to sort leaves the array");
  }
}

// Quicksort with two crossing indices (Hoare, 1961). `isBefore` stops on whatever cannot be
// compared, so a NaN never lets an index run out of the range.
template <class Array, class Before>
void quicksort(const Array& array, long low, long high, const ZylIntArray& permutation,
               Before isBefore) {
  // The parts do not touch each other, so the shorter one is done first: the depth stays
  // logarithmic, whatever the values are.
  while (low < high) {
    const auto pivot = array[low + (high - low) / 2];
    long i = low;
    long j = high;
    while (i <= j) {
      while (isBefore(array[i], pivot)) ++i;
      while (isBefore(pivot, array[j])) --j;
      if (i > j) break;
      swapElements(array, i, j);
      if (permutation.getImpl() != nullptr) swapElements(permutation, i, j);
      ++i;
      --j;
    }
    if (high - i < j - low) {
      quicksort(array, i, high, permutation, isBefore);
      high = j;
    } else {
      quicksort(array, low, j, permutation, isBefore);
      low = i;
    }
  }
}

template <class Array, class Before>
void sortRange(const Array& array, long low, long high, const ZylIntArray& permutation,
               Before isBefore) {
  const long size = array.getSize();
  if (low >= high) return;
  requireInside(low, high, size);
  if (permutation.getImpl() != nullptr) requireInside(low, high, permutation.getSize());
  quicksort(array, low, high, permutation, isBefore);
}

}  // namespace

void ZylDataCollectionI::sortAsc(ZylIntArray array) { sortAsc(array, 0, array.getSize() - 1); }
void ZylDataCollectionI::sortAsc(ZylIntArray array, long low, long high, ZylIntArray permutation) {
  sortRange(array, low, high, permutation, std::less<>());
}
void ZylDataCollectionI::sortAsc(ZylNumArray array) { sortAsc(array, 0, array.getSize() - 1); }
void ZylDataCollectionI::sortAsc(ZylNumArray array, long low, long high, ZylIntArray permutation) {
  sortRange(array, low, high, permutation, std::less<>());
}
void ZylDataCollectionI::sortDesc(ZylIntArray array) { sortDesc(array, 0, array.getSize() - 1); }
void ZylDataCollectionI::sortDesc(ZylIntArray array, long low, long high, ZylIntArray permutation) {
  sortRange(array, low, high, permutation, std::greater<>());
}
void ZylDataCollectionI::sortDesc(ZylNumArray array) { sortDesc(array, 0, array.getSize() - 1); }
void ZylDataCollectionI::sortDesc(ZylNumArray array, long low, long high, ZylIntArray permutation) {
  sortRange(array, low, high, permutation, std::greater<>());
}
