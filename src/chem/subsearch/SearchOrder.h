#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chem/subsearch/Query.h"

namespace QXChem {

/// The order in which the atoms of a pattern are placed: component by component, each from its rarest atom
/// (the rarest component first), then always next to placed atoms, those that close a ring first, then the
/// rarest. With `fixedRoot` atom 0 is the first.
/// forbidden: per atom, what no matching atom has.
std::vector<unsigned> GetSearchOrder(const Query& query, std::span<const std::uint64_t> forbidden,
                                     bool fixedRoot);

}  // namespace QXChem
