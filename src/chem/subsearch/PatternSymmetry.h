#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace QXChem {

/// A pattern as far as its symmetry goes.
struct SymmetryGraph {
  struct Bond {
    unsigned begin;
    unsigned end;
    std::uint16_t classes;
  };
  std::vector<std::uint64_t> atoms;  // equal values for atoms with equal conditions
  std::vector<Bond> bonds;
};

/// Pairs of atoms (first, second) such that, of all the matches that a symmetry of the pattern turns into each
/// other, one and only one has its first atom's index below the second's in every pair. A search for one
/// match, or for one of each set of atoms, may skip the others. The first atom of a pair comes first in
/// `order`. With `fixedRoot` only symmetries that keep atom 0 count. Patterns of more than 16 atoms get none.
std::vector<std::pair<unsigned, unsigned>> GetSymmetryBounds(const SymmetryGraph& graph,
                                                             std::span<const unsigned> order, bool fixedRoot);

}  // namespace QXChem
