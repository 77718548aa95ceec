#include "generators/tree/TreeSubstructures.h"

#include <algorithm>
#include <array>

#include "generators/tree/TreeCentre.h"
#include "generators/tree/TreeIds.h"
#include "generators/tree/TreeOrder.h"
#include "generators/tree/TreeText.h"

namespace QXFingrix {

bool TreeSubstructures::Find() {
  TreeWalk walk;
  TreeIds ids(atomLabels_, bondLabels_);
  const auto add = [&](std::span<const TreeNode> nodes) {
    if (NumFound() == maxFound) return false;
    std::array<unsigned, maxTreeBonds> bonds;
    std::ranges::transform(nodes.subspan(1), bonds.begin(), &TreeNode::bond);
    Add(BuildFromLeaves(nodes, ids), nodes[0].atom, std::span(bonds).first(nodes.size() - 1));
    return true;
  };
  return walk.Walk(Mol(), params_.minDistance, params_.maxDistance, maxFound, add);
}

std::vector<TreeNode> TreeSubstructures::Nodes(unsigned i) const {
  const QXChem::QXAtomBondSet grown = GrownSubstructures::Read(i);
  const auto atoms = grown.Atoms();
  std::vector<TreeNode> nodes = {{atoms[0], 0, 0}};
  for (unsigned place = 1; place < atoms.size(); ++place) {
    const unsigned bond = grown.Bonds()[place - 1];
    const unsigned parent = Mol().Bonds()[bond].GetNbrIdx(atoms[place]);
    nodes.push_back(
        {atoms[place], bond, static_cast<unsigned>(std::ranges::find(atoms, parent) - atoms.begin())});
  }
  return nodes;
}

QXChem::QXAtomBondSet TreeSubstructures::Read(unsigned i) const {
  TreeOrder order(atomLabels_, bondLabels_);
  return BuildFromLeaves(Nodes(i), order);
}

// With labels of its own, since to make ready for texts takes time that grows with the molecule.
std::string TreeSubstructures::WriteToken(unsigned i) const {
  std::vector<TreeNode> nodes = Nodes(i);
  std::vector<std::string> atomTexts;
  std::vector<std::string> bondTexts;
  for (TreeNode& node : nodes) {
    const auto place = static_cast<unsigned>(atomTexts.size());
    atomTexts.push_back(atomTexts_[node.atom]);
    if (place > 0) bondTexts.push_back(bondTexts_[node.bond]);
    node.atom = place;
    node.bond = place - 1;
  }
  TreeText form;
  form.Load(atomTexts, bondTexts);
  std::string text;
  for (const unsigned number : BuildFromLeaves(nodes, form)) text.append(form.GetCode().Piece(number));
  return text;
}

}  // namespace QXFingrix
