#pragma once

#include "QXFingrix/QXFPTypeBase.h"

namespace qxfp {

/// Whether fingerprints of the type hold text: Lingo and the unhashed kinds.
bool IsTextType(const QXFingrix::QXFPTypeBase* type);

/// Whether they hold the texts of subgraphs, which are compared by Tanimoto only.
bool IsUnhashedType(const QXFingrix::QXFPTypeBase* type);

}  // namespace qxfp
