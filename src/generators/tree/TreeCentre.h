#pragma once

#include <bit>
#include <span>

#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// Builds the canonical form of a tree from its leaves inwards: leaves are taken off layer by layer, each tied
/// to the one node that it still hangs on, until one node, the centre, or two joined ones are left. So a node
/// is complete when it is taken off, and what remains does not depend on how the tree was grown.
///
/// A Form has, for nodes given by their places,
///   Begin(nodes)             what was built before is void
///   Tie(place, parent, bond) the node, complete, becomes a branch of another
///   AtNode(place)            the centre is complete
///   AtBond(a, b, bond)       the two centres are complete
/// and the result is that of the last call.
template <class Form>
auto BuildFromLeaves(std::span<const TreeNode> nodes, Form& form) {
  unsigned neighbors[maxTreeAtoms] = {};  // sets of places
  const auto numNodes = static_cast<unsigned>(nodes.size());
  for (unsigned i = 1; i < numNodes; ++i) {
    neighbors[i] |= 1U << nodes[i].parent;
    neighbors[nodes[i].parent] |= 1U << i;
  }
  const auto bondBetween = [&](unsigned a, unsigned b) { return nodes[a > b ? a : b].bond; };
  form.Begin(nodes);
  unsigned rest = (1U << numNodes) - 1;
  while (std::popcount(rest) > 2) {
    unsigned leaves = 0;
    for (unsigned left = rest; left != 0; left &= left - 1) {
      const auto place = static_cast<unsigned>(std::countr_zero(left));
      if (std::has_single_bit(neighbors[place] & rest)) leaves |= 1U << place;
    }
    for (unsigned left = leaves; left != 0; left &= left - 1) {
      const auto place = static_cast<unsigned>(std::countr_zero(left));
      const auto parent = static_cast<unsigned>(std::countr_zero(neighbors[place] & rest));
      form.Tie(place, parent, bondBetween(place, parent));
    }
    rest &= ~leaves;
  }
  const auto first = static_cast<unsigned>(std::countr_zero(rest));
  if (std::has_single_bit(rest)) return form.AtNode(first);
  const auto second = static_cast<unsigned>(std::countr_zero(rest & (rest - 1)));
  return form.AtBond(first, second, bondBetween(first, second));
}

}  // namespace QXFingrix
