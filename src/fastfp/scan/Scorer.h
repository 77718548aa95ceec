#pragma once

#include <cmath>
#include <cstdint>
#include <type_traits>

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
    double score = 0.0;
    WithMeasure([&](auto measure) {
      score = Score<measure>(static_cast<double>(recordBits), static_cast<double>(sharedBits));
    });
    return score;
  }

  /// Calls use with the measure as a constant for Score, so that loops decide it once.
  template <class Use>
  void WithMeasure(Use use) const {
    switch (measure_) {
      case QXSimMeasure::Tanimoto:
        return use(Constant<QXSimMeasure::Tanimoto>());
      case QXSimMeasure::Cosine:
        return use(Constant<QXSimMeasure::Cosine>());
      case QXSimMeasure::Dice:
        return use(Constant<QXSimMeasure::Dice>());
      case QXSimMeasure::Euclid:
        return use(Constant<QXSimMeasure::Euclid>());
      case QXSimMeasure::Tversky:
        return use(Constant<QXSimMeasure::Tversky>());
      default:
        return use(Constant<QXSimMeasure::Manhattan>());
    }
  }

  /// The score of a record with a bits set, c of them in the query too; without a branch.
  template <unsigned measure>
  double Score(double a, double c) const {
    if constexpr (measure == QXSimMeasure::Tanimoto) return Ratio(c, a + b_ - c, c == 0.0);
    if constexpr (measure == QXSimMeasure::Cosine) {
      const double product = a * b_;
      return Ratio(c, std::sqrt(product), product == 0.0);
    }
    if constexpr (measure == QXSimMeasure::Dice) return Ratio(2.0 * c, a + b_, a + b_ == 0.0);
    if constexpr (measure == QXSimMeasure::Euclid) return std::sqrt((n_ - a - b_ + 2.0 * c) / n_);
    if constexpr (measure == QXSimMeasure::Tversky) {
      const double denominator = alpha_ * (b_ - c) + beta_ * (a - c) + c;
      return Ratio(c, denominator, denominator == 0.0);
    }
    if constexpr (measure == QXSimMeasure::Manhattan) return (a + b_ - 2.0 * c) / n_;
  }

 private:
  template <unsigned measure>
  using Constant = std::integral_constant<unsigned, measure>;

  // 0 where there is no ratio. The division comes first: so compilers take several at a time.
  static double Ratio(double numerator, double denominator, bool isNone) {
    const double ratio = numerator / denominator;
    return isNone ? 0.0 : ratio;
  }

  unsigned measure_;
  double n_;
  double b_;
  double alpha_;
  double beta_;
};

}  // namespace QXFingrix
