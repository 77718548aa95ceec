#pragma once

#include <cstdint>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "fastfp/SimSearchResultImpl.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/scan/Scorer.h"
#include "similarity/CandidateFilter.h"

namespace QXFingrix {

/// One thread's search for the best scores: scans ranges of records into a hit list of its own.
class SortedScan {
 public:
  /// The query's words and the hits are referred to and must outlive the scan.
  SortedScan(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options,
             QXFPDatabaseHitList& hits)
      : records_(records),
        query_(query),
        scorer_(options, records.NumBits(), query.numSet),
        filter_(MakeFilter(options, records, query)),
        hits_(hits) {}
  SortedScan(const SortedScan&) = delete;
  SortedScan& operator=(const SortedScan&) = delete;

  /// Offers the records from begin to end - 1 that can become hits.
  void Scan(std::uint64_t begin, std::uint64_t end);
  /// The same, and counts the score of every record.
  void Scan(std::uint64_t begin, std::uint64_t end, QXFPHistogram& histogram);

  /// For callers that count shared bits themselves: no record of at least minBitCount bits becomes a hit with
  /// fewer of them than this.
  std::uint32_t LeastShared(float minBitCount);
  /// Offers the records of a block that they have counted.
  void Take(const std::uint64_t* first, std::uint32_t size, const float* bitCounts,
            const std::uint32_t* shared);

 private:
  const RecordTable records_;
  const QueryBits query_;
  const Scorer scorer_;
  CandidateFilter filter_;
  QXFPDatabaseHitList& hits_;
};

/// Searches all records on the threads that the options ask for and merges what they find into the result.
/// Errors   std::bad_alloc when a thread ran out of memory; the result is then incomplete.
void ThreadedScan(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options,
                  QXSimSearchResultImpl& result);

}  // namespace QXFingrix
