// Threads claim ranges of records and search them for every query of a group.

#include "fastfp/scan/BatchScan.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <new>

#include "fastfp/scan/HitLists.h"
#include "fastfp/scan/RunThreads.h"
#include "fastfp/scan/SortedScan.h"

namespace QXFingrix {

namespace {

constexpr std::size_t maxGroup = 128;  // queries; their counts and lists stay in the second cache
constexpr std::size_t minTiled = 8;    // queries; fewer are faster one by one
constexpr std::uint64_t tileRecords = 512;
constexpr std::uint64_t claimSize = 8 * tileRecords;
constexpr std::uint64_t minThreaded =
    100'000;  // comparisons; below, starting threads costs more than it gains

/// One thread's search for the hits of a group.
class GroupScan {
 public:
  GroupScan(const RecordTable& records, std::span<const QueryBits> queries, const QXSystem::QXBitLists& lists,
            const QXFPDatabaseOptions& options)
      : records_(records),
        lists_(lists),
        hits_(queries.size(), records.numRecords, options),
        least_(queries.size()),
        reaches_(std::make_unique<bool[]>(queries.size())),
        shared_(queries.size() * tileRecords) {
    for (std::size_t i = 0; i < queries.size(); ++i)
      scans_.emplace_back(records, queries[i], options, hits_[i]);
  }

  void Scan(std::uint64_t begin, std::uint64_t end) {
    if (scans_.size() < minTiled) {
      for (SortedScan& scan : scans_) scan.Scan(begin, end);
      return;
    }
    for (std::uint64_t tile = begin; tile < end; tile += tileRecords) {
      ScanTile(records_.Record(tile), static_cast<std::uint32_t>(std::min(tileRecords, end - tile)));
    }
  }

  const HitLists& GetHits() const { return hits_; }

 private:
  void ScanTile(const std::uint64_t* first, std::uint32_t size) {
    ReadBitCounts(records_, first, size, bitCounts_.data());
    const float minBitCount = *std::min_element(bitCounts_.begin(), bitCounts_.begin() + size);
    for (std::size_t i = 0; i < scans_.size(); ++i) least_[i] = scans_[i].LeastShared(minBitCount);
    QXSystem::QXGetBitCountKernel().countLists(lists_, first + FileLayout::dataSlot,
                                               FileLayout::RecordWords(records_.numWords), size,
                                               least_.data(), shared_.data(), tileRecords, reaches_.get());
    for (std::size_t i = 0; i < scans_.size(); ++i) {
      if (reaches_[i]) scans_[i].Take(first, size, bitCounts_.data(), &shared_[i * tileRecords]);
    }
  }

  const RecordTable& records_;
  const QXSystem::QXBitLists& lists_;
  HitLists hits_;
  std::deque<SortedScan> scans_;
  std::array<float, tileRecords> bitCounts_;
  std::vector<std::uint32_t> least_;
  std::unique_ptr<bool[]> reaches_;
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
        hits_(queries.size(), records.numRecords, options) {
    if (queries.size() < minTiled) return;
    std::vector<std::uint64_t> words;
    for (const QueryBits& query : queries) words.insert(words.end(), query.words.begin(), query.words.end());
    lists_ = QXSystem::QXBitLists(words.data(), records.numWords, queries.size(), records.numWords);
  }

  // Run by every thread; an exception must not leave it.
  void Work() noexcept {
    try {
      GroupScan scan(records_, queries_, lists_, options_);
      for (;;) {
        const std::uint64_t begin = next_.fetch_add(claimSize);
        if (begin >= records_.numRecords || isOutOfMemory_) break;
        scan.Scan(begin, begin + std::min(claimSize, records_.numRecords - begin));
      }
      hits_.Merge(scan.GetHits());
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
  const RecordTable& records_;
  const std::span<const QueryBits> queries_;
  const QXFPDatabaseOptions& options_;
  QXSystem::QXBitLists lists_;  // of all queries
  std::atomic<std::uint64_t> next_{0};
  std::atomic<bool> isOutOfMemory_{false};
  HitLists hits_;
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
    search.Finish(hits);
    queries = queries.subspan(group.size());
  }
  return hits;
}

}  // namespace QXFingrix
