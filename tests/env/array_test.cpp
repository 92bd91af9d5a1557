// Growable arrays, and the arrays of numbers and addresses.

#include "vorlane/env/array.h"

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "support/support.h"

namespace zyl::test {
namespace {

class ZylArray : public EnvTest {};

TEST_F(ZylArray, CapacityIsAPowerOfFour) {
  ZylIntArray array(env);
  ASSERT_EQ(array.getImpl()->getCapacity(), 1);
  array.add(7);
  EXPECT_EQ(array.getImpl()->getCapacity(), 1) << "the last element that fits moves nothing";
  array.add(8);
  EXPECT_EQ(array.getImpl()->getCapacity(), 4);
  for (long i = 2; i < 1000; ++i) array.add(i);
  EXPECT_EQ(array.getImpl()->getCapacity(), 1024);
  EXPECT_EQ(array.getImpl()->getPageSize(), 32);
  array.clear();
  EXPECT_EQ(array.getImpl()->getCapacity(), 0);
  EXPECT_EQ(array.getSize(), 0);
  array.add(3);
  EXPECT_EQ(array.getImpl()->getCapacity(), 1) << "begins again from what is wanted";
  EXPECT_EQ(array[0], 3);

  ZylIntArray five(env, 5);
  EXPECT_EQ(five.getImpl()->getCapacity(), 16);
  for (long i = 0; i < 5; ++i) EXPECT_EQ(five[i], 0);
}

TEST_F(ZylArray, AgreesWithVector) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const long start = static_cast<long>(random() % 20);
    ZylIntArray array(env, start);
    std::vector<long> model(static_cast<std::size_t>(start), 0);
    for (int step = 0; step < 400; ++step) {
      const long size = static_cast<long>(model.size());
      const long value = static_cast<long>(random());
      const auto append = [&model](std::vector<long> part) {
        model.insert(model.end(), part.begin(), part.end());
      };
      const auto kind = random() % 10;
      if (kind == 0) {
        const long first = static_cast<long>(random() % (model.size() + 1));
        const long count = static_cast<long>(random() % 5);
        if (first + count > size) {
          EXPECT_THROW(array.remove(first, count), ZylArrayError);
        } else {
          array.remove(first, count);
          model.erase(model.begin() + first, model.begin() + first + count);
        }
      } else if (kind == 1) {
        array.add(3, value);
        append({value, value, value});
      } else if (kind == 2 && size > 2000) {
        array.clear();
        model.clear();
      } else if (kind == 2) {
        array.add(array);
        append(model);
      } else if (kind == 3 && size > 4) {
        array.getImpl()->addArray(array.getImpl(), 1, size - 2);
        append({model.begin() + 1, model.end() - 1});
      } else if (kind == 4) {
        array.getImpl()->grow(size + static_cast<long>(random() % 50));
      } else if (kind == 5 && random() % 10 == 0) {
        array.getImpl()->truncate(size / 2);
        model.resize(static_cast<std::size_t>(size / 2));
      } else {
        array.add(value);
        model.push_back(value);
      }
      ASSERT_EQ(array.getSize(), static_cast<long>(model.size()));
      ASSERT_GE(array.getImpl()->getCapacity(), array.getSize());
    }
    for (std::size_t i = 0; i < model.size(); ++i) ASSERT_EQ(array[i], model[i]) << "element " << i;
    ZylIntArray copy = array.copy(env);
    EXPECT_TRUE(ZylIntArray2::equal(array, copy) || model.empty());
    array.end();
    copy.end();
  }
}

TEST_F(ZylArray, AFailedAppendChangesNothing) {
  // Where an append needs a page, or a table of more of them.
  for (const long size : {1L, 4L, 16L, 24L, 64L, 1024L, 4096L}) {
    SCOPED_TRACE(testing::Message() << "size " << size);
    ZylIntArray array;
    FailEachAllocation(
        [&] {
          useUpPools(impl);
          array = ZylIntArray(env);
          for (long i = 0; i < size; ++i) array.add(i);
          useUpPools(impl);
          return &array;
        },
        [&](ZylIntArray& a) { a.add(-1); },
        [&](ZylIntArray& a) {
          EXPECT_EQ(a.getSize(), size);
          for (long i = 0; i < size; ++i) ASSERT_EQ(a[i], i);
          a.add(-1);
          EXPECT_EQ(a[size], -1);
          a.end();
        });
  }
}

