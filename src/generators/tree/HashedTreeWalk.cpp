#include "generators/tree/HashedTreeWalk.h"

#include <algorithm>

#include "generators/HashedBits.h"
#include "generators/tree/TreeCentre.h"
#include "generators/tree/TreeIds.h"

namespace QXFingrix {
namespace {

// A bound from below on the number of trees of one to three bonds, from degrees alone. With m bonds, p paths
// of two bonds, s stars of three and t triangles, (d - 1)(e - 1) summed over all bonds between atoms of the
// degrees d and e is the number of paths of three bonds and 3 t; and 3 t is at most p. What walks look at in
// vain is no more than a few times these sums, so that a molecule which passes takes no longer than its trees.
double CountAtLeast(const QXChem::QXMolBase& mol, unsigned maxbonds) {
  if (maxbonds == 0) return 0;
  if (maxbonds == 1) return mol.NumBonds();
  double paths = 0;
  double stars = 0;
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    const auto degree = static_cast<double>(mol.Neighbors(atom).size());
    paths += degree * (degree - 1) / 2;
    stars += degree * (degree - 1) * (degree - 2) / 6;
  }
  if (maxbonds == 2) return mol.NumBonds() + paths;
  double longPaths = 0;
  for (const QXChem::QXBondBase& bond : mol.Bonds()) {
    longPaths +=
        (mol.Neighbors(bond.GetBgnIdx()).size() - 1.0) * (mol.Neighbors(bond.GetEndIdx()).size() - 1.0);
  }
  return mol.NumBonds() + stars + std::max(paths, longPaths);
}

}  // namespace

bool HashedTreeWalk::SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
                             std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels,
                             unsigned minbonds, unsigned maxbonds) {
  if (CountAtLeast(mol, maxbonds) > static_cast<double>(maxTrees)) return false;
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
