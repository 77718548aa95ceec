#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "fastfp/Scorer.h"

namespace QXFingrix {

/// Tells from two bit counts whether a record can reach a bar, without computing its score.
///
/// For a record with a bits set, a score rises or falls with the number c of shared bits, so the records that
/// reach the bar are those with c in one interval that depends on a alone. It is kept as (first, width) and
/// tested by one subtraction and one comparison. Intervals are computed late: an entry starts as
/// "everything", and is narrowed when a record that passed it turned out to miss the bar. Since a bar only
/// tightens, an entry made for an earlier bar lets too many pass and never too few; what passes is scored
/// exactly by the caller.
class CandidateFilter {
 public:
  CandidateFilter(const Scorer& scorer, bool descending, std::uint64_t numBits, std::uint64_t queryBits);

  bool Passes(std::uint64_t recordBits, std::uint32_t sharedBits) const {
    const Interval interval = intervals_[std::min<std::uint64_t>(recordBits, intervals_.size() - 1)];
    return sharedBits - interval.first <= interval.width;
  }

  /// Narrows the interval of records with recordBits bits set to those that reach the bar.
  /// Cost     O(log queryBits) scores.
  void Narrow(std::uint64_t recordBits, double bar);

 private:
  // Those values c for which c - first, modulo 2^32, is at most width.
  struct Interval {
    std::uint32_t first;
    std::uint32_t width;
  };

  const Scorer& scorer_;
  const bool descending_;
  const std::uint32_t queryBits_;
  // By bit count. The last entry stands for counts larger than a fingerprint, which only a damaged file
  // holds; it stays "everything".
  std::vector<Interval> intervals_;
};

}  // namespace QXFingrix
