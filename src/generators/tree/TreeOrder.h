#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "generators/tree/TreeIds.h"

namespace QXFingrix {

/// The form of BuildFromLeaves() that lists atoms and bonds from the centre outwards, branches in ascending
/// order as they are hashed: trees with the same identifier are listed alike.
class TreeOrder {
 public:
  /// The labels must outlive what follows.
  TreeOrder(std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels)
      : bondLabels_(bondLabels), ids_(atomLabels, bondLabels) {}

  void Begin(std::span<const TreeNode> nodes) {
    nodes_ = nodes;
    for (std::size_t i = 0; i < nodes.size(); ++i) branches_[i].clear();
    ids_.Begin(nodes);
  }
  void Tie(unsigned place, unsigned parent, unsigned bond) {
    branches_[parent].push_back({MakeBranch(bondLabels_[bond], ids_.AtNode(place)), place, bond});
    ids_.Tie(place, parent, bond);
  }
  QXChem::QXAtomBondSet AtNode(unsigned place) {
    QXChem::QXAtomBondSet set;
    List(place, set);
    return set;
  }
  QXChem::QXAtomBondSet AtBond(unsigned a, unsigned b, unsigned bond) {
    if (ids_.AtNode(b) < ids_.AtNode(a)) std::swap(a, b);
    QXChem::QXAtomBondSet set = AtNode(a);
    set.AddBond(bond);
    List(b, set);
    return set;
  }

 private:
  struct Branch {
    std::uint64_t key;
    unsigned place;
    unsigned bond;
  };

  void List(unsigned place, QXChem::QXAtomBondSet& set) {
    set.AddAtom(nodes_[place].atom);
    std::ranges::stable_sort(branches_[place], {}, &Branch::key);
    for (const Branch& branch : branches_[place]) {
      set.AddBond(branch.bond);
      List(branch.place, set);
    }
  }

  std::span<const unsigned> bondLabels_;
  std::span<const TreeNode> nodes_;
  TreeIds ids_;
  std::array<std::vector<Branch>, maxTreeAtoms> branches_;  // of each place
};

}  // namespace QXFingrix
