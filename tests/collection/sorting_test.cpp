// Sorting of arrays, and the mark of a sorted collection.

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include "support/support.h"
#include "vorlane/collection/range.h"
#include "vorlane/collection/sort_set_property.h"

namespace zyl::test {
namespace {

class ZylSorting : public EnvTest {};

TEST_F(ZylSorting, AgreesWithTheLibraryAndTracksElements) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const long size = static_cast<long>(random() % 200);
    const long low = size > 0 ? static_cast<long>(random() % static_cast<unsigned>(size)) : 0;
    const long high = size > 0 ? low + static_cast<long>(random()) % (size - low) : -1;
    ZylIntArray values(env, size);
    ZylIntArray order(env, size);
    ZylNumArray nums(env, size);
    for (long i = 0; i < size; ++i) {
      values[i] = static_cast<long>(random() % 50);
      nums[i] = static_cast<double>(values[i]) / 4;
      order[i] = i;
    }
    const ZylIntArray before = values.copy(env);
    std::vector<long> expected;
    for (long i = 0; i < size; ++i) expected.push_back(values[i]);
    std::sort(expected.begin() + low, expected.begin() + high + 1);
    ZylDataCollectionI::sortAsc(values, low, high, order);
    for (long i = 0; i < size; ++i) {
      EXPECT_EQ(values[i], expected[static_cast<std::size_t>(i)]);
      EXPECT_EQ(values[i], before[order[i]]);
    }
    ZylDataCollectionI::sortDesc(nums);
    for (long i = 1; i < size; ++i) EXPECT_GE(nums[i - 1], nums[i]);
  }
}

TEST_F(ZylSorting, BordersAndFailures) {
  ZylIntArray values(env, 4, 3, 1, 2, 0);
  ZylDataCollection::sort(values, 1, 2);
  EXPECT_EQ(values[1], 1);
  ZylDataCollection::sort(values, 3, 1);
  EXPECT_EQ(values[0], 3);
  EXPECT_THROW(ZylDataCollection::sort(values, 0, 4), ZylArrayError);
  EXPECT_THROW(ZylDataCollection::sort(values, -1, 2), ZylArrayError);
  EXPECT_THROW(ZylDataCollectionI::sortAsc(values, 0, 3, ZylIntArray(env, 3)), ZylArrayError);
  EXPECT_EQ(values[0], 3);
  EXPECT_THROW(ZylDataCollection::sort(ZylNumArray()), ZylEmptyHandleException);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (long place = 0; place < 5; ++place) {
    ZylNumArray nums(env, 5, 4.0, 3.0, 2.0, 1.0, 0.0);
    nums[place] = nan;
    ZylDataCollection::sort(nums);  // Any order will do, so that it ends inside the array.
  }
}

TEST_F(ZylSorting, APropertyMarksOneCollection) {
  ZylGenAlloc* alloc = impl->getGenAlloc();
  const ZylIntRange range(env, 0, 1);
  const ZylIntRange other(env, 0, 1);
  range.addProperty(ZylNamedProperty(new (alloc) ZylSortSetPropertyI(alloc)));
  EXPECT_TRUE(range.hasProperty("SortSet"));
  const ZylNamedProperty mark = range.getProperty(ZylSortSetPropertyI::SortSet);
  EXPECT_TRUE(DisplaysAs(mark, "SortSet"));
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { other.addClonedProperty(mark); },
                                        "can not clone this property"));
  EXPECT_FALSE(other.hasProperty("SortSet"));
}

}  // namespace
}  // namespace zyl::test
