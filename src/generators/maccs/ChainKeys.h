#pragma once

#include <cstdint>
#include <span>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/AtomFacts.h"
#include "generators/maccs/KeySet.h"

namespace QXFingrix {

/// Sets the keys of the chain rules, and key 118 of the pattern [#6H2](~*)~*~[#6H2].
void FindChainKeys(KeySet& keys, const QXChem::QXMolBase& mol, std::span<const AtomFacts> atoms,
                   std::span<const std::uint8_t> bondKinds);

}  // namespace QXFingrix
