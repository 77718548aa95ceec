#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "QXFingrix/QXFPHistogram.h"
#include "QXFingrix/QXSimScore.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXFingrix {

namespace QXSimSearchStatus {
inline constexpr unsigned Uninitialized = 0;
inline constexpr unsigned InProgress = 1;
inline constexpr unsigned Finished = 2;
}  // namespace QXSimSearchStatus

/// "Uninitialized", "InProgress", "Finished"; "Invalid" for any other value.
QX_API std::string QXSimSearchStatusToName(unsigned status);

class QXSimSearchResultImpl;

/// Receives a threaded search: its progress while it runs, its hits and score histogram when it is done.
/// Threads  everything may be read from other threads while a search runs; one search at a time.
class QX_API QXSimSearchResult {
 public:
  /// Every score of a search is counted in a histogram of numBins bins over [min, max], whether it passes the
  /// cutoff or not. With numBins 0 nothing is counted, which makes the search faster.
  /// Errors   warns and is not valid when there is no memory for the bins.
  explicit QXSimSearchResult(unsigned numBins = 0, double min = 0.0, double max = 1.0);
  ~QXSimSearchResult();
  QXSimSearchResult(QXSimSearchResult&&) noexcept;
  QXSimSearchResult& operator=(QXSimSearchResult&&) noexcept;

  bool IsValid() const { return impl_ != nullptr; }  ///< false after a move, and without memory
  unsigned GetSearchStatus() const;                  ///< a QXSimSearchStatus value
  std::uint64_t NumTargets() const;
  /// Records searched so far; grows by multiples of 100, and by what the last block of the file holds.
  std::uint64_t NumSearched() const;
  QXFPHistogram GetHistogram() const;
  /// The hits of a finished search, best first, equal scores by lower index; empty before.
  QXSystem::QXIter<QXSimScore> GetSortedScores() const;

 private:
  friend class QXFastFPDatabase;
  std::unique_ptr<QXSimSearchResultImpl> impl_;
};

}  // namespace QXFingrix
