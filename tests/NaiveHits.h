#pragma once

#include <algorithm>
#include <limits>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimScore.h"

// What a search makes of the scores of all entries, as its definition reads.

namespace QXFingrix::Testing {

/// Those that pass the cutoff.
inline std::vector<QXSimScore> NaiveKept(const std::vector<QXSimScore>& scores,
                                         const QXFPDatabaseOptions& options) {
  if (!options.HasCutoff()) return scores;
  const double cutoff = options.GetCutoff();
  std::vector<QXSimScore> kept;
  for (const QXSimScore& hit : scores) {
    if (options.GetDescendingOrder() ? hit.GetScore() >= cutoff : hit.GetScore() <= cutoff)
      kept.push_back(hit);
  }
  return kept;
}

/// The best ones, best first.
inline std::vector<QXSimScore> NaiveSorted(const std::vector<QXSimScore>& scores,
                                           const QXFPDatabaseOptions& options) {
  const bool descending = options.GetDescendingOrder();
  const double extreme = descending ? std::numeric_limits<double>::min() : std::numeric_limits<double>::max();
  const double bar = options.HasCutoff() ? double{options.GetCutoff()} : extreme;
  std::vector<QXSimScore> sorted;
  for (const QXSimScore& hit : scores) {
    if (descending ? hit.GetScore() > bar : hit.GetScore() < bar) sorted.push_back(hit);
  }
  std::sort(sorted.begin(), sorted.end(), [&](const QXSimScore& x, const QXSimScore& y) {
    if (x.GetScore() != y.GetScore()) return (x.GetScore() > y.GetScore()) == descending;
    return x.GetIdx() < y.GetIdx();
  });
  if (options.GetLimit() != 0 && sorted.size() > options.GetLimit()) sorted.resize(options.GetLimit());
  return sorted;
}

}  // namespace QXFingrix::Testing
