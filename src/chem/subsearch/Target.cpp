#include "chem/subsearch/Target.h"

#include <algorithm>

#include "QXChem/QXPerception.h"
#include "chem/rdkit/Queries.h"
#include "chem/subsearch/SmallestRings.h"
#include "chem/subsearch/TwinAtoms.h"

namespace QXChem {
namespace {

std::uint16_t GetBondClass(const QXBondBase& bond) {
  static constexpr BondClass byOrder[] = {otherBond, singleBond, doubleBond, tripleBond, quadrupleBond};
  unsigned type = otherBond;
  if (bond.IsAromatic()) {
    type = aromaticBond;
  } else if (bond.IsDative()) {
    type = dativeBond;
  } else if (bond.GetOrder() < std::size(byOrder)) {
    type = byOrder[bond.GetOrder()];
  }
  return static_cast<std::uint16_t>(bond.IsInRing() ? type << ringBondShift : type);
}

// An atom without a code has a lone s orbital when it has at most one neighbour, and otherwise none that has a
// name; neither have thulium, ytterbium and lutetium, whose electrons RDKit counts as so many lone pairs.
int GetHybridization(const QXAtomBase& atom) {
  if (atom.GetHyb() != 0) return static_cast<int>(atom.GetHyb());
  const unsigned element = atom.GetAtomicNum();
  const bool isNamed = element != 0 && (element < 69 || element > 71);
  const bool isS = isNamed && atom.GetDegree() + atom.GetImplicitHCount() <= 1;
  return isS ? hybridizationS : hybridizationNone;
}

template <class Predicate>
int CountNeighbors(const QXAtomBase& atom, Predicate predicate) {
  int count = 0;
  for (const QXNeighbor& neighbor : atom.GetNeighbors()) {
    count += predicate(atom.GetParent().Atoms()[neighbor.atom]);
  }
  return count;
}

bool IsHetero(const QXAtomBase& atom) {
  return atom.GetAtomicNum() != 6 && !atom.IsHydrogen();
}

}  // namespace

void Target::Assign(const QXMolBase& mol) {
  mol_ = &mol;
  if (!mol.IsPerceived(QXPerceived::Rings) || !mol.IsPerceived(QXPerceived::Aromaticity) ||
      !mol.IsPerceived(QXPerceived::Hybridization)) {
    perceived_ = mol;
    QXFindRingAtomsAndBonds(perceived_);
    QXAssignAromaticFlags(perceived_);
    QXAssignHybridization(perceived_);
    mol_ = &perceived_;
  }
  hasSmallestRings_ = false;
  hasRingCounts_ = false;
  hasTwins_ = false;
  FillNeighbors();
  FillWords();
}

void Target::FillNeighbors() {
  const unsigned numAtoms = mol_->NumAtoms();
  offsets_.resize(numAtoms + 1);
  neighbors_.resize(2 * std::size_t{mol_->NumBonds()});
  presentBonds_ = 0;
  highestDegree_ = 0;
  std::uint32_t next = 0;
  for (unsigned atom = 0; atom < numAtoms; ++atom) {
    offsets_[atom] = next;
    for (const QXNeighbor& neighbor : mol_->Neighbors(atom)) {
      const std::uint16_t bondClass = GetBondClass(mol_->Bonds()[neighbor.bond]);
      presentBonds_ |= bondClass;
      neighbors_[next++] = {neighbor.atom, bondClass};
    }
    highestDegree_ = std::max(highestDegree_, next - offsets_[atom]);
  }
  offsets_[numAtoms] = next;
}

void Target::FillWords() {
  words_.resize(mol_->NumAtoms());
  for (const QXAtomBase& atom : mol_->Atoms()) {
    words_[atom.GetIdx()] = std::uint64_t{1} << GetElementBin(atom.GetAtomicNum(), atom.IsAromatic());
  }
  present_ = 0;
  for (const QXAtomBase& atom : mol_->Atoms()) {
    const unsigned i = atom.GetIdx();
    const unsigned degree = offsets_[i + 1] - offsets_[i];
    int numRingBonds = 0;
    std::uint64_t met = 0;
    for (std::uint32_t n = offsets_[i]; n < offsets_[i + 1]; ++n) {
      const Neighbor& neighbor = neighbors_[n];
      numRingBonds += (neighbor.bondClass & ringBonds) != 0;
      const std::uint64_t element = words_[neighbor.atom] & elementField.GetMask();
      met |= lacksMetByNeighbor[static_cast<unsigned>(std::countr_zero(element))] |
             lacksMetByBond[static_cast<unsigned>(std::countr_zero(neighbor.bondClass))];
    }
    words_[i] |= (allLacks & ~met) | ringBondField.GetBit(numRingBonds) |
                 hydrogenField.GetBit(static_cast<int>(atom.GetTotalHCount())) |
                 degreeField.GetBit(static_cast<int>(degree)) |
                 totalDegreeField.GetBit(static_cast<int>(degree + atom.GetImplicitHCount())) |
                 chargeField.GetBit(atom.GetFormalCharge()) |
                 isotopeField.GetBit(static_cast<int>(atom.GetIsotope())) |
                 hybridizationField.GetBit(GetHybridization(atom));
    present_ |= words_[i];
  }
}

int Target::GetValue(AtomProperty property, unsigned idx) const {
  const QXAtomBase& atom = mol_->Atoms()[idx];
  const auto count = [](unsigned value) { return static_cast<int>(value); };
  switch (property) {
    case AtomProperty::Type:
      return count(atom.GetAtomicNum()) + (atom.IsAromatic() ? aromaticOffset : 0);
    case AtomProperty::Element:
      return count(atom.GetAtomicNum());
    case AtomProperty::Aromatic:
      return atom.IsAromatic();
    case AtomProperty::Charge:
      return atom.GetFormalCharge();
    case AtomProperty::Isotope:
      return count(atom.GetIsotope());
    case AtomProperty::Hydrogens:
      return count(atom.GetTotalHCount());
    case AtomProperty::ImplicitHydrogens:
      return count(atom.GetImplicitHCount());
    case AtomProperty::Degree:
      return count(atom.GetDegree());
    case AtomProperty::TotalDegree:
      return count(atom.GetDegree() + atom.GetImplicitHCount());
    case AtomProperty::Valence:
      return count(atom.GetValence());
    case AtomProperty::Hybridization:
      return GetHybridization(atom);
    case AtomProperty::RingBonds:
      return static_cast<int>(
          std::count_if(neighbors_.begin() + offsets_[idx], neighbors_.begin() + offsets_[idx + 1],
                        [](const Neighbor& n) { return (n.bondClass & ringBonds) != 0; }));
    case AtomProperty::RingCount:
      return count(ringCounts_[idx]);
    case AtomProperty::SmallestRing:
      return count(smallestRings_[idx]);
    case AtomProperty::HeteroNeighbors:
      return CountNeighbors(atom, IsHetero);
    case AtomProperty::AliphaticHeteroNeighbors:
      return CountNeighbors(atom, [](const QXAtomBase& n) { return IsHetero(n) && !n.IsAromatic(); });
  }
  return 0;
}

void Target::FindSmallestRings() const {
  if (hasSmallestRings_) return;
  const std::lock_guard lock(mutex_);
  if (!hasSmallestRings_) GetSmallestRings(*mol_, smallestRings_);
  hasSmallestRings_ = true;
}

bool Target::CountRings(std::string& reason) const {
  if (hasRingCounts_) return true;
  const std::lock_guard lock(mutex_);
  if (!hasRingCounts_ && !CountRingsWithRDKit(*mol_, ringCounts_, reason)) return false;
  hasRingCounts_ = true;
  return true;
}

void Target::FindTwins() const {
  constexpr unsigned highestOfChemistry = 16;
  if (highestDegree_ <= highestOfChemistry || (presentBonds_ & InAndOutOfRings(dativeBond)) != 0) return;
  if (hasTwins_) return;
  const std::lock_guard lock(mutex_);
  if (!hasTwins_) LinkTwins(*this, twins_);
  hasTwins_ = true;
}

}  // namespace QXChem
