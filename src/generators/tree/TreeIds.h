#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "generators/IdentifierHash.h"
#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// A branch as its node sees it: the label of the bond above the identifier of what hangs there, so that
/// branches are sorted by label first.
inline std::uint64_t MakeBranch(unsigned bondLabel, unsigned id) {
  return std::uint64_t{bondLabel} << 32 | id;
}

/// @name The identifiers of trees
/// Frozen: fingerprint bits follow from them. A node is hashed from its label and its branches in ascending
/// order; a tree with one centre has the identifier of that node. A tree with two has that of the bond between
/// them: the label of the bond and the two nodes, each without the other, the smaller identifier first.
/// @{
class TreeNodeHash {
 public:
  explicit TreeNodeHash(unsigned atomLabel) : hash_(0) { hash_.Add(atomLabel); }

  /// The hash with one more branch, which comes after those before it.
  TreeNodeHash With(std::uint64_t branch) const {
    TreeNodeHash longer = *this;
    longer.hash_.Add(static_cast<std::uint32_t>(branch >> 32));
    longer.hash_.Add(static_cast<std::uint32_t>(branch));
    return longer;
  }
  unsigned Get() const { return hash_.Get(); }

 private:
  IdentifierHash hash_;
};

inline unsigned TreeBondId(unsigned bondLabel, unsigned idA, unsigned idB) {
  IdentifierHash hash(0);
  hash.Add(bondLabel);
  hash.Add(std::min(idA, idB));
  hash.Add(std::max(idA, idB));
  return hash.Get();
}
/// @}

/// The form of BuildFromLeaves() that gives the identifier of any tree.
class TreeIds {
 public:
  /// The labels must outlive what follows.
  TreeIds(std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels)
      : atomLabels_(atomLabels), bondLabels_(bondLabels) {}

  void Begin(std::span<const TreeNode> nodes) {
    nodes_ = nodes;
    std::fill_n(numBranches_, nodes.size(), 0U);
  }
  void Tie(unsigned place, unsigned parent, unsigned bond) {
    const std::uint64_t branch = MakeBranch(bondLabels_[bond], AtNode(place));
    std::uint64_t* const branches = branches_[parent];
    unsigned i = numBranches_[parent]++;
    for (; i > 0 && branches[i - 1] > branch; --i) branches[i] = branches[i - 1];
    branches[i] = branch;
  }
  unsigned AtNode(unsigned place) const {
    TreeNodeHash hash(atomLabels_[nodes_[place].atom]);
    for (unsigned i = 0; i < numBranches_[place]; ++i) hash = hash.With(branches_[place][i]);
    return hash.Get();
  }
  unsigned AtBond(unsigned a, unsigned b, unsigned bond) const {
    return TreeBondId(bondLabels_[bond], AtNode(a), AtNode(b));
  }

 private:
  std::span<const unsigned> atomLabels_;
  std::span<const unsigned> bondLabels_;
  std::span<const TreeNode> nodes_;
  unsigned numBranches_[maxTreeAtoms] = {};
  std::uint64_t branches_[maxTreeAtoms][maxTreeBonds];  // ascending for each place
};

}  // namespace QXFingrix
