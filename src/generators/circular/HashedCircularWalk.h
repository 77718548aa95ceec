#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "generators/circular/CircularIds.h"
#include "generators/circular/Environments.h"

namespace QXFingrix {

/// Sets the bits of the environments of a molecule. An object is working memory: reused, it allocates
/// nothing for molecules no larger than before.
class HashedCircularWalk {
 public:
  /// Sets bit (identifier mod hashSize) of `words` for every environment of a radius from minRadius to
  /// maxRadius; of the identifiers that the centres of one set of bonds give, the smallest.
  /// Shape    words: at least hashSize bits; one label per atom and bond; minRadius <= maxRadius.
  void SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
               std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels, unsigned minRadius,
               unsigned maxRadius);

 private:
  CircularIds ids_;
  Environments environments_;
  std::vector<unsigned> found_;
};

}  // namespace QXFingrix
