// Arrays of integers beside std::vector: appending, and reading in order and scattered.

#include <vorlane/vorlane.h>

#include "floor.h"

namespace {

void BM_Append_floor(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<long> array;
    for (long i = 0; i < state.range(0); ++i) array.push_back(i);
    benchmark::DoNotOptimize(array.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Append_vorlane(benchmark::State& state) {
  ZylEnv env;
  for (auto _ : state) {
    ZylIntArray array(env);
    for (long i = 0; i < state.range(0); ++i) array.add(i);
    benchmark::DoNotOptimize(array.getImpl());
    array.end();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  env.end();
}

template <class Array>
void readInOrder(benchmark::State& state, const Array& array) {
  for (auto _ : state) {
    long sum = 0;
    for (long i = 0; i < state.range(0); ++i) sum += array[static_cast<std::size_t>(i)];
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Array>
void readScattered(benchmark::State& state, const Array& array) {
  floors::Scatter scatter(static_cast<std::uint64_t>(state.range(0)));
  for (auto _ : state) {
    long sum = 0;
    for (long i = 0; i < 1000000; ++i) sum += array[scatter.next()];
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * 1000000);
}

void BM_ReadInOrder_floor(benchmark::State& state) {
  readInOrder(state, std::vector<long>(static_cast<std::size_t>(state.range(0)), 1));
}
void BM_ReadInOrder_vorlane(benchmark::State& state) {
  ZylEnv env;
  readInOrder(state, ZylIntArray(env, state.range(0)));
  env.end();
}
void BM_ReadScattered_floor(benchmark::State& state) {
  readScattered(state, std::vector<long>(static_cast<std::size_t>(state.range(0)), 1));
}
void BM_ReadScattered_vorlane(benchmark::State& state) {
  ZylEnv env;
  readScattered(state, ZylIntArray(env, state.range(0)));
  env.end();
}

BENCHMARK(BM_Append_floor)->Arg(1000)->Arg(1000000);
BENCHMARK(BM_Append_vorlane)->Arg(1000)->Arg(1000000);
BENCHMARK(BM_ReadInOrder_floor)->Arg(100000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadInOrder_vorlane)->Arg(100000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadScattered_floor)->Arg(100000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadScattered_vorlane)->Arg(100000000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
