// Iterators over the values of collections.

#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "collection/samples.h"
#include "support/support.h"

namespace zyl::test {
namespace {

class ZylIterators : public EnvTest {
 protected:
  template <class Set>
  Set* set(std::initializer_list<typename Set::Element> values) {
    return new (impl) Set(impl, values);
  }
};

/// What is left of an iteration.
template <class Iterator>
auto rest(Iterator& iterator) {
  std::vector<typename Iterator::ElementType> values;
  for (; iterator.isOk(); iterator.next()) values.push_back(*iterator);
  return values;
}

using Longs = std::vector<long>;

TEST_F(ZylIterators, WindowSkipsOnBothSides) {
  ZylIntDefaultDataIterator it(nullptr, set<IntSample>({5, 9, 1, 3}));
  EXPECT_FALSE(it.isOk());
  it.reset(3, 5, 0);
  EXPECT_EQ(rest(it), (Longs{5, 3}));
  it.checkMinMax(4, 100);
  EXPECT_EQ(it.getMin(), 4);
  EXPECT_EQ(it.getMax(), 5);
  it.reset(0);
  EXPECT_EQ(rest(it), (Longs{5}));
  it.checkMinMax(6, 9);
  EXPECT_FALSE(it.isOk());
  it.reset(ZylIntMin - 5, ZylIntMax + 5, 0);
  EXPECT_EQ(it.getMin(), ZylIntMin);
  EXPECT_EQ(it.getMax(), ZylIntMax);
  EXPECT_EQ(rest(it), (Longs{5, 9, 1, 3}));
}

TEST_F(ZylIterators, AgreeWithAFilter) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto number = [&random] { return static_cast<long>(random() % 20) - 10; };
    const long min = number();
    const long max = number();
    IntSample ints(impl, {});
    NumSample nums(impl, {});
    Longs expected;
    for (auto i = random() % 30; i > 0; --i) {
      const long value = number();
      ints.getArray().add(value);
      nums.getArray().add(static_cast<double>(value));
      if (min <= value && value <= max) expected.push_back(value);
    }
    ZylIntDefaultDataIterator it(nullptr, &ints);
    it.reset(min, max, 0);
    EXPECT_EQ(rest(it), expected);
    ZylNumDefaultDataIterator num(nullptr, &nums);
    num.reset(static_cast<double>(min), static_cast<double>(max), 0);
    EXPECT_EQ(rest(num), std::vector<double>(expected.begin(), expected.end()));
    EXPECT_EQ(it.recomputeMin(), ints.getLB());
    EXPECT_EQ(it.recomputeMax(), ints.getUB());
    EXPECT_EQ(num.recomputeLB(), nums.getLB());
    EXPECT_EQ(num.recomputeUB(), nums.getUB());
  }
}

TEST_F(ZylIterators, WithoutElementsOrCollection) {
  ZylIntDefaultDataIterator ints(nullptr, set<IntSample>({}));
  ints.reset(0);
  EXPECT_FALSE(ints.isOk());
  EXPECT_EQ(ints.recomputeMin(), ZylIntMax);
  EXPECT_EQ(ints.recomputeMax(), ZylIntMin);
  ints.setCollection(nullptr);
  EXPECT_EQ(ints.recomputeMin(), ZylIntMin);
  EXPECT_EQ(ints.recomputeMax(), ZylIntMax);
  ZylNumDefaultDataIterator nums(impl->getGenAlloc(), nullptr);
  EXPECT_EQ(nums.recomputeLB(), -ZylInfinity);
  ZylAnyDefaultDataIterator anys(impl->getGenAlloc(), nullptr);
  ExpectEachRaises<ZylWrongUsage>({
      {"Using empty ZylIntCollection handle.", [&] { ints.next(); }},
      {"Using empty ZylNumCollection handle.", [&] { nums.next(); }},
      {"Using empty ZylAnyCollection handle2.", [&] { anys.next(); }},
      {"Collection is not of the correct type", [&] { ints.setCollection(set<NumSample>({1.0})); }},
  });
}

