#pragma once

#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXGraphMol.h"

namespace QXFingrix {

/// A copy of a molecule that is prepared for fingerprinting, and remembers which atoms and bonds of the
/// caller's molecule its own are.
class PreparedCopy {
 public:
  PreparedCopy(const QXChem::QXMolBase& mol, unsigned code);

  const QXChem::QXMolBase& Mol() const { return mol_; }
  /// For more to be perceived.
  QXChem::QXMolBase& Mol() { return mol_; }
  unsigned OriginalAtom(unsigned idx) const { return atoms_.empty() ? idx : atoms_[idx]; }
  unsigned OriginalBond(unsigned idx) const { return bonds_.empty() ? idx : bonds_[idx]; }
  /// The same atoms and bonds in the same order, by their indices in the caller's molecule.
  QXChem::QXAtomBondSet Original(const QXChem::QXAtomBondSet& set) const;

 private:
  QXChem::QXGraphMol mol_;
  std::vector<unsigned> atoms_;  // both empty when nothing was removed
  std::vector<unsigned> bonds_;
};

}  // namespace QXFingrix
