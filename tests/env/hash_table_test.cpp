// Chained tables, and the light tables of addresses.

#include "vorlane/env/hash_table.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <unordered_map>

#include "support/support.h"
#include "vorlane/env/simple_hash_table.h"

namespace zyl::test {
namespace {

TEST(ZylHashFunctions, StayInsideTheTable) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    const long key = static_cast<long>(random() >> (random() % 64));
    const long signedKey = i % 2 == 0 ? key : -key;
    const long n = 1 + static_cast<long>(random() % 1000);
    const auto inside = [n](long index) { return index >= 0 && index < n; };
    ASSERT_TRUE(inside(ZylIntegerHashFunction(signedKey, n))) << signedKey << " of " << n;
    ASSERT_TRUE(inside(ZylPlatformIndependentIntegerHashFunction(signedKey, n))) << signedKey;
    ASSERT_TRUE(inside(ZylAddressHashFunction(reinterpret_cast<void*>(signedKey), n)));
    ASSERT_TRUE(inside(ZylFloatHashFunction(static_cast<double>(signedKey) * 1e-3, n)))
        << signedKey;
    std::string text;
    for (std::uint64_t k = random() % 20; k > 0; --k) {
      text.push_back(static_cast<char>(1 + random() % 255));
    }
    ASSERT_TRUE(inside(ZylStringHashFunction(text.c_str(), n))) << text;
    const long index = ZylStringHashFunction2(text.c_str(), 64);
    ASSERT_TRUE(index >= 0 && index < 64);
  }
  for (const double value : {0.0, -1.0, 1e300, -1e300, ZylInfinity, -ZylInfinity, std::nan("")}) {
    const long index = ZylFloatHashFunction(value, 31);
    EXPECT_TRUE(index >= 0 && index < 31) << value;
  }
}

TEST(ZylHashFunctions, EqualKeysHashAlike) {
  EXPECT_EQ(ZylFloatHashFunction(0.0, 31), ZylFloatHashFunction(-0.0, 31));
  EXPECT_EQ(ZylStringHashFunction("ab", 10000), 16 * 'a' + 'b');
  EXPECT_EQ(ZylStringHashFunction2("ab", 1L << 30), 65599 * 'a' + 'b');
}

TEST(ZylHashTable, AgreesWithMap) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    EnvFixture env;
    const long before = env->getMemoryUsage();
    const auto buckets = 1 + static_cast<long>(random() % 8);
    auto* table = new (env.env) ZylIntegerHashTable<long>(env.env, buckets);
    std::unordered_map<long, long> model;
    for (int step = 0; step < 2000; ++step) {
      const long key = static_cast<long>(random() % 300) - 150;
      if (random() % 3 == 0) {
        ASSERT_EQ(table->remove(key), model.erase(key) == 1);
      } else if (!table->contains(key)) {
        table->add(key, step);
        model[key] = step;
      }
      ASSERT_EQ(table->getSize(), static_cast<long>(model.size()));
      ASSERT_LE(table->getSize(), 2 * table->getBucketCount());
    }
    for (long key = -160; key <= 160; ++key) {
      const long* value = table->find(key);
      ASSERT_EQ(value != nullptr, model.count(key) == 1) << key;
      if (value == nullptr) continue;
      ASSERT_EQ(*value, model[key]);
    }
    long visited = 0;
    table->forEach([&](long key, long value) {
      EXPECT_EQ(model.at(key), value);
      ++visited;
    });
    EXPECT_EQ(visited, table->getSize());
    delete table;
    EXPECT_EQ(env->getMemoryUsage(), before);
  }
}

TEST(ZylHashTable, TheNewestOfLikeKeysIsFound) {
  ZylHashTable<long, long> table(4, &ZylIntegerHashFunction, &ZylIntegerCompFunction);
  table.add(1, 10);
  table.add(1, 20);
  for (long i = 2; i < 20; ++i) {
    EXPECT_EQ(*table.find(1), 20) << table.getBucketCount() << " buckets";
    table.add(i, i);
  }
  EXPECT_TRUE(table.remove(1));
  EXPECT_EQ(*table.find(1), 10);
  table.forEach([&](long key, long) { table.remove(key); });
  EXPECT_EQ(table.getSize(), 0);
}