TEST_F(ZylIterators, ANaNIsInNoWindow) {
  ZylNumDefaultDataIterator it(
      nullptr, set<NumSample>({1.0, std::numeric_limits<double>::quiet_NaN(), -ZylInfinity}));
  it.reset(0);
  EXPECT_EQ(rest(it), (std::vector<double>{1.0, -ZylInfinity}));
}

TEST_F(ZylIterators, ObjectsFromAValueOn) {
  int a = 0;
  int b = 0;
  ZylAnyDefaultDataIterator it(nullptr, set<AnySample>({&a, &b, nullptr}));
  it.reset(0);
  EXPECT_EQ(rest(it), (std::vector<void*>{&a, &b, nullptr}));
  it.reset(&b, 0);
  EXPECT_EQ(rest(it), (std::vector<void*>{&b, nullptr}));
  it.reset(&it, 0);
  EXPECT_FALSE(it.isOk());
}

TEST_F(ZylIterators, EditsBetweenStepsAreSeen) {
  auto* ints = set<IntSample>({1, 2, 3, 4});
  ZylIntDefaultDataIterator it(nullptr, ints);
  it.reset(0);
  it.next();
  ints->getArray().remove(1, 3);
  EXPECT_FALSE(it.next());
  EXPECT_FALSE(it.next());
}

TEST_F(ZylIterators, OverRanges) {
  ZylIntRange range(env, 3, 6);
  ZylIntRange::Iterator it(range);
  EXPECT_EQ(rest(it), (Longs{3, 4, 5, 6}));
  EXPECT_FALSE(it.next());
  it.reset(5, 100, 0);
  EXPECT_EQ(rest(it), (Longs{5, 6}));
  it.reset(7, 9, 0);
  EXPECT_FALSE(it.isOk());
  EXPECT_FALSE(it.next());
  range.getImpl()->setUB(3);
  it.reset(0);
  EXPECT_EQ(rest(it), (Longs{3}));
  EXPECT_EQ(it.recomputeMax(), 3);
  ZylIntRange::Iterator crossed(ZylIntRange(env, 2, 1));
  EXPECT_FALSE(crossed.isOk());
  ZylIntRange::Iterator top(
      ZylIntRange(env, std::numeric_limits<long>::max() - 1, std::numeric_limits<long>::max()));
  EXPECT_EQ(rest(top).size(), 2U);
}

TEST_F(ZylIterators, RangesWithoutABoundEndAtOnce) {
  const ZylIntRange widest(env);
  ZylIntRange::Iterator it(widest);
  EXPECT_EQ(rest(it), (Longs{ZylIntMin}));
  ZylIntRange::Iterator half(ZylIntRange(env, 4, ZylIntMax));
  EXPECT_EQ(rest(half), (Longs{4}));
  // A window makes them finite.
  half.reset(5, 7, 0);
  EXPECT_EQ(rest(half), (Longs{5, 6, 7}));
  it.setCollection(nullptr);
  it.reset(1, 2, 0);
  EXPECT_FALSE(it.isOk());
  EXPECT_EQ(it.recomputeMin(), ZylIntMin);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { it.setCollection(set<IntSample>({1})); },
                                        "Collection is not of the correct type"));
}

TEST_F(ZylIterators, AreMadeInAMemoryManagerOrInTheEnvironment) {
  const ZylIntRange range(env, 1, 2);
  EnvFixture other;
  const std::unique_ptr<ZylDataIterator> here(range.getImpl()->iterator(nullptr));
  const std::unique_ptr<ZylDataIterator> there(
      range.getImpl()->iterator(other.impl->getGenAlloc()));
  EXPECT_EQ(here->getEnv(), impl);
  EXPECT_EQ(there->getEnv(), other.impl);
  EXPECT_TRUE(there->isOk() && there->next());
  EXPECT_FALSE(there->next());
}

TEST_F(ZylIterators, DummiesStandOnNothing) {
  ZylDummyIntDataIterator ints(impl->getGenAlloc());
  ints.reset(1, 5, 0);
  EXPECT_FALSE(ints.isOk() || ints.next());
  EXPECT_EQ(ints.getMax(), 5);
  EXPECT_EQ(ints.recomputeMax(), ZylIntMax);
}

}  // namespace
}  // namespace zyl::test
