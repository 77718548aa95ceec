#pragma once

#include <string>

#include "QXFingrix/QXSimMeasure.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

class QXFingerPrint;

/// A similarity measure as an object, which databases hold and copy. Derive from it for a measure of your
/// own.
/// Threads  a database calls one object from every thread that queries it: keep operator() free of state.
class QX_API QXSimFuncBase {
 public:
  virtual ~QXSimFuncBase();

  /// The score of two fingerprints of one type; of a query, the first, and an entry.
  virtual float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const = 0;

  /// A new object of the same class with the same coefficients, which the caller deletes.
  virtual QXSimFuncBase* CreateCopy() const = 0;

  /// The name of the measure, e.g. "QXTanimoto".
  virtual std::string GetSimTypeString() const = 0;
};

/// A measure of QXSimilarity.h without coefficients.
template <unsigned Measure>
class QXMeasureSim final : public QXSimFuncBase {
 public:
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override;
  QXSimFuncBase* CreateCopy() const override;
  std::string GetSimTypeString() const override;
};

extern template class QX_API QXMeasureSim<QXSimMeasure::Tanimoto>;
extern template class QX_API QXMeasureSim<QXSimMeasure::Cosine>;
extern template class QX_API QXMeasureSim<QXSimMeasure::Dice>;
extern template class QX_API QXMeasureSim<QXSimMeasure::Euclid>;
extern template class QX_API QXMeasureSim<QXSimMeasure::Manhattan>;

using QXTanimotoSim = QXMeasureSim<QXSimMeasure::Tanimoto>;
using QXCosineSim = QXMeasureSim<QXSimMeasure::Cosine>;
using QXDiceSim = QXMeasureSim<QXSimMeasure::Dice>;
using QXEuclidSim = QXMeasureSim<QXSimMeasure::Euclid>;
using QXManhattanSim = QXMeasureSim<QXSimMeasure::Manhattan>;

/// QXTversky with the coefficients given, whatever they are.
class QX_API QXTverskySim final : public QXSimFuncBase {
 public:
  QXTverskySim(float alpha, float beta) : alpha_(alpha), beta_(beta) {}
  float GetAlpha() const { return alpha_; }
  float GetBeta() const { return beta_; }

  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override;
  QXSimFuncBase* CreateCopy() const override;
  std::string GetSimTypeString() const override;

 private:
  float alpha_;
  float beta_;
};

}  // namespace QXFingrix
