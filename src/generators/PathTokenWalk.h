#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/PrefixCode.h"
#include "generators/SpelledLabels.h"
#include "generators/TokenTree.h"

namespace QXFingrix {

/// The readable walk of PathGenerator made for fingerprints: the same paths, from every heavy atom whatever
/// its symmetry class, collected in a tree of tokens. An object is working memory.
class PathTokenWalk {
 public:
  /// Collects the paths of minbonds to maxbonds bonds.
  /// Shape    one label per atom and bond, none empty.
  /// Returns  false as soon as the tokens would give a text of more than maxSize bytes.
  /// Cost     a step in the tree for every bond and every atom that a path adds to the path before it. Memory
  ///          is bounded by maxSize: only the tokens themselves are in the tree, a node for a byte at most.
  bool Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
               std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
               std::size_t maxSize);

  /// What was collected, for as long as the labels live.
  TokenTree& GetTokens() { return tokens_; }

 private:
  struct Limits {
    unsigned minbonds;
    unsigned maxbonds;
    std::size_t maxSize;
  };

  // One of the first atoms of the path under way, those that every recorded path has, and the bond that leads
  // there. They get nodes in the tree when a path is recorded: most beginnings may never be long enough.
  struct Step {
    unsigned bond;
    unsigned atom;
    unsigned node = TokenTree::root;
  };

  void FindPartSizes(const QXChem::QXMolBase& mol);
  bool Walk(const QXChem::QXMolBase& mol, const Limits& limits, unsigned atom, unsigned node, unsigned bonds);
  unsigned AddFirst(const Limits& limits, const Step& step, unsigned bonds);
  unsigned NodeOfFirst(unsigned bonds);

  PrefixCode code_;
  SpelledLabels atoms_;
  SpelledLabels bonds_;
  TokenTree tokens_;
  std::vector<Step> first_;
  std::vector<unsigned char> isOnPath_;  // by atom index
  std::vector<unsigned> partOfAtom_;
  std::vector<unsigned> partSizes_;  // in atoms
};

}  // namespace QXFingrix
