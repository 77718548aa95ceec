#pragma once

#include <cstdint>
#include <span>

#include "QXSystem/QXExport.h"

namespace QXChem {

class QXMolBase;
struct MolAccess;

/// One step from an atom: the atom at the other end and the bond that leads there.
struct QXNeighbor {
  unsigned atom;
  unsigned bond;
};

/// An atom of a molecule: 24 bytes, kept by value in its molecule's array of atoms.
/// It is only meaningful inside that molecule; pointers to it hold until atoms are added or deleted.
/// Every setter clears the molecule's prepared mark and the perceived properties that depend on the value.
/// Setting a perceived property (hybridisation, aromaticity, ring membership, chirality, symmetry class)
/// marks that property as known for the whole molecule, so that perception does not overwrite it.
/// Errors   a setter refuses a value out of its range with one Warning, returns false and changes nothing.
/// Threads  reading is safe from several threads while nobody edits the molecule.
class QX_API QXAtomBase {
 public:
  unsigned GetIdx() const { return idx_; }
  /// 0 for a wildcard, at most 132.
  unsigned GetAtomicNum() const { return atomicNum_; }
  /// Mass number, 0 when natural.
  unsigned GetIsotope() const { return isotope_; }
  int GetFormalCharge() const { return formalCharge_; }
  /// Number of neighbours, explicit hydrogens included.
  unsigned GetDegree() const { return static_cast<unsigned>(GetNeighbors().size()); }
  /// Number of neighbours with an atomic number above 1.
  unsigned GetHvyDegree() const { return heavyDegree_ < saturated_ ? heavyDegree_ : CountHeavyNeighbors(); }
  /// Hydrogens that are not atoms of the graph.
  unsigned GetImplicitHCount() const { return implicitH_; }
  /// Neighbours with atomic number 1.
  unsigned GetExplicitHCount() const {
    return explicitH_ < saturated_ ? explicitH_ : CountHydrogenNeighbors();
  }
  unsigned GetTotalHCount() const { return GetImplicitHCount() + GetExplicitHCount(); }
  /// 1 sp, 2 sp2, 3 sp3, 4 sp3d, 5 sp3d2, 0 anything else or not perceived.
  unsigned GetHyb() const { return hyb_; }
  /// 1 and up, 0 when not perceived.
  unsigned GetSymmetryClass() const;
  /// Atom map number, 0 for none.
  unsigned GetMapIdx() const;
  bool IsAromatic() const { return aromatic_; }
  bool IsInRing() const { return inRing_; }
  /// Whether the atom can be a stereo centre, whatever was drawn.
  bool IsChiral() const { return chiral_; }
  bool IsHydrogen() const { return atomicNum_ == 1; }
  /// Atomic number above 1: neither hydrogen nor a wildcard.
  bool IsHeavy() const { return atomicNum_ > 1; }
  const QXMolBase& GetParent() const { return *parent_; }
  /// In the order of the bond indices.
  std::span<const QXNeighbor> GetNeighbors() const;
  /// Sum of the Kekulé bond orders and the implicit hydrogens; a dative bond counts at its acceptor only.
  unsigned GetValence() const;

  bool SetAtomicNum(unsigned atomicNum);   ///< 0 to 132
  bool SetIsotope(unsigned isotope);       ///< 0 to 65535
  bool SetFormalCharge(int charge);        ///< -99 to 99
  bool SetImplicitHCount(unsigned count);  ///< 0 to 99
  bool SetHyb(unsigned hyb);               ///< 0 to 5
  void SetMapIdx(unsigned mapIdx);
  void SetAromatic(bool aromatic);
  void SetInRing(bool inRing);
  void SetChiral(bool chiral);
  void SetSymmetryClass(unsigned symmetryClass);

 private:
  friend class QXMolBase;
  friend struct MolAccess;

  // Neighbour counts are kept in a byte; this value means "count them".
  static constexpr unsigned saturated_ = 255;

  unsigned CountHeavyNeighbors() const;
  unsigned CountHydrogenNeighbors() const;

  QXMolBase* parent_ = nullptr;
  std::uint32_t idx_ = 0;
  std::uint32_t symmetryClass_ = 0;
  std::uint16_t isotope_ = 0;
  std::uint8_t atomicNum_ = 0;
  std::int8_t formalCharge_ = 0;
  std::uint8_t implicitH_ = 0;
  std::uint8_t explicitH_ = 0;
  std::uint8_t heavyDegree_ = 0;
  std::uint8_t hyb_ : 4 = 0;
  bool aromatic_ : 1 = false;
  bool inRing_ : 1 = false;
  bool chiral_ : 1 = false;
};

static_assert(sizeof(QXAtomBase) == 24);

}  // namespace QXChem

#include "QXChem/QXMolBase.h"  // IWYU pragma: keep -- the inline members that need the molecule
