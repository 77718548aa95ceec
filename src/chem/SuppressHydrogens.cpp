#include "QXChem/QXPerception.h"
#include "chem/MolAccess.h"

namespace QXChem {

bool QXIsSuppressibleHydrogen(const QXAtomBase& atom) {
  if (!atom.IsHydrogen()) return false;
  if (atom.GetIsotope() != 0 || atom.GetFormalCharge() != 0 || atom.GetMapIdx() != 0) return false;
  const auto neighbors = atom.GetNeighbors();
  if (neighbors.size() != 1 || atom.GetImplicitHCount() != 0) return false;
  const QXMolBase& mol = atom.GetParent();
  const QXBondBase& bond = mol.Bonds()[neighbors[0].bond];
  return bond.GetOrder() == 1 && !bond.IsDative() && mol.Atoms()[neighbors[0].atom].IsHeavy();
}

void QXSuppressHydrogens(QXMolBase& mol) {
  const auto atoms = MolAccess::Atoms(mol);
  std::vector<char> remove;  // stays empty while there is nothing to do
  for (const QXAtomBase& atom : atoms) {
    if (!QXIsSuppressibleHydrogen(atom)) continue;
    if (remove.empty()) remove.resize(atoms.size());
    remove[atom.GetIdx()] = 1;
    MolAccess::AddImplicitH(atoms[atom.GetNeighbors()[0].atom]);
  }
  if (!remove.empty()) MolAccess::RemoveAtoms(mol, remove);
}

}  // namespace QXChem
