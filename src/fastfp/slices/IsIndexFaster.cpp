#include "fastfp/slices/IsIndexFaster.h"

#include <algorithm>

#include "fastfp/slices/SlicedIndex.h"
#include "fastfp/slices/SlicedSearch.h"

namespace QXFingrix {

namespace {

constexpr std::uint64_t minRecords = 4096;  // below, a scan takes a few microseconds

// Nanoseconds, measured where records and columns come from memory, and where they come from the third cache.
struct Costs {
  double recordByte;
  double block;
  double column;
};
constexpr Costs fromMemory{0.06, 70.0, 12.0};
constexpr Costs fromCache{0.025, 50.0, 6.5};
constexpr double cacheBytes = 16e6;

// How many bits a record as large as the query has to share to reach the cutoff.
double LeastAtCutoff(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options) {
  CandidateFilter filter = MakeFilter(options, records, query);
  filter.SetBar(options.GetCutoff());
  return filter.LeastShared(static_cast<float>(query.numSet));
}

// Whether there is something to give up: not where most records are hits.
bool WantsFew(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options) {
  if (!options.HasCutoff()) return options.GetLimit() != 0 && options.GetLimit() < records.numRecords / 20;
  return 6.0 * LeastAtCutoff(records, query, options) >= static_cast<double>(query.numSet);
}

// How many columns of a block are read before it is given up. Without a cutoff all of them, to be on the safe
// side: it depends on how near the hits are.
double NumColumns(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options) {
  const auto numSet = static_cast<double>(query.numSet);
  if (!options.HasCutoff()) return numSet;
  return std::clamp(1.7 * (numSet - LeastAtCutoff(records, query, options)) + 8.0, 0.0, numSet);
}

bool IsFasterForOne(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options) {
  if (!WantsFew(records, query, options)) return false;
  const auto numRecords = static_cast<double>(records.numRecords);
  const double numBytes = numRecords * static_cast<double>(FileLayout::RecordWords(records.numWords) * 8);
  const Costs& costs = numBytes < cacheBytes ? fromCache : fromMemory;
  const double numBlocks = numRecords / SlicedIndex::blockRecords;
  const double numColumns = NumColumns(records, query, options);
  return numBlocks * (costs.block + costs.column * numColumns) < numBytes * costs.recordByte;
}

// A scan for many queries turns blocks on their side too: what is left to gain is that blocks are given up early,
// and their order is worse for long lists.
bool CanGainForMany(const RecordTable& records, std::span<const QueryBits> queries,
                    const QXFPDatabaseOptions& options) {
  constexpr std::size_t many = 8;
  constexpr unsigned longList = 500;
  if (queries.size() < many || options.HasCutoff()) return true;
  return options.GetLimit() < std::min<std::uint64_t>(longList, records.numRecords / 500);
}

}  // namespace

bool IsIndexFaster(const RecordTable& records, std::span<const QueryBits> queries,
                   const QXFPDatabaseOptions& options) {
  if (records.numRecords < minRecords || !WantsMostSimilar(options)) return false;
  if (!CanGainForMany(records, queries, options)) return false;
  const auto numFaster = std::ranges::count_if(
      queries, [&](const QueryBits& query) { return IsFasterForOne(records, query, options); });
  return 2 * static_cast<std::size_t>(numFaster) > queries.size();
}

}  // namespace QXFingrix
