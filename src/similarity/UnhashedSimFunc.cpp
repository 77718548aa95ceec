#include "QXFingrix/QXUnhashedSimFunc.h"

#include "similarity/MeasureFormula.h"
#include "similarity/TokenSimilarity.h"

namespace QXFingrix {

float QXUnhashedSimFunc::operator()(const QXFingerPrint&, const QXFingerPrint&) const {
  return 0.0F;
}

float QXTanimotoUnhashedSim::operator()(const QXTokenIds& a, const QXTokenIds& b) const {
  return TokenTanimoto(CountCommon(a, b), a.size(), b.size());
}

QXUnhashedSimFunc* QXTanimotoUnhashedSim::CreateCopy() const {
  return new QXTanimotoUnhashedSim(*this);
}

std::string QXTanimotoUnhashedSim::GetSimTypeString() const {
  return GetSimTypeName(QXSimMeasure::Tanimoto);
}

}  // namespace QXFingrix
