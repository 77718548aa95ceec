#include "QXFingrix/QXSimilarity.h"

#include "QXFingrix/QXLingoFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "similarity/MeasureFormula.h"
#include "similarity/TokenSimilarity.h"

namespace QXFingrix {
namespace {

// The counts of fingerprints that are known to be of one type.
bool CountSameType(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                   unsigned* both, unsigned* neither) {
  if (QXIsFPType(a, QXFPType::Lingo)) return QXGetLingoSimTerms(a, b, onlyA, onlyB, both);
  return neither ? QXSystem::QXGetBitCounts(a, b, onlyA, onlyB, both, neither)
                 : QXSystem::QXGetBitCounts(a, b, onlyA, onlyB, both);
}

// Scores by a counting function; one that fails leaves the score 0.
template <class Count>
float Score(const MeasureFormula& measure, const QXFingerPrint& a, const QXFingerPrint& b, Count count) {
  SimCounts counts;
  if (!count(a, b, &counts.onlyA, &counts.onlyB, &counts.both, &counts.neither)) return 0.0F;
  return measure(counts);
}

float Score(const MeasureFormula& measure, const QXFingerPrint& a, const QXFingerPrint& b) {
  return Score(measure, a, b, QXGetBitCounts);
}

}  // namespace

bool QXGetBitCounts(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                    unsigned* both, unsigned* neither) {
  if (!QXIsSameFPType(a, b)) {
    QXSystem::QXThrow.Error("fingerprint type mismatch!");
    return false;
  }
  return CountSameType(a, b, onlyA, onlyB, both, neither);
}

float QXTanimoto(const QXFingerPrint& a, const QXFingerPrint& b) {
  if (!QXIsSameFPType(a, b)) {
    QXSystem::QXThrow.Error("QXTanimoto() fingerprint type mismatch!");
    return 0.0F;
  }
  if (IsUnhashedType(a.GetFPTypeBase()->GetFPType())) return TokenTanimoto(QXGetFPText(a), QXGetFPText(b));
  return Score(MeasureFormula(QXSimMeasure::Tanimoto), a, b, CountSameType);
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
