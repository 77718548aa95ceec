#pragma once

#include "QXFingrix/QXSimMeasure.h"
#include "similarity/MeasureFormula.h"

namespace QXFingrix {

/// A measure that is set for a search: its number and, for Tversky, the coefficients.
struct Measure {
  unsigned number = QXSimMeasure::Tanimoto;
  float alpha = 0.0F;
  float beta = 0.0F;

  MeasureFormula Formula() const { return MeasureFormula(number, alpha, beta); }

  /// Whether more shared bits, all else equal, give a larger score (or the same); otherwise a smaller one.
  bool RisesWithSharedBits() const { return number != QXSimMeasure::Manhattan; }

  /// Whether that is so, but for roundings. Coefficients of the user's own, negative or huge, may make scores
  /// turn.
  bool IsMonotone() const {
    return number != QXSimMeasure::Tversky || (IsFraction(alpha) && IsFraction(beta));
  }

  static bool IsFraction(float value) { return value >= 0.0F && value <= 1.0F; }
};

}  // namespace QXFingrix
