#include "generators/tree/TreeText.h"

#include <algorithm>

namespace QXFingrix {

void TreeText::Load(std::span<const std::string> atomLabels, std::span<const std::string> bondLabels) {
  bondTexts_.assign(bondLabels.begin(), bondLabels.end());
  bondTexts_.insert(bondTexts_.end(), {"(", ")"});
  code_.Load(atomLabels, bondTexts_);
  atoms_.Load(code_, atomLabels);
  bonds_.Load(code_, bondTexts_);
  open_ = bonds_[bondLabels.size()];
  close_ = bonds_[bondLabels.size() + 1];
}

void TreeText::Begin(std::span<const TreeNode> nodes) {
  nodes_ = nodes;
  for (std::size_t i = 0; i < nodes.size(); ++i) tied_[i].clear();
}

void TreeText::Tie(unsigned place, unsigned parent, unsigned bond) {
  Text& branch = branches_[place];
  branch.clear();
  Append(branch, bonds_[bond]);
  Write(place, branch);
  tied_[parent].push_back(place);
}

const TreeText::Text& TreeText::AtNode(unsigned place) {
  text_.clear();
  Write(place, text_);
  return text_;
}

const TreeText::Text& TreeText::AtBond(unsigned a, unsigned b, unsigned bond) {
  Tie(a, b, bond);
  other_ = AtNode(b);
  tied_[b].erase(std::ranges::find(tied_[b], a));
  Tie(b, a, bond);
  AtNode(a);
  return std::min(text_, other_);
}

void TreeText::Write(unsigned place, Text& text) {
  Append(text, atoms_[nodes_[place].atom]);
  std::vector<unsigned>& tied = tied_[place];
  std::ranges::sort(tied, [this](unsigned a, unsigned b) { return branches_[a] < branches_[b]; });
  for (std::size_t i = 0; i < tied.size(); ++i) {
    const bool isLast = i + 1 == tied.size();
    if (!isLast) Append(text, open_);
    Append(text, branches_[tied[i]]);
    if (!isLast) Append(text, close_);
  }
}

}  // namespace QXFingrix
