#include "QXFingrix/QXSimFunc.h"

#include "QXFingrix/QXSimilarity.h"
#include "similarity/MeasureFormula.h"

namespace QXFingrix {
namespace {

using Function = float (*)(const QXFingerPrint&, const QXFingerPrint&);

// By measure; Tversky, which takes coefficients, is not among them.
constexpr Function functions[] = {nullptr, QXTanimoto, QXCosine, QXDice, QXEuclid, nullptr, QXManhattan};

}  // namespace

QXSimFuncBase::~QXSimFuncBase() = default;

template <unsigned Measure>
float QXMeasureSim<Measure>::operator()(const QXFingerPrint& a, const QXFingerPrint& b) const {
  return functions[Measure](a, b);
}

template <unsigned Measure>
QXSimFuncBase* QXMeasureSim<Measure>::CreateCopy() const {
  return new QXMeasureSim(*this);
}

template <unsigned Measure>
std::string QXMeasureSim<Measure>::GetSimTypeString() const {
  return GetSimTypeName(Measure);
}

template class QXMeasureSim<QXSimMeasure::Tanimoto>;
template class QXMeasureSim<QXSimMeasure::Cosine>;
template class QXMeasureSim<QXSimMeasure::Dice>;
template class QXMeasureSim<QXSimMeasure::Euclid>;
template class QXMeasureSim<QXSimMeasure::Manhattan>;

float QXTverskySim::operator()(const QXFingerPrint& a, const QXFingerPrint& b) const {
  return QXTversky(a, b, alpha_, beta_);
}

QXSimFuncBase* QXTverskySim::CreateCopy() const {
  return new QXTverskySim(*this);
}

std::string QXTverskySim::GetSimTypeString() const {
  return GetSimTypeName(QXSimMeasure::Tversky);
}

}  // namespace QXFingrix
