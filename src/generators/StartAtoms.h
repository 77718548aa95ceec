#pragma once

#include <set>
#include <utility>
#include <vector>

#include "QXChem/QXAtomBase.h"

namespace QXFingrix {

/// Decides at which atoms of a molecule a run of walks starts: at every heavy atom, except those whose
/// symmetry class an earlier start atom of the run had. Class 0, not perceived, is never an exception.
class StartAtoms {
 public:
  /// Begins a run. Keeps its memory.
  void Reset(unsigned numAtoms) { seen_.assign(numAtoms + std::size_t{1}, 0); }

  /// To be asked once for each atom, in order.
  bool IsStart(const QXChem::QXAtomBase& atom) {
    if (!atom.IsHeavy()) return false;
    const unsigned symmetryClass = atom.GetSymmetryClass();
    if (symmetryClass == 0) return true;
    if (symmetryClass < seen_.size()) return !std::exchange(seen_[symmetryClass], 1);
    return others_.insert(symmetryClass).second;
  }

 private:
  std::vector<unsigned char> seen_;
  std::set<unsigned> others_;  // numbers that perception does not give: set by hand
};

}  // namespace QXFingrix
