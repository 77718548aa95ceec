#pragma once

// First in every file that touches RDKit: its configuration decides the layout of RDKit's classes.
#include <RDGeneral/RDConfig.h>

#include <GraphMol/RWMol.h>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// Fills the graph from an RDKit molecule as parsed, running RDKit's sanitising steps on the way: the Kekulé
/// orders are taken before aromaticity overwrites them. Throws what RDKit throws, and std::runtime_error for
/// a ring system over the limits.
void SanitizeInto(QXMolBase& mol, RDKit::RWMol& source);

/// Throws std::runtime_error when finding the rings would overflow the stack or take minutes.
void CheckRingEffort(const RDKit::ROMol& source);

/// The sanitising steps from ring perception on, for a molecule that carries Kekulé orders and no flags.
void SanitizeKekule(RDKit::RWMol& source);

/// Copies aromatic flags or hybridisation codes; same atoms and bonds in the same order.
void CopyAromaticity(QXMolBase& mol, const RDKit::ROMol& source);
void CopyHybridization(QXMolBase& mol, const RDKit::ROMol& source);

}  // namespace QXChem
