#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "generators/Substructures.h"

namespace QXFingrix {

/// Substructures without rings, which grow from an atom by one bond and the atom behind it at a time. They
/// are kept as that atom and the bonds.
class GrownSubstructures : public Substructures {
 public:
  using Substructures::Substructures;

 protected:
  void Add(unsigned id, unsigned firstAtom, std::span<const unsigned> bonds);

  unsigned FirstAtom(unsigned i) const { return rows_[firsts_[i]]; }
  std::span<const unsigned> Bonds(unsigned i) const;
  /// Atoms and bonds as they were added.
  QXChem::QXAtomBondSet Read(unsigned i) const override;

 private:
  std::vector<std::size_t> firsts_;  // where each begins in rows_
  std::vector<unsigned> rows_;
};

}  // namespace QXFingrix
