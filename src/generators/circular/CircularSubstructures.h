#pragma once

#include <string>
#include <vector>

#include "QXFingrix/QXFPType.h"
#include "generators/Substructures.h"
#include "generators/circular/CircularKind.h"

namespace QXFingrix {

/// The environments of a molecule, each by the centre that gives its identifier or token, which is its first
/// atom. The others follow by distance.
class CircularSubstructures final : public Substructures {
 public:
  using HashedType = QXFPCircularType;
  using UnhashedType = QXFPUnhashedCircularType;
  static constexpr const GraphKind& kind = circularKind;

  using Substructures::Substructures;

 private:
  struct Place {
    unsigned centre;
    unsigned radius;
  };

  bool Find() override;
  bool FindByIds();
  bool FindByTokens();
  std::string WriteToken(unsigned i) const override;
  bool Add(unsigned id, const Place& place);  // false when there are too many
  QXChem::QXAtomBondSet Read(unsigned i) const override;

  std::vector<Place> places_;
};

}  // namespace QXFingrix
