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
/// bit counts give the scores. Entries lie in lanes by their bit counts (BitCountLane), so that a search for
/// the best skips whole lanes, unread, once their counts cannot reach the bar. An entry that has not the
/// query's size is compared as the measure's function does it, with its report.
class BitEntryScorer final : public EntryScorer {
 public:
  /// What is passed is referred to and must outlive the scorer.
  BitEntryScorer(const FingerPrintStore& store, const QXFingerPrint& query, const Measure& measure,
                 bool descending);
  BitEntryScorer(const BitEntryScorer&) = delete;
  BitEntryScorer& operator=(const BitEntryScorer&) = delete;

  void Score(unsigned begin, unsigned end, QXSimScore* out) override;
  void Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) override;

 private:
  using Block = FingerPrintStore::Run;

  // Calls visit(block, shared bits of each) for the entries from begin to end - 1 of a lane that have the
  // query's size, visitOther(entry) for the others.
  template <class Visit, class VisitOther>
  void ForBlocks(unsigned lane, unsigned begin, unsigned end, Visit visit, VisitOther visitOther);
  // Whether an entry of the lane can become a hit.
  bool CanReach(unsigned lane, double bar) const;
  void OfferLane(unsigned lane, unsigned begin, unsigned end, QXFPDatabaseHitList& hits);
  void OfferBlock(const Block& block, const std::uint32_t* shared, QXFPDatabaseHitList& hits);
  float ScoreOtherSize(unsigned i);

  const FingerPrintStore& store_;
  const QXFingerPrint& query_;
  const MeasureFormula formula_;
  const bool descending_;
  const BitScorer scorer_;
  std::optional<CandidateFilter<BitScorer>> filter_;
  QXFingerPrint entry_;  // of another size
};

}  // namespace QXFingrix
