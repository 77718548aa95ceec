#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXFingrix {

/// The atoms and bonds of an environment, looked for outwards from its centre. The bonds of radius r are
/// those at atoms up to r - 1 bonds away, the atoms are the centre and the ends of the bonds. An object is
/// working memory.
class Ball {
 public:
  /// The molecule of what follows; it must not change meanwhile.
  void Load(const QXChem::QXMolBase& mol);

  /// Cost     a visit of every bond from both sides.
  void Find(unsigned centre, unsigned radius);

  /// By distance from the centre, which is the first.
  std::span<const unsigned> Atoms() const { return atoms_; }
  std::span<const unsigned> Bonds() const { return bonds_; }
  /// Where the atoms at a distance of up to the radius begin in Atoms(); radius + 2 entries, the last ones
  /// equal when the component ends before.
  std::span<const std::size_t> Shells() const { return shells_; }
  bool HasBond(unsigned bond) const { return bondMarks_[bond] == mark_; }

 private:
  const QXChem::QXMolBase* mol_ = nullptr;
  std::vector<unsigned> atoms_;
  std::vector<unsigned> bonds_;
  std::vector<std::size_t> shells_;
  // What has been found carries the current mark, so that nothing has to be cleared for the next time.
  std::vector<unsigned> atomMarks_;
  std::vector<unsigned> bondMarks_;
  unsigned mark_ = 0;
};

}  // namespace QXFingrix
