#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXSystem::QXThrow;

namespace {

// Written so that a coefficient that is not a number is refused.
bool IsTverskyCoeff(float value) {
  return value >= 0.0F && value <= 1.0F;
}

}  // namespace

QXFPDatabaseOptions::QXFPDatabaseOptions(unsigned limit, unsigned simfunc) : limit_(limit) {
  if (QXIsSimilarityMeasure(simfunc)) {
    simFunc_ = simfunc;
  } else {
    QXThrow.Warning("%s unknown similarity function type %d ignored!",
                    "QXFPDatabaseOptions::QXFPDatabaseOptions()", static_cast<int>(simfunc));
  }
}

void QXFPDatabaseOptions::SetCutoff(float cutoff) {
  cutoff_ = cutoff;
  hasCutoff_ = true;
}

void QXFPDatabaseOptions::ClearCutoff() {
  cutoff_ = 0.0F;
  hasCutoff_ = false;
}

void QXFPDatabaseOptions::SetSimFunc(unsigned measure) {
  if (QXIsSimilarityMeasure(measure)) {
    simFunc_ = measure;
  } else {
    QXThrow.Warning("%s unknown similarity function type %u ignored!", "QXFPDatabaseOptions::SetSimFunc()",
                    measure);
  }
}

void QXFPDatabaseOptions::SetTverskyCoeffs(float alpha, float beta) {
  if (!IsTverskyCoeff(alpha) || !IsTverskyCoeff(beta)) {
    QXThrow.Warning("%s illegal alpha/beta values for Tversky similarity function are ignored!",
                    "QXFPDatabaseOptions::SetTverskyCoeffs()");
    return;
  }
  tverskyAlpha_ = alpha;
  tverskyBeta_ = beta;
}

unsigned QXFPDatabaseOptions::GetNumProcessors() const {
  return QXPlatform::QXGetNumWorkers(numProcessors_);
}

}  // namespace QXFingrix
