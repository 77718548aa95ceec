#include "fastfp/CandidateFilter.h"

#include <cmath>

namespace QXFingrix {

namespace {

constexpr std::uint32_t everything = ~std::uint32_t{0};

// Tversky scores come out of several roundings and may fall where they should rise, by a few units in the
// last place. A bar lowered by more than that keeps the search for the interval's end sound: all shared
// counts beyond one that truly reaches the bar reach the lowered one.
constexpr double slack = 1e-14;

}  // namespace

CandidateFilter::CandidateFilter(const Scorer& scorer, bool descending, std::uint64_t numBits,
                                 std::uint64_t queryBits)
    : scorer_(scorer),
      descending_(descending),
      queryBits_(static_cast<std::uint32_t>(queryBits)),
      intervals_(numBits + 2, Interval{0, everything}) {}

void CandidateFilter::Narrow(std::uint64_t recordBits, double bar) {
  if (recordBits >= intervals_.size() - 1) return;
  const double loweredBar = descending_ ? bar - std::abs(bar) * slack : bar + std::abs(bar) * slack;
  const auto reaches = [&](std::uint32_t sharedBits) {
    const double score = scorer_(recordBits, sharedBits);
    // A Euclid score that is not a number comes from fewer shared bits than any that is one: in ascending
    // order it is on the side of those that reach the bar.
    return descending_ ? score >= loweredBar : !(score > loweredBar);
  };
  // Either the counts from some border on reach the bar, or those below it.
  const bool wantsMany = descending_ == scorer_.RisesWithSharedBits();
  const std::uint32_t most = std::min(static_cast<std::uint32_t>(recordBits), queryBits_);
  std::uint32_t border = 0;
  for (std::uint32_t end = most + 1; border < end;) {
    const std::uint32_t middle = border + (end - border) / 2;
    if (reaches(middle) == wantsMany) {
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
