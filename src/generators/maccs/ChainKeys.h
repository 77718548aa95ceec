#pragma once

#include <span>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/KeyFinder.h"

namespace QXFingrix {

/// Sets the keys of the chain rules, and key 118 of the pattern [#6H2](~*)~*~[#6H2].
void FindChainKeys(KeySet& keys, const QXChem::QXMolBase& mol, std::span<const AtomFacts> atoms);

}  // namespace QXFingrix
