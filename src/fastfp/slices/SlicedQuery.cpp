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
std::vector<SlicedQuery::Block> BestFirst(const SlicedIndex& index, std::uint64_t queryBits,
                                          const Scorer& scorer, bool descending, std::size_t maxBlocks) {
  using Block = SlicedQuery::Block;
  struct Candidate {
    Block block{};
    double score = 0.0;  // where all bits are shared that can be
  };
  const auto candidate = [&](std::size_t i) {
    const Block block = SlicedQuery::MakeBlock(index, i, queryBits);
    return Candidate{block, scorer(block.nearestBits, std::min<std::uint64_t>(block.nearestBits, queryBits))};
  };
  const auto position = std::ranges::lower_bound(index.bitCounts, queryBits) - index.bitCounts.begin();
  std::size_t numBelow = static_cast<std::size_t>(position) / SlicedIndex::blockRecords;
  std::size_t next = numBelow;
  std::vector<Block> blocks;
  maxBlocks = std::min(maxBlocks, index.NumBlocks());
  blocks.reserve(maxBlocks);
  Candidate below = numBelow > 0 ? candidate(numBelow - 1) : Candidate();
  Candidate above = next < index.NumBlocks() ? candidate(next) : Candidate();
  while (blocks.size() < maxBlocks) {
    const bool isBelowBetter = descending ? below.score > above.score : below.score < above.score;
    if (numBelow > 0 && (next == index.NumBlocks() || isBelowBetter)) {
      blocks.push_back(below.block);
      if (--numBelow > 0) below = candidate(numBelow - 1);
    } else {
      blocks.push_back(above.block);
      if (++next < index.NumBlocks()) above = candidate(next);
    }
  }
  return blocks;
}

}  // namespace

SlicedQuery::SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer,
                         bool descending, std::size_t maxBlocks)
    : bits(RarestFirst(index, query)),
      bestFirst(BestFirst(index, query.numSet, scorer, descending, maxBlocks)) {}

}  // namespace QXFingrix
