// The mark of a sorted collection.

#include "vorlane/collection/sort_set_property.h"

#include <gtest/gtest.h>

#include "support/support.h"
#include "vorlane/collection/range.h"

namespace zyl::test {
namespace {

TEST(ZylSortSetProperty, MarksOneCollection) {
  EnvFixture fixture;
  ZylGenAlloc* alloc = fixture->getGenAlloc();
  const ZylIntRange range(fixture.env, 0, 1);
  const ZylIntRange other(fixture.env, 0, 1);
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
