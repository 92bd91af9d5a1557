// The size-class pools.

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

TEST(ZylMemory, PicksTheSmallestClassThatHolds) {
  struct Row {
    long size, index, cell;
  };
  ZylMemory memory(1);
  for (const Row& row :
       {Row{1, 0, 8}, Row{8, 0, 8}, Row{9, 1, 16}, Row{64, 7, 64}, Row{65, 8, 128},
        Row{128, 8, 128}, Row{129, 9, 256}, Row{2048, 12, 2048}, Row{4000, 13, 4096}}) {
    SCOPED_TRACE(testing::Message() << row.size << " bytes");
    EXPECT_EQ(memory.getIndex(row.size), row.index);
    EXPECT_EQ(memory.getClass(row.index)->getSize(), row.cell);
    void* block = memory.alloc(row.size);
    EXPECT_EQ(memory.getMemoryUsage(), row.cell);
    memory.free(block, row.size);
    EXPECT_EQ(memory.getMemoryUsage(), 0);
  }
  EXPECT_EQ(memory.getClassCount(), 14);
}

TEST(ZylMemory, LargeBlocksAreCountedExactlyAndNoClassServesThem) {
  ZylMemory memory(1);
  void* block = memory.alloc(4001);
  EXPECT_EQ(memory.getMemoryUsage(), 4001);
  EXPECT_EQ(memory.getTotalMemoryUsage(), 4001);
  memory.free(block, 4001);
  EXPECT_EQ(memory.getTotalMemoryUsage(), 0);
  EXPECT_TRUE(RaisesWith<ZylMemoryException>([&] { memory.getIndex(4097); }, "not enough memory"));
  EXPECT_EQ(memory.alloc(0), nullptr);
}

TEST(ZylMemory, TheLimitIsReadFromTheProcess) {
  struct Row {
    const char* value;
    long limit, classes;
  };
  for (const Row& row : {Row{"64", 64, 8}, Row{"65", 65, 9}, Row{"1000", 1000, 12}, Row{"0", 0, 8},
                         Row{"-5", -5, 8}, Row{"abc", 0, 8}, Row{"4294967396", 100, 9}}) {
    SCOPED_TRACE(row.value);
    const ScopedVariable variable("ZYL_MEMORY_MANAGER_LIMIT", row.value);
    ZylMemory memory(1);
    EXPECT_EQ(memory.getLimit(), row.limit);
    EXPECT_EQ(memory.getClassCount(), row.classes);
    if (row.limit > 0) {
      void* pooled = memory.alloc(row.limit - 1);
      EXPECT_GT(memory.getMemoryUsage(), row.limit - 2);
      memory.free(pooled, row.limit - 1);
    }
    const long size = row.limit > 0 ? row.limit : 8;
    const long before = memory.getMemoryUsage();
    void* block = memory.alloc(size);
    std::memset(block, 1, static_cast<std::size_t>(size));
    EXPECT_EQ(memory.getMemoryUsage() - before, size) << "a large block has no class size";
    memory.free(block, size);
  }
}

TEST(ZylMemory, CutsABlockFromItsStartAndGivesTheTailToSmallerClasses) {
  ZylMemory memory(1);
  // 500 words: 166 cells of 3 words leave 2, of which one becomes a cell of 8 bytes.
  void* first = memory.alloc(24);
  EXPECT_EQ(memory.getTotalMemoryUsage(), 501 * 8);
  for (long i = 1; i < 166; ++i) EXPECT_NE(memory.alloc(24), nullptr);
  EXPECT_EQ(memory.getTotalMemoryUsage(), 501 * 8) << "165 more cells come from the same block";
  void* tail = memory.alloc(8);
  EXPECT_EQ(memory.getTotalMemoryUsage(), 501 * 8) << "and so does one cell of the class below";
  EXPECT_EQ(static_cast<char*>(tail) - static_cast<char*>(first), 24)
      << "right behind the last cut";
  static_cast<void>(memory.alloc(8));
  EXPECT_EQ(memory.getTotalMemoryUsage(), 2 * 501 * 8) << "the last word is wasted";
  // 62 cells of 64 bytes leave 4 words; 32 bytes are a class, so 24 of them go to the class below.
  ZylMemory exact(1);
  for (const long size : {64L, 24L, 32L}) {
    static_cast<void>(exact.alloc(size));
    EXPECT_EQ(exact.getTotalMemoryUsage(), (size == 32 ? 2 : 1) * 501 * 8);
  }
}

