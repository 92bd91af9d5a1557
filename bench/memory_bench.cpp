// Small blocks from an environment and from the C library, with few and with many live objects.

#include <vorlane/vorlane.h>

#include "floor.h"

namespace {

constexpr std::size_t Sizes[] = {24, 32, 40, 48, 56, 64};
constexpr std::size_t Batch = 64;

template <class Alloc, class Free>
void run(benchmark::State& state, Alloc alloc, Free release) {
  std::vector<void*> live;
  for (long i = 0; i < state.range(0); ++i) live.push_back(alloc(Sizes[i % 6]));
  void* blocks[Batch];
  for (auto _ : state) {
    for (std::size_t i = 0; i < Batch; ++i) blocks[i] = alloc(Sizes[i % 6]);
    benchmark::DoNotOptimize(blocks);
    for (std::size_t i = 0; i < Batch; ++i) release(blocks[i], Sizes[i % 6]);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(Batch));
  for (std::size_t i = 0; i < live.size(); ++i) release(live[i], Sizes[i % 6]);
}

void BM_Alloc_floor(benchmark::State& state) {
  run(
      state, [](std::size_t size) { return std::malloc(size); },  // NOLINT
      [](void* block, std::size_t) { std::free(block); });        // NOLINT
}

void BM_Alloc_vorlane(benchmark::State& state) {
  ZylEnv env;
  ZylEnvI* e = env.getImpl();
  run(
      state, [e](std::size_t size) { return e->alloc(size); },
      [e](void* block, std::size_t size) { e->free(block, size); });
  env.end();
}

BENCHMARK(BM_Alloc_floor)->Arg(0)->Arg(10000000);
BENCHMARK(BM_Alloc_vorlane)->Arg(0)->Arg(10000000);

}  // namespace

BENCHMARK_MAIN();
