#pragma once

#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// For every atom the size of the smallest ring that it lies in, 0 outside rings; ring bonds must be known.
/// Every smallest set of smallest rings holds a ring of this size through the atom: were the shortest cycle
/// through one of its bonds a sum of shorter cycles, one of those would hold the bond.
/// Cost     one search for every atom between branches, O(ring bonds) at most; it ends at the size found.
void GetSmallestRings(const QXMolBase& mol, std::vector<unsigned>& sizes);

}  // namespace QXChem
