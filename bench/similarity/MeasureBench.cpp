// One score of two fingerprints: every measure beside a plain loop of popcounts, which does the same counting
// without types, kernels and formulas.
// Names: Measure/bits; the time is that of one call.

#include <benchmark/benchmark.h>

#include <bit>
#include <memory>
#include <random>
#include <span>
#include <string>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXSimFunc.h"

namespace {

using namespace QXFingrix;

QXFingerPrint MakeFP(unsigned numBits, unsigned seed) {
  std::mt19937_64 random(seed);
  QXFingerPrint fp;
  fp.SetFPTypeBase(QXGetPathFPType(numBits, 0, 5, 0, 0));
  fp.SetSize(numBits);
  for (std::uint64_t& word : fp.GetWords()) word = random() & random();
  return fp;
}

// What every measure is built on; no score.
float CountBits(const QXFingerPrint& a, const QXFingerPrint& b) {
  unsigned onlyA = 0;
  unsigned onlyB = 0;
  unsigned both = 0;
  QXSystem::QXGetBitCounts(a, b, &onlyA, &onlyB, &both);
  return static_cast<float>(onlyA + onlyB + both);
}

[[gnu::target("popcnt")]] float PlainTanimoto(const QXFingerPrint& a, const QXFingerPrint& b) {
  const std::span<const std::uint64_t> wordsA = a.GetWords();
  const std::span<const std::uint64_t> wordsB = b.GetWords();
  unsigned both = 0;
  unsigned either = 0;
  for (std::size_t i = 0; i < wordsA.size(); ++i) {
    both += static_cast<unsigned>(std::popcount(wordsA[i] & wordsB[i]));
    either += static_cast<unsigned>(std::popcount(wordsA[i] | wordsB[i]));
  }
  return either == 0 ? 1.0F : static_cast<float>(both) / static_cast<float>(either);
}

class FunctionSim final : public QXSimFuncBase {
 public:
  using Function = float (*)(const QXFingerPrint&, const QXFingerPrint&);
  FunctionSim(std::string name, Function function) : name_(std::move(name)), function_(function) {}
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override { return function_(a, b); }
  QXSimFuncBase* CreateCopy() const override { return new FunctionSim(*this); }
  std::string GetSimTypeString() const override { return name_; }

 private:
  std::string name_;
  Function function_;
};

void Score(benchmark::State& state, const QXSimFuncBase* measure, unsigned numBits) {
  const QXFingerPrint a = MakeFP(numBits, 1);
  const QXFingerPrint b = MakeFP(numBits, 2);
  for (auto _ : state) benchmark::DoNotOptimize((*measure)(a, b));
}

const bool areRegistered = [] {
  static const std::unique_ptr<const QXSimFuncBase> measures[] = {
      std::make_unique<FunctionSim>("PlainLoop", PlainTanimoto),
      std::make_unique<FunctionSim>("BitCounts", CountBits),
      std::make_unique<QXTanimotoSim>(),
      std::make_unique<QXCosineSim>(),
      std::make_unique<QXDiceSim>(),
      std::make_unique<QXEuclidSim>(),
      std::make_unique<QXTverskySim>(0.95F, 0.05F),
      std::make_unique<QXManhattanSim>(),
  };
  for (const auto& measure : measures) {
    for (const unsigned numBits : {1024U, 2048U, 4096U}) {
      const std::string name = measure->GetSimTypeString() + "/" + std::to_string(numBits);
      benchmark::RegisterBenchmark(name.c_str(), Score, measure.get(), numBits);
    }
  }
  return true;
}();

}  // namespace
