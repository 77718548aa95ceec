#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "QXFingrix/QXSimScore.h"

namespace QXFingrix {

/// Tells from two bit counts whether a record can reach a bar, without computing its score.
///
/// For a record with a bits set, a score rises or falls with the number c of shared bits, so the records that
/// reach the bar are those with c in one interval that depends on a alone. It is kept as (first, width) and
/// tested by one subtraction and one comparison. Intervals are computed late: an entry starts as
/// "everything", and is narrowed when a record that passed it turned out to miss the bar. Since a bar only
/// tightens, an entry made for an earlier bar lets too many pass and never too few; what passes is scored
/// exactly by the caller.
///
/// A Scorer gives the score of (record bits, shared bits) and says which way it goes, RisesWithSharedBits().
/// Its roundings may make a score fall where it should rise; Scorer::slack is a larger part of the score than
/// that. A bar lowered by it keeps the search for the interval's end sound: all shared counts beyond one that
/// truly reaches the bar reach the lowered one.
template <class Scorer>
class CandidateFilter {
 public:
  /// The scorer is referred to and must outlive the filter.
  CandidateFilter(const Scorer& scorer, bool descending, std::uint64_t numBits, std::uint64_t queryBits)
      : scorer_(scorer),
        descending_(descending),
        queryBits_(static_cast<std::uint32_t>(queryBits)),
        intervals_(numBits + 2, Interval{0, everything}) {}

  bool Passes(std::uint64_t recordBits, std::uint32_t sharedBits) const {
    const Interval interval = intervals_[std::min<std::uint64_t>(recordBits, intervals_.size() - 1)];
    return sharedBits - interval.first <= interval.width;
  }

  /// Lists which of a block's records pass, without a branch, and returns their number.
  /// Shape    bitsOf(i): the bits of record i; shared and passing: `size` counts and positions.
  template <class BitsOf>
  std::uint32_t ListPassing(std::uint32_t size, BitsOf bitsOf, const std::uint32_t* shared,
                            std::uint32_t* passing) const {
    std::uint32_t numPassing = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
      passing[numPassing] = i;
      numPassing += Passes(bitsOf(i), shared[i]) ? 1 : 0;
    }
    return numPassing;
  }

  /// Offers hits (index, score) of a block's records to a list: of all that can reach the list's bar and of
  /// some that miss it. Candidates are listed first and then scored: almost all records end with the first
  /// step.
  /// Shape    as above; indexOf(i): the index of record i; passing: room for the list.
  template <class BitsOf, class IndexOf, class Hits>
  void OfferPassing(std::uint32_t size, BitsOf bitsOf, IndexOf indexOf, const std::uint32_t* shared,
                    std::uint32_t* passing, Hits& hits) {
    const std::uint32_t numPassing = ListPassing(size, bitsOf, shared, passing);
    for (const std::uint32_t i : std::span(passing, numPassing)) {
      const std::uint64_t recordBits = bitsOf(i);
      if (!Passes(recordBits, shared[i])) continue;  // narrowed since
      const double score = scorer_(recordBits, shared[i]);
      if (hits.AddHit(QXSimScore(indexOf(i), score))) continue;
      const double bar = hits.GetBar().GetScore();
      const bool isWorse = descending_ ? score < bar : score > bar;  // ties would be narrowed in vain
      if (isWorse) Narrow(recordBits, bar);
    }
  }

  /// Whether a record with recordBits bits set, whatever it shares with the query, can reach a bar.
  bool CanReach(std::uint64_t recordBits, double bar) const {
    return Reaches(recordBits, WantsMany() ? MostShared(recordBits) : 0, Lower(bar));
  }

  /// Narrows the interval of records with recordBits bits set to those that reach the bar.
  /// Cost     O(log queryBits) scores.
  void Narrow(std::uint64_t recordBits, double bar);

 private:
  static constexpr std::uint32_t everything = ~std::uint32_t{0};

  // Those values c for which c - first, modulo 2^32, is at most width.
  struct Interval {
    std::uint32_t first;
    std::uint32_t width;
  };

  double Lower(double bar) const {
    const double margin = std::abs(bar) * Scorer::slack;
    return descending_ ? bar - margin : bar + margin;
  }
  // A Euclid score that is not a number comes from fewer shared bits than any that is one: in ascending order
  // it is on the side of those that reach the bar.
  bool Reaches(std::uint64_t recordBits, std::uint32_t sharedBits, double loweredBar) const {
    const double score = scorer_(recordBits, sharedBits);
    return descending_ ? score >= loweredBar : !(score > loweredBar);
  }
  // Either the counts from some border on reach the bar, or those below it.
  bool WantsMany() const { return descending_ == scorer_.RisesWithSharedBits(); }
  std::uint32_t MostShared(std::uint64_t recordBits) const {
    return std::min(static_cast<std::uint32_t>(recordBits), queryBits_);
  }

  const Scorer& scorer_;
  const bool descending_;
  const std::uint32_t queryBits_;
  // By bit count. The last entry stands for counts larger than a fingerprint, which only a damaged file
  // holds; it stays "everything".
  std::vector<Interval> intervals_;
};

template <class Scorer>
void CandidateFilter<Scorer>::Narrow(std::uint64_t recordBits, double bar) {
  if (recordBits >= intervals_.size() - 1) return;
  const double loweredBar = Lower(bar);
  const bool wantsMany = WantsMany();
  const std::uint32_t most = MostShared(recordBits);
  std::uint32_t border = 0;
  for (std::uint32_t end = most + 1; border < end;) {
    const std::uint32_t middle = border + (end - border) / 2;
    if (Reaches(recordBits, middle, loweredBar) == wantsMany) {
      end = middle;
    } else {
      border = middle + 1;
    }
  }
  // Counts above `most` contradict the record's own bit count. They always pass: such a record is scored as
  // it is.
  if (wantsMany) {
    intervals_[recordBits] = {border, everything - border};
  } else {
    intervals_[recordBits] = {most + 1, border - most - 2};
  }
}

}  // namespace QXFingrix
