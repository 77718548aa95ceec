// Searches with an index beside scans of the same file: every way in its own rounds of queries, one after the other,
// since searches come so and data of the one throws that of the other out of the caches. Rounds alternate.
//
// usage: qx_fastfp_index FILE.fpbin [QUERIES] [ROUNDS]
// Queries are records of the file. A line of the table: what is asked for; milliseconds for one query by a scan and
// with the index, each the median of rounds; their ratio; the least ratio of a single query, from its best times; hits
// of a query. Then batches with one thread and two. Ends with 1 when any hit differs.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <span>
#include <vector>

#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXFastFPIndex.h"

namespace {

using namespace QXFingrix;
using Clock = std::chrono::steady_clock;
using Hits = QXSystem::QXIter<QXSimScore>;

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

// Reads a file as a program would that wants its words once; from the page cache, the second time.
double ReadFile(const char* path) {
  std::vector<std::uint64_t> buffer(1 << 17);
  std::ifstream in(path, std::ios::binary);
  const auto start = Clock::now();
  std::uint64_t sum = 0;
  while (in.read(reinterpret_cast<char*>(buffer.data()), static_cast<std::streamsize>(buffer.size() * 8)) ||
         in.gcount() > 0) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(in.gcount()) / 8; ++i) sum += buffer[i];
  }
  const double time = MillisecondsSince(start);
  return sum == 1 ? 0.0 : time;
}

class Comparison {
 public:
  Comparison(const QXFastFPDatabase& plain, const QXFastFPDatabase& indexed,
             std::vector<QXFingerPrint> queries, std::size_t numRounds)
      : databases_{&plain, &indexed}, queries_(std::move(queries)), numRounds_(numRounds) {}

  void CompareSingle(const char* name, const QXFPDatabaseOptions& options) {
    std::vector<double> rounds[2];
    std::vector<double> best[2];
    std::vector<Hits> hits[2];
    for (int way : {0, 1}) best[way].assign(queries_.size(), 1e9);
    for (std::size_t round = 0; round < numRounds_; ++round) {
      for (int way : {0, 1}) {
        hits[way].clear();
        const auto start = Clock::now();
        for (std::size_t i = 0; i < queries_.size(); ++i) {
          const auto began = Clock::now();
          hits[way].push_back(databases_[way]->GetSortedScores(queries_[i], options));
          best[way][i] = std::min(best[way][i], MillisecondsSince(began));
        }
        rounds[way].push_back(MillisecondsSince(start) / static_cast<double>(queries_.size()));
      }
    }
    double worst = 1e9;
    for (std::size_t i = 0; i < queries_.size(); ++i) worst = std::min(worst, best[0][i] / best[1][i]);
    const std::size_t numHits = Compare(hits[0], hits[1]);
    std::printf("%-24s %9.3f %9.3f %7.1f %7.1f %9.0f\n", name, Median(rounds[0]), Median(rounds[1]),
                Median(rounds[0]) / Median(rounds[1]), worst,
                static_cast<double>(numHits) / static_cast<double>(queries_.size()));
  }

  void CompareBatch(const char* name, QXFPDatabaseOptions options) {
    std::vector<double> rounds[2][2];  // by way, number of threads
    std::vector<Hits> hits[2];
    for (std::size_t round = 0; round < numRounds_; ++round) {
      for (int way : {0, 1}) {
        for (unsigned numThreads : {1, 2}) {
          options.SetNumProcessors(numThreads);
          const auto start = Clock::now();
          hits[way] = databases_[way]->GetSortedScores(queries_, options);
          rounds[way][numThreads - 1].push_back(MillisecondsSince(start) /
                                                static_cast<double>(queries_.size()));
        }
      }
    }
    Compare(hits[0], hits[1]);
    const double scan = Median(rounds[0][0]), one = Median(rounds[1][0]), two = Median(rounds[1][1]);
    std::printf("%-24s %9.3f %9.3f %7.1f %9.3f %7.2f\n", name, scan, one, scan / one, two, one / two);
  }

  bool AreSame() const { return areSame_; }

 private:
  std::size_t Compare(const std::vector<Hits>& a, const std::vector<Hits>& b) {
    std::size_t numHits = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
      std::vector<QXSimScore> x, y;
      for (const QXSimScore& hit : a[i]) x.push_back(hit);
      for (const QXSimScore& hit : b[i]) y.push_back(hit);
      numHits += x.size();
      if (x != y) areSame_ = false;
    }
    return numHits;
  }

  const QXFastFPDatabase* databases_[2];
  const std::vector<QXFingerPrint> queries_;
  const std::size_t numRounds_;
  bool areSame_ = true;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    std::cerr << "usage: qx_fastfp_index FILE.fpbin [QUERIES] [ROUNDS]\n";
    return 2;
  }
  const std::size_t numQueries = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 128;
  const std::size_t numRounds = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 5;
  using MemoryType = unsigned;
  constexpr MemoryType inMemory = QXFastFPDatabaseMemoryType::InMemory;
  ReadFile(argv[1]);
  const QXFastFPDatabase plain(argv[1], inMemory, QXFastFPDatabaseIndex::None);
  auto start = Clock::now();
  const QXFastFPDatabase indexed(argv[1], inMemory, QXFastFPDatabaseIndex::Build);
  const double opening = MillisecondsSince(start);
  if (!plain.IsValid() || !indexed.IsValid() || plain.NumFingerPrints() == 0) return 2;

  std::mt19937_64 random(1);
  std::vector<QXFingerPrint> queries(numQueries);
  double numSet = 0.0;
  for (QXFingerPrint& query : queries) {
    plain.GetFingerPrint(query, random() % plain.NumFingerPrints());
    numSet += static_cast<double>(query.CountBits()) / static_cast<double>(numQueries);
  }
  std::printf("%llu fingerprints of %u bits, %.0f of them set in a query\n",
              static_cast<unsigned long long>(plain.NumFingerPrints()), queries.at(0).GetSize(), numSet);
  std::printf("reading the file %.0f ms, opening it in memory with an index %.0f ms\n", ReadFile(argv[1]),
              opening);

  Comparison comparison(plain, indexed, queries, numRounds);
  std::printf("%-24s %9s %9s %7s %7s %9s\n", "one query", "scan ms", "index ms", "times", "least", "hits");
  const auto top = [](unsigned limit) { return QXFPDatabaseOptions(limit, QXSimMeasure::Tanimoto); };
  const auto above = [&](float cutoff) {
    QXFPDatabaseOptions options = top(0);
    options.SetCutoff(cutoff);
    return options;
  };
  comparison.CompareSingle("best 10", top(10));
  comparison.CompareSingle("best 100", top(100));
  comparison.CompareSingle("best 1000", top(1000));
  comparison.CompareSingle("above 0.8", above(0.8F));
  comparison.CompareSingle("above 0.7", above(0.7F));
  comparison.CompareSingle("above 0.5", above(0.5F));
  std::printf("%-24s %9s %9s %7s %9s %7s\n", "all queries in one call", "scan ms", "index ms", "times",
              "2 threads", "times");
  comparison.CompareBatch("best 10", top(10));
  comparison.CompareBatch("best 100", top(100));
  comparison.CompareBatch("above 0.7", above(0.7F));
  if (comparison.AreSame()) return 0;
  std::cerr << "HITS DIFFER\n";
  return 1;
}
