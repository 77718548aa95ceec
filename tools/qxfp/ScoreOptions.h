#pragma once

#include "QXSystem/QXInterface.h"

namespace qxfp {

/// Adds "-alpha" and "-beta", the Tversky weights of bits only in the query and only in the other
/// fingerprint, and "-precision", the decimals of a score.
void AddScoreOptions(QXSystem::QXInterface& itf);

}  // namespace qxfp
