#pragma once

#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXChem {

/// What readers and perception may do to a molecule beyond its public face: fill it in bulk, and store
/// perceived properties without that counting as an edit.
struct MolAccess {
  static constexpr unsigned Bit(QXPerceived property) { return static_cast<unsigned>(property); }
  static void MarkPerceived(QXMolBase& mol, QXPerceived property) { mol.perceived_ |= Bit(property); }

  static void SetAromatic(QXAtomBase& atom, bool on) { atom.aromatic_ = on; }
  static void SetInRing(QXAtomBase& atom, bool on) { atom.inRing_ = on; }
  static void SetChiral(QXAtomBase& atom, bool on) { atom.chiral_ = on; }
  static void SetHyb(QXAtomBase& atom, unsigned hyb) { atom.hyb_ = hyb & 0xF; }
  static void SetSymmetryClass(QXAtomBase& atom, unsigned value) { atom.symmetryClass_ = value; }
  static void SetAromatic(QXBondBase& bond, bool on) { bond.aromatic_ = on; }
  static void SetInRing(QXBondBase& bond, bool on) { bond.inRing_ = on; }
  static void SetChiral(QXBondBase& bond, bool on) { bond.chiral_ = on; }

  static std::span<QXAtomBase> Atoms(QXMolBase& mol) { return mol.atoms_; }
  static std::span<QXBondBase> Bonds(QXMolBase& mol) { return mol.bonds_; }

  /// No aromatic atom or bond, no hybridisation; both count as perceived.
  static void ClearAromaticity(QXMolBase& mol);
  static void ClearHybridization(QXMolBase& mol);

  // Bulk filling: Start, then every atom and bond with the given values, then Finish.
  static void Start(QXMolBase& mol, unsigned numAtoms, unsigned numBonds);
  static void FillAtom(QXMolBase& mol, unsigned idx, unsigned atomicNum, int charge, unsigned isotope,
                       unsigned implicitH);
  static void FillBond(QXMolBase& mol, unsigned idx, unsigned bgn, unsigned end, unsigned order, bool dative);
  static void SetMapIdx(QXMolBase& mol, unsigned idx, unsigned mapIdx);
  /// Builds neighbour lists and neighbour counts from the bonds.
  static void Finish(QXMolBase& mol);

  /// Removes every atom whose flag is set, with its bonds. Perceived properties of what remains are kept,
  /// apart from symmetry and chirality.
  static void RemoveAtoms(QXMolBase& mol, const std::vector<char>& remove);
  static void AddImplicitH(QXAtomBase& atom) { atom.implicitH_ += atom.implicitH_ < 255; }
};

}  // namespace QXChem
