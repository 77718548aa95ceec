#pragma once

#include <string>

#include "QXFingrix/QXSimFunc.h"
#include "QXSystem/QXExport.h"

namespace QXChem {
class QXLingoSim;
}

namespace QXFingrix {

/// A measure of Lingo fingerprints that compares the profile of a query, built once, with many entries: for
/// a caller's own loops. QXFPDatabase takes none of these; given the same measure it gives the same scores,
/// from the texts in its own storage.
class QX_API QXLingoSimFunc : public QXSimFuncBase {
 public:
  /// 0.0, whatever the fingerprints: these measures need a profile. QXTanimoto and its siblings compare two
  /// Lingo fingerprints.
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const final;

  /// The measure of QXSimilarity.h on the Lingo counts of profile and entry.
  /// Errors   0.0 and the Warning "lingo is not initialized" for a profile that is not valid.
  /// Cost     that of QXLingoSim::CountTerms.
  virtual float operator()(const QXChem::QXLingoSim& profile, const QXFingerPrint& entry) const = 0;

  QXLingoSimFunc* CreateCopy() const override = 0;
};

/// A Lingo measure without coefficients.
template <unsigned Measure>
class QXMeasureLingoSim final : public QXLingoSimFunc {
 public:
  using QXLingoSimFunc::operator();
  float operator()(const QXChem::QXLingoSim& profile, const QXFingerPrint& entry) const override;
  QXLingoSimFunc* CreateCopy() const override;
  std::string GetSimTypeString() const override;
};

extern template class QX_API QXMeasureLingoSim<QXSimMeasure::Tanimoto>;
extern template class QX_API QXMeasureLingoSim<QXSimMeasure::Cosine>;
extern template class QX_API QXMeasureLingoSim<QXSimMeasure::Dice>;
extern template class QX_API QXMeasureLingoSim<QXSimMeasure::Euclid>;
extern template class QX_API QXMeasureLingoSim<QXSimMeasure::Manhattan>;

using QXTanimotoLingoSim = QXMeasureLingoSim<QXSimMeasure::Tanimoto>;
using QXCosineLingoSim = QXMeasureLingoSim<QXSimMeasure::Cosine>;
using QXDiceLingoSim = QXMeasureLingoSim<QXSimMeasure::Dice>;
using QXEuclidLingoSim = QXMeasureLingoSim<QXSimMeasure::Euclid>;
using QXManhattanLingoSim = QXMeasureLingoSim<QXSimMeasure::Manhattan>;

/// Lingo Tversky with the coefficients given, whatever they are.
class QX_API QXTverskyLingoSim final : public QXLingoSimFunc {
 public:
  QXTverskyLingoSim(float alpha, float beta) : alpha_(alpha), beta_(beta) {}
  float GetAlpha() const { return alpha_; }
  float GetBeta() const { return beta_; }

  using QXLingoSimFunc::operator();
  float operator()(const QXChem::QXLingoSim& profile, const QXFingerPrint& entry) const override;
  QXLingoSimFunc* CreateCopy() const override;
  std::string GetSimTypeString() const override;

 private:
  float alpha_;
  float beta_;
};

}  // namespace QXFingrix
