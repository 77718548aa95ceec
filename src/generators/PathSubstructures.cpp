#include "generators/PathSubstructures.h"

#include "generators/PathGenerator.h"

namespace QXFingrix {

bool PathSubstructures::Find() {
  isOnPath_.assign(Mol().NumAtoms(), 0);
  for (const QXChem::QXAtomBase& atom : Mol().Atoms()) {
    start_ = atom.GetIdx();
    unsigned id = 0;
    LengthenPathId(id, 0, atomLabels_[start_], 0);
    if (atom.IsHeavy() && !Walk(start_, id)) return false;
  }
  return true;
}

// Records the path that ends at an atom, and those that go on from there.
bool PathSubstructures::Walk(unsigned atom, unsigned id) {
  if (numLeft_-- == 0) return false;
  const auto numBonds = static_cast<unsigned>(bonds_.size());
  if (numBonds >= params_.minDistance) Add(id, start_, bonds_);
  if (numBonds == params_.maxDistance) return true;
  isOnPath_[atom] = 1;
  for (const QXChem::QXNeighbor& step : Mol().Neighbors(atom)) {
    if (isOnPath_[step.atom]) continue;
    unsigned longer = id;
    LengthenPathId(longer, bondLabels_[step.bond], atomLabels_[step.atom], numBonds + 1);
    bonds_.push_back(step.bond);
    if (!Walk(step.atom, longer)) return false;
    bonds_.pop_back();
  }
  isOnPath_[atom] = 0;
  return true;
}

std::string PathSubstructures::WriteToken(unsigned i) const {
  const QXChem::QXAtomBondSet path = Read(i);
  std::string text = atomTexts_[path.Atoms()[0]];
  for (unsigned step = 0; step < path.NumBonds(); ++step) {
    LengthenPathId(text, bondTexts_[path.Bonds()[step]], atomTexts_[path.Atoms()[step + 1]], step + 1);
  }
  return text;
}

bool PathSubstructures::IsRepeated(unsigned i) const {
  const QXChem::QXAtomBondSet path = Read(i);
  const unsigned end = path.Atoms().back();
  return end < FirstAtom(i) && Mol().Atoms()[end].IsHeavy();
}

}  // namespace QXFingrix
