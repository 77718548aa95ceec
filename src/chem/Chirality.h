#pragma once

#include <span>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// QXPerceiveChiral for a caller that has the classes of the refinement without chirality at hand.
void PerceiveChiralFrom(QXMolBase& mol, std::span<const unsigned> classOfAtom);

}  // namespace QXChem
