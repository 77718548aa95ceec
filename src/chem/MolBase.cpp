// The molecule graph. Atoms, bonds and neighbour lists lie in four flat arrays; the neighbour lists are
// complete after every call, so that reading never writes and needs no lock. Every atom and bond points to
// its molecule, which a copy or a move mends in one pass.

#include "QXChem/QXMolBase.h"

#include <algorithm>
#include <limits>

#include "QXSystem/QXErrorHandler.h"
#include "chem/MolAccess.h"

namespace QXChem {
namespace {

constexpr std::size_t maxCount = std::numeric_limits<std::int32_t>::max();
constexpr unsigned everything = ~0U;

std::uint8_t Saturate(std::size_t count) {
  return static_cast<std::uint8_t>(std::min<std::size_t>(count, 255));
}

// Room for more at the end, so that adding them cannot fail halfway.
template <class T>
void MakeRoom(std::vector<T>& items, std::size_t more) {
  const std::size_t needed = items.size() + more;
  if (needed > items.capacity()) items.reserve(std::max(needed, 2 * items.capacity()));
}

}  // namespace

QXMolBase::QXMolBase() = default;
QXMolBase::~QXMolBase() = default;

QXMolBase::QXMolBase(const QXMolBase& other)
    : atoms_(other.atoms_),
      bonds_(other.bonds_),
      offsets_(other.offsets_),
      neighbors_(other.neighbors_),
      mapIdx_(other.mapIdx_),
      title_(other.title_),
      preparedMark_(other.preparedMark_),
      perceived_(other.perceived_),
      valid_(other.valid_) {
  Relink();
}

QXMolBase::QXMolBase(QXMolBase&& other) noexcept {
  *this = std::move(other);
}

QXMolBase& QXMolBase::operator=(const QXMolBase& other) {
  if (this == &other) return *this;
  try {
    atoms_ = other.atoms_;
    bonds_ = other.bonds_;
    offsets_ = other.offsets_;
    neighbors_ = other.neighbors_;
    mapIdx_ = other.mapIdx_;
    title_ = other.title_;
  } catch (...) {  // half of it belongs to the other
    Invalidate();
    throw;
  }
  preparedMark_ = other.preparedMark_;
  perceived_ = other.perceived_;
  valid_ = other.valid_;
  Relink();
  return *this;
}

QXMolBase& QXMolBase::operator=(QXMolBase&& other) noexcept {
  if (this == &other) return *this;
  atoms_.swap(other.atoms_);
  bonds_.swap(other.bonds_);
  offsets_.swap(other.offsets_);
  neighbors_.swap(other.neighbors_);
  mapIdx_.swap(other.mapIdx_);
  title_.swap(other.title_);
  preparedMark_ = other.preparedMark_;
  perceived_ = other.perceived_;
  valid_ = other.valid_;
  other.Clear();
  Relink();
  return *this;
}

void QXMolBase::Relink() {
  for (QXAtomBase& atom : atoms_) atom.parent_ = this;
  for (QXBondBase& bond : bonds_) bond.parent_ = this;
}

void QXMolBase::Clear() {
  atoms_.clear();
  bonds_.clear();
  offsets_.clear();
  neighbors_.clear();
  mapIdx_.clear();
  title_.clear();
  preparedMark_ = 0;
  perceived_ = 0;
  valid_ = true;
}

void QXMolBase::Invalidate() {
  Clear();
  valid_ = false;
}

const QXBondBase* QXMolBase::GetBond(unsigned atomA, unsigned atomB) const {
  if (atomA >= NumAtoms() || atomB >= NumAtoms()) return nullptr;
  for (const QXNeighbor& neighbor : Neighbors(atomA)) {
    if (neighbor.atom == atomB) return &bonds_[neighbor.bond];
  }
  return nullptr;
}

QXAtomBase* QXMolBase::NewAtom(unsigned atomicNum) {
  if (atomicNum > 132 || atoms_.size() >= maxCount) {
    QXSystem::QXThrow.Warning("QXMolBase::NewAtom() : cannot add atom with atomic number %u to %zu atoms!",
                              atomicNum, atoms_.size());
    return nullptr;
  }
  MakeRoom(offsets_, 2);
  MakeRoom(mapIdx_, mapIdx_.empty() ? 0 : 1);
  MakeRoom(atoms_, 1);
  if (offsets_.empty()) offsets_.push_back(0);
  offsets_.push_back(offsets_.back());
  if (!mapIdx_.empty()) mapIdx_.push_back(0);
  QXAtomBase& atom = atoms_.emplace_back();
  atom.parent_ = this;
  atom.idx_ = NumAtoms() - 1;
  atom.atomicNum_ = static_cast<std::uint8_t>(atomicNum);
  valid_ = true;
  NoteEdit(everything);
  return &atom;
}

QXBondBase* QXMolBase::NewBond(unsigned atomA, unsigned atomB, unsigned order) {
  if (atomA >= NumAtoms() || atomB >= NumAtoms() || atomA == atomB || order > 9 ||
      bonds_.size() >= maxCount || GetBond(atomA, atomB)) {
    QXSystem::QXThrow.Warning("QXMolBase::NewBond() : cannot add bond of order %u between atoms %u and %u!",
                              order, atomA, atomB);
    return nullptr;
  }
  MakeRoom(bonds_, 1);
  MakeRoom(neighbors_, 2);
  const unsigned idx = NumBonds();
  QXBondBase& bond = bonds_.emplace_back();
  bond.parent_ = this;
  bond.idx_ = idx;
  bond.bgn_ = atomA;
  bond.end_ = atomB;
  bond.order_ = static_cast<std::uint8_t>(order);
  InsertNeighbor(atomA, {atomB, idx});
  InsertNeighbor(atomB, {atomA, idx});
  UpdateNeighborCounts(atomA);
  UpdateNeighborCounts(atomB);
  NoteEdit(everything);
  return &bond;
}

// Behind the last neighbour of the atom: the newest bond has the highest index.
void QXMolBase::InsertNeighbor(unsigned atomIdx, QXNeighbor neighbor) {
  neighbors_.insert(neighbors_.begin() + offsets_[atomIdx + 1], neighbor);
  for (std::size_t i = atomIdx + 1; i < offsets_.size(); ++i) ++offsets_[i];
}

void QXMolBase::UpdateNeighborCounts(unsigned atomIdx) {
  QXAtomBase& atom = atoms_[atomIdx];
  atom.heavyDegree_ = Saturate(atom.CountHeavyNeighbors());
  atom.explicitH_ = Saturate(atom.CountHydrogenNeighbors());
}

bool QXMolBase::DeleteAtom(unsigned idx) {
  if (idx >= NumAtoms()) {
    QXSystem::QXThrow.Warning("QXMolBase::DeleteAtom() : no atom %u!", idx);
    return false;
  }
  std::vector<char> remove(NumAtoms(), 0);
  remove[idx] = 1;
  MolAccess::RemoveAtoms(*this, remove);
  NoteEdit(everything);
  return true;
}

void MolAccess::Start(QXMolBase& mol, unsigned numAtoms, unsigned numBonds) {
  mol.Clear();
  mol.atoms_.resize(numAtoms);
  mol.bonds_.resize(numBonds);
}

void MolAccess::FillAtom(QXMolBase& mol, unsigned idx, unsigned atomicNum, int charge, unsigned isotope,
                         unsigned implicitH) {
  QXAtomBase& atom = mol.atoms_[idx];
  atom.parent_ = &mol;
  atom.idx_ = idx;
  atom.atomicNum_ = static_cast<std::uint8_t>(atomicNum);
  atom.formalCharge_ = static_cast<std::int8_t>(charge);
  atom.isotope_ = static_cast<std::uint16_t>(isotope);
  atom.implicitH_ = Saturate(implicitH);
}

void MolAccess::FillBond(QXMolBase& mol, unsigned idx, unsigned bgn, unsigned end, unsigned order,
                         bool dative) {
  QXBondBase& bond = mol.bonds_[idx];
  bond.parent_ = &mol;
  bond.idx_ = idx;
  bond.bgn_ = bgn;
  bond.end_ = end;
  bond.order_ = static_cast<std::uint8_t>(order);
  bond.dative_ = dative;
}

void MolAccess::SetMapIdx(QXMolBase& mol, unsigned idx, unsigned mapIdx) {
  if (mol.mapIdx_.empty()) {
    if (mapIdx == 0) return;
    mol.mapIdx_.resize(mol.atoms_.size());
  }
  mol.mapIdx_[idx] = mapIdx;
}

void MolAccess::Finish(QXMolBase& mol) {
  const std::size_t numAtoms = mol.atoms_.size();
  // Degrees are counted two places up, so that filling leaves the start of atom i at place i.
  mol.offsets_.assign(numAtoms + 2, 0);
  for (QXAtomBase& atom : mol.atoms_) atom.heavyDegree_ = atom.explicitH_ = 0;
  for (const QXBondBase& bond : mol.bonds_) {
    ++mol.offsets_[bond.bgn_ + 2];
    ++mol.offsets_[bond.end_ + 2];
    QXAtomBase& bgn = mol.atoms_[bond.bgn_];
    QXAtomBase& end = mol.atoms_[bond.end_];
    bgn.heavyDegree_ += end.IsHeavy() && bgn.heavyDegree_ < 255;
    end.heavyDegree_ += bgn.IsHeavy() && end.heavyDegree_ < 255;
    bgn.explicitH_ += end.IsHydrogen() && bgn.explicitH_ < 255;
    end.explicitH_ += bgn.IsHydrogen() && end.explicitH_ < 255;
  }
  for (std::size_t i = 2; i < numAtoms + 2; ++i) mol.offsets_[i] += mol.offsets_[i - 1];
  mol.neighbors_.resize(2 * mol.bonds_.size());
  for (const QXBondBase& bond : mol.bonds_) {
    mol.neighbors_[mol.offsets_[bond.bgn_ + 1]++] = {bond.end_, bond.idx_};
    mol.neighbors_[mol.offsets_[bond.end_ + 1]++] = {bond.bgn_, bond.idx_};
  }
  mol.offsets_.pop_back();
}

void MolAccess::ClearAromaticity(QXMolBase& mol) {
  for (QXAtomBase& atom : mol.atoms_) atom.aromatic_ = false;
  for (QXBondBase& bond : mol.bonds_) bond.aromatic_ = false;
  MarkPerceived(mol, QXPerceived::Aromaticity);
}

void MolAccess::ClearHybridization(QXMolBase& mol) {
  for (QXAtomBase& atom : mol.atoms_) atom.hyb_ = 0;
  MarkPerceived(mol, QXPerceived::Hybridization);
}

void MolAccess::RemoveAtoms(QXMolBase& mol, const std::vector<char>& remove) {
  std::vector<unsigned> newIdx(mol.atoms_.size());
  unsigned kept = 0;
  for (unsigned i = 0; i < mol.atoms_.size(); ++i) {
    newIdx[i] = kept;
    if (remove[i]) continue;
    mol.atoms_[kept] = mol.atoms_[i];
    mol.atoms_[kept].idx_ = kept;
    if (!mol.mapIdx_.empty()) mol.mapIdx_[kept] = mol.mapIdx_[i];
    ++kept;
  }
  mol.atoms_.resize(kept);
  if (!mol.mapIdx_.empty()) mol.mapIdx_.resize(kept);

  unsigned keptBonds = 0;
  for (const QXBondBase& bond : mol.bonds_) {
    if (remove[bond.bgn_] || remove[bond.end_]) continue;
    QXBondBase& target = mol.bonds_[keptBonds];
    target = bond;
    target.idx_ = keptBonds++;
    target.bgn_ = newIdx[bond.bgn_];
    target.end_ = newIdx[bond.end_];
  }
  mol.bonds_.resize(keptBonds);
  Finish(mol);
  mol.NoteEdit(Bit(QXPerceived::Chirality) | Bit(QXPerceived::Symmetry));
}

}  // namespace QXChem
