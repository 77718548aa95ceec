#pragma once

#include <cstdint>
#include <span>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/AtomFacts.h"
#include "generators/maccs/KeySet.h"

namespace QXFingrix {

/// Sets the keys of the ring rules, key 145 for two rings of six atoms, and key 101 for a chain of eight atoms
/// joined by ring bonds.
void FindRingKeys(KeySet& keys, const QXChem::QXMolBase& mol, std::span<const AtomFacts> atoms,
                  std::span<const std::uint8_t> bondKinds);

}  // namespace QXFingrix
