// Setters of atoms and bonds: each one says which perceived properties stop holding.

#include "QXChem/QXAtomBase.h"
#include "QXChem/QXBondBase.h"
#include "QXChem/QXMolBase.h"
#include "QXSystem/QXErrorHandler.h"
#include "chem/MolAccess.h"

namespace QXChem {
namespace {

constexpr unsigned rings = MolAccess::Bit(QXPerceived::Rings);
constexpr unsigned aromaticity = MolAccess::Bit(QXPerceived::Aromaticity);
constexpr unsigned hybridization = MolAccess::Bit(QXPerceived::Hybridization);
constexpr unsigned chirality = MolAccess::Bit(QXPerceived::Chirality);
constexpr unsigned symmetry = MolAccess::Bit(QXPerceived::Symmetry);

// What an edit of elements, charges, hydrogens or bond orders makes unknown.
constexpr unsigned chemistry = aromaticity | hybridization | chirality | symmetry;

bool InRange(const char* function, int value, int low, int high) {
  if (value >= low && value <= high) return true;
  QXSystem::QXThrow.Warning("%s : value %d out of range (%d to %d)!", function, value, low, high);
  return false;
}

bool InRange(const char* function, unsigned value, unsigned high) {
  if (value <= high) return true;
  QXSystem::QXThrow.Warning("%s : value %u out of range (0 to %u)!", function, value, high);
  return false;
}

}  // namespace

unsigned QXAtomBase::CountHeavyNeighbors() const {
  unsigned count = 0;
  for (const QXNeighbor& neighbor : GetNeighbors()) count += parent_->atoms_[neighbor.atom].IsHeavy();
  return count;
}

unsigned QXAtomBase::CountHydrogenNeighbors() const {
  unsigned count = 0;
  for (const QXNeighbor& neighbor : GetNeighbors()) count += parent_->atoms_[neighbor.atom].IsHydrogen();
  return count;
}

unsigned QXAtomBase::GetValence() const {
  unsigned valence = implicitH_;
  for (const QXNeighbor& neighbor : GetNeighbors()) {
    const QXBondBase& bond = parent_->bonds_[neighbor.bond];
    if (!bond.IsDative() || bond.GetEndIdx() == idx_) valence += bond.GetOrder();
  }
  return valence;
}

bool QXAtomBase::SetAtomicNum(unsigned atomicNum) {
  if (!InRange("QXAtomBase::SetAtomicNum()", atomicNum, 132)) return false;
  atomicNum_ = static_cast<std::uint8_t>(atomicNum);
  for (const QXNeighbor& neighbor : GetNeighbors()) parent_->UpdateNeighborCounts(neighbor.atom);
  parent_->NoteEdit(chemistry);
  return true;
}

bool QXAtomBase::SetIsotope(unsigned isotope) {
  if (!InRange("QXAtomBase::SetIsotope()", isotope, 65535)) return false;
  isotope_ = static_cast<std::uint16_t>(isotope);
  parent_->NoteEdit(chirality | symmetry);
  return true;
}

bool QXAtomBase::SetFormalCharge(int charge) {
  if (!InRange("QXAtomBase::SetFormalCharge()", charge, -99, 99)) return false;
  formalCharge_ = static_cast<std::int8_t>(charge);
  parent_->NoteEdit(chemistry);
  return true;
}

bool QXAtomBase::SetImplicitHCount(unsigned count) {
  if (!InRange("QXAtomBase::SetImplicitHCount()", count, 99)) return false;
  implicitH_ = static_cast<std::uint8_t>(count);
  parent_->NoteEdit(chemistry);
  return true;
}

bool QXAtomBase::SetHyb(unsigned hyb) {
  if (!InRange("QXAtomBase::SetHyb()", hyb, 5)) return false;
  hyb_ = hyb & 0xF;
  parent_->NoteEdit(chirality | symmetry, hybridization);
  return true;
}

void QXAtomBase::SetMapIdx(unsigned mapIdx) {
  MolAccess::SetMapIdx(*parent_, idx_, mapIdx);
  parent_->NoteEdit(symmetry);
}

void QXAtomBase::SetAromatic(bool aromatic) {
  aromatic_ = aromatic;
  parent_->NoteEdit(chirality | symmetry, aromaticity);
}

void QXAtomBase::SetInRing(bool inRing) {
  inRing_ = inRing;
  parent_->NoteEdit(chirality | symmetry, rings);
}

void QXAtomBase::SetChiral(bool chiral) {
  chiral_ = chiral;
  parent_->NoteEdit(symmetry, chirality);
}

void QXAtomBase::SetSymmetryClass(unsigned symmetryClass) {
  symmetryClass_ = symmetryClass;
  parent_->NoteEdit(0, symmetry);
}

bool QXBondBase::SetOrder(unsigned order) {
  if (!InRange("QXBondBase::SetOrder()", order, 9)) return false;
  order_ = static_cast<std::uint8_t>(order);
  parent_->NoteEdit(chemistry);
  return true;
}

void QXBondBase::SetAromatic(bool aromatic) {
  aromatic_ = aromatic;
  parent_->NoteEdit(chirality | symmetry, aromaticity);
}

void QXBondBase::SetInRing(bool inRing) {
  inRing_ = inRing;
  parent_->NoteEdit(chirality | symmetry, rings);
}

void QXBondBase::SetChiral(bool chiral) {
  chiral_ = chiral;
  parent_->NoteEdit(symmetry, chirality);
}

void QXBondBase::SetDative(bool dative) {
  dative_ = dative;
  parent_->NoteEdit(chemistry);
}

}  // namespace QXChem