TEST_F(ZylArray, SizesBeyondTheMachineAreRefused) {
  for (const long size : {std::numeric_limits<long>::max(), 1L << 61}) {
    EXPECT_THROW(ZylIntArray(env, size), ZylMemoryException);
    ZylIntArray array(env, 1, 5);
    EXPECT_THROW(array.getImpl()->grow(size), ZylMemoryException);
    EXPECT_THROW(array.add(size, 5), ZylMemoryException);
    EXPECT_EQ(array.getSize(), 1);
    EXPECT_EQ(array[0], 5);
  }
}

TEST_F(ZylArray, AFailedConstructionGivesEverythingBack) {
  long before = 0;
  for (const bool literal : {false, true}) {
    FailEachAllocation(
        impl,
        [&] {
          before = impl->getMemoryUsage();
          literal ? ZylIntArray(env, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9) : ZylIntArray(env, 3000);
        },
        [&] { EXPECT_EQ(impl->getMemoryUsage(), before); });
  }
}

TEST_F(ZylArray, RemoveTestsItsRange) {
  ZylNumArray array(env, 2, 1.0, 2.0);
  array.remove(2, 0);
  ExpectEachRaises<ZylArrayError>(
      {{"Trying to remove too many elements", [&] { array.remove(2, 1); }},
       {"invalid index for first element to remove", [&] { array.remove(-1, 1); }}});
  EXPECT_EQ(array.getSize(), 2);
}

TEST_F(ZylArray, LiteralsTakeTheTypeOfTheElements) {
  ZylIntArray ints(env, 4, 1, -2, 3L, 4);
  ASSERT_EQ(ints.getSize(), 4);
  EXPECT_EQ(ints[1], -2);
  ZylNumArray nums(env, 3, 1, 2.5, 3L);
  ASSERT_EQ(nums.getSize(), 3);
  EXPECT_EQ(nums[1], 2.5);
  EXPECT_EQ(nums[2], 3.0);
}

TEST_F(ZylArray, AWrongLiteralRaisesTheTextOfTheClassAndLeavesNothing) {
  const long before = impl->getMemoryUsage();
  ExpectEachRaises<ZylWrongUsage>(
      {{"ZylIntArray::ZylIntArray: n != 1", [&] { ZylIntArray(env, 2, 5); }},
       {"ZylIntArray::ZylIntArray: n must be >= 2", [&] { ZylIntArray(env, 1, 5, 6); }},
       {"ZylNumArray::ZylNumArray: n != 1", [&] { ZylNumArray(env, 2, 5.0); }},
       {"ZylNumArray::ZylNumArray: n must be >=2", [&] { ZylNumArray(env, 0, 5, 6.0); }},
       {"ZylBoolArray::ZylBoolArray: n != 1", [&] { ZylBoolArray(env, 0, 1); }},
       {"ZylBoolArray::ZylBoolArray: n must be >= 2", [&] { ZylBoolArray(env, 1, 1, 0); }},
       {"ZylAnyArray::ZylAnyArray: n != 1", [&] { ZylAnyArray(env, 3, nullptr); }},
       {"ZylAnyArray::ZylAnyArray: n must be >=2", [&] { ZylAnyArray(env, 1, nullptr, nullptr); }},
       {"ZylAnyArray2::ZylAnyArray2: n != 1", [&] { ZylAnyArray2(env, 1, ZylAnyArray()); }}});
  EXPECT_EQ(impl->getMemoryUsage(), before);
}

TEST_F(ZylArray, DiscardTakesTheLastOccurrenceAndContainsLooksForEach) {
  ZylIntArray array(env, 5, 1, 2, 1, 3, 1);
  array.discard(1);
  array.discard(9);
  EXPECT_TRUE(ZylIntArray2::equal(array, ZylIntArray(env, 4, 1, 2, 1, 3)));
  array.discard(ZylIntArray(env, 2, 1, 3));
  EXPECT_TRUE(ZylIntArray2::equal(array, ZylIntArray(env, 2, 1, 2)));
  EXPECT_TRUE(array.contains(ZylIntArray(env, 2, 2, 1)));
  EXPECT_FALSE(array.contains(ZylIntArray(env, 2, 2, 4)));
  EXPECT_TRUE(array.contains(ZylIntArray(env)));
}

