// RDKit's default sanitising, step by step. Doing it ourselves gives the Kekulé order of every bond beside
// its aromatic flag, and leaves out what the graph has no use for: stereo (RDKit's assignment sets
// environment variables and grows with the cube of a chain's length) and the removal of hydrogens (done on
// the graph, where it costs less).
//
// RDKit searches rings recursively, in time that grows with rings x atoms^2, and passes over all atoms again
// for every connected part. What would overflow the stack or take minutes is refused beforehand.

#include "chem/rdkit/Sanitize.h"

#include <GraphMol/MolOps.h>

#include <numeric>
#include <stdexcept>

#include "chem/MolAccess.h"
#include "chem/rdkit/Hybridization.h"

namespace QXChem {
namespace {

constexpr double maxRingAtoms = 20000;  // 128 bytes of stack each
constexpr double maxRingEffort = 4e10;  // rings x atoms^2 of a connected part, about 10 seconds
constexpr double maxPartEffort = 2e8;   // connected parts with rings x all atoms, about 5 seconds

unsigned FindRoot(std::vector<unsigned>& parent, unsigned i) {
  while (parent[i] != i) i = parent[i] = parent[parent[i]];
  return i;
}

struct Order {
  unsigned order;
  bool dative;
};

Order ToOrder(RDKit::Bond::BondType type) {
  using enum RDKit::Bond::BondType;
  switch (type) {
    case SINGLE:
      return {1, false};
    case DOUBLE:
      return {2, false};
    case TRIPLE:
      return {3, false};
    case QUADRUPLE:
      return {4, false};
    case QUINTUPLE:
      return {5, false};
    case HEXTUPLE:
      return {6, false};
    case DATIVE:
    case DATIVEL:
    case DATIVER:
    case DATIVEONE:
      return {1, true};
    default:  // contacts, and the "any" bonds of queries
      return {0, false};
  }
}

void FillBonds(QXMolBase& mol, const RDKit::ROMol& source) {
  for (const RDKit::Bond* bond : source.bonds()) {
    const Order order = ToOrder(bond->getBondType());
    MolAccess::FillBond(mol, bond->getIdx(), bond->getBeginAtomIdx(), bond->getEndAtomIdx(), order.order,
                        order.dative);
  }
}

void FillAtoms(QXMolBase& mol, const RDKit::ROMol& source) {
  for (const RDKit::Atom* atom : source.atoms()) {
    MolAccess::FillAtom(mol, atom->getIdx(), static_cast<unsigned>(atom->getAtomicNum()),
                        atom->getFormalCharge(), atom->getIsotope(), atom->getTotalNumHs());
    if (atom->hasProp(RDKit::common_properties::molAtomMapNumber)) {
      MolAccess::SetMapIdx(mol, atom->getIdx(), static_cast<unsigned>(atom->getAtomMapNum()));
    }
  }
}

// RDKit takes the hybridisation of a drawn stereo centre from the drawing (a metal written with @ is sp3).
// Without the drawing it comes from the structure, the same for both spellings.
void ForgetDrawnStereo(RDKit::RWMol& source) {
  for (RDKit::Atom* atom : source.atoms()) atom->setChiralTag(RDKit::Atom::CHI_UNSPECIFIED);
}

void PerceiveAfterKekulize(RDKit::RWMol& source) {
  RDKit::MolOps::assignRadicals(source);
  RDKit::MolOps::setAromaticity(source);
  RDKit::MolOps::setConjugation(source);
  RDKit::MolOps::setHybridization(source);
  RDKit::MolOps::adjustHs(source);
}

}  // namespace

void CheckRingEffort(const RDKit::ROMol& source) {
  const unsigned numAtoms = source.getNumAtoms();
  if (numAtoms < 1000) return;
  std::vector<unsigned> parent(numAtoms);
  std::iota(parent.begin(), parent.end(), 0U);
  std::vector<double> atoms(numAtoms, 1);
  std::vector<double> rings(numAtoms, 0);
  for (const RDKit::Bond* bond : source.bonds()) {
    const unsigned a = FindRoot(parent, bond->getBeginAtomIdx());
    const unsigned b = FindRoot(parent, bond->getEndAtomIdx());
    if (a == b) {
      ++rings[a];
      continue;
    }
    parent[b] = a;
    atoms[a] += atoms[b];
    rings[a] += rings[b];
  }
  unsigned numParts = 0;
  for (unsigned i = 0; i < numAtoms; ++i) {
    if (parent[i] != i || rings[i] == 0) continue;
    ++numParts;
    if (atoms[i] > maxRingAtoms || rings[i] * atoms[i] * atoms[i] > maxRingEffort) {
      throw std::runtime_error(
          "too large for ring perception: " + std::to_string(static_cast<long>(rings[i])) + " rings among " +
          std::to_string(static_cast<long>(atoms[i])) + " connected atoms");
    }
  }
  if (static_cast<double>(numParts) * numAtoms > maxPartEffort) {
    throw std::runtime_error("too large for ring perception: " + std::to_string(numParts) +
                             " parts with rings among " + std::to_string(numAtoms) + " atoms");
  }
}

void SanitizeInto(QXMolBase& mol, RDKit::RWMol& source) {
  CheckRingEffort(source);
  ForgetDrawnStereo(source);
  source.clearComputedProps();
  RDKit::MolOps::cleanUp(source);
  source.updatePropertyCache(true);
  RDKit::VECT_INT_VECT rings;
  RDKit::MolOps::symmetrizeSSSR(source, rings);
  RDKit::MolOps::Kekulize(source);
  MolAccess::Start(mol, source.getNumAtoms(), source.getNumBonds());
  FillBonds(mol, source);
  PerceiveAfterKekulize(source);
  source.updatePropertyCache(true);
  FillAtoms(mol, source);
  MolAccess::Finish(mol);
  CopyAromaticity(mol, source);
  CopyHybridization(mol, source);
}

void SanitizeKekule(RDKit::RWMol& source) {
  CheckRingEffort(source);
  source.updatePropertyCache(true);
  RDKit::VECT_INT_VECT rings;
  RDKit::MolOps::symmetrizeSSSR(source, rings);
  PerceiveAfterKekulize(source);
}

void CopyAromaticity(QXMolBase& mol, const RDKit::ROMol& source) {
  const auto atoms = MolAccess::Atoms(mol);
  for (const RDKit::Atom* atom : source.atoms()) {
    MolAccess::SetAromatic(atoms[atom->getIdx()], atom->getIsAromatic());
  }
  const auto bonds = MolAccess::Bonds(mol);
  for (const RDKit::Bond* bond : source.bonds()) {
    MolAccess::SetAromatic(bonds[bond->getIdx()], bond->getIsAromatic());
  }
  MolAccess::MarkPerceived(mol, QXPerceived::Aromaticity);
}

void CopyHybridization(QXMolBase& mol, const RDKit::ROMol& source) {
  const auto atoms = MolAccess::Atoms(mol);
  for (const RDKit::Atom* atom : source.atoms()) {
    MolAccess::SetHyb(atoms[atom->getIdx()], ToHybridizationCode(atom->getHybridization()));
  }
  MolAccess::MarkPerceived(mol, QXPerceived::Hybridization);
}

}  // namespace QXChem
