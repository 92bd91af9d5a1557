// Ranges of numbers as data.

#include "vorlane/collection/range.h"

#include <gtest/gtest.h>

#include <string>

#include "support/support.h"
#include "vorlane/expr.h"

namespace zyl::test {
namespace {

class ZylRanges : public EnvTest {
 protected:
  ZylIntRangeI* ints(long lower, long upper) { return new (impl) ZylIntRangeI(impl, lower, upper); }
};

TEST_F(ZylRanges, PositionsAndValues) {
  ZylIntRangeI* range = ints(-2, 3);
  EXPECT_EQ(range->getSize(), 6);
  for (long i = 0; i < 6; ++i) {
    EXPECT_EQ(range->getValue(i), i - 2);
    EXPECT_EQ(range->getIndex(i - 2), i);
  }
  EXPECT_EQ(range->getIndex(-3), -1);
  EXPECT_EQ(range->getIndex(4), -1);
  EXPECT_THROW(static_cast<void>(range->getValue(-1)), ZylWrongUsage);
  EXPECT_THROW(static_cast<void>(range->getValue(6)), ZylWrongUsage);
  EXPECT_TRUE(range->contains(-2) && range->contains(3));
  EXPECT_LE(ints(3, 2)->getSize(), 0);
  EXPECT_FALSE(ints(3, 2)->contains(3));
  EXPECT_EQ(ints(ZylIntMin, 0)->getSize(), ZylIntMax);
  EXPECT_EQ(ints(0, ZylIntMax)->getSize(), ZylIntMax);
}

TEST_F(ZylRanges, LocksNest) {
  ZylIntRangeI* range = ints(0, 5);
  range->setLockable(1);
  range->setLockable(1);
  EXPECT_THROW(range->setLB(1), ZylDataCollection::ImmutableException);
  range->setLockable(0);
  EXPECT_THROW(range->setUB(1), ZylDataCollection::ImmutableException);
  EXPECT_EQ(range->getUB(), 5);
  range->setLockable(0);
  range->setLB(1);
  EXPECT_EQ(range->getLB(), 1);
}

TEST_F(ZylRanges, KindsAndCopies) {
  ZylEnv other;
  ZylIntRangeI* range = ints(1, 4);
  auto* nums = new (impl) ZylNumRangeI(impl, 0.5, 2.5);
  EXPECT_EQ(range->getDataType(), ZylDataCollectionI::IntRange);
  EXPECT_EQ(nums->getDataType(), ZylDataCollectionI::NumRange);
  EXPECT_TRUE(range->isIntRange() && range->isIntCollection() && !range->isNumRange());
  EXPECT_TRUE(nums->isNumRange() && !nums->isIntCollection());
  EXPECT_TRUE(nums->isKvlRefCounted());
  ZylIntRangeI* clone = range->makeClone(other.getImpl());
  EXPECT_EQ(clone->getEnv(), other.getImpl());
  EXPECT_EQ(clone->getUB(), 4);
  ZylNumRangeI* copy = nums->copy();
  copy->setLB(1.0);
  EXPECT_EQ(nums->getLB(), 0.5);
  EXPECT_EQ(copy->getUB(), 2.5);
  range->setLockable(1);
  EXPECT_FALSE(range->copy()->isImmutable());
  for (ZylDataCollectionI* each :
       {static_cast<ZylDataCollectionI*>(copy), static_cast<ZylDataCollectionI*>(nums)}) {
    delete each;
  }
  other.end();
}

TEST_F(ZylRanges, OneDomainForLikeBounds) {
  EXPECT_EQ(ints(0, 7)->getSharedDomain(), ints(0, 7)->getSharedDomain());
  EXPECT_NE(ints(0, 7)->getSharedDomain(), ints(0, 8)->getSharedDomain());
  auto* halfLine = new (impl) ZylNumRangeI(impl, 0.0, ZylInfinity);
  EXPECT_EQ(halfLine->getSharedDomain(), nullptr);
  ZylNumVar x(ZylNumRange(env, -1.5, 2.5), "x");
  EXPECT_EQ(x.getType(), ZylNumVar::Float);
  EXPECT_EQ(x.getLB(), -1.5);
  ZylIntVar i(ZylIntRange(env, 2, 9), "i");
  EXPECT_EQ(i.getMax(), 9);
}

TEST_F(ZylRanges, Handles) {
  ZylIntRange range(env, 1, 2);
  range.setName("name");
  EXPECT_STREQ(range.getName(), "name");
  range.end();
  EXPECT_EQ(range.getImpl(), nullptr);
  range.end();
  EXPECT_TRUE(RaisesWith<ZylEmptyHandleException>([&] { range.getLB(); },
                                                  "ZylIntRange: Using empty handle"));
  EXPECT_TRUE(RaisesWith<ZylEmptyHandleException>([] { ZylNumRange().getUB(); },
                                                  "ZylNumRange: Using empty handle"));
}

}  // namespace
}  // namespace zyl::test
