// The block kernels beside a plain streaming read of the same memory, which is the limit that a scan can reach.
// Names: Function/kernel/words/records. Sizes inside L2, inside L3 and far beyond both.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"

namespace {

using QXSystem::QXBitCountKernel;

constexpr std::size_t extraWords = 2;  // what a record of a fingerprint file carries besides its bits
constexpr std::size_t blockRecords = 1024;
constexpr std::size_t cachedWords = std::size_t{1} << 20;
constexpr std::size_t maxTotalWords = std::size_t{512} << 17;  // 512 MiB

// One buffer for all benchmarks, so that each measures the same pages.
std::span<const std::uint64_t> GetRecords() {
  static const std::vector<std::uint64_t> words = [] {
    std::mt19937_64 random(1);
    std::vector<std::uint64_t> result(maxTotalWords);
    for (std::uint64_t& word : result) word = random() & random() & random();
    return result;
  }();
  return words;
}

void SetCounters(benchmark::State& state, std::size_t numWords, std::size_t numRecords) {
  const auto numPasses = static_cast<std::int64_t>(state.iterations());
  const auto numBytes =
      static_cast<std::int64_t>(numRecords * (numWords + extraWords) * sizeof(std::uint64_t));
  state.SetBytesProcessed(numPasses * numBytes);
  state.counters["comparisons/s"] = benchmark::Counter(
      static_cast<double>(numPasses) * static_cast<double>(numRecords), benchmark::Counter::kIsRate);
}

void ScanRecords(benchmark::State& state, const QXBitCountKernel& kernel, std::size_t numWords,
                 std::size_t numRecords) {
  const std::uint64_t* records = GetRecords().data();
  const std::vector<std::uint64_t> query(records, records + numWords);
  const std::size_t stride = numWords + extraWords;
  std::vector<std::uint32_t> both(blockRecords);
  for (auto _ : state) {
    for (std::size_t begin = 0; begin < numRecords; begin += blockRecords) {
      const std::size_t count = std::min(blockRecords, numRecords - begin);
      kernel.countAnd(query.data(), numWords, records + begin * stride, stride, count, both.data());
      benchmark::DoNotOptimize(both.data());
      benchmark::ClobberMemory();
    }
  }
  SetCounters(state, numWords, numRecords);
}

constexpr std::size_t tileQueries = 128;
constexpr std::size_t tileRecords = 512;

// All pairs of a tile inside L2: each query on its own, or all of them at once.
template <bool isTiled>
void CompareTile(benchmark::State& state, const QXBitCountKernel& kernel, std::size_t numWords) {
  const std::size_t stride = numWords + extraWords;
  const std::uint64_t* records = GetRecords().data();
  const std::uint64_t* queries = records + tileRecords * stride;
  std::vector<std::uint32_t> both(tileQueries * tileRecords);
  for (auto _ : state) {
    if constexpr (isTiled) {
      const QXSystem::QXBitLists lists(queries, stride, tileQueries, numWords);
      kernel.countLists(lists, records, stride, tileRecords, nullptr, both.data(), tileRecords, nullptr);
    } else {
      for (std::size_t q = 0; q < tileQueries; ++q) {
        kernel.countAnd(queries + q * stride, numWords, records, stride, tileRecords,
                        both.data() + q * tileRecords);
      }
    }
    benchmark::DoNotOptimize(both.data());
    benchmark::ClobberMemory();
  }
  SetCounters(state, numWords, tileQueries * tileRecords);
}

// A sum of all words with wide loads, prefetched like the kernels beyond the caches: the fastest read of one
// thread that we know how to write.
template <bool isPrefetched>
[[gnu::target("avx2")]] std::uint64_t SumWords(const std::uint64_t* words, std::size_t numWords) {
  using Vector [[gnu::vector_size(32)]] = long long;
  using Unaligned [[gnu::vector_size(32), gnu::aligned(8), gnu::may_alias]] = long long;
  Vector even{};
  Vector odd{};
#pragma GCC unroll 4
  for (std::size_t i = 0; i + 8 <= numWords; i += 8) {
    if constexpr (isPrefetched) __builtin_prefetch(words + i + 768);
    even += *reinterpret_cast<const Unaligned*>(words + i);
    odd += *reinterpret_cast<const Unaligned*>(words + i + 4);
  }
  const Vector sum = even + odd;
  return static_cast<std::uint64_t>(sum[0] + sum[1] + sum[2] + sum[3]);
}

void ReadRecords(benchmark::State& state, std::size_t numWords, std::size_t numRecords) {
  if (!__builtin_cpu_supports("avx2")) return state.SkipWithError("needs AVX2");
  const std::uint64_t* records = GetRecords().data();
  const std::size_t totalWords = numRecords * (numWords + extraWords);
  const auto sumWords = totalWords > cachedWords ? SumWords<true> : SumWords<false>;
  for (auto _ : state) benchmark::DoNotOptimize(sumWords(records, totalWords));
  SetCounters(state, numWords, numRecords);
}

const bool areRegistered = [] {
  for (const std::size_t totalWords : {std::size_t{24} << 10, std::size_t{512} << 10, maxTotalWords}) {
    for (const std::size_t numWords : {4u, 16u, 32u, 64u}) {
      const std::size_t numRecords = totalWords / (numWords + extraWords);
      const std::string shape = "/" + std::to_string(numWords) + "/" + std::to_string(numRecords);
      benchmark::RegisterBenchmark(("StreamingRead/avx2" + shape).c_str(), ReadRecords, numWords, numRecords);
      for (const QXBitCountKernel& kernel : QXSystem::QXGetBitCountKernels()) {
        if (!kernel.isSupported()) continue;
        benchmark::RegisterBenchmark(("CountAnd/" + std::string(kernel.name) + shape).c_str(), ScanRecords,
                                     std::cref(kernel), numWords, numRecords);
      }
    }
  }
  for (const QXBitCountKernel& kernel : QXSystem::QXGetBitCountKernels()) {
    if (!kernel.isSupported()) continue;
    for (const std::size_t numWords : {16u, 32u, 64u}) {
      const std::string shape = "/" + std::string(kernel.name) + "/" + std::to_string(numWords) + "/" +
                                std::to_string(tileQueries) + "x" + std::to_string(tileRecords);
      benchmark::RegisterBenchmark(("OneByOne" + shape).c_str(), CompareTile<false>, std::cref(kernel),
                                   numWords);
      benchmark::RegisterBenchmark(("Tile" + shape).c_str(), CompareTile<true>, std::cref(kernel), numWords);
    }
  }
  return true;
}();

}  // namespace
