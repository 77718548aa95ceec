#include "generators/tree/HashedTreeWalk.h"

#include <algorithm>

#include "generators/HashedBits.h"
#include "generators/tree/TreeCentre.h"
#include "generators/tree/TreeIds.h"

namespace QXFingrix {

bool HashedTreeWalk::SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
                             std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels,
                             unsigned minbonds, unsigned maxbonds) {
  HashedBits bits(words, hashSize);
  TreeIds ids(atomLabels, bondLabels);
  const auto walk = [&](unsigned from, unsigned to) {
    return walk_.Walk(mol, from, to, maxTrees, [&](std::span<const TreeNode> nodes) {
      bits.Set(BuildFromLeaves(nodes, ids));
      return true;
    });
  };
  // The shapes take no heed of trees without heavy atoms.
  if (TreeWalk::HasBareBond(mol)) return walk(minbonds, maxbonds);
  if (minbonds == 0 && !walk(0, 0)) return false;
  const unsigned firstSmall = std::max(minbonds, 1U);
  const unsigned lastSmall = std::min(maxbonds, SmallTrees::maxBonds);
  if (firstSmall <= lastSmall &&
      !small_.SetBits(bits, mol, atomLabels, bondLabels, firstSmall, lastSmall, maxTrees)) {
    return false;
  }
  return maxbonds <= lastSmall || walk(std::max(minbonds, lastSmall + 1), maxbonds);
}

}  // namespace QXFingrix
