#include "QXFingrix/QXLingoSimFunc.h"

#include "QXFingrix/QXLingoFP.h"
#include "similarity/MeasureFormula.h"

namespace QXFingrix {
namespace {

float Score(const MeasureFormula& measure, const QXChem::QXLingoSim& profile, const QXFingerPrint& entry) {
  SimCounts counts;
  if (!QXGetLingoSimTerms(profile, entry, &counts.onlyA, &counts.onlyB, &counts.both)) return 0.0F;
  return measure(counts);
}

}  // namespace

float QXLingoSimFunc::operator()(const QXFingerPrint&, const QXFingerPrint&) const {
  return 0.0F;
}

template <unsigned Measure>
float QXMeasureLingoSim<Measure>::operator()(const QXChem::QXLingoSim& profile,
                                             const QXFingerPrint& entry) const {
  return Score(MeasureFormula(Measure), profile, entry);
}

template <unsigned Measure>
QXLingoSimFunc* QXMeasureLingoSim<Measure>::CreateCopy() const {
  return new QXMeasureLingoSim(*this);
}

template <unsigned Measure>
std::string QXMeasureLingoSim<Measure>::GetSimTypeString() const {
  return GetSimTypeName(Measure);
}

template class QXMeasureLingoSim<QXSimMeasure::Tanimoto>;
template class QXMeasureLingoSim<QXSimMeasure::Cosine>;
template class QXMeasureLingoSim<QXSimMeasure::Dice>;
template class QXMeasureLingoSim<QXSimMeasure::Euclid>;
template class QXMeasureLingoSim<QXSimMeasure::Manhattan>;

float QXTverskyLingoSim::operator()(const QXChem::QXLingoSim& profile, const QXFingerPrint& entry) const {
  return Score(MeasureFormula(QXSimMeasure::Tversky, alpha_, beta_), profile, entry);
}

QXLingoSimFunc* QXTverskyLingoSim::CreateCopy() const {
  return new QXTverskyLingoSim(*this);
}

std::string QXTverskyLingoSim::GetSimTypeString() const {
  return GetSimTypeName(QXSimMeasure::Tversky);
}

}  // namespace QXFingrix
