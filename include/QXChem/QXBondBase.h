#pragma once

#include <cstdint>

#include "QXSystem/QXExport.h"

namespace QXChem {

class QXAtomBase;
class QXMolBase;
struct MolAccess;

/// A bond of a molecule: 24 bytes, kept by value in its molecule's array of bonds. Pointers to it hold until
/// bonds are added or deleted. Setters behave as those of QXAtomBase.
class QX_API QXBondBase {
 public:
  unsigned GetIdx() const { return idx_; }
  unsigned GetBgnIdx() const { return bgn_; }
  unsigned GetEndIdx() const { return end_; }
  /// Kekulé order, 1 to 4 for what ordinary molecules hold, also of an aromatic bond; 0 for a contact without
  /// order, 1 for a dative bond.
  unsigned GetOrder() const { return order_; }
  /// The index at the other end; atomIdx must be one of the two ends.
  unsigned GetNbrIdx(unsigned atomIdx) const { return bgn_ ^ end_ ^ atomIdx; }
  bool IsAromatic() const { return aromatic_; }
  bool IsInRing() const { return inRing_; }
  /// Whether the double bond can have a geometry, whatever was drawn.
  bool IsChiral() const { return chiral_; }
  /// A donor's bond: the begin atom gives, the end atom takes.
  bool IsDative() const { return dative_; }
  const QXMolBase& GetParent() const { return *parent_; }
  const QXAtomBase* GetBgn() const;
  const QXAtomBase* GetEnd() const;
  const QXAtomBase* GetNbr(const QXAtomBase* atom) const;

  bool SetOrder(unsigned order);  ///< 0 to 9
  void SetAromatic(bool aromatic);
  void SetInRing(bool inRing);
  void SetChiral(bool chiral);
  void SetDative(bool dative);

 private:
  friend class QXMolBase;
  friend struct MolAccess;

  QXMolBase* parent_ = nullptr;
  std::uint32_t idx_ = 0;
  std::uint32_t bgn_ = 0;
  std::uint32_t end_ = 0;
  std::uint8_t order_ = 1;
  bool aromatic_ : 1 = false;
  bool inRing_ : 1 = false;
  bool chiral_ : 1 = false;
  bool dative_ : 1 = false;
};

static_assert(sizeof(QXBondBase) == 24);

}  // namespace QXChem

#include "QXChem/QXMolBase.h"  // IWYU pragma: keep -- the inline members that need the molecule
