// The order of hits, the same in every search: better score first, equal scores by lower index. It is total,
// so the best k of a set of scores do not depend on the order in which they are offered, nor on threads.

#include <algorithm>
#include <limits>

#include "QXFingrix/QXFPDatabaseOptions.h"

namespace QXFingrix {

namespace {

bool CompScoreBiggerIsBetter(const QXSimScore& a, const QXSimScore& b) {
  return a.GetScore() > b.GetScore();
}

bool CompScoreSmallerIsBetter(const QXSimScore& a, const QXSimScore& b) {
  return a.GetScore() < b.GetScore();
}

bool CompLowerIndexFirst(const QXSimScore& a, const QXSimScore& b) {
  return a.GetIdx() < b.GetIdx();
}

// What the first hits must beat. Without a cutoff it is the smallest positive normal number in descending
// order, by which scores of 0 never become hits.
double InitialBar(bool descending, bool hasCutoff, float cutoff) {
  if (hasCutoff) return double{cutoff};
  return descending ? std::numeric_limits<double>::min() : std::numeric_limits<double>::max();
}

}  // namespace

std::unique_ptr<QXFPDatabaseHitList> QXInitFPDatabaseHitList(unsigned limit, bool descending, bool hasCutoff,
                                                             float cutoff) {
  const QXSimScore sentinel(QXSimScore::NoIndex, InitialBar(descending, hasCutoff, cutoff));
  return std::make_unique<QXFPDatabaseHitList>(
      limit, descending ? CompScoreBiggerIsBetter : CompScoreSmallerIsBetter, CompLowerIndexFirst, sentinel);
}

std::unique_ptr<QXFPDatabaseHitList> QXInitFPDatabaseHitList(std::uint64_t numTargets,
                                                             const QXFPDatabaseOptions& options) {
  constexpr std::uint64_t maxLimit = std::numeric_limits<unsigned>::max();
  const unsigned limit =
      options.GetLimit() != 0 ? options.GetLimit() : static_cast<unsigned>(std::min(numTargets, maxLimit));
  return QXInitFPDatabaseHitList(limit, options.GetDescendingOrder(), options.HasCutoff(),
                                 options.GetCutoff());
}

}  // namespace QXFingrix
