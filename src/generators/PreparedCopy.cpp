#include "generators/PreparedCopy.h"

#include "QXChem/QXPerception.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"

namespace QXFingrix {

// Preparation takes hydrogens away and leaves the rest in its order.
PreparedCopy::PreparedCopy(const QXChem::QXMolBase& mol, unsigned code) : mol_(mol) {
  QXPrepareForFingerprinting(mol_, code);
  if (mol_.NumAtoms() == mol.NumAtoms()) return;
  std::vector<char> isKept(mol.NumAtoms());
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (QXChem::QXIsSuppressibleHydrogen(atom)) continue;
    isKept[atom.GetIdx()] = 1;
    atoms_.push_back(atom.GetIdx());
  }
  for (const QXChem::QXBondBase& bond : mol.Bonds()) {
    if (isKept[bond.GetBgnIdx()] && isKept[bond.GetEndIdx()]) bonds_.push_back(bond.GetIdx());
  }
}

QXChem::QXAtomBondSet PreparedCopy::Original(const QXChem::QXAtomBondSet& set) const {
  QXChem::QXAtomBondSet original;
  for (const unsigned idx : set.Atoms()) original.AddAtom(OriginalAtom(idx));
  for (const unsigned idx : set.Bonds()) original.AddBond(OriginalBond(idx));
  return original;
}

}  // namespace QXFingrix
