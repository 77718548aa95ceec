#pragma once

#include <cstdint>

#include "similarity/MeasureFormula.h"

namespace QXFingrix {

/// The score of one query against entries of the same size, from bit counts.
class BitScorer {
 public:
  BitScorer(const MeasureFormula& measure, unsigned numBits, unsigned queryBits)
      : measure_(measure), numBits_(numBits), queryBits_(queryBits) {}

  /// entryBits of the entry's bits are set, sharedBits of them in the query too.
  float operator()(std::uint64_t entryBits, std::uint64_t sharedBits) const {
    return measure_({static_cast<unsigned>(queryBits_ - sharedBits),
                     static_cast<unsigned>(entryBits - sharedBits), static_cast<unsigned>(sharedBits),
                     static_cast<unsigned>(numBits_ + sharedBits - queryBits_ - entryBits)});
  }

 private:
  MeasureFormula measure_;
  std::uint64_t numBits_;
  std::uint64_t queryBits_;
};

}  // namespace QXFingrix
