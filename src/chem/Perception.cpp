#include "QXChem/QXPerception.h"

#include <algorithm>

#include "chem/MolAccess.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

// RDKit perceives both at once. What the caller set by hand of the other property stays.
void PerceiveUnless(QXMolBase& mol, QXPerceived wanted) {
  if (mol.IsPerceived(wanted)) return;
  PerceiveWithRDKit(mol, !mol.IsPerceived(QXPerceived::Aromaticity),
                    !mol.IsPerceived(QXPerceived::Hybridization));
}

bool IsUnsaturated(const QXBondBase& bond) {
  return bond.IsAromatic() || bond.GetOrder() == 2 || bond.GetOrder() == 3;
}

}  // namespace

void QXAssignAromaticFlags(QXMolBase& mol) {
  PerceiveUnless(mol, QXPerceived::Aromaticity);
}
void QXAssignHybridization(QXMolBase& mol) {
  PerceiveUnless(mol, QXPerceived::Hybridization);
}

bool QXHasAlphaBetaUnsat(const QXAtomBase* atom, bool includePandS) {
  if (!atom) return false;
  const QXMolBase& mol = atom->GetParent();
  return std::ranges::any_of(atom->GetNeighbors(), [&](const QXNeighbor& toAlpha) {
    const unsigned element = mol.Atoms()[toAlpha.atom].GetAtomicNum();
    if (!includePandS && (element == 15 || element == 16)) return false;
    return std::ranges::any_of(mol.Neighbors(toAlpha.atom), [&](const QXNeighbor& toBeta) {
      return toBeta.atom != atom->GetIdx() && IsUnsaturated(mol.Bonds()[toBeta.bond]);
    });
  });
}

}  // namespace QXChem
