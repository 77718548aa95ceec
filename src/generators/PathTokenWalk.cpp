#include "generators/PathTokenWalk.h"

namespace QXFingrix {

void PathTokenWalk::SpelledLabels::Load(const PrefixCode& code, std::span<const std::string> labels) {
  first.assign(1, 0);
  numbers.clear();
  for (const std::string& label : labels) {
    code.Spell(label, numbers);
    first.push_back(numbers.size());
  }
}

bool PathTokenWalk::Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                            std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
                            std::size_t maxSize) {
  code_.Load(atomLabels, bondLabels);
  atoms_.Load(code_, atomLabels);
  bonds_.Load(code_, bondLabels);
  tokens_.Reset(code_);
  isOnPath_.assign(mol.NumAtoms(), 0);
  const Limits limits{minbonds, maxbonds, maxSize};
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (!atom.IsHeavy()) continue;
    const unsigned start = atom.GetIdx();
    if (!Walk(mol, limits, start, tokens_.Descend(TokenTree::root, atoms_[start]), 0)) return false;
  }
  return true;
}

// Visits the paths that begin with one of `bonds` bonds, which ends at `atom` and has its text at `node`.
bool PathTokenWalk::Walk(const QXChem::QXMolBase& mol, const Limits& limits, unsigned atom, unsigned node,
                         unsigned bonds) {
  if (bonds >= limits.minbonds) {
    tokens_.Count(node);
    if (tokens_.GetTextSize() - 1 > limits.maxSize) return false;
  }
  if (bonds == limits.maxbonds) return true;
  isOnPath_[atom] = 1;
  for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
    if (isOnPath_[step.atom]) continue;
    const unsigned next = tokens_.Descend(tokens_.Descend(node, bonds_[step.bond]), atoms_[step.atom]);
    if (!Walk(mol, limits, step.atom, next, bonds + 1)) return false;
  }
  isOnPath_[atom] = 0;
  return true;
}

}  // namespace QXFingrix
