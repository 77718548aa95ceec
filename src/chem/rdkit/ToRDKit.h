#pragma once

// First in every file that touches RDKit: its configuration decides the layout of RDKit's classes.
#include <RDGeneral/RDConfig.h>

#include <GraphMol/RWMol.h>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// The same atoms and bonds in the same order, with Kekulé orders, and the hydrogens as they stand. Nothing is
/// perceived. Throws what RDKit throws.
RDKit::RWMol ToRDKit(const QXMolBase& mol);

}  // namespace QXChem
