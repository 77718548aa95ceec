#pragma once

#include <string>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXMolBase.h"

namespace QXFingrix {

/// A SMARTS of what labels under some masks see of a part of a molecule. Read by RDKit or QXSubSearch, it
/// matches the molecule at these atoms and bonds, its first atom at the first one of the set, if hydrogens
/// are atoms of the graph only where preparation keeps them.
///
/// It says what the labels say where SMARTS has words for it, and else less: chirality is left out, so is a
/// degree to which wildcards or hydrogens contribute; "~" stands for a dative bond, which labels count as
/// single, and for an order without a symbol, "a" for an aromatic atom under EqArom.
/// Shape    mol: prepared, with what the masks select perceived. part: not empty, connected, the ends of its
///          bonds among its atoms.
/// Cost     some steps for every atom and bond of the part.
std::string SubgraphSmarts(const QXChem::QXMolBase& mol, const QXChem::QXAtomBondSet& part, unsigned atype,
                           unsigned btype);

}  // namespace QXFingrix
