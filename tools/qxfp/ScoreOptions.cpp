#include "ScoreOptions.h"

#include "Numbers.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

using QXSystem::QXParameter;
using QXSystem::QXParameterType;
using QXSystem::QXThrow;

void AddScoreOptions(QXSystem::QXInterface& itf) {
  const QXFingrix::QXFPDatabaseOptions defaults;
  itf.AddParameter(QXParameter("-alpha", QXParameterType::Float)
                       .SetBrief("Tversky weight of bits only in the query")
                       .SetDefault(FormatFixed(defaults.GetTverskyAlpha(), 2))
                       .SetLegalRange("0", "1"));
  itf.AddParameter(QXParameter("-beta", QXParameterType::Float)
                       .SetBrief("Tversky weight of bits only in the fingerprint that it is compared with")
                       .SetDefault(FormatFixed(defaults.GetTverskyBeta(), 2))
                       .SetLegalRange("0", "1"));
  itf.AddParameter(QXParameter("-precision", QXParameterType::Unsigned)
                       .SetBrief("Decimals of the scores")
                       .SetDefault("6")
                       .SetLegalRange("0", "17"));
}

bool SetupScoreOptions(const QXSystem::QXInterface& itf, QXFingrix::QXFPDatabaseOptions& options) {
  if (!QXFingrix::QXSetupFPDatabaseOptions(options, itf)) return false;
  options.SetTverskyCoeffs(itf.Get<float>("-alpha"), itf.Get<float>("-beta"));
  const unsigned measure = options.GetSimFunc();
  if (measure == QXFingrix::QXSimMeasure::Manhattan && itf.Has("-descending") && !itf.IsSet("-descending")) {
    QXThrow.Info("Manhattan is a distance: -descending false puts the nearest molecules first");
  }
  if (measure != QXFingrix::QXSimMeasure::Tversky && (itf.IsSet("-alpha") || itf.IsSet("-beta"))) {
    QXThrow.Info("-alpha and -beta matter to -simfunc Tversky only");
  }
  return true;
}

}  // namespace qxfp
