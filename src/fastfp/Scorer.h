#pragma once

#include <cmath>
#include <cstdint>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimMeasure.h"

namespace QXFingrix {

/// The score of one query against records, from bit counts. This is the only place that knows the formulas of
/// the fast search; every scan, kernel and back end takes its scores from here, so all of them agree to the
/// last bit.
class Scorer {
 public:
  Scorer(const QXFPDatabaseOptions& options, std::uint64_t numBits, std::uint64_t queryBits)
      : measure_(options.GetSimFunc()),
        n_(static_cast<double>(numBits)),
        b_(static_cast<double>(queryBits)),
        alpha_(options.GetTverskyAlpha()),
        beta_(options.GetTverskyBeta()) {}

  /// recordBits of the record's bits are set, sharedBits of them in the query too.
  double operator()(std::uint64_t recordBits, std::uint64_t sharedBits) const {
    const auto a = static_cast<double>(recordBits);
    const auto c = static_cast<double>(sharedBits);
    switch (measure_) {
      case QXSimMeasure::Tanimoto:
        return sharedBits == 0 ? 0.0 : c / (a + b_ - c);
      case QXSimMeasure::Cosine:
        return recordBits == 0 || sharedBits == 0 || b_ == 0.0 ? 0.0 : c / std::sqrt(a * b_);
      case QXSimMeasure::Dice:
        return a + b_ == 0.0 ? 0.0 : 2.0 * c / (a + b_);
      case QXSimMeasure::Euclid:
        return std::sqrt((n_ - a - b_ + 2.0 * c) / n_);
      case QXSimMeasure::Tversky: {
        const double denominator = alpha_ * (b_ - c) + beta_ * (a - c) + c;
        return denominator == 0.0 ? 0.0 : c / denominator;
      }
      default:  // Manhattan
        return (a + b_ - 2.0 * c) / n_;
    }
  }

  /// More than what roundings make Tversky scores, a few units in the last place, miss the order by.
  static constexpr double slack = 1e-14;

  /// Whether more shared bits, all else equal, give a larger score (or the same); otherwise a smaller one.
  bool RisesWithSharedBits() const { return measure_ != QXSimMeasure::Manhattan; }

 private:
  unsigned measure_;
  double n_;
  double b_;
  double alpha_;
  double beta_;
};

}  // namespace QXFingrix
