#include "generators/circular/Ball.h"

namespace QXFingrix {

void Ball::Load(const QXChem::QXMolBase& mol) {
  mol_ = &mol;
  atomMarks_.assign(mol.NumAtoms(), 0);
  bondMarks_.assign(mol.NumBonds(), 0);
  mark_ = 0;
}

void Ball::Find(unsigned centre, unsigned radius) {
  if (++mark_ == 0) {
    Load(*mol_);
    mark_ = 1;
  }
  atoms_.assign(1, centre);
  bonds_.clear();
  shells_.assign({0, 1});
  atomMarks_[centre] = mark_;
  for (unsigned distance = 0; distance < radius; ++distance) {
    for (std::size_t i = shells_[distance]; i < shells_[distance + 1]; ++i) {
      for (const QXChem::QXNeighbor& step : mol_->Neighbors(atoms_[i])) {
        if (bondMarks_[step.bond] == mark_) continue;
        bondMarks_[step.bond] = mark_;
        bonds_.push_back(step.bond);
        if (atomMarks_[step.atom] == mark_) continue;
        atomMarks_[step.atom] = mark_;
        atoms_.push_back(step.atom);
      }
    }
    shells_.push_back(atoms_.size());
  }
}

}  // namespace QXFingrix
