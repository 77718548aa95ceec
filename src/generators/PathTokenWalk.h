#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "generators/PrefixCode.h"
#include "generators/TokenTree.h"

namespace QXFingrix {

/// The readable walk of PathGenerator made for fingerprints: the same paths, from every heavy atom whatever
/// its symmetry class, collected in a tree of tokens. An object is working memory.
class PathTokenWalk {
 public:
  /// Collects the paths of minbonds to maxbonds bonds.
  /// Shape    one label per atom and bond, none empty.
  /// Returns  false as soon as the tokens would give a text of more than maxSize bytes.
  /// Cost     a step in the tree for every bond and every atom that a path adds to the path before it.
  bool Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
               std::span<const std::string> bondLabels, unsigned minbonds, unsigned maxbonds,
               std::size_t maxSize);

  /// What was collected, for as long as the labels live.
  TokenTree& GetTokens() { return tokens_; }

 private:
  // The numbers of each label in a row: those of label i from first[i] up to first[i + 1].
  struct SpelledLabels {
    void Load(const PrefixCode& code, std::span<const std::string> labels);
    std::span<const unsigned> operator[](unsigned i) const {
      return {numbers.data() + first[i], numbers.data() + first[i + 1]};
    }

    std::vector<std::size_t> first;
    std::vector<unsigned> numbers;
  };
  struct Limits {
    unsigned minbonds;
    unsigned maxbonds;
    std::size_t maxSize;
  };

  bool Walk(const QXChem::QXMolBase& mol, const Limits& limits, unsigned atom, unsigned node, unsigned bonds);

  PrefixCode code_;
  SpelledLabels atoms_;
  SpelledLabels bonds_;
  TokenTree tokens_;
  std::vector<unsigned char> isOnPath_;  // by atom index
};

}  // namespace QXFingrix
