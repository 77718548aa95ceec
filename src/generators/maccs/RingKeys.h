#pragma once

#include <cstdint>
#include <span>

#include "QXChem/QXMolBase.h"
#include "generators/maccs/KeyFinder.h"

namespace QXFingrix {

/// Sets the keys of the patterns that close a ring (of three to seven atoms, whether or not another bond
/// crosses it), and key 101, a chain of eight atoms joined by ring bonds.
void FindRingKeys(KeySet& keys, const QXChem::QXMolBase& mol, std::span<const AtomFacts> atoms,
                  std::span<const std::uint8_t> bondKinds);

}  // namespace QXFingrix
