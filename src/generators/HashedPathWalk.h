#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/HashedBits.h"
#include "generators/StartAtoms.h"

namespace QXFingrix {

/// The hashed walk of PathGenerator made for fingerprints: the same paths and identifiers, but an identifier
/// sets its bit and is forgotten, so memory does not grow with the number of paths. An object is working
/// memory: reused, it allocates nothing for molecules no larger than before.
class HashedPathWalk {
 public:
  /// Sets bit (identifier mod hashSize) of `words` for every path of minbonds to maxbonds bonds.
  /// Shape    words: at least hashSize bits; one label per atom and bond; minbonds <= maxbonds, at most
  ///          maxWeightedBonds.
  /// Cost     one multiply-add for the bond and one for the atom that each path adds to the path before it.
  void SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
               std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels, unsigned minbonds,
               unsigned maxbonds);

 private:
  // A bond as seen from one of its atoms, with the labels of the bond and of the atom at its other end.
  struct Step {
    unsigned atom;
    unsigned atomLabel;
    unsigned bondLabel;
  };
  // A path, kept as its last atom and the set of its atoms.
  struct Path {
    std::uint64_t members;  // bit (atom mod 64) of every atom on the path
    unsigned id;
    unsigned atom;
  };
  // Paths of one length.
  struct Level {
    std::vector<Path> paths;
    std::vector<unsigned> parents;  // places in the level before; kept for molecules of more than 64 atoms
    unsigned count = 0;
    unsigned next = 0;  // the first path that has not been extended
  };

  void LoadSteps(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                 std::span<const unsigned> bondLabels);
  void LoadStarts(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels);
  template <bool isLarge>
  void Walk(unsigned minbonds, unsigned maxbonds, HashedBits& bits);
  template <bool isLarge, class Take>
  unsigned Extend(unsigned depth, Take take);
  bool IsOnPath(unsigned atom, unsigned depth, unsigned place) const;

  std::vector<std::size_t> firstStep_;  // steps of atom i: from firstStep_[i] up to firstStep_[i + 1]
  std::vector<Step> steps_;
  std::size_t maxSteps_ = 0;
  std::vector<Level> levels_;  // by number of bonds
  std::vector<unsigned> lastIds_;
  StartAtoms starts_;
};

}  // namespace QXFingrix
