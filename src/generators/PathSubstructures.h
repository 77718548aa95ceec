#pragma once

#include <string>
#include <vector>

#include "QXFingrix/QXFPType.h"
#include "generators/GraphParams.h"
#include "generators/GrownSubstructures.h"

namespace QXFingrix {

/// The paths of a molecule: those of PathGenerator, from every heavy atom whatever its symmetry class. Atoms
/// and bonds are in the order of the walk.
class PathSubstructures final : public GrownSubstructures {
 public:
  using HashedType = QXFPPathType;
  using UnhashedType = QXFPUnhashedPathType;
  static constexpr const GraphKind& kind = pathKind;

  using GrownSubstructures::GrownSubstructures;

  /// Of the two directions of a path between heavy atoms the one that begins at the lower index stands for
  /// both.
  bool IsRepeated(unsigned i) const override;

 private:
  bool Find() override;
  std::string WriteToken(unsigned i) const override;
  bool Walk(unsigned atom, unsigned id);

  // Only while paths are looked for.
  std::vector<unsigned> bonds_;          // of the path under way
  std::vector<unsigned char> isOnPath_;  // by atom index
  unsigned start_ = 0;
  unsigned numLeft_ = maxFound;  // paths that may still come
};

}  // namespace QXFingrix
