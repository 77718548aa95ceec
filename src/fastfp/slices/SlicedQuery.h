#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/scan/Scorer.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// A query in the form in which an index is searched, made once for all threads.
struct SlicedQuery {
  SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer, bool descending,
              std::size_t maxBlocks);

  struct Block {
    std::uint32_t number;
    std::uint16_t fewestBits;   // of its records
    std::uint16_t nearestBits;  // to the query's, of what lies between the fewest and the most
  };
  static Block MakeBlock(const SlicedIndex& index, std::size_t number, std::uint64_t queryBits) {
    const std::uint16_t fewest = index.FewestBits(number);
    const auto nearest = std::clamp<std::uint64_t>(queryBits, fewest, index.MostBits(number));
    return {static_cast<std::uint32_t>(number), fewest, static_cast<std::uint16_t>(nearest)};
  }

  std::vector<std::uint16_t> bits;  // that are set, rarest first, then padding
  std::vector<Block> bestFirst;     // by the best score that bit counts allow, at most maxBlocks
};

}  // namespace QXFingrix
