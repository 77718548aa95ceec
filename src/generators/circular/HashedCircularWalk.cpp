#include "generators/circular/HashedCircularWalk.h"

#include <algorithm>
#include <limits>

#include "generators/HashedBits.h"

namespace QXFingrix {

void HashedCircularWalk::SetBits(std::span<std::uint64_t> words, unsigned hashSize,
                                 const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                                 std::span<const unsigned> bondLabels, unsigned minRadius,
                                 unsigned maxRadius) {
  HashedBits bits(words, hashSize);
  const auto set = [&](std::span<const unsigned> ids) {
    for (const unsigned id : ids) bits.Set(id);
  };
  ids_.Load(mol, atomLabels, bondLabels);
  if (minRadius == 0) set(ids_.Get());
  environments_.Load(mol);
  for (unsigned radius = 1; radius <= maxRadius; ++radius) {
    const auto centres = environments_.Grow();
    if (centres.empty()) return;
    ids_.Grow();
    if (radius < minRadius) continue;
    found_.assign(environments_.NumFound(), std::numeric_limits<unsigned>::max());
    for (const auto& [atom, environment] : centres) {
      found_[environment] = std::min(found_[environment], ids_.Get()[atom]);
    }
    set(found_);
  }
}

}  // namespace QXFingrix
