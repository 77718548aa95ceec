#include "generators/tree/TreeWalk.h"

#include "QXChem/QXPerception.h"

namespace QXFingrix {

void TreeWalk::Begin(const QXChem::QXMolBase& mol, unsigned minbonds, unsigned maxbonds,
                     std::uint64_t maxTrees) {
  mol_ = &mol;
  minbonds_ = minbonds;
  maxbonds_ = maxbonds;
  numLeft_ = maxTrees;
  mayBeBare_ = HasBareBond(mol);
  isInTree_.assign(mol.NumAtoms(), 0);
  frontier_.clear();
  if (minbonds == 0) return;
  QXChem::QXDetermineComponents(mol, partOfAtom_);
  partSizes_.assign(partOfAtom_.size() + 1, 0);
  for (const unsigned part : partOfAtom_) ++partSizes_[part];
}

bool TreeWalk::HasHeavyAtom() const {
  return std::any_of(nodes_, nodes_ + numNodes_,
                     [this](const TreeNode& node) { return mol_->GetAtom(node.atom)->IsHeavy(); });
}

// Adds the bonds that lead on from a node; those before the tree's first bond belong to other trees.
void TreeWalk::AddToFrontier(unsigned place) {
  for (const QXChem::QXNeighbor& step : mol_->Neighbors(nodes_[place].atom)) {
    if (step.bond > firstBond_ && !isInTree_[step.atom]) frontier_.push_back({step.atom, step.bond, place});
  }
}

}  // namespace QXFingrix
