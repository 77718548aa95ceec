#pragma once

#include <cstdint>

#include "database/BitCountBins.h"
#include "database/BitScorer.h"
#include "database/EntryScorer.h"
#include "database/FingerPrintStore.h"
#include "similarity/CandidateFilter.h"

namespace QXFingrix {

/// Scores entries of bits by one of the library's measures: a kernel counts the shared bits of a block, and
/// bit counts give the scores. A search for the best, or for what reaches a cutoff, skips whole bins of bit
/// counts, unread, once they cannot reach the bar. An entry that has not the query's size is compared as the
/// measure's function does it, with its report.
class BitEntryScorer final : public EntryScorer {
 public:
  /// Store, bins and query are referred to and must outlive the scorer.
  BitEntryScorer(const FingerPrintStore& store, const BitCountBins& bins, const QXFingerPrint& query,
                 const MeasureFormula& measure, bool descending);
  BitEntryScorer(const BitEntryScorer&) = delete;
  BitEntryScorer& operator=(const BitEntryScorer&) = delete;

  void Score(unsigned begin, unsigned end, QXSimScore* out) override;
  void Offer(unsigned begin, unsigned end, QXFPDatabaseHitList& hits) override;
  void Offer(unsigned begin, unsigned end, CutoffHits& hits) override;

 private:
  using Block = BitCountBins::Run;

  // Calls visit(block, shared bits of each) for the entries from begin to end - 1 of a bin that have the
  // query's size, visitOther(entry) for the others.
  template <class Visit, class VisitOther>
  void ForBlocks(unsigned bin, unsigned begin, unsigned end, Visit visit, VisitOther visitOther);
  template <class Hits>
  void OfferBins(unsigned begin, unsigned end, Hits& hits);
  template <class Hits>
  void OfferBin(unsigned bin, unsigned begin, unsigned end, Hits& hits);
  template <class Hits>
  void OfferBlock(const Block& block, const std::uint32_t* shared, Hits& hits);
  // Whether an entry of the bin can pass the filter.
  bool CanPass(unsigned bin) const;
  float ScoreOtherSize(unsigned i);

  const FingerPrintStore& store_;
  const BitCountBins& bins_;
  const QXFingerPrint& query_;
  const unsigned queryBits_;
  const MeasureFormula measure_;
  const BitScorer scorer_;
  CandidateFilter filter_;
  QXFingerPrint entry_;  // of another size
};

}  // namespace QXFingrix
