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
  using Type = QXFPTreeType;
  static constexpr const GraphKind& kind = treeKind;

  TreeSubstructures(const QXChem::QXMolBase& mol, const TypeParams& params)
      : GrownSubstructures(mol, kind.code, params) {}

  std::string GetText(unsigned i) const override;

 private:
  bool Find() override;
  QXChem::QXAtomBondSet Read(unsigned i) const override;
  std::vector<TreeNode> Nodes(unsigned i) const;
};

}  // namespace QXFingrix
