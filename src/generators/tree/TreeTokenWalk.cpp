#include "generators/tree/TreeTokenWalk.h"

#include <cstdint>

#include "generators/tree/TreeCentre.h"

namespace QXFingrix {

bool TreeTokenWalk::Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                            std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
                            std::size_t maxSize) {
  text_.Load(atomLabels, bondLabels);
  tokens_.Reset(text_.GetCode());
  // Every tree that is too small is part of one that is not, so the text bounds their number too.
  return walk_.Walk(mol, minbonds, maxbonds, UINT64_MAX, [&](std::span<const TreeNode> nodes) {
    tokens_.Count(tokens_.Descend(TokenTree::root, BuildFromLeaves(nodes, text_)));
    return tokens_.GetTextSize() - 1 <= maxSize;
  });
}

}  // namespace QXFingrix
