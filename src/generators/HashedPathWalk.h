#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/StartAtoms.h"

namespace QXFingrix {

/// The hashed walk of PathGenerator made for fingerprints: the same paths and identifiers, but each
/// identifier sets its bit as soon as it is known, so memory does not grow with the number of paths. An
/// object is working memory: reused, it allocates nothing for molecules no larger than before.
class HashedPathWalk {
 public:
  /// Sets bit (identifier mod hashSize) of `words` for every path of minbonds to maxbonds bonds.
  /// Shape    words: at least hashSize bits; one label per atom and bond; minbonds <= maxbonds, at most
  ///          maxWeightedBonds.
  /// Cost     one multiply-add per bond and atom of a step, O(steps), where the steps shared by paths with
  /// the
  ///          same beginning count once.
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
  class Bits;

  void LoadSteps(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                 std::span<const unsigned> bondLabels);
  void WalkFrom(unsigned start, unsigned startId, unsigned minbonds, unsigned maxbonds, Bits& bits);

  std::vector<unsigned> firstStep_;  // steps of atom i: from firstStep_[i] up to firstStep_[i + 1]
  std::vector<Step> steps_;
  std::vector<unsigned char> visited_;  // all clear between walks
  StartAtoms starts_;
};

}  // namespace QXFingrix
