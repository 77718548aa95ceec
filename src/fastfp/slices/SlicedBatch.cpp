// Every query is first searched by itself where its best scores are likely, so that its bar is high; then
// block after block is searched for all queries that may still have hits there.

#include "fastfp/slices/SlicedBatch.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <new>

#include "fastfp/scan/HitLists.h"
#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/SlicedSearch.h"

namespace QXFingrix {

namespace {

constexpr std::size_t maxGroup = 128;       // queries; their hit lists stay in the second cache
constexpr std::size_t minSharing = 96;      // queries; fewer are faster one by one
constexpr std::size_t numBlocksAlone = 16;  // 8,192 records: more no longer raise the bar by much
// Blocks of longer fingerprints do not fit into the second cache in pairs, this one and the next.
constexpr std::uint64_t maxFetchedBits = 4096;
constexpr std::size_t claimBlocks = 8;
constexpr std::uint64_t minThreaded = 100'000;  // comparisons; below, threads cost more than they gain

/// One query of a group, common to all threads.
struct BatchQuery {
  BatchQuery(const SlicedIndex& index, const RecordTable& records, const QueryBits& bits,
             const QXFPDatabaseOptions& options, std::size_t numAlone)
      : numSet(bits.numSet), search(index, records, bits, options, numAlone) {
    for (const SlicedQuery::Block& block : search.Query().bestFirst) {  // neighbours all of them
      firstAlone = std::min<std::size_t>(firstAlone, block.number);
      endAlone = std::max<std::size_t>(endAlone, block.number + 1);
    }
  }

  bool IsSearchedAlone(std::size_t block) const { return firstAlone <= block && block < endAlone; }

  std::uint64_t numSet;
  SlicedSearch search;
  std::size_t firstAlone = SIZE_MAX;
  std::size_t endAlone = 0;
};

/// Counts a block that the caches hold, and takes its hits.
template <class Part>
void SearchBlock(const SlicedIndex& index, std::span<const std::uint16_t> bits,
                 const SlicedQuery::Block& block, Part& part) {
  constexpr std::size_t step = QXSystem::QXColumnCounts::step;
  const auto& kernel = QXSystem::QXGetBitCountKernel();
  const std::uint32_t least = part.Least(block);
  if (bits.empty() && least > 0) return;
  QXSystem::QXColumnCounts counts;
  kernel.startColumns(counts);
  while (!bits.empty()) {
    const auto now = bits.first(std::min(step, bits.size()));
    bits = bits.subspan(now.size());
    const auto next = bits.first(std::min(step, bits.size()));
    const auto left = static_cast<std::uint32_t>(bits.size());
    if (!kernel.addColumns(counts, index.Columns(block.number), now, next, least > left ? least - left : 0))
      return;
  }
  std::array<std::uint32_t, SlicedIndex::blockRecords> shared;
  const std::size_t size = index.Size(block.number);
  kernel.writeColumns(counts, size, shared.data());
  part.Take(block, std::span<const std::uint32_t>(shared.data(), size));
}

/// The search of all threads for the hits of a group.
class GroupSearch {
 public:
  GroupSearch(const SlicedIndex& index, const RecordTable& records, std::span<const QueryBits> queries,
              const QXFPDatabaseOptions& options)
      : index_(index),
        records_(records),
        options_(options),
        hits_(queries.size(), records.numRecords, options) {
    const std::size_t numAlone = queries.size() < minSharing ? index.NumBlocks() : numBlocksAlone;
    for (const QueryBits& query : queries) queries_.emplace_back(index, records, query, options, numAlone);
  }

  // Run by every thread; an exception must not leave it.
  void Work() noexcept {
    try {
      HitLists hits(queries_.size(), records_.numRecords, options_);
      std::deque<SlicedSearch::Part<QXFPDatabaseHitList>> parts;
      for (std::size_t i = 0; i < queries_.size(); ++i) parts.emplace_back(queries_[i].search, hits[i]);
      // Each thread begins with other queries, and ends by helping with those that are left.
      const std::size_t first = queries_.size() * numThreads_.fetch_add(1) / options_.GetNumProcessors();
      for (std::size_t i = first; i < first + queries_.size() && !isOutOfMemory_; ++i) {
        const std::size_t query = i % queries_.size();
        queries_[query].search.Run(hits[query], [](std::size_t) {});
      }
      const bool isFetched = queries_.size() >= minSharing && index_.numBits <= maxFetchedBits;
      for (std::size_t i; (i = nextBlock_.fetch_add(claimBlocks)) < index_.NumBlocks() && !isOutOfMemory_;) {
        const std::size_t end = std::min(i + claimBlocks, index_.NumBlocks());
        for (; i < end; ++i) SearchForAll(i, isFetched && i + 1 < end, parts);
      }
      hits_.Merge(hits);
    } catch (const std::bad_alloc&) {
      isOutOfMemory_ = true;
    }
  }

  /// Errors   std::bad_alloc when a thread ran out of memory.
  void Finish(std::vector<std::vector<QXSimScore>>& hits) {
    if (isOutOfMemory_) throw std::bad_alloc();
    hits_.TakeSorted(hits);
  }

 private:
  void SearchForAll(std::size_t number, bool isNextFetched,
                    std::deque<SlicedSearch::Part<QXFPDatabaseHitList>>& parts) {
    for (std::size_t i = 0; i < queries_.size(); ++i) {
      if (isNextFetched) Fetch(number + 1, i);
      const BatchQuery& query = queries_[i];
      if (query.IsSearchedAlone(number)) continue;
      const auto block = SlicedQuery::MakeBlock(index_, number, query.numSet);
      if (parts[i].CanHoldHit(block)) SearchBlock(index_, query.search.Query().bits, block, parts[i]);
    }
  }

  // Asks for a share of a block's columns, so that all are there when all queries have been searched for.
  void Fetch(std::size_t number, std::size_t share) const {
    const std::uint64_t* const columns = index_.Columns(number);
    const std::size_t end = index_.numBits * (share + 1) / queries_.size();
    for (std::size_t column = index_.numBits * share / queries_.size(); column < end; ++column) {
      __builtin_prefetch(columns + column * SlicedIndex::columnWords, 0, 2);  // into the second cache
    }
  }

  const SlicedIndex& index_;
  const RecordTable& records_;
  const QXFPDatabaseOptions& options_;
  std::deque<BatchQuery> queries_;
  std::atomic<std::size_t> numThreads_{0};  // that are at work
  std::atomic<std::size_t> nextBlock_{0};
  std::atomic<bool> isOutOfMemory_{false};
  HitLists hits_;
};

}  // namespace

std::vector<std::vector<QXSimScore>> SlicedBatch(const SlicedIndex& index, const RecordTable& records,
                                                 std::span<const QueryBits> queries,
                                                 const QXFPDatabaseOptions& options) {
  std::vector<std::vector<QXSimScore>> hits;
  while (!queries.empty()) {
    const auto group = queries.first(std::min(maxGroup, queries.size()));
    const bool isSmall = records.numRecords < minThreaded / group.size();
    GroupSearch search(index, records, group, options);
    RunThreads(isSmall ? 1 : options.GetNumProcessors(), [&search] { search.Work(); });
    search.Finish(hits);
    queries = queries.subspan(group.size());
  }
  return hits;
}

}  // namespace QXFingrix
