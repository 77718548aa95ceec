#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "QXChem/QXMolBase.h"
#include "generators/TokenTree.h"
#include "generators/tree/TreeText.h"
#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// Collects the trees of a molecule as readable tokens. An object is working memory.
class TreeTokenWalk {
 public:
  /// Collects the trees of minbonds to maxbonds bonds.
  /// Shape    one label per atom and bond, none empty; minbonds <= maxbonds <= maxTreeBonds.
  /// Returns  false as soon as the tokens would give a text of more than maxSize bytes.
  /// Cost     a step in the collection for every piece of every token. Memory is bounded by maxSize: a node
  ///          for a byte at most.
  bool Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
               std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
               std::size_t maxSize);

  /// What was collected, for as long as the labels live.
  TokenTree& GetTokens() { return tokens_; }

 private:
  TreeWalk walk_;
  TreeText text_;
  TokenTree tokens_;
};

}  // namespace QXFingrix
