#pragma once

#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "chem/subsearch/Query.h"

namespace QXChem {

// What the search for substructures has of RDKit; as in Bridge.h, no type and no exception of it gets out,
// std::bad_alloc apart.

/// Reads a SMARTS that is safe to parse into an empty query. Returns false with the reason, which names what
/// the search has no answer to.
bool ReadSmartsWithRDKit(Query& query, const std::string& smarts, std::string& reason);

/// For every atom the number of rings it lies in, of RDKit's symmetrised smallest set of smallest rings.
/// Returns false with the reason when finding them would take too long.
bool CountRingsWithRDKit(const QXMolBase& mol, std::vector<unsigned>& counts, std::string& reason);

}  // namespace QXChem
