// What it costs to ask for the environment of a thread that is attached already.

#include <benchmark/benchmark.h>
#include <vorlane/bootstrap.h>
#include <vorlane/jace.h>

#include <iostream>

namespace {

void BM_Attach(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(jace::helper::attach());
}
BENCHMARK(BM_Attach);

// The runtime's own operation, which `attach` adds its checks to.
void BM_AttachFloor(benchmark::State& state) {
  JavaVM* machine = jace::helper::getJavaVM();
  for (auto _ : state) {
    void* env = nullptr;
    machine->AttachCurrentThread(&env, nullptr);
    benchmark::DoNotOptimize(env);
  }
}
BENCHMARK(BM_AttachFloor);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  // A root is not needed for a machine without classes of ours; the silent handler goes on.
  ZylKvlNullMessageHandler handler;
  try {
    if (!ZylKvlCreateJVM(handler, /*redirectJavaOutput=*/false, /*requireGenerationalGC=*/false)) {
      return 1;
    }
  } catch (const jace::JNIException& exception) {
    std::cerr << exception.what() << "\nno machine: set JAVA_HOME and VTQS_JVM_LIBRARY_OVERRIDE\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
}
