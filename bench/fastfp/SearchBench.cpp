// The top-10 search over a mapped file beside a plain streaming read of the same records, which is the limit
// of a scan; in the caches and far beyond them, on one and two threads. Then the price of a histogram and of
// keeping every score. Names: Function/kernel/words/records/threads. "of_read" is the speed against the read
// with as many threads. scan_kernels.sh runs the kernels one after the other.

#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <thread>

#include "../StreamingRead.h"
#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/FastFPMemoryMapDatabaseImpl.h"
#include "fastfp/FpbinFile.h"

namespace {

using namespace QXFingrix;

constexpr std::size_t headerWords = 100;
constexpr double smallBytes = 8e6;     // inside L3
constexpr double largeBytes = 5.44e8;  // 2 million records of 2,048 bits

// A file of sparse fingerprints, as of drug-like molecules: about one bit in ten is set, in families.
class SearchFile {
 public:
  SearchFile(std::size_t numWords, std::size_t numRecords) {
    const QXFPTypeBase* const type = Testing::PathType(static_cast<unsigned>(numWords * 64));
    std::mt19937_64 random(1);
    QXFingerPrint fp = Testing::RandomFP(type, random, 0.1);
    QXFastFPDatabaseParams params;
    params.SetFPTypeBase(type);
    params.SetNumFingerPrints(numRecords);
    MMapOutputFile file;
    file.Open(Path(), QXGetFPDatabaseFileSize(numRecords, type));
    QXWriteFastFPDatabaseParams(file, params);
    auto* record = reinterpret_cast<std::uint64_t*>(file.GetData()) + headerWords;
    for (std::size_t i = 0; i < numRecords; ++i, record += numWords + 2) {
      for (std::uint64_t& word : fp.GetWords()) {
        if (random() % 8 == 0) word = random() & random() & random();
      }
      record[0] = i;
      record[1] = fp.CountBits();
      std::ranges::copy(fp.GetWords(), record + 2);
    }
    file.Close();
    query_ = fp;
    engine_ = std::make_unique<QXFastFPMemoryMapDatabaseImpl>(Path());
    mapping_.Open(Path(), QXGetFPDatabaseFileSize(numRecords, type));
  }

  const QXFastFPDatabaseImplBase& Engine() const { return *engine_; }
  const QXFingerPrint& Query() const { return query_; }
  std::size_t NumBytes() const { return mapping_.GetLength() - headerWords * 8; }
  const std::uint64_t* Words() const {
    return reinterpret_cast<const std::uint64_t*>(mapping_.GetData()) + headerWords;
  }

 private:
  std::string Path() const { return dir_.File("bench.fpbin"); }

  Testing::TempDir dir_;
  QXFingerPrint query_;
  std::unique_ptr<QXFastFPMemoryMapDatabaseImpl> engine_;
  MMapInputFile mapping_;
};

const SearchFile& GetFile(std::size_t numWords, std::size_t numRecords) {
  static std::unique_ptr<SearchFile> file;  // one at a time: they are large
  static std::pair<std::size_t, std::size_t> size;
  if (!file || size != std::pair(numWords, numRecords)) {
    file.reset();
    file = std::make_unique<SearchFile>(numWords, numRecords);
    size = {numWords, numRecords};
  }
  return *file;
}

double ReadSeconds(const SearchFile& file, unsigned numThreads) {
  const std::size_t numWords = file.NumBytes() / 8 / numThreads;
  double best = 1e9;
  for (int round = 0; round < 12; ++round) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < numThreads; ++i) {
      threads.emplace_back(
          [&, i] { benchmark::DoNotOptimize(Bench::SumWords(file.Words() + i * numWords, numWords)); });
    }
    benchmark::DoNotOptimize(Bench::SumWords(file.Words(), numWords));
    threads.clear();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

struct Search {
  std::size_t numWords;
  std::size_t numRecords;
  unsigned numThreads;
  unsigned limit = 10;
  unsigned numBins = 0;
};

void SortedSearch(benchmark::State& state, const Search& search) {
  const SearchFile& file = GetFile(search.numWords, search.numRecords);
  QXFPDatabaseOptions options(search.limit, QXSimMeasure::Tanimoto);
  options.SetNumProcessors(search.numThreads);
  QXSimSearchResultImpl result(search.numBins, 0.0, 1.0);
  const double readSeconds = ReadSeconds(file, search.numThreads);
  double best = 1e9;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    file.Engine().SortedSearch(result, file.Query(), options);
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.NumBytes()));
  state.counters["comparisons/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(search.numRecords),
                         benchmark::Counter::kIsRate);
  state.counters["of_read"] = readSeconds / best;  // best against best: other processes disturb both
}

void Register(const char* name, const Search& search) {
  const std::string kernel = QXSystem::QXGetBitCountKernel().name;
  const std::string full = std::string(name) + '/' + kernel + '/' + std::to_string(search.numWords) + '/' +
                           std::to_string(search.numRecords) + '/' + std::to_string(search.numThreads);
  benchmark::RegisterBenchmark(full.c_str(), SortedSearch, search)
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
}

const bool areRegistered = [] {
  for (const double bytes : {smallBytes, largeBytes}) {
    for (const std::size_t numWords : {16U, 32U, 64U}) {
      const auto numRecords = static_cast<std::size_t>(bytes) / ((numWords + 2) * 8);
      for (const unsigned numThreads : {1U, 2U}) Register("Top10", {numWords, numRecords, numThreads});
      if (numWords != 32) continue;
      Register("Top10Histogram", {numWords, numRecords, 1, 10, 100});
      Register("Top1000", {numWords, numRecords, 1, 1000});
      Register("AllHits", {numWords, numRecords, 1, 0});
    }
  }
  return true;
}();

}  // namespace
