#include "chem/rdkit/Sanitize.h"  // first, for RDKit's configuration

#include <GraphMol/MolOps.h>

#include <new>

#include "chem/rdkit/Queries.h"

namespace QXChem {

bool CountRingsWithRDKit(const QXMolBase& mol, std::vector<unsigned>& counts, std::string& reason) {
  try {
    RDKit::RWMol skeleton;
    for (unsigned i = 0; i < mol.NumAtoms(); ++i) skeleton.addAtom(new RDKit::Atom(6), false, true);
    for (const QXBondBase& bond : mol.Bonds()) {
      skeleton.addBond(bond.GetBgnIdx(), bond.GetEndIdx(), RDKit::Bond::SINGLE);
    }
    CheckRingEffort(skeleton);
    RDKit::VECT_INT_VECT rings;
    RDKit::MolOps::symmetrizeSSSR(skeleton, rings);
    counts.assign(mol.NumAtoms(), 0);
    for (const auto& ring : rings) {
      for (const int atom : ring) ++counts[static_cast<unsigned>(atom)];
    }
    return true;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    reason = error.what();
  } catch (...) {
    reason = "unknown failure of the ring perception";
  }
  return false;
}

}  // namespace QXChem
