// All against all, and several queries at once. The matrix of all scores beside a bare fill of a matrix of its
// size ("fills": how many times as long), and 128 queries in one call beside 128 single searches ("speedup").
// Best times of each: other processes disturb both.

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <random>

#include "fastfp/FastFPMemoryMapDatabaseImpl.h"
#include "fastfp/FpbinFile.h"

namespace {

using namespace QXFingrix;

constexpr unsigned numBits = 2048;

// Fingerprints as of drug-like molecules: one bit in ten is set, in families.
class PairFile {
 public:
  explicit PairFile(std::size_t numRecords) {
    const QXFPTypeBase* const type = Testing::PathType(numBits);
    std::mt19937_64 random(1);
    QXFingerPrint fp = Testing::RandomFP(type, random, 0.1);
    std::vector<QXFingerPrint> fps;
    for (std::size_t i = 0; i < numRecords; ++i) {
      for (auto& word : fp.GetWords()) {
        if (random() % 8 == 0) word = random() & random() & random();
      }
      fps.push_back(fp);
    }
    Testing::WriteFile(dir_.File("pairs.fpbin"), Testing::FpbinBytes(type, fps));
    engine_ = std::make_unique<QXFastFPMemoryMapDatabaseImpl>(dir_.File("pairs.fpbin"));
    for (std::size_t i = 0; i < 128; ++i) queries_.push_back(fps[i * numRecords / 128]);
  }

  const QXFastFPDatabaseImplBase& Engine() const { return *engine_; }
  const std::vector<QXFingerPrint>& Queries() const { return queries_; }

 private:
  Testing::TempDir dir_;
  std::unique_ptr<QXFastFPMemoryMapDatabaseImpl> engine_;
  std::vector<QXFingerPrint> queries_;
};

const PairFile& GetFile(std::size_t numRecords) {
  static std::unique_ptr<PairFile> file;  // one at a time: they are large
  if (!file || file->Engine().NumFingerPrints() != numRecords) file = std::make_unique<PairFile>(numRecords);
  return *file;
}

template <class Work>
double Seconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double NumPairs(std::size_t numRecords) {
  return static_cast<double>(numRecords) * static_cast<double>(numRecords - 1) / 2;
}

void SetPairRate(benchmark::State& state, double numPairs) {
  state.counters["pairs/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * numPairs, benchmark::Counter::kIsRate);
}

void AllScores(benchmark::State& state, unsigned measure) {
  constexpr std::size_t numRecords = 20'000;
  const QXFastFPDatabaseImplBase& engine = GetFile(numRecords).Engine();
  const QXFPDatabaseOptions options(0, measure);
  double fill = 1e9;
  double best = 1e9;
  for (auto _ : state) {
    fill = std::min(fill, Seconds([&] {
                      benchmark::DoNotOptimize(std::vector<float>(numRecords * numRecords, 0.5F).data());
                    }));
    const double seconds = Seconds([&] { benchmark::DoNotOptimize(engine.GetAllScores(options).data()); });
    best = std::min(best, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["fills"] = best / fill;
  SetPairRate(state, NumPairs(numRecords));
}
BENCHMARK_CAPTURE(AllScores, Tanimoto, QXSimMeasure::Tanimoto)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AllScores, Cosine, QXSimMeasure::Cosine)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AllScores, Tversky, QXSimMeasure::Tversky)->UseManualTime()->Unit(benchmark::kMillisecond);

void Histogram(benchmark::State& state) {
  const auto numRecords = static_cast<std::size_t>(state.range(0));
  const QXFastFPDatabaseImplBase& engine = GetFile(numRecords).Engine();
  for (auto _ : state) benchmark::DoNotOptimize(engine.GetHistogram({0, QXSimMeasure::Tanimoto}, 100));
  SetPairRate(state, NumPairs(numRecords));
}
BENCHMARK(Histogram)->Arg(20'000)->Unit(benchmark::kMillisecond);

void Variogram(benchmark::State& state) {
  const auto numRecords = static_cast<std::size_t>(state.range(0));
  const QXFastFPDatabaseImplBase& engine = GetFile(numRecords).Engine();
  const std::vector<float> values(numRecords, 1.0F);
  for (auto _ : state)
    benchmark::DoNotOptimize(engine.GetVariogram(values, {0, QXSimMeasure::Tanimoto}, 100));
  SetPairRate(state, NumPairs(numRecords));
}
BENCHMARK(Variogram)->Arg(20'000)->Unit(benchmark::kMillisecond);

void SparseMatrix(benchmark::State& state) {
  const auto numRecords = static_cast<std::size_t>(state.range(0));
  const QXFastFPDatabaseImplBase& engine = GetFile(numRecords).Engine();
  for (auto _ : state) benchmark::DoNotOptimize(engine.GetSparseMatrix({10, QXSimMeasure::Tanimoto}));
  SetPairRate(state, NumPairs(numRecords));
}
BENCHMARK(SparseMatrix)->Arg(20'000)->Unit(benchmark::kMillisecond);

// Args: records, threads. The single searches run on the calling thread.
void Batch(benchmark::State& state) {
  const PairFile& file = GetFile(static_cast<std::size_t>(state.range(0)));
  QXFPDatabaseOptions options(10, QXSimMeasure::Tanimoto);
  options.SetNumProcessors(static_cast<unsigned>(state.range(1)));
  std::vector<const QXFingerPrint*> fps;
  for (const QXFingerPrint& fp : file.Queries()) fps.push_back(&fp);
  double single = 1e9;
  double best = 1e9;
  for (auto _ : state) {
    single = std::min(single, Seconds([&] {
                        for (const QXFingerPrint* fp : fps)
                          benchmark::DoNotOptimize(file.Engine().GetSortedScores(*fp, options));
                      }));
    const double seconds =
        Seconds([&] { benchmark::DoNotOptimize(file.Engine().GetSortedScores(fps, options)); });
    best = std::min(best, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["speedup"] = single / best;
  state.counters["comparisons/s"] = benchmark::Counter(
      static_cast<double>(state.iterations() * state.range(0)) * 128, benchmark::Counter::kIsRate);
}
BENCHMARK(Batch)
    ->Args({20'000, 1})
    ->Args({1'000'000, 1})
    ->Args({1'000'000, 2})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
