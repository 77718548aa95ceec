#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"
#include "database/BitScorer.h"
#include "database/EntryScorer.h"
#include "database/FingerPrintStore.h"
#include "similarity/CandidateFilter.h"

namespace QXFingrix {

/// Scores entries of bits by one of the library's measures: a kernel counts the shared bits of a block, and
/// bit counts give the scores. An entry that has not the query's size is compared as the measure's function
/// does it, with its report.
class BitEntryScorer final : public EntryScorer {
 public:
  /// What is passed is referred to and must outlive the scorer. Shape: bitCounts: the bits set in each entry.
  BitEntryScorer(const FingerPrintStore& store, const std::vector<unsigned>& bitCounts,
                 const QXFingerPrint& query, const Measure& measure, bool descending);
  BitEntryScorer(const BitEntryScorer&) = delete;
  BitEntryScorer& operator=(const BitEntryScorer&) = delete;

  void Score(unsigned begin, unsigned end, QXSimScore* out) override;
  unsigned ScoreReaching(double bar, unsigned begin, unsigned end, QXSimScore* out) override;

 private:
  // Calls visit(first entry, shared bits of each) for entries side by side and scores those of another size.
  template <class Visit>
  QXSimScore* ForRuns(unsigned begin, unsigned end, QXSimScore* out, Visit visit);
  QXSimScore* ScoreRun(unsigned first, std::span<const std::uint32_t> shared, QXSimScore* out) const;
  QXSimScore* ScoreCandidates(double bar, unsigned first, std::span<const std::uint32_t> shared,
                              QXSimScore* out);
  float ScoreOtherSize(unsigned i);

  const FingerPrintStore& store_;
  const std::vector<unsigned>& bitCounts_;
  const QXFingerPrint& query_;
  const MeasureFormula formula_;
  const bool descending_;
  const BitScorer scorer_;
  std::optional<CandidateFilter<BitScorer>> filter_;
  QXFingerPrint entry_;  // of another size
};

}  // namespace QXFingrix
