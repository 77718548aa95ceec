#pragma once

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXSystem/QXInterface.h"

namespace qxfp {

/// Adds "-alpha" and "-beta", the Tversky weights of bits only in the query and only in the other
/// fingerprint, and "-precision", the decimals of a score.
void AddScoreOptions(QXSystem::QXInterface& itf);

/// Takes over these weights and the library's own search options, as far as the command has them; says which
/// of them do not go together.
/// Errors   returns false after a report.
bool SetupScoreOptions(const QXSystem::QXInterface& itf, QXFingrix::QXFPDatabaseOptions& options);

}  // namespace qxfp
