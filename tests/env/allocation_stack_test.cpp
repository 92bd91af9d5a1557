// The arena of short-lived work.

#include "vorlane/env/allocation_stack.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "support/support.h"
#include "vorlane/env/symbol.h"

namespace zyl::test {
namespace {

struct ScopedPartSize {
  explicit ScopedPartSize(long words) { ZylAllocationStackDefaultSize = words; }
  ~ScopedPartSize() { ZylAllocationStackDefaultSize = 1000; }
};

TEST(ZylAllocationStack, RoundsToPairsOfWordsAndOnlyCountsWhatIsFreed) {
  ZylAllocationStack stack;
  void* top = stack.allocate(0);
  const std::pair<unsigned long, long> rows[] = {{1, 2},  {8, 2},  {16, 2},
                                                 {17, 4}, {32, 4}, {33, 6}};
  long expected = 0;
  for (const auto& [size, words] : rows) {
    EXPECT_EQ(stack.allocate(size), static_cast<void**>(top) + expected) << size;
    expected += words;
    EXPECT_EQ(stack.getIndex(), expected) << size;
  }
  stack.free(top, 67);
  EXPECT_EQ(stack.getFreed(), 67);
  EXPECT_EQ(stack.allocate(0), static_cast<void**>(top) + expected);
  EXPECT_EQ(stack.getIndex(), expected);
  stack.reset();
  EXPECT_EQ(stack.getFreed(), 0);
}

TEST(ZylAllocationStack, ALargeRequestGetsAPartOfItsSize) {
  ScopedPartSize parts(10);
  ZylAllocationStack stack;
  const long empty = stack.getMemoryUsage();
  auto* block = static_cast<char*>(stack.allocate(8 * 1000));
  std::memset(block, 1, 8000);
  EXPECT_EQ(stack.getMemoryUsage() - empty, (1000 - 10) * 8) << "the empty first part was replaced";
  static_cast<void>(stack.allocate(8));
  EXPECT_EQ(stack.getIndex(), 1002);
}

// The same requests after a reset meet the same parts; patterns show any overlap.
TEST(ZylAllocationStack, ResetReusesTheParts) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    ScopedPartSize parts(seed % 2 == 0 ? 12 : 100);
    ZylAllocationStack stack;
    std::mt19937 random(seed);
    std::vector<unsigned long> sizes = {8};  // a large first request replaces the first part
    for (int i = 0; i < 200; ++i) {
      sizes.push_back(1 + random() % (random() % 10 == 0 ? 2000 : 60));
    }
    const auto run = [&] {
      std::vector<unsigned char*> blocks;
      for (std::size_t i = 0; i < sizes.size(); ++i) {
        auto* block = static_cast<unsigned char*>(stack.allocate(sizes[i]));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U);
        std::memset(block, static_cast<int>(i % 251), sizes[i]);
        blocks.push_back(block);
      }
      for (std::size_t i = 0; i < sizes.size(); ++i) {
        for (std::size_t k = 0; k < sizes[i]; ++k) {
          if (blocks[i][k] != i % 251) return std::vector<unsigned char*>();
        }
      }
      return blocks;
    };
    const auto first = run();
    ASSERT_EQ(first.size(), sizes.size()) << "blocks overlap";
    const long held = stack.getMemoryUsage();
    stack.reset();
    EXPECT_EQ(run(), first);
    EXPECT_EQ(stack.getMemoryUsage(), held);
    // Another order of requests must not confuse the parts that are there.
    for (int round = 0; round < 5; ++round) {
      stack.reset();
      std::shuffle(sizes.begin() + 1, sizes.end(), random);
      ASSERT_EQ(run().size(), sizes.size()) << "blocks overlap";
    }
  }
}

TEST(ZylAllocationStack, AFailedRequestLeavesItAsItWas) {
  ScopedPartSize parts(10);
  const long failures = FailEachAllocation(
      [] {
        auto stack = std::make_unique<ZylAllocationStack>();
        static_cast<void>(stack->allocate(40));
        return stack;
      },
      [](ZylAllocationStack& stack) { static_cast<void>(stack.allocate(4000)); },
      [](ZylAllocationStack& stack) {
        const long held = stack.getMemoryUsage();
        EXPECT_EQ(stack.getIndex(), 6);
        static_cast<void>(stack.allocate(16));
        EXPECT_EQ(stack.getIndex(), 8);
        EXPECT_EQ(stack.getMemoryUsage(), held);
      });
  EXPECT_EQ(failures, 2);
}

TEST(ZylAllocationStack, PlacementWithoutAStackIsGlobal) {
  struct Plain {
    long value;
  };
  ZylAllocationStack* none = nullptr;
  auto* object = new (none) Plain{5};
  EXPECT_EQ(object->value, 5);
  ::operator delete(object, none);
  FailingAllocator failing(1);
  EXPECT_THROW(static_cast<void>(new (none) Plain{5}), ZylMemoryException);
}

TEST(ZylStackGenAlloc, InternsInTheSymbolTableGiven) {
  EnvFixture env;
  ZylAllocationStack stack;
  ZylStackGenAlloc alloc(&stack, env->getSymbolTable());
  EXPECT_EQ(alloc.intern("x"), env->makeSymbol("x")->getText());
  alloc.free(nullptr, 8);
  EXPECT_EQ(stack.getFreed(), 0);
  alloc.free(alloc.alloc(24), 24);
  EXPECT_EQ(stack.getFreed(), 24);
  EXPECT_EQ(ZylGetEnv(&alloc), nullptr);
}

}  // namespace
}  // namespace zyl::test
