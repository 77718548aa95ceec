// Ring bonds are the bonds that are no bridge. One depth-first walk with an explicit stack: low[v] is the
// earliest visited atom that v's subtree reaches by one bond outside the tree; the tree bond to v is a bridge
// when that does not come before v itself. Tarjan 1974, doi:10.1016/0020-0190(74)90003-9.

#include <algorithm>
#include <limits>

#include "QXChem/QXPerception.h"
#include "chem/MolAccess.h"
#include "chem/ThreadScratch.h"

namespace QXChem {
namespace {

class RingMarker {
 public:
  // May be called again: the buffers are kept.
  void Run(QXMolBase& mol) {
    mol_ = &mol;
    atoms_ = MolAccess::Atoms(mol);
    bonds_ = MolAccess::Bonds(mol);
    numVisited_ = 0;
    stack_.clear();  // not empty after an exception
    order_.assign(mol.NumAtoms(), unvisited_);
    low_.resize(mol.NumAtoms());
    for (QXAtomBase& atom : atoms_) MolAccess::SetInRing(atom, false);
    for (QXBondBase& bond : bonds_) MolAccess::SetInRing(bond, false);
    for (unsigned start = 0; start < mol.NumAtoms(); ++start) {
      if (order_[start] == unvisited_) Walk(start);
    }
  }

 private:
  struct Step {
    unsigned atom;
    unsigned bond;  // that led here
    unsigned next;  // neighbour to look at
  };

  void Enter(unsigned atom, unsigned bond) {
    order_[atom] = low_[atom] = numVisited_++;
    stack_.push_back({atom, bond, 0});
  }

  void Walk(unsigned start) {
    Enter(start, unvisited_);
    while (!stack_.empty()) {
      Step& step = stack_.back();
      const auto neighbors = mol_->Neighbors(step.atom);
      if (step.next == neighbors.size()) {
        Leave();
        continue;
      }
      const QXNeighbor neighbor = neighbors[step.next++];
      if (neighbor.bond == step.bond) continue;
      if (order_[neighbor.atom] == unvisited_) {
        Enter(neighbor.atom, neighbor.bond);
      } else if (order_[neighbor.atom] < order_[step.atom]) {
        MarkRingBond(neighbor.bond);  // closes a ring
        low_[step.atom] = std::min(low_[step.atom], order_[neighbor.atom]);
      }
    }
  }

  void Leave() {
    const Step step = stack_.back();
    stack_.pop_back();
    if (stack_.empty()) return;
    const unsigned parent = stack_.back().atom;
    low_[parent] = std::min(low_[parent], low_[step.atom]);
    if (low_[step.atom] < order_[step.atom]) MarkRingBond(step.bond);
  }

  void MarkRingBond(unsigned bond) {
    MolAccess::SetInRing(bonds_[bond], true);
    MolAccess::SetInRing(atoms_[bonds_[bond].GetBgnIdx()], true);
    MolAccess::SetInRing(atoms_[bonds_[bond].GetEndIdx()], true);
  }

  static constexpr unsigned unvisited_ = std::numeric_limits<unsigned>::max();

  const QXMolBase* mol_ = nullptr;
  std::span<QXAtomBase> atoms_;
  std::span<QXBondBase> bonds_;
  unsigned numVisited_ = 0;
  std::vector<unsigned> order_;
  std::vector<unsigned> low_;
  std::vector<Step> stack_;
};

}  // namespace

void QXFindRingAtomsAndBonds(QXMolBase& mol) {
  if (mol.IsPerceived(QXPerceived::Rings)) return;
  ThreadScratch<RingMarker>(mol)->Run(mol);
  MolAccess::MarkPerceived(mol, QXPerceived::Rings);
}

}  // namespace QXChem
