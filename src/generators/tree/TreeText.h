#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "generators/PrefixCode.h"
#include "generators/SpelledLabels.h"
#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// The form of BuildFromLeaves() that gives the text of a tree, written like a SMARTS: an atom's label, then
/// its branches in ascending byte order, each a bond's label and the text of what hangs there, all but the
/// last in parentheses. It starts at the centre; of two centres, at the one whose text comes first in byte
/// order. Texts are rows of numbers in a PrefixCode, whose order is that of the bytes.
///
/// An object is working memory.
class TreeText {
 public:
  using Text = std::vector<unsigned>;

  /// Shape    one label per atom and bond, none empty; they must outlive what follows.
  void Load(std::span<const std::string> atomLabels, std::span<const std::string> bondLabels);
  const PrefixCode& GetCode() const { return code_; }

  void Begin(std::span<const TreeNode> nodes);
  void Tie(unsigned place, unsigned parent, unsigned bond);
  /// The text holds until the next Begin().
  const Text& AtNode(unsigned place);
  const Text& AtBond(unsigned a, unsigned b, unsigned bond);

 private:
  void Write(unsigned place, Text& text);
  static void Append(Text& text, std::span<const unsigned> numbers) {
    text.insert(text.end(), numbers.begin(), numbers.end());
  }

  PrefixCode code_;
  SpelledLabels atoms_;
  SpelledLabels bonds_;  // and the two parentheses
  std::vector<std::string> bondTexts_;
  std::span<const unsigned> open_;
  std::span<const unsigned> close_;
  std::span<const TreeNode> nodes_;
  std::array<std::vector<unsigned>, maxTreeAtoms> tied_;  // places of the branches of each place
  std::array<Text, maxTreeAtoms> branches_;               // the text of each place below its bond
  Text text_;
  Text other_;
};

}  // namespace QXFingrix