TEST_F(ZylArray, KindsOfElementsAndConversionsBetweenThem) {
  EXPECT_TRUE(ZylIntArray(env).areElementsBoolean());
  EXPECT_TRUE(ZylIntArray(env, 2, 0, 1).areElementsBoolean());
  EXPECT_TRUE(ZylNumArray(env, 2, 0.0, 1.0).areElementsBoolean());
  for (const int value : {-1, 2}) {
    EXPECT_FALSE(ZylIntArray(env, 2, 0, value).areElementsBoolean());
    EXPECT_FALSE(ZylNumArray(env, 1, value / 4.0).areElementsBoolean());
  }
  EXPECT_TRUE(ZylNumArray(env, 2, -7.0, 1e15).areElementsInteger());
  EXPECT_FALSE(ZylNumArray(env, 1, std::nan("")).areElementsInteger());
  const ZylIntArray ints = ZylNumArray(env, 2, -7.0, 3.0).toIntArray();
  EXPECT_EQ(ints[0], -7);
  EXPECT_EQ(ints.toNumArray()[1], 3.0);
  EXPECT_THROW(static_cast<void>(ZylNumArray(env, 2, 1.0, 1.5).toIntArray()), ZylBadConversion);
}

TEST_F(ZylArray, ArraysOfArraysCompareByElements) {
  ZylIntArray a(env, 2, 1, 2);
  ZylIntArray b(env, 2, 1, 2);
  ZylIntArray2 table(env, 2, a);
  EXPECT_EQ(table.getSize(), 3) << "two empty slots and the array";
  EXPECT_EQ(table[0].getImpl(), nullptr);
  EXPECT_TRUE(table.contains(b));
  EXPECT_FALSE(table.contains(ZylIntArray(env, 2, 1, 3)));
  EXPECT_FALSE(table.contains(ZylIntArray(env)));
  EXPECT_FALSE(table.contains(ZylIntArray()));
  EXPECT_TRUE(ZylIntArray2::equal(ZylIntArray(env), ZylIntArray(env)));
  EXPECT_FALSE(ZylIntArray2::equal(a, ZylIntArray()));
  EXPECT_FALSE(
      ZylNumArray2::equal(ZylNumArray(env, 1, std::nan("")), ZylNumArray(env, 1, std::nan(""))));
}

TEST_F(ZylArray, EmptyHandlesNameTheirClass) {
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"Using empty ZylIntArray handle.", [] { ZylIntArray().add(1); }},
       {"Using empty ZylNumArray handle.", [] { static_cast<void>(ZylNumArray().getSize()); }},
       {"Empty Handle in ZylNumArray::contains", [] { ZylNumArray().contains(1.0); }},
       {"Empty Handle in ZylAnyArray::contains", [] { ZylAnyArray().contains(nullptr); }}});
  ExpectEachRaises<ZylWrongUsage>(
      {{"Empty Handle in ZylIntArray::contains", [] { ZylIntArray().contains(1); }},
       {"Empty Handle in ZylIntArray::remove", [] { ZylIntArray().discard(1); }}});
  const ZylEnv none(static_cast<ZylEnvI*>(nullptr));
  const ZylMemoryManager noManager(static_cast<ZylGenAlloc*>(nullptr));
  ExpectEachRaises<ZylEmptyHandleException>(
      "Using empty handle.",
      {[&] { ZylIntArray{none}; }, [&] { ZylIntArray{noManager}; },
       [&] { static_cast<void>(ZylNumArray(env).copy(none)); },
       [&] { ZylNamedIntProperty(noManager, "p", 1); }, [&] { ZylNamedPropertySet{noManager}; },
       [&] { ZylSimpleHashTable(none, 3); }});
}

#ifndef NDEBUG
TEST(ZylArrayDeathTest, IndicesAreAsserted) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EnvFixture env;
  ZylIntArray array(env.env, 2);
  EXPECT_DEATH(array[2] = 1, "index outside the array");
  EXPECT_DEATH(array[-1] = 1, "index outside the array");
}
#endif

}  // namespace
}  // namespace zyl::test
