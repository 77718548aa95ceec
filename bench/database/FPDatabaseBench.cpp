// Queries of the in-memory database beside what they replace: the measure called for one entry after the
// other. The best of 100,000 path fingerprints also beside a plain read of the same bytes, which is the limit
// of a scan: "of_read" is the speed against that read, the best of both, for other processes disturb both.
// One thread. items_per_second are comparisons per second.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <set>

#include "../StreamingRead.h"
#include "BenchFingerprints.h"
#include "QXFingrix/QXFPDatabase.h"
#include "QXFingrix/QXSimilarity.h"
#include "QXFingrix/QXUnhashedSimFunc.h"
#include "similarity/TokenSimilarity.h"

namespace {

using namespace QXFingrix;

constexpr unsigned limit = 100;

// A database with the fingerprints that it was made of.
struct Collection {
  explicit Collection(std::vector<QXFingerPrint> entries)
      : fps(std::move(entries)), database(fps.front().GetFPTypeBase()) {
    for (const QXFingerPrint& fp : fps) database.AddFP(fp);
  }
  const QXFingerPrint& Query(std::size_t i) const { return fps[i * 997 % fps.size()]; }

  std::vector<QXFingerPrint> fps;
  QXFPDatabase database;
};

const Collection& Paths() {
  static const Collection collection(Bench::PathFPs(100000));
  return collection;
}
const Collection& Lingos() {
  static const Collection collection(Bench::DefaultFPs(QXFPType::Lingo, 4000));
  return collection;
}
const Collection& Tokens() {
  static const Collection collection(Bench::DefaultFPs(QXFPType::UHPath, 4000));
  return collection;
}

// Runs query(fingerprint) with changing fingerprints; returns the seconds of the fastest.
template <class Query>
double RunQueries(benchmark::State& state, const Collection& collection, Query query) {
  double best = 1e9;
  std::size_t i = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(query(collection.Query(i++)));
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(collection.fps.size()));
  return best;
}

double ReadSeconds(const std::vector<std::uint64_t>& words) {
  double best = 1e9;
  for (int round = 0; round < 20; ++round) {
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(Bench::SumWords(words.data(), words.size()));
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

void SortedScores(benchmark::State& state, const Collection& (*collection)()) {
  RunQueries(state, collection(),
             [&](const QXFingerPrint& fp) { return collection().database.GetSortedScores(fp, limit); });
}

void SortedPathScores(benchmark::State& state) {
  const std::vector<std::uint64_t> sameBytes(Paths().fps.size() * Paths().fps.front().GetWords().size(), 1);
  const double readSeconds = ReadSeconds(sameBytes);
  const double best = RunQueries(
      state, Paths(), [](const QXFingerPrint& fp) { return Paths().database.GetSortedScores(fp, limit); });
  state.counters["of_read"] = readSeconds / best;
}

void Scores(benchmark::State& state, const Collection& (*collection)()) {
  RunQueries(state, collection(),
             [&](const QXFingerPrint& fp) { return collection().database.GetScores(fp); });
}

void SortedOneByOne(benchmark::State& state, const Collection& (*collection)()) {
  RunQueries(state, collection(), [&](const QXFingerPrint& fp) {
    const auto hits = QXInitFPDatabaseHitList(limit, true, false, 0.0F);
    unsigned i = 0;
    for (const QXFingerPrint& entry : collection().fps) hits->AddHit(QXSimScore(i++, QXTanimoto(fp, entry)));
    hits->Sort();
    return hits->TakeHits();
  });
}

// The tokens of each entry as sorted addresses, compared by merging: what marking the query's tokens in a bit
// set has replaced.
void SortedTokensByMerging(benchmark::State& state) {
  std::set<std::string> tokens;
  std::vector<QXTokenIds> entries;
  for (const QXFingerPrint& fp : Tokens().fps) {
    QXTokenIds& ids = entries.emplace_back();
    for (const std::string_view token : SplitTokens(QXGetFPText(fp))) {
      ids.push_back(&*tokens.emplace(token).first);
    }
    std::ranges::sort(ids);
  }
  const QXTanimotoUnhashedSim measure;
  RunQueries(state, Tokens(), [&](const QXFingerPrint& fp) {
    const QXTokenIds& query = entries[static_cast<std::size_t>(&fp - Tokens().fps.data())];
    const auto hits = QXInitFPDatabaseHitList(limit, true, false, 0.0F);
    unsigned i = 0;
    for (const QXTokenIds& entry : entries) hits->AddHit(QXSimScore(i++, measure(query, entry)));
    hits->Sort();
    return hits->TakeHits();
  });
}

void AddAll(benchmark::State& state, const Collection& (*collection)()) {
  RunQueries(state, collection(),
             [&](const QXFingerPrint&) { return Collection(collection().fps).database.NumFingerPrints(); });
}

BENCHMARK(SortedPathScores)->Name("Sorted/Path/2048/100000")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortedOneByOne, Path / 2048 / 100000, Paths)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scores, Path / 2048 / 100000, Paths)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AddAll, Path / 2048 / 100000, Paths)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortedScores, Lingo / 4000, Lingos)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortedOneByOne, Lingo / 4000, Lingos)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortedScores, UHPath / 4000, Tokens)->Unit(benchmark::kMillisecond);
BENCHMARK(SortedTokensByMerging)->Name("SortedByMerging/UHPath/4000")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortedOneByOne, UHPath / 4000, Tokens)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK_CAPTURE(AddAll, UHPath / 4000, Tokens)->Unit(benchmark::kMillisecond);

}  // namespace
