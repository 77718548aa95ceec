#pragma once

#include <cstdint>
#include <span>

#include "QXChem/QXMolBase.h"
#include "generators/tree/SmallTrees.h"
#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// Sets the bits of the trees of a molecule. An object is working memory: reused, it allocates nothing for
/// molecules no larger than before.
class HashedTreeWalk {
 public:
  /// A molecule with more trees is refused: they would take very long, or forever.
  static constexpr std::uint64_t maxTrees = 100'000'000;

  /// Sets bit (identifier mod hashSize) of `words` for every tree of minbonds to maxbonds bonds.
  /// Shape    words: at least hashSize bits; one label per atom and bond; minbonds <= maxbonds, at most
  ///          maxTreeBonds.
  /// Returns  false when there are more than maxTrees trees of one to maxbonds bonds; some bits are set then.
  bool SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
               std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels, unsigned minbonds,
               unsigned maxbonds);

 private:
  SmallTrees small_;
  TreeWalk walk_;
};

}  // namespace QXFingrix
