#pragma once

#include <cstdint>

#include "similarity/MeasureFormula.h"

namespace QXFingrix {

/// The score of one query against entries of the same size, from bit counts.
class BitScorer {
 public:
  /// More than what roundings to single precision make Tversky scores miss the order by.
  static constexpr double slack = 4e-6;

  BitScorer(const MeasureFormula& measure, unsigned numBits, unsigned queryBits)
      : measure_(measure), numBits_(numBits), queryBits_(queryBits) {}

  /// entryBits of the entry's bits are set, sharedBits of them in the query too. Fewer shared bits than there
  /// must be at least are scored as if all bits were set in either, which keeps the order of scores.
  float operator()(std::uint64_t entryBits, std::uint64_t sharedBits) const {
    const std::uint64_t either = queryBits_ + entryBits - sharedBits;
    return measure_({static_cast<unsigned>(queryBits_ - sharedBits),
                     static_cast<unsigned>(entryBits - sharedBits), static_cast<unsigned>(sharedBits),
                     static_cast<unsigned>(either < numBits_ ? numBits_ - either : 0)});
  }

  bool RisesWithSharedBits() const { return measure_.RisesWithSharedBits(); }

 private:
  MeasureFormula measure_;
  std::uint64_t numBits_;
  std::uint64_t queryBits_;
};

}  // namespace QXFingrix
