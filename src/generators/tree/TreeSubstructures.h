#pragma once

#include <string>
#include <vector>

#include "QXFingrix/QXFPType.h"
#include "generators/GrownSubstructures.h"
#include "generators/tree/TreeKind.h"
#include "generators/tree/TreeWalk.h"

namespace QXFingrix {

/// The trees of a molecule. Atoms and bonds are listed from the centre outwards.
class TreeSubstructures final : public GrownSubstructures {
 public:
  using HashedType = QXFPTreeType;
  using UnhashedType = QXFPUnhashedTreeType;
  static constexpr const GraphKind& kind = treeKind;

  using GrownSubstructures::GrownSubstructures;

 private:
  bool Find() override;
  std::string WriteToken(unsigned i) const override;
  QXChem::QXAtomBondSet Read(unsigned i) const override;
  std::vector<TreeNode> Nodes(unsigned i) const;
};

}  // namespace QXFingrix
