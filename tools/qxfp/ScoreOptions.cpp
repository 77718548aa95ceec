#include "ScoreOptions.h"

#include "Numbers.h"
#include "QXFingrix/QXFPDatabaseOptions.h"

namespace qxfp {

using QXSystem::QXParameter;
using QXSystem::QXParameterType;

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

}  // namespace qxfp
