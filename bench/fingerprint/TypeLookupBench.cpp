#include <benchmark/benchmark.h>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"

namespace QXFingrix {
namespace {

void TypeByParameters(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(QXGetPathFPType(4096, 0, 5, 191, 3));
}
BENCHMARK(TypeByParameters)->Threads(1)->Threads(2);

void TypeByString(benchmark::State& state) {
  const std::string text = QXGetPathFPType(4096, 0, 5, 191, 3)->GetFPTypeString();
  for (auto _ : state) benchmark::DoNotOptimize(QXGetFPType(text));
}
BENCHMARK(TypeByString);

}  // namespace
}  // namespace QXFingrix
