#pragma once

#include <span>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXChem {

/// Atoms and bonds of one match or pattern, by index, in the order in which they were added.
class QX_API QXAtomBondSet {
 public:
  void AddAtom(unsigned idx) { atoms_.push_back(idx); }
  void AddBond(unsigned idx) { bonds_.push_back(idx); }
  void Clear();

  std::span<const unsigned> Atoms() const { return atoms_; }
  std::span<const unsigned> Bonds() const { return bonds_; }
  unsigned NumAtoms() const { return static_cast<unsigned>(atoms_.size()); }
  unsigned NumBonds() const { return static_cast<unsigned>(bonds_.size()); }
  bool HasAtom(unsigned idx) const;
  bool HasBond(unsigned idx) const;

 private:
  std::vector<unsigned> atoms_;
  std::vector<unsigned> bonds_;
};

/// Compares as sets: order and repetition do not matter.
/// Cost     O(n log n).
QX_API bool operator==(const QXAtomBondSet& a, const QXAtomBondSet& b);

}  // namespace QXChem
