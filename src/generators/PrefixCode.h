#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace QXFingrix {

/// Numbers for texts that are strung together, such that strings of numbers stand in the same order as the
/// strings of texts that they spell. See PrefixCode.cpp. An object is working memory.
class PrefixCode {
 public:
  /// Makes the code of some texts, which must not be empty and must outlive the code.
  /// Cost     a sort of the texts.
  void Load(std::span<const std::string> atomLabels, std::span<const std::string> bondLabels);

  /// Appends the numbers of one of the texts: nearly always a single one.
  void Spell(std::string_view text, std::vector<unsigned>& numbers) const;

  /// The bytes that a number stands for.
  std::string_view Piece(unsigned number) const { return pieces_[number]; }

 private:
  void SortPieces();
  bool SplitPieces();

  std::vector<std::string_view> pieces_;  // ascending
};

}  // namespace QXFingrix
