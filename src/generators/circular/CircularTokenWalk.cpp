#include "generators/circular/CircularTokenWalk.h"

#include <algorithm>

namespace QXFingrix {

bool CircularTokenWalk::Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                                std::span<const std::string> bondLabels, unsigned minRadius,
                                unsigned maxRadius, std::size_t maxSize) {
  tokens_.Clear();
  writer_.Load(mol, atomLabels, bondLabels);
  for (unsigned atom = 0; minRadius == 0 && atom < mol.NumAtoms(); ++atom) {
    writer_.Write(atom, 0, token_);
    if (!Add(maxSize)) return false;
  }
  environments_.Load(mol);
  for (unsigned radius = 1; radius <= maxRadius; ++radius) {
    const auto centres = environments_.Grow();
    if (centres.empty()) break;
    if (radius < minRadius) continue;
    centres_.assign(centres.begin(), centres.end());
    std::ranges::sort(centres_, {}, &Environments::Centre::environment);
    for (std::size_t i = 0; i < centres_.size();) {
      const unsigned environment = centres_[i].environment;
      writer_.Write(centres_[i].atom, radius, token_);
      for (++i; i < centres_.size() && centres_[i].environment == environment; ++i) {
        writer_.Write(centres_[i].atom, radius, other_);
        if (other_ < token_) token_.swap(other_);
      }
      if (!Add(maxSize)) return false;
    }
  }
  return true;
}

bool CircularTokenWalk::Add(std::size_t maxSize) {
  tokens_.Add(token_);
  return tokens_.GetTextSize() - 1 <= maxSize;
}

}  // namespace QXFingrix