TEST(ZylHashTable, RefusesAHashOutside) {
  for (const long outside : {-1L, 4L}) {
    static long index;
    index = outside;
    ZylHashTable<long, long> table(
        4, [](long, long) { return index; }, &ZylIntegerCompFunction);
    ExpectEachRaises<ZylWrongUsage>("Hash function returned bad index",
                                    {[&] { table.add(1, 1); }, [&] { table.contains(1); }});
    EXPECT_EQ(table.getSize(), 0);
  }
}

TEST(ZylHashTable, AGrowthThatIsRefusedLosesNothing) {
  // Good for the first bucket count only.
  const auto hash = [](long key, long n) { return n == 2 ? key % 2 : key - 2; };
  ZylHashTable<long, long> table(2, hash, &ZylIntegerCompFunction);
  for (long i = 0; i < 4; ++i) table.add(i, i);
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { table.add(4, 4); }, "Hash function returned bad index"));
  EXPECT_EQ(table.getBucketCount(), 2);
  EXPECT_EQ(table.getSize(), 4);
  for (long i = 0; i < 4; ++i) ASSERT_TRUE(table.contains(i)) << i;
  EXPECT_FALSE(table.contains(4));
}

TEST(ZylHashTable, SurvivesFailedAllocations) {
  FailEachAllocation(
      [] {
        auto table = std::make_unique<ZylHashTable<long, long>>(1, &ZylIntegerHashFunction,
                                                                &ZylIntegerCompFunction);
        table->add(1, 1);
        table->add(2, 2);
        return table;
      },
      [](ZylHashTable<long, long>& table) {
        table.add(3, 3);  // also where the entry succeeds and the growth does not
        for (long i = 1; i <= 3; ++i) EXPECT_EQ(*table.find(i), i);
      },
      [](ZylHashTable<long, long>& table) { EXPECT_EQ(table.getSize(), 2); });
}

// --- the light tables

void* address(long i) { return reinterpret_cast<void*>(8 * i); }

TEST(ZylSimpleHashTable, AgreesWithMultimap) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    EnvFixture env;
    ZylSimpleHashTable2 table(env.env, 4, 8);
    std::map<long, std::vector<long>> model;
    long count = 0;
    for (int step = 0; step < 1500; ++step) {
      const long key = 1 + static_cast<long>(random() % 120);
      std::vector<long>& items = model[key];  // newest last
      const auto before = static_cast<long>(items.size());
      const auto kind = random() % 6;
      if (kind < 2) {
        table.add(address(key), address(step + 1));
        items.push_back(step + 1);
      } else if (kind == 2) {
        ASSERT_EQ(table.addWithCheck(address(key), address(step + 1)), items.empty() ? 0 : 2);
        items.push_back(step + 1);
      } else if (kind == 3) {
        ASSERT_EQ(table.remove(address(key)), items.empty() ? 1 : 0);
        if (!items.empty()) items.pop_back();
      } else {
        void* found = nullptr;
        ASSERT_EQ(table.isIn(address(key)), !items.empty());
        ASSERT_EQ(table.getValue(address(key), found), items.empty() ? 1 : 0);
        ASSERT_EQ(table[address(key)], items.empty() ? nullptr : address(items.back()));
      }
      count += static_cast<long>(items.size()) - before;
      ASSERT_EQ(table.getCount(), count);
    }
    long walked = 0;
    for (ZylSimpleHashTable::Iterator it(table); it.ok(); ++it) ++walked;
    EXPECT_EQ(walked, count);
    table.clear();
    EXPECT_EQ(table.getCount(), 0);
    EXPECT_FALSE(table.isIn(address(1)));
    table.end();
  }
}

TEST(ZylSimpleHashTable, TheSentinelIsNoResult) {
  EnvFixture env;
  ZylSimpleHashTable table(env.env, 8);
  const long before = env->getMemoryUsage();
  EXPECT_FALSE(table.isIn(address(5)));
  EXPECT_FALSE(table.isIn(address(5))) << "the sentinel still holds the key";
  EXPECT_EQ(table[address(5)], nullptr);
  void* value = &env;
  EXPECT_EQ(table.getValue(address(5), value), 1);
  EXPECT_EQ(value, &env);
  table.add(address(5), address(9));
  EXPECT_TRUE(table.isIn(address(5)));
  EXPECT_EQ(table.remove(address(5)), 0);
  EXPECT_FALSE(table.isIn(address(5))) << "what was found last is gone";
  EXPECT_EQ(table[address(5)], nullptr);
  EXPECT_EQ(env->getMemoryUsage(), before);
  table.end();
}

}  // namespace
}  // namespace zyl::test
