#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "NaiveHits.h"

// A search as its definition reads, to compare the engine with: count, score, keep, sort.

namespace QXFingrix::Testing {

struct NaiveRecord {
  std::uint64_t index;
  std::uint64_t bitCount;
  std::vector<std::uint64_t> words;
};

inline std::uint64_t NaiveSharedBits(const std::vector<std::uint64_t>& x,
                                     const std::vector<std::uint64_t>& y) {
  std::uint64_t shared = 0;
  for (std::size_t i = 0; i < x.size() * 64; ++i)
    shared += (x[i / 64] >> (i % 64)) & (y[i / 64] >> (i % 64)) & 1;
  return shared;
}

inline double NaiveScore(const QXFPDatabaseOptions& options, double n, double a, double b, double c) {
  const double alpha = options.GetTverskyAlpha();
  const double beta = options.GetTverskyBeta();
  const double weighted = alpha * (b - c) + beta * (a - c) + c;
  switch (options.GetSimFunc()) {
    case 1:
      return c == 0 ? 0 : c / (a + b - c);
    case 2:
      return a == 0 || b == 0 || c == 0 ? 0 : c / std::sqrt(a * b);
    case 3:
      return a + b == 0 ? 0 : 2 * c / (a + b);
    case 4:
      return std::sqrt((n - a - b + 2 * c) / n);
    case 5:
      return weighted == 0 ? 0 : c / weighted;
    default:
      return (a + b - 2 * c) / n;
  }
}

/// The score of every record, in record order.
inline std::vector<QXSimScore> NaiveScores(const std::vector<NaiveRecord>& records, const NaiveRecord& query,
                                           const QXFPDatabaseOptions& options) {
  std::vector<QXSimScore> scores;
  for (const NaiveRecord& record : records) {
    const std::uint64_t shared = NaiveSharedBits(query.words, record.words);
    scores.emplace_back(static_cast<unsigned>(record.index),
                        NaiveScore(options, static_cast<double>(record.words.size() * 64),
                                   static_cast<double>(record.bitCount), static_cast<double>(query.bitCount),
                                   static_cast<double>(shared)));
  }
  return scores;
}

}  // namespace QXFingrix::Testing
