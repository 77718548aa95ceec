#include "generators/PathTokenWalk.h"

#include "QXChem/QXPerception.h"

namespace QXFingrix {

bool PathTokenWalk::Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                            std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
                            std::size_t maxSize) {
  code_.Load(atomLabels, bondLabels);
  atoms_.Load(code_, atomLabels);
  bonds_.Load(code_, bondLabels);
  tokens_.Reset(code_);
  first_.resize(minbonds + std::size_t{1});
  isOnPath_.assign(mol.NumAtoms(), 0);
  if (minbonds > 0) FindPartSizes(mol);
  const Limits limits{minbonds, maxbonds, maxSize};
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    const unsigned start = atom.GetIdx();
    // A part has no path of as many bonds as it has atoms. To try nevertheless might take forever.
    if (!atom.IsHeavy() || (minbonds > 0 && partSizes_[partOfAtom_[start]] <= minbonds)) continue;
    if (!Walk(mol, limits, start, AddFirst(limits, {.bond = 0, .atom = start}, 0), 0)) return false;
  }
  return true;
}

void PathTokenWalk::FindPartSizes(const QXChem::QXMolBase& mol) {
  QXChem::QXDetermineComponents(mol, partOfAtom_);
  partSizes_.assign(partOfAtom_.size() + 1, 0);
  for (const unsigned part : partOfAtom_) ++partSizes_[part];
}

// Visits the paths that begin with one of `bonds` bonds, which ends at `atom` and, once it is long enough to
// be recorded, has its text at `node`.
bool PathTokenWalk::Walk(const QXChem::QXMolBase& mol, const Limits& limits, unsigned atom, unsigned node,
                         unsigned bonds) {
  const bool isRecorded = bonds >= limits.minbonds;
  if (isRecorded) {
    tokens_.Count(node);
    if (tokens_.GetTextSize() - 1 > limits.maxSize) return false;
  }
  if (bonds == limits.maxbonds) return true;
  isOnPath_[atom] = 1;
  for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
    if (isOnPath_[step.atom]) continue;
    const unsigned next = isRecorded
                              ? tokens_.Descend(tokens_.Descend(node, bonds_[step.bond]), atoms_[step.atom])
                              : AddFirst(limits, {.bond = step.bond, .atom = step.atom}, bonds + 1);
    if (!Walk(mol, limits, step.atom, next, bonds + 1)) return false;
  }
  isOnPath_[atom] = 0;
  return true;
}

// The node of the path that ends with this step if it is the first to be recorded, else the root.
unsigned PathTokenWalk::AddFirst(const Limits& limits, const Step& step, unsigned bonds) {
  first_[bonds] = step;
  return bonds == limits.minbonds ? NodeOfFirst(bonds) : TokenTree::root;
}

unsigned PathTokenWalk::NodeOfFirst(unsigned bonds) {
  Step& end = first_[bonds];
  if (end.node == TokenTree::root) {
    const unsigned before =
        bonds == 0 ? TokenTree::root : tokens_.Descend(NodeOfFirst(bonds - 1), bonds_[end.bond]);
    end.node = tokens_.Descend(before, atoms_[end.atom]);
  }
  return end.node;
}

}  // namespace QXFingrix
