#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/tree/TreeKind.h"

namespace QXFingrix {

/// An atom of a tree and the bond that ties it to an earlier atom, given by its place in the row of nodes; the
/// first node has no bond.
struct TreeNode {
  unsigned atom;
  unsigned bond;
  unsigned parent;
};

/// Visits every connected acyclic subgraph of a molecule once, as a set of bonds; without bonds, every heavy
/// atom. At least one atom has to be heavy.
///
/// A tree grows from the bond of its lowest index. The frontier lists the bonds that lead out of the tree; a
/// bond that has been tried at some step is not tried again while that step lasts. So each set of bonds is
/// grown in one order only, that of the frontier, and nothing needs to be remembered. Source: the enumeration
/// of connected subgraphs by exclusive neighbourhoods, Wernicke, IEEE/ACM Trans. Comput. Biol. Bioinform.
/// 2006, 3, 347, doi:10.1109/TCBB.2006.51, over bonds instead of atoms.
///
/// An object is working memory.
class TreeWalk {
 public:
  /// Calls visit(std::span<const TreeNode>) for the trees of minbonds to maxbonds bonds, in no order that
  /// means anything, until it answers false.
  /// Shape    minbonds <= maxbonds <= maxTreeBonds.
  /// Returns  false when a visit did, or when there are more than maxTrees trees of one to maxbonds bonds:
  ///          that does not depend on the order of the atoms.
  /// Cost     a step for each tree of at most maxbonds bonds and for each bond that leads out of it.
  template <class Visit>
  bool Walk(const QXChem::QXMolBase& mol, unsigned minbonds, unsigned maxbonds, std::uint64_t maxTrees,
            Visit visit);

  /// Whether a bond joins two atoms that are not heavy.
  static bool HasBareBond(const QXChem::QXMolBase& mol) {
    return std::ranges::any_of(mol.Bonds(), [](const QXChem::QXBondBase& bond) {
      return !bond.GetBgn()->IsHeavy() && !bond.GetEnd()->IsHeavy();
    });
  }

 private:
  void Begin(const QXChem::QXMolBase& mol, unsigned minbonds, unsigned maxbonds, std::uint64_t maxTrees);
  bool IsInSmallPart(unsigned atom) const {
    return minbonds_ > 0 && partSizes_[partOfAtom_[atom]] <= minbonds_;
  }
  bool HasHeavyAtom() const;
  void AddToFrontier(unsigned place);
  template <class Visit>
  bool Grow(std::size_t first, Visit& visit);
  template <class Visit>
  bool Add(const TreeNode& node, std::size_t next, Visit& visit);

  const QXChem::QXMolBase* mol_ = nullptr;
  unsigned minbonds_ = 0;
  unsigned maxbonds_ = 0;
  std::uint64_t numLeft_ = 0;  // trees that may still come
  bool mayBeBare_ = false;     // a tree without heavy atoms is possible
  unsigned firstBond_ = 0;     // of the tree
  std::size_t numNodes_ = 0;
  TreeNode nodes_[maxTreeAtoms];
  std::vector<TreeNode> frontier_;
  std::vector<unsigned char> isInTree_;  // by atom index
  std::vector<unsigned> partOfAtom_;
  std::vector<unsigned> partSizes_;  // in atoms
};

template <class Visit>
bool TreeWalk::Walk(const QXChem::QXMolBase& mol, unsigned minbonds, unsigned maxbonds,
                    std::uint64_t maxTrees, Visit visit) {
  Begin(mol, minbonds, maxbonds, maxTrees);
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (minbonds > 0 || !atom.IsHeavy()) continue;
    nodes_[0] = {atom.GetIdx(), 0, 0};
    if (!visit(std::span<const TreeNode>(nodes_, 1))) return false;
  }
  if (maxbonds == 0) return true;
  for (const QXChem::QXBondBase& bond : mol.Bonds()) {
    // A part has no tree of as many bonds as it has atoms.
    if (IsInSmallPart(bond.GetBgnIdx())) continue;
    firstBond_ = bond.GetIdx();
    nodes_[0] = {bond.GetBgnIdx(), 0, 0};
    numNodes_ = 1;
    isInTree_[bond.GetBgnIdx()] = 1;
    if (maxbonds > 1) AddToFrontier(0);
    if (!Add({bond.GetEndIdx(), firstBond_, 0}, 0, visit)) return false;
    frontier_.clear();
    isInTree_[bond.GetBgnIdx()] = 0;
  }
  return true;
}

// Adds a node to the tree and visits all trees that it makes with bonds of the frontier from `next` on.
template <class Visit>
bool TreeWalk::Add(const TreeNode& node, std::size_t next, Visit& visit) {
  if (numLeft_-- == 0) return false;
  nodes_[numNodes_++] = node;
  const std::size_t numBonds = numNodes_ - 1;
  if (numBonds >= minbonds_ && !(mayBeBare_ && !HasHeavyAtom())) {
    if (!visit(std::span<const TreeNode>(nodes_, numNodes_))) return false;
  }
  if (numBonds < maxbonds_) {
    const std::size_t size = frontier_.size();
    isInTree_[node.atom] = 1;
    AddToFrontier(static_cast<unsigned>(numBonds));
    if (!Grow(next, visit)) return false;
    isInTree_[node.atom] = 0;
    frontier_.resize(size);
  }
  --numNodes_;
  return true;
}

// Visits the trees made of the present one and of bonds of the frontier from `first` on.
template <class Visit>
bool TreeWalk::Grow(std::size_t first, Visit& visit) {
  const std::size_t end = frontier_.size();
  for (std::size_t i = first; i < end; ++i) {
    const TreeNode node = frontier_[i];
    if (isInTree_[node.atom]) continue;  // it would close a ring
    if (!Add(node, i + 1, visit)) return false;
  }
  return true;
}

}  // namespace QXFingrix
