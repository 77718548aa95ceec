#include "fastfp/slices/SlicedQuery.h"

#include <algorithm>
#include <numeric>

#include "QXFingrix/QXSimMeasure.h"

namespace QXFingrix {

namespace {

// A score is best where the bit counts are equal, and all bits are shared that can be.
double BestScore(const SlicedIndex::Superblock& superblock, std::uint64_t queryBits, const Scorer& scorer) {
  const auto nearest =
      std::clamp<std::uint64_t>(queryBits, superblock.bitCounts.front(), superblock.bitCounts.back());
  return scorer(nearest, std::min(nearest, queryBits));
}

}  // namespace

SlicedQuery::SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer,
                         bool descending)
    : bits(index.RarestFirst(query)), bestFirst(index.NumSuperblocks()) {
  std::vector<double> scores;
  for (std::size_t i = 0; i < index.NumSuperblocks(); ++i) {
    const double score = BestScore(index.GetSuperblock(i), query.numSet, scorer);
    scores.push_back(descending ? -score : score);
  }
  std::iota(bestFirst.begin(), bestFirst.end(), 0U);
  std::ranges::stable_sort(bestFirst, {}, [&](std::uint32_t i) { return scores[i]; });
}

bool CanSearchSlices(const QXFPDatabaseOptions& options) {
  return options.GetDescendingOrder() == (options.GetSimFunc() != QXSimMeasure::Manhattan);
}

}  // namespace QXFingrix
