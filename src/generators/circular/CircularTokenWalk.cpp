#include "generators/circular/CircularTokenWalk.h"

namespace QXFingrix {

bool CircularTokenWalk::Collect(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                                std::span<const std::string> bondLabels, unsigned minRadius,
                                unsigned maxRadius, std::size_t maxSize) {
  tokens_.Clear();
  return Walk(mol, atomLabels, bondLabels, minRadius, maxRadius,
              [&](unsigned, unsigned, const std::string& token) {
                tokens_.Add(token);
                return tokens_.GetTextSize() - 1 <= maxSize;
              });
}

}  // namespace QXFingrix
