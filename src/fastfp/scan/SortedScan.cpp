// Threads claim ranges of records from a shared counter, so that a slow one does not hold up the others, and
// keep their hits to themselves until the end. Each list holds the best of what its thread has seen in one
// total order of hits; the best of those lists are the best of all, whoever scanned what.

#include "fastfp/scan/SortedScan.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "fastfp/scan/RunThreads.h"

namespace QXFingrix {

namespace {

constexpr std::uint64_t blockSize = 100;     // records; progress and claims come in whole blocks
constexpr std::uint64_t minThreaded = 1000;  // records; below, starting threads costs more than it gains
constexpr std::uint64_t maxClaimBlocks =
    80;  // longer claims than this no longer come closer to full bandwidth
constexpr std::uint64_t progressBlocks = 8;
constexpr std::uint64_t claimsPerThread = 8;  // at least, where there are enough blocks

std::uint64_t ClaimSize(std::uint64_t numRecords, unsigned numThreads) {
  const std::uint64_t blocks = numRecords / blockSize / (numThreads * claimsPerThread);
  return std::clamp<std::uint64_t>(blocks, 1, maxClaimBlocks) * blockSize;
}

class ThreadedSearch {
 public:
  ThreadedSearch(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options,
                 QXSimSearchResultImpl& result, unsigned numThreads)
      : records_(records),
        query_(query),
        options_(options),
        result_(result),
        claimSize_(ClaimSize(records.numRecords, numThreads)) {}

  // Run by every thread; an exception must not leave it.
  void Work() noexcept {
    try {
      const auto hits = QXInitFPDatabaseHitList(records_.numRecords, options_);
      QXFPHistogram histogram = result_.MakeHistogram();
      SortedScan scan(records_, query_, options_, *hits);
      for (;;) {
        const std::uint64_t begin = next_.fetch_add(claimSize_);
        if (begin >= records_.numRecords || isOutOfMemory_) break;
        ScanClaim(scan, histogram, begin, begin + std::min(claimSize_, records_.numRecords - begin));
      }
      result_.Merge(histogram, hits->GetHits());
    } catch (const std::bad_alloc&) {
      isOutOfMemory_ = true;
    }
  }

  bool IsOutOfMemory() const { return isOutOfMemory_; }

 private:
  void ScanClaim(SortedScan& scan, QXFPHistogram& histogram, std::uint64_t begin, std::uint64_t end) {
    constexpr std::uint64_t step = progressBlocks * blockSize;
    for (std::uint64_t from = begin; from < end; from += step) {
      const std::uint64_t to = std::min(from + step, end);
      if (result_.HasHistogram()) {
        scan.Scan(from, to, histogram);
      } else {
        scan.Scan(from, to);
      }
      result_.AddSearched(to - from);
    }
  }

  const RecordTable& records_;
  const QueryBits& query_;
  const QXFPDatabaseOptions& options_;
  QXSimSearchResultImpl& result_;
  const std::uint64_t claimSize_;
  std::atomic<std::uint64_t> next_{0};
  std::atomic<bool> isOutOfMemory_{false};
};

}  // namespace

void SortedScan::Scan(std::uint64_t begin, std::uint64_t end) {
  ScanCandidates(records_, query_, scorer_, filter_, begin, end, hits_);
}

std::uint32_t SortedScan::LeastShared(float minBitCount) {
  filter_.SetBar(hits_.GetBar().GetScore());
  return filter_.LeastShared(minBitCount);
}

void SortedScan::Take(const std::uint64_t* first, std::uint32_t size, const float* bitCounts,
                      const std::uint32_t* shared) {
  OfferCandidates(records_, scorer_, filter_, first, size, bitCounts, shared, hits_);
}

void SortedScan::Scan(std::uint64_t begin, std::uint64_t end, QXFPHistogram& histogram) {
  ScanAll(records_, query_, scorer_, begin, end, [&](unsigned idx, double score) {
    histogram.AddSample(score);
    hits_.AddHit(QXSimScore(idx, score));
  });
}

void ThreadedScan(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options,
                  QXSimSearchResultImpl& result) {
  const unsigned numThreads = records.numRecords < minThreaded ? 1 : options.GetNumProcessors();
  ThreadedSearch search(records, query, options, result, numThreads);
  RunThreads(numThreads, [&search] { search.Work(); });
  if (search.IsOutOfMemory()) throw std::bad_alloc();
}

}  // namespace QXFingrix
