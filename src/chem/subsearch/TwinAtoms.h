#pragma once

#include <vector>

#include "chem/subsearch/Target.h"

namespace QXChem {

/// Twins are atoms that patterns cannot tell apart but by their ring counts: alike in themselves and bound to
/// the same atoms by the same kinds of bonds. Sets for every atom the nearest twin before it, noTwin for the
/// first. Directions of dative bonds are not looked at.
/// Cost     O(n log n) comparisons of two atoms' neighbours.
void LinkTwins(const Target& target, std::vector<unsigned>& previous);

}  // namespace QXChem
