// Texts strung together compare like the strings of their ranks as long as no text begins with another one:
// where two strings differ first, the texts there differ in a byte that both have. "C" and "Cl" break the
// rule, since "Cl" comes before "C~C" but after "C-C". A text that begins with another is therefore cut after
// it: "Cl" is spelled "C" and "l". The pieces obey the rule, and every text is a string of pieces in just one
// way.

#include "generators/PrefixCode.h"

#include <algorithm>

namespace QXFingrix {

void PrefixCode::Load(std::span<const std::string> atomLabels, std::span<const std::string> bondLabels) {
  pieces_.assign(atomLabels.begin(), atomLabels.end());
  pieces_.insert(pieces_.end(), bondLabels.begin(), bondLabels.end());
  do SortPieces();
  while (SplitPieces());
}

void PrefixCode::SortPieces() {
  std::ranges::sort(pieces_);
  const auto repeated = std::ranges::unique(pieces_);
  pieces_.erase(repeated.begin(), repeated.end());
}

// In ascending order the texts that begin with another one come right after it.
bool PrefixCode::SplitPieces() {
  bool isAnySplit = false;
  for (std::size_t i = 1, base = 0; i < pieces_.size(); ++i) {
    if (pieces_[i].starts_with(pieces_[base])) {
      pieces_[i].remove_prefix(pieces_[base].size());
      isAnySplit = true;
    } else {
      base = i;
    }
  }
  return isAnySplit;
}

// The piece that a text begins with is the last one that does not come after the text.
void PrefixCode::Spell(std::string_view text, std::vector<unsigned>& numbers) const {
  while (!text.empty()) {
    const auto piece = std::ranges::upper_bound(pieces_, text) - 1;
    numbers.push_back(static_cast<unsigned>(piece - pieces_.begin()));
    text.remove_prefix(piece->size());
  }
}

}  // namespace QXFingrix