TEST(ZylMemory, AFailedRequestChangesNoCounter) {
  for (const long useIt : {1L, 0L}) {
    for (const long size : {8L, 200L, 4000L, 10000L}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, pools " << useIt);
      ZylMemory memory(useIt);
      {
        FailingAllocator failing(1);
        EXPECT_THROW(static_cast<void>(memory.alloc(size)), ZylMemoryException);
      }
      EXPECT_EQ(memory.getMemoryUsage(), 0);
      EXPECT_EQ(memory.getTotalMemoryUsage(), 0);
      void* block = memory.alloc(size);
      std::memset(block, 7, static_cast<std::size_t>(size));
      memory.free(block, size);
    }
  }
}

TEST(ZylMemory, NoSizeIsTooLargeToBeRefused) {
  EnvFixture env;
  ZylMemory memory(1);
  ZylAllocationStack stack;
  for (const unsigned long size : {~0UL, ~0UL - 7, 1UL << 63, (1UL << 63) - 1}) {
    EXPECT_THROW(static_cast<void>(memory.alloc(static_cast<long>(size))), ZylMemoryException);
    EXPECT_THROW(static_cast<void>(env->alloc(size)), ZylMemoryException);
    EXPECT_THROW(static_cast<void>(stack.allocate(size)), ZylMemoryException);
  }
}

// A class without type identity of its own: its block comes back with the size of its base.
TEST(ZylMemory, ABlockMayComeBackWithAnotherSize) {
  struct Raising : ZylModelI {
    explicit Raising(ZylEnvI* env) : ZylModelI(env) { throw ZylWrongUsage("raised"); }
    char more[500];
  };
  EnvFixture env;
  ZylModel before(env.env);
  for (int i = 0; i < 3; ++i) EXPECT_THROW(new (env.impl) Raising(env.impl), ZylWrongUsage);
  ZylModel behind(env.env);
  before.end();
}

// Patterns in every block against a naive list, in both modes and with another limit.
TEST(ZylMemory, BlocksNeverOverlap) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const long useIt = seed % 3 == 0 ? 0 : 1;
    ScopedVariable variable("ZYL_MEMORY_MANAGER_LIMIT", seed % 2 == 0 ? "100" : "4001");
    ZylMemory memory(useIt);
    struct Block {
      unsigned char* data;
      long size;
      unsigned char pattern;
    };
    std::vector<Block> blocks;
    long expected = 0;
    const auto cellOf = [&](long size) {
      return size >= memory.getLimit() ? size : memory.getClass(memory.getIndex(size))->getSize();
    };
    for (int step = 0; step < 3000; ++step) {
      if (blocks.empty() || random() % 5 < 3) {
        const long size = 1 + static_cast<long>(random() % (random() % 8 == 0 ? 9000 : 150));
        const auto pattern = static_cast<unsigned char>(random());
        auto* data = static_cast<unsigned char*>(memory.alloc(size));
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(data) % 8, 0U);
        std::memset(data, pattern, static_cast<std::size_t>(size));
        blocks.push_back({data, size, pattern});
        expected += cellOf(size);
      } else {
        std::swap(blocks[random() % blocks.size()], blocks.back());
        const Block block = blocks.back();
        blocks.pop_back();
        for (long i = 0; i < block.size; ++i) ASSERT_EQ(block.data[i], block.pattern);
        memory.free(block.data, block.size);
        expected -= cellOf(block.size);
      }
      ASSERT_EQ(memory.getMemoryUsage(), expected);
    }
    EXPECT_GE(memory.getTotalMemoryUsage(), expected);
    for (const Block& block : blocks) memory.free(block.data, block.size);
    EXPECT_EQ(memory.getMemoryUsage(), 0);
  }
}

