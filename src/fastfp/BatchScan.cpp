// Threads claim ranges of records and search them for every query of a group, each with hit lists of its own.
// A list holds the best of what its thread has seen in one total order of hits, so merging gives the same hits
// whoever scanned what.

#include "fastfp/BatchScan.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <new>

#include "fastfp/RunThreads.h"
#include "fastfp/SortedScan.h"

namespace QXFingrix {

namespace {

constexpr std::size_t maxGroup = 128;  // queries; their counts, filters and lists stay in the second cache
constexpr std::uint64_t claimSize = 32 * scanBlockSize;
constexpr std::uint64_t minThreaded =
    100'000;  // comparisons; below, starting threads costs more than it gains

using HitLists = std::vector<std::unique_ptr<QXFPDatabaseHitList>>;

HitLists MakeHitLists(std::size_t num, std::uint64_t numRecords, const QXFPDatabaseOptions& options) {
  HitLists lists(num);
  for (auto& list : lists) list = QXInitFPDatabaseHitList(numRecords, options);
  return lists;
}

/// One thread's search for the hits of a group.
class GroupScan {
 public:
  GroupScan(const RecordTable& records, std::span<const QueryBits> queries,
            std::span<const std::uint64_t> words, const QXFPDatabaseOptions& options)
      : records_(records),
        words_(words),
        hits_(MakeHitLists(queries.size(), records.numRecords, options)),
        shared_(queries.size() * scanBlockSize) {
    for (std::size_t i = 0; i < queries.size(); ++i)
      scans_.emplace_back(records, queries[i], options, *hits_[i]);
  }

  void Scan(std::uint64_t begin, std::uint64_t end) {
    for (std::uint64_t block = begin; block < end; block += scanBlockSize) {
      ScanBlock(records_.Record(block), std::min(scanBlockSize, end - block));
    }
  }

  const HitLists& GetHits() const { return hits_; }

 private:
  void ScanBlock(const std::uint64_t* first, std::uint64_t size) {
    const std::size_t numWords = records_.numWords;
    QXSystem::QXGetBitCountKernel().countAndTile(
        words_.data(), numWords, scans_.size(), first + FileLayout::dataSlot,
        FileLayout::RecordWords(numWords), size, numWords, shared_.data(), scanBlockSize);
    for (std::size_t i = 0; i < scans_.size(); ++i) {
      scans_[i].Take(first, static_cast<std::uint32_t>(size), &shared_[i * scanBlockSize]);
    }
  }

  const RecordTable& records_;
  const std::span<const std::uint64_t> words_;
  const HitLists hits_;
  std::deque<SortedScan> scans_;
  std::vector<std::uint32_t> shared_;  // a row for each query
};

/// The search of all threads for the hits of a group.
class GroupSearch {
 public:
  GroupSearch(const RecordTable& records, std::span<const QueryBits> queries,
              const QXFPDatabaseOptions& options)
      : records_(records),
        queries_(queries),
        options_(options),
        hits_(MakeHitLists(queries.size(), records.numRecords, options)) {
    for (const QueryBits& query : queries)
      words_.insert(words_.end(), query.words.begin(), query.words.end());
  }

  // Run by every thread; an exception must not leave it.
  void Work() noexcept {
    try {
      GroupScan scan(records_, queries_, words_, options_);
      for (;;) {
        const std::uint64_t begin = next_.fetch_add(claimSize);
        if (begin >= records_.numRecords || isOutOfMemory_) break;
        scan.Scan(begin, begin + std::min(claimSize, records_.numRecords - begin));
      }
      Merge(scan.GetHits());
    } catch (const std::bad_alloc&) {
      isOutOfMemory_ = true;
    }
  }

  /// Errors   std::bad_alloc when a thread ran out of memory.
  const HitLists& Finish() {
    if (isOutOfMemory_) throw std::bad_alloc();
    for (auto& list : hits_) list->Sort();
    return hits_;
  }

 private:
  void Merge(const HitLists& found) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < hits_.size(); ++i) {
      for (const QXSimScore& hit : found[i]->GetHits()) hits_[i]->AddHit(hit);
    }
  }

  const RecordTable& records_;
  const std::span<const QueryBits> queries_;
  const QXFPDatabaseOptions& options_;
  std::vector<std::uint64_t> words_;  // of all queries, one after the other
  std::atomic<std::uint64_t> next_{0};
  std::atomic<bool> isOutOfMemory_{false};
  HitLists hits_;
  std::mutex mutex_;
};

}  // namespace

std::vector<std::vector<QXSimScore>> BatchScan(const RecordTable& records, std::span<const QueryBits> queries,
                                               const QXFPDatabaseOptions& options) {
  std::vector<std::vector<QXSimScore>> hits;
  while (!queries.empty()) {
    const auto group = queries.first(std::min(maxGroup, queries.size()));
    const bool isSmall = records.numRecords < minThreaded / group.size();
    GroupSearch search(records, group, options);
    RunThreads(isSmall ? 1 : options.GetNumProcessors(), [&search] { search.Work(); });
    for (const auto& list : search.Finish()) hits.push_back(list->TakeHits());
    queries = queries.subspan(group.size());
  }
  return hits;
}

}  // namespace QXFingrix
