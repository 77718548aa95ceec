#pragma once

#include "generators/GraphParams.h"

namespace QXFingrix {

/// The number of trees grows steeply with their size.
inline constexpr unsigned maxTreeBonds = 10;
inline constexpr unsigned maxTreeAtoms = maxTreeBonds + 1;

inline constexpr GraphKind treeKind = {QXFPType::Tree, "tree", "bonds", maxTreeBonds};

}  // namespace QXFingrix
