#include "generators/GrownSubstructures.h"

namespace QXFingrix {

void GrownSubstructures::Add(unsigned id, unsigned firstAtom, std::span<const unsigned> bonds) {
  ids_.push_back(id);
  firsts_.push_back(rows_.size());
  rows_.push_back(firstAtom);
  rows_.insert(rows_.end(), bonds.begin(), bonds.end());
}

std::span<const unsigned> GrownSubstructures::Bonds(unsigned i) const {
  const std::size_t end = i + 1 < firsts_.size() ? firsts_[i + 1] : rows_.size();
  return std::span(rows_).subspan(firsts_[i] + 1, end - firsts_[i] - 1);
}

QXChem::QXAtomBondSet GrownSubstructures::Read(unsigned i) const {
  QXChem::QXAtomBondSet set;
  set.AddAtom(FirstAtom(i));
  for (const unsigned idx : Bonds(i)) {
    const QXChem::QXBondBase& bond = Mol().Bonds()[idx];
    set.AddBond(idx);
    set.AddAtom(set.HasAtom(bond.GetBgnIdx()) ? bond.GetEndIdx() : bond.GetBgnIdx());
  }
  return set;
}

}  // namespace QXFingrix
