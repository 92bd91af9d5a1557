// Ranges of numbers as data.

#include "vorlane/collection/range.h"

#include <limits>

#include "support/support.h"

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
  ExpectEachRaises<ZylWrongUsage>({
      {"ZylIntRangeI::getValue(ZylInt index): index is negative", [&] { range->getValue(-1); }},
      {"ZylIntRangeI::getValue(ZylInt index): index is out of bound", [&] { range->getValue(6); }},
  });
  EXPECT_TRUE(range->contains(-2) && range->contains(3));
  EXPECT_LE(ints(3, 2)->getSize(), 0);
  EXPECT_FALSE(ints(3, 2)->contains(3));
  EXPECT_EQ(ints(ZylIntMin, 0)->getSize(), ZylIntMax);
  EXPECT_EQ(ints(0, ZylIntMax)->getSize(), ZylIntMax);
  EXPECT_EQ(ints(3, 3)->getSize(), 1);
  EXPECT_EQ(ints(5, ZylIntMin)->getSize(), 0);
  EXPECT_EQ(ZylIntRangeI(impl).getSize(), ZylIntMax);
  EXPECT_TRUE(DisplaysAs(range, "[-2 ,3]"));
  EXPECT_THROW(static_cast<void>(range->getArray()), ZylNotImplemented);
}

TEST_F(ZylRanges, Steps) {
  const ZylIntRange range(env, 3, 6);
  EXPECT_EQ(range.getFirst(), 3);
  EXPECT_EQ(range.getLast(), 6);
  EXPECT_EQ(range.getNext(3, 3), 6);
  EXPECT_EQ(range.getNext(6, -3), 3);
  EXPECT_EQ(range.getPrevious(6), 5);
  // Round the circle, against the residue.
  for (long n = -13; n <= 13; ++n) {
    for (long v = 3; v <= 6; ++v) {
      EXPECT_EQ(range.getNextC(v, n), 3 + (v - 3 + n + 400) % 4) << v << " " << n;
      EXPECT_EQ(range.getPreviousC(v, n), 3 + (v - 3 - n + 400) % 4) << v << " " << n;
    }
  }
  ExpectEachRaises<ZylCollectionElementNotFoundException>({
      {"next(): the element is not in the set: 2", [&] { range.getNext(2); }},
      {"prevc(): the element is not in the set: 7", [&] { range.getPreviousC(7); }},
      {"nextc(): the element is not in the set: 1", [&] { ints(2, 1)->getNextC(1, 1); }},
  });
  constexpr long Most = std::numeric_limits<long>::max();
  constexpr long Least = std::numeric_limits<long>::min();
  ExpectEachRaises<ZylOperatorNextElementNotFoundException>({
      {"next(): the step leaves the set: 6", [&] { range.getNext(6); }},
      {"prev(): the step leaves the set: 3", [&] { range.getPrevious(3); }},
      {"next(): the step leaves the set: 5", [&] { range.getNext(5, Most); }},
      {"prev(): the step leaves the set: 5", [&] { range.getPrevious(5, Least); }},
  });
  // Without bounds a value's position lies beyond the size, and a step is good all the same.
  const ZylIntRange widest(env);
  EXPECT_EQ(widest.getNext(5), 6);
  EXPECT_EQ(widest.getNextC(ZylIntMax), ZylIntMin);
  const ZylIntRange all(env, Least, Most);
  EXPECT_EQ(all.getNextC(Most, 1), Least);
  EXPECT_EQ(all.getPreviousC(Least, 1), Most);
  EXPECT_EQ(all.getNextC(0, Least), Least);
}

// Keys of domains stay small: environment, extension, lock and two bounds behind the table of
// virtual operations.
static_assert(sizeof(ZylIntRangeI) == 6 * sizeof(void*) &&
              sizeof(ZylNumRangeI) == 6 * sizeof(void*));

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

TEST_F(ZylRanges, Copies) {
  EnvFixture other;
  ZylIntRangeI* range = ints(1, 4);
  ZylIntRangeI* clone = range->makeClone(other.impl);
  EXPECT_EQ(clone->getEnv(), other.impl);
  EXPECT_EQ(clone->getUB(), 4);
  const ZylNumRangeI nums(impl, 0.5, 2.5);
  ZylNumRangeI* copy = nums.copy();
  copy->setLB(1.0);
  EXPECT_EQ(nums.getLB(), 0.5);
  EXPECT_EQ(copy->getUB(), 2.5);
  delete copy;
  range->setLockable(1);
  EXPECT_FALSE(range->copy()->isImmutable());
}

TEST_F(ZylRanges, Handles) {
  ZylIntRange range(env, 1, 2);
  range.end();
  range.end();
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"ZylIntRange: Using empty handle", [&] { range.getLB(); }},
       {"ZylIntRange: Using empty handle", [&] { ZylIntRange::Iterator it(range); }},
       {"ZylNumRange: Using empty handle", [] { ZylNumRange().getUB(); }}});
  ExpectEachRaises<ZylEmptyHandleException>(
      "Using empty ZylEnv handle.",
      {[] { ZylIntRange none(ZylEnv(nullptr)); }, [] { ZylIntRange none(ZylEnv(nullptr), 0, 1); },
       [] { ZylNumRange none(ZylEnv(nullptr), 0.0, 1.0); }});
}

}  // namespace
}  // namespace zyl::test
