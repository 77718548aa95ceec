#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXAtomBase.h"
#include "QXChem/QXBondBase.h"
#include "QXSystem/QXExport.h"

namespace QXChem {

/// Properties that are perceived, not given; a molecule knows which of them are up to date.
enum class QXPerceived : unsigned {
  Rings = 1,
  Aromaticity = 2,
  Hybridization = 4,
  Chirality = 8,
  Symmetry = 16
};

/// A molecule: atoms, bonds and neighbour lists in flat arrays. Every function that takes a molecule takes
/// this class; QXGraphMol is the one to create.
///
/// A default-made molecule is valid and empty; a failed read leaves it invalid and empty. Atom indices run
/// from 0 to NumAtoms() - 1 without gaps, bond indices likewise. There is room for 2^31 - 1 atoms and bonds.
/// Threads  reading is safe from several threads while nobody edits.
class QX_API QXMolBase {
 public:
  virtual ~QXMolBase();

  bool IsValid() const { return valid_; }
  explicit operator bool() const { return valid_; }
  /// Makes the molecule valid and empty, title and prepared mark included; buffers are kept.
  void Clear();
  /// Makes the molecule invalid and empty.
  void Invalidate();

  unsigned NumAtoms() const { return static_cast<unsigned>(atoms_.size()); }
  unsigned NumBonds() const { return static_cast<unsigned>(bonds_.size()); }
  /// One past the largest index, for arrays indexed by atom (bond) index.
  unsigned GetMaxAtomIdx() const { return NumAtoms(); }
  unsigned GetMaxBondIdx() const { return NumBonds(); }

  /// Null for an index out of range.
  const QXAtomBase* GetAtom(unsigned idx) const { return idx < atoms_.size() ? &atoms_[idx] : nullptr; }
  QXAtomBase* GetAtom(unsigned idx) { return idx < atoms_.size() ? &atoms_[idx] : nullptr; }
  const QXBondBase* GetBond(unsigned idx) const { return idx < bonds_.size() ? &bonds_[idx] : nullptr; }
  QXBondBase* GetBond(unsigned idx) { return idx < bonds_.size() ? &bonds_[idx] : nullptr; }
  /// The bond between two atoms, null when there is none.
  /// Cost     O(degree).
  const QXBondBase* GetBond(unsigned atomA, unsigned atomB) const;

  std::span<const QXAtomBase> Atoms() const { return atoms_; }
  std::span<const QXBondBase> Bonds() const { return bonds_; }
  /// Neighbours of an atom in the order of the bond indices; atomIdx must be in range.
  std::span<const QXNeighbor> Neighbors(unsigned atomIdx) const {
    const unsigned first = offsets_[atomIdx];
    return {neighbors_.data() + first, offsets_[atomIdx + 1] - first};
  }

  /// Adds an atom without hydrogens, charge or bonds.
  /// Errors   one Warning and null when the number is above 132 or the molecule is full.
  QXAtomBase* NewAtom(unsigned atomicNum);
  /// Adds a bond. Implicit hydrogens of the two atoms are left as they are.
  /// Errors   one Warning and null for an index out of range, a bond from an atom to itself, a second bond
  ///          between the same atoms, or an order above 9.
  /// Cost     O(atoms and neighbours after the lower-numbered end).
  QXBondBase* NewBond(unsigned atomA, unsigned atomB, unsigned order);
  /// Removes an atom and its bonds; later atoms and bonds move down, their order stays.
  /// Errors   one Warning and false for an index out of range.
  bool DeleteAtom(unsigned idx);

  const std::string& GetTitle() const { return title_; }
  /// Not an edit: perception and the prepared mark stay.
  void SetTitle(std::string title) { title_ = std::move(title); }

  /// What the molecule has been prepared for; 0: nothing. Any edit sets it to 0.
  unsigned GetPreparedMark() const { return preparedMark_; }
  void SetPreparedMark(unsigned code) { preparedMark_ = code; }

  /// Whether the property is up to date on every atom and bond.
  bool IsPerceived(QXPerceived property) const { return (perceived_ & static_cast<unsigned>(property)) != 0; }
  /// Forgets the property, so that it counts as never perceived. Not an edit.
  void ForgetPerceived(QXPerceived property) { perceived_ &= ~static_cast<unsigned>(property); }

 protected:
  QXMolBase();
  QXMolBase(const QXMolBase& other);
  QXMolBase(QXMolBase&& other) noexcept;
  QXMolBase& operator=(const QXMolBase& other);
  QXMolBase& operator=(QXMolBase&& other) noexcept;

 private:
  friend class QXAtomBase;
  friend class QXBondBase;
  friend struct MolAccess;

  void Relink();
  void InsertNeighbor(unsigned atomIdx, QXNeighbor neighbor);
  void UpdateNeighborCounts(unsigned atomIdx);
  void NoteEdit(unsigned nowUnknown, unsigned nowKnown = 0) {
    perceived_ = (perceived_ & ~nowUnknown) | nowKnown;
    preparedMark_ = 0;
  }

  std::vector<QXAtomBase> atoms_;
  std::vector<QXBondBase> bonds_;
  // Neighbours of atom i are neighbors_[offsets_[i]] up to neighbors_[offsets_[i + 1]]; offsets_ may be empty
  // when there are no atoms.
  std::vector<unsigned> offsets_;
  std::vector<QXNeighbor> neighbors_;
  std::vector<unsigned> mapIdx_;  // empty while no atom carries a map number
  std::string title_;
  unsigned preparedMark_ = 0;
  unsigned perceived_ = 0;
  bool valid_ = true;
};

inline std::span<const QXNeighbor> QXAtomBase::GetNeighbors() const {
  return parent_->Neighbors(idx_);
}
inline unsigned QXAtomBase::GetSymmetryClass() const {
  return parent_->IsPerceived(QXPerceived::Symmetry) ? symmetryClass_ : 0;
}
inline unsigned QXAtomBase::GetMapIdx() const {
  return parent_->mapIdx_.empty() ? 0 : parent_->mapIdx_[idx_];
}

inline const QXAtomBase* QXBondBase::GetBgn() const {
  return parent_->Atoms().data() + bgn_;
}
inline const QXAtomBase* QXBondBase::GetEnd() const {
  return parent_->Atoms().data() + end_;
}
inline const QXAtomBase* QXBondBase::GetNbr(const QXAtomBase* atom) const {
  return parent_->Atoms().data() + GetNbrIdx(atom->GetIdx());
}

}  // namespace QXChem
