#include "QXFingrix/QXSimilarity.h"

#include "QXFingrix/QXLingoFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "similarity/MeasureFormula.h"
#include "similarity/TokenSimilarity.h"

namespace QXFingrix {
namespace {

float Score(const MeasureFormula& measure, const QXFingerPrint& a, const QXFingerPrint& b) {
  SimCounts counts;
  if (!QXGetBitCounts(a, b, &counts.onlyA, &counts.onlyB, &counts.both, &counts.neither)) return 0.0F;
  return measure(counts);
}

}  // namespace

bool QXGetBitCounts(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                    unsigned* both, unsigned* neither) {
  if (!QXIsSameFPType(a, b)) {
    QXSystem::QXThrow.Error("fingerprint type mismatch!");
    return false;
  }
  if (QXIsFPType(a, QXFPType::Lingo)) return QXGetLingoSimTerms(a, b, onlyA, onlyB, both);
  return neither ? QXSystem::QXGetBitCounts(a, b, onlyA, onlyB, both, neither)
                 : QXSystem::QXGetBitCounts(a, b, onlyA, onlyB, both);
}

float QXTanimoto(const QXFingerPrint& a, const QXFingerPrint& b) {
  if (!QXIsSameFPType(a, b)) {
    QXSystem::QXThrow.Error("QXTanimoto() fingerprint type mismatch!");
    return 0.0F;
  }
  if (IsUnhashedType(a.GetFPTypeBase()->GetFPType())) return TokenTanimoto(QXGetFPText(a), QXGetFPText(b));
  return Score(MeasureFormula(QXSimMeasure::Tanimoto), a, b);
}

float QXCosine(const QXFingerPrint& a, const QXFingerPrint& b) {
  return Score(MeasureFormula(QXSimMeasure::Cosine), a, b);
}

float QXDice(const QXFingerPrint& a, const QXFingerPrint& b) {
  return Score(MeasureFormula(QXSimMeasure::Dice), a, b);
}

float QXEuclid(const QXFingerPrint& a, const QXFingerPrint& b) {
  return Score(MeasureFormula(QXSimMeasure::Euclid), a, b);
}

float QXTversky(const QXFingerPrint& a, const QXFingerPrint& b, float alpha, float beta) {
  return Score(MeasureFormula(QXSimMeasure::Tversky, alpha, beta), a, b);
}

float QXManhattan(const QXFingerPrint& a, const QXFingerPrint& b) {
  return Score(MeasureFormula(QXSimMeasure::Manhattan), a, b);
}

}  // namespace QXFingrix