TEST(ZylMemory, SwitchedOffPoolsServeNoCellOfTheirs) {
  ZylMemory memory(1);
  void* cell = memory.alloc(24);
  void* other = memory.alloc(24);
  memory.free(cell, 24);
  memory.setUseIt(0);
  memory.setUseIt(0);
  void* block = memory.alloc(24);
  EXPECT_NE(block, cell);
  EXPECT_EQ(memory.getMemoryUsage(), 24);
  memory.free(other, 24);
  memory.free(block, 24);
  EXPECT_EQ(memory.getMemoryUsage(), 0);
  // Switched on, they find their cells again, with what came back meanwhile.
  block = memory.alloc(24);
  memory.setUseIt(1);
  EXPECT_EQ(memory.alloc(24), other);
  EXPECT_EQ(memory.alloc(24), cell);
  memory.free(block, 24);
  EXPECT_EQ(memory.getMemoryUsage(), 48);
}

TEST(ZylMemory, LargePoolsKnowTheirBlocksByAddress) {
  ZylMemory memory(1);
  const ZylMemory other(1);
  void* const early = memory.alloc(64);
  EXPECT_FALSE(memory.owns(early));  // a block of its own
  // More than one slab of the smallest size.
  std::vector<void*> blocks;
  for (int i = 0; i < 100'000; ++i) {
    blocks.push_back(memory.alloc(64));
    std::memset(blocks.back(), i, 64);
  }
  EXPECT_TRUE(memory.owns(blocks[50'000]));
  EXPECT_TRUE(memory.owns(blocks.back()));
  EXPECT_FALSE(memory.owns(&memory));
  EXPECT_FALSE(memory.owns(nullptr));
  EXPECT_FALSE(other.owns(blocks.back()));
  EXPECT_GE(memory.getTotalMemoryUsage(), 100'000 * 64);
}

TEST(ZylMemory, WithoutMemoryForASlabTakesBlockByBlock) {
  ZylMemory memory(1);
  std::vector<void*> blocks;
  while (blocks.empty() || !memory.owns(blocks.back())) blocks.push_back(memory.alloc(512));
  // Uses the first slab up; then neither a slab nor a block can be had.
  {
    FailingAllocator failing(1);
    EXPECT_THROW(for (;;) blocks.push_back(memory.alloc(512)), ZylMemoryException);
  }
  blocks.push_back(memory.alloc(512));
  EXPECT_TRUE(memory.owns(blocks.back()));
}

TEST(ZylAllocationList, CountsFixedCellsByTheirSize) {
  ZylAllocationList fixed(24);
  ZylAllocationList varying;
  void* a = fixed.alloc(24);
  void* b = fixed.alloc(24);
  void* c = varying.alloc(1000);
  EXPECT_EQ(fixed.getMemoryUsage(), 48);
  EXPECT_EQ(varying.getMemoryUsage(), 1000);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(c) % 16, 0U);
  fixed.free(a);
  fixed.free(static_cast<ZylAllocationList::Cell*>(b) - 1);
  EXPECT_EQ(fixed.getMemoryUsage(), 0);
  varying.end();
  EXPECT_EQ(varying.getMemoryUsage(), 0);
}

TEST(ZylGenAlloc, TheEnvironmentsOwnAllocatorIgnoresNothingToFree) {
  EnvFixture env;
  ZylGenAlloc* alloc = env->getGenAlloc();
  const long before = env->getMemoryUsage();
  alloc->free(nullptr, 8);
  void* block = alloc->alloc(40);
  alloc->free(block, 0);
  EXPECT_EQ(env->getMemoryUsage(), before + 40);
  alloc->free(block, 40);
  EXPECT_EQ(env->getMemoryUsage(), before);
}

}  // namespace
}  // namespace zyl::test
