#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXFPHistogram.h"
#include "QXFingrix/QXSimScore.h"
#include "QXFingrix/QXSimSearchResult.h"

namespace QXFingrix {

/// The state of one threaded search, shared by its threads and by whoever watches it.
class QXSimSearchResultImpl {
 public:
  QXSimSearchResultImpl(unsigned numBins, double min, double max);

  /// Starts over for a search of numTargets records, which is then in progress.
  void Init(std::uint64_t numTargets, const QXFPDatabaseOptions& options);

  unsigned GetSearchStatus() const { return status_; }
  void SetSearchStatus(unsigned status) { status_ = status; }
  /// Puts the hits in order and sets the status.
  void Finish();

  std::uint64_t NumTargets() const { return numTargets_; }
  std::uint64_t NumSearched() const { return numSearched_; }
  void AddSearched(std::uint64_t num) { numSearched_ += num; }

  /// Whether the caller asked for a histogram.
  bool HasHistogram() const { return numBins_ != 0; }
  /// An empty histogram with the bins of the shared one.
  QXFPHistogram MakeHistogram() const;
  QXFPHistogram GetHistogram() const;

  /// Adds what one thread has found; the hits are in order once the search is finished.
  /// Errors   std::bad_alloc.
  void Merge(const QXFPHistogram& histogram, const std::vector<QXSimScore>& hits);
  /// Adds one score by itself, counted in single precision; the hits are in order once the search is finished.
  /// Errors   std::bad_alloc.
  void UpdateScores(unsigned idx, float score);

  /// Best first after a finished search; empty before the first one. While one runs, what was found so far in
  /// no order, up to twice the limit.
  std::vector<QXSimScore> GetHits() const;
  /// The same; empty while no search is finished.
  std::vector<QXSimScore> GetFinishedHits() const;

 private:
  const unsigned numBins_;
  const double min_;
  const double max_;
  std::atomic<unsigned> status_{QXSimSearchStatus::Uninitialized};
  std::atomic<std::uint64_t> numTargets_{0};
  std::atomic<std::uint64_t> numSearched_{0};
  QXFPHistogram histogram_;
  std::unique_ptr<QXFPDatabaseHitList> hits_;
  // Guards histogram and hits, and the status where it must agree with them.
  mutable std::mutex mutex_;
};

}  // namespace QXFingrix
