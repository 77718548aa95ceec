#include "chem/rdkit/Sanitize.h"  // first, for RDKit's configuration

#include <GraphMol/SmilesParse/SmilesWrite.h>

#include <algorithm>
#include <new>

#include "chem/MolAccess.h"
#include "chem/rdkit/Bridge.h"
#include "chem/rdkit/ToRDKit.h"

namespace QXChem {
namespace {

bool NeedsLabels(const QXMolBase& mol) {
  return std::any_of(mol.Atoms().begin(), mol.Atoms().end(),
                     [](const QXAtomBase& atom) { return atom.GetIsotope() != 0 || atom.GetMapIdx() != 0; });
}

}  // namespace

void PerceiveWithRDKit(QXMolBase& mol, bool aromaticity, bool hybridization) {
  try {
    RDKit::RWMol source = ToRDKit(mol);
    SanitizeKekule(source);
    if (aromaticity) CopyAromaticity(mol, source);
    if (hybridization) CopyHybridization(mol, source);
    return;
  } catch (...) {  // a structure that RDKit does not take has neither
  }
  if (aromaticity) MolAccess::ClearAromaticity(mol);
  if (hybridization) MolAccess::ClearHybridization(mol);
}

std::string WriteSmilesWithRDKit(const QXMolBase& mol) {
  if (mol.NumAtoms() == 0 || mol.NumAtoms() > maxAtomsToWrite) return {};
  try {
    RDKit::RWMol source = ToRDKit(mol);
    SanitizeKekule(source);
    // There is no stereo to assign, which RDKit would otherwise look for before it writes isotopes.
    source.setProp(RDKit::common_properties::_StereochemDone, 1, true);
    return RDKit::MolToSmiles(source, NeedsLabels(mol));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return {};
  }
}

}  // namespace QXChem
