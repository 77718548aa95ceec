#include "fastfp/slices/SlicedQuery.h"

#include <algorithm>

namespace QXFingrix {

namespace {

std::vector<std::uint16_t> RarestFirst(const SlicedIndex& index, const QueryBits& query) {
  constexpr std::size_t padding = QXSystem::QXBitLists::padding;
  std::vector<std::uint16_t> bits;
  bits.reserve(query.numSet + padding);
  for (const std::uint16_t bit : index.rarestFirst) {
    if ((query.words[bit / 64] >> bit % 64 & 1) != 0) bits.push_back(bit);
  }
  bits.resize((bits.size() + padding - 1) / padding * padding, static_cast<std::uint16_t>(index.numBits));
  return bits;
}

// Scores fall on both sides of the query's bit count: the blocks are merged from there outwards.
std::vector<std::uint32_t> BestFirst(const SlicedIndex& index, std::uint64_t queryBits, const Scorer& scorer,
                                     bool descending) {
  const auto bestScore = [&](std::size_t block) {
    const auto nearest = std::clamp<std::uint64_t>(queryBits, index.FewestBits(block), index.MostBits(block));
    return scorer(nearest, std::min(nearest, queryBits));
  };
  const auto firstAbove = static_cast<std::size_t>(std::ranges::lower_bound(index.bitCounts, queryBits) -
                                                   index.bitCounts.begin());
  std::size_t above = std::min(firstAbove / SlicedIndex::blockRecords, index.NumBlocks());
  std::size_t below = above;
  std::vector<std::uint32_t> blocks;
  blocks.reserve(index.NumBlocks());
  double scoreAbove = above < index.NumBlocks() ? bestScore(above) : 0.0;
  double scoreBelow = below > 0 ? bestScore(below - 1) : 0.0;
  while (blocks.size() < index.NumBlocks()) {
    const bool isBelowBetter = descending ? scoreBelow > scoreAbove : scoreBelow < scoreAbove;
    if (below > 0 && (above == index.NumBlocks() || isBelowBetter)) {
      blocks.push_back(static_cast<std::uint32_t>(--below));
      if (below > 0) scoreBelow = bestScore(below - 1);
    } else {
      blocks.push_back(static_cast<std::uint32_t>(above++));
      if (above < index.NumBlocks()) scoreAbove = bestScore(above);
    }
  }
  return blocks;
}

}  // namespace

SlicedQuery::SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer,
                         bool descending)
    : bits(RarestFirst(index, query)), bestFirst(BestFirst(index, query.numSet, scorer, descending)) {}

}  // namespace QXFingrix
