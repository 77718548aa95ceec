#pragma once

#include <cmath>
#include <string>

#include "QXFingrix/QXSimMeasure.h"

namespace QXFingrix {

/// What two fingerprints have in common, in bits or Lingos.
struct SimCounts {
  unsigned onlyA = 0;
  unsigned onlyB = 0;
  unsigned both = 0;
  unsigned neither = 0;
};

/// One of the six measures with its coefficients. The only place that knows their formulas in single
/// precision: free functions, measure objects and databases in memory take their scores from here, so they
/// agree to the last bit.
class MeasureFormula {
 public:
  /// measure: a QXSimMeasure value; the coefficients matter to Tversky.
  constexpr explicit MeasureFormula(unsigned measure, float alpha = 0.0F, float beta = 0.0F)
      : measure_(measure), alpha_(alpha), beta_(beta) {}

  float operator()(const SimCounts& counts) const {
    const auto a = static_cast<float>(counts.onlyA);
    const auto b = static_cast<float>(counts.onlyB);
    const auto c = static_cast<float>(counts.both);
    const auto d = static_cast<float>(counts.neither);
    if ((counts.onlyA | counts.onlyB) == 0) return measure_ == QXSimMeasure::Manhattan ? 0.0F : 1.0F;
    const bool sharesNone = counts.both == 0;  // where Cosine and Tversky may be 0 / 0
    switch (measure_) {
      case QXSimMeasure::Tanimoto:
        return c / (a + b + c);
      case QXSimMeasure::Cosine:
        return sharesNone ? 0.0F : c / std::sqrt((a + c) * (b + c));
      case QXSimMeasure::Dice:
        return (c + c) / static_cast<float>(2.0 * double{c} + (double{a} + double{b}));
      case QXSimMeasure::Euclid:
        return std::sqrt((c + d) / (a + b + c + d));
      case QXSimMeasure::Tversky:
        return sharesNone ? 0.0F : c / (alpha_ * a + beta_ * b + c);
      case QXSimMeasure::Manhattan:
        return (a + b) / (a + b + c + d);
    }
    return 0.0F;
  }

  unsigned GetMeasure() const { return measure_; }
  float GetAlpha() const { return alpha_; }
  float GetBeta() const { return beta_; }

 private:
  unsigned measure_;
  float alpha_;
  float beta_;
};

/// What the objects of a measure call it: "QXTanimoto".
inline std::string GetSimTypeName(unsigned measure) {
  return "QX" + QXGetSimilarityMeasureName(measure);
}

}  // namespace QXFingrix
