#pragma once

#include <string>
#include <vector>

#include "QXFingrix/QXFPType.h"
#include "generators/Substructures.h"
#include "generators/circular/CircularKind.h"

namespace QXFingrix {

/// The environments of a molecule, each by the centre that gives its identifier, which is its first atom.
/// The others follow by distance.
class CircularSubstructures final : public Substructures {
 public:
  using Type = QXFPCircularType;
  static constexpr const GraphKind& kind = circularKind;

  CircularSubstructures(const QXChem::QXMolBase& mol, const TypeParams& params)
      : Substructures(mol, kind.code, params) {}

  /// The text from that centre. The unhashed kind takes the first of the texts from all centres.
  std::string GetText(unsigned i) const override;

 private:
  struct Place {
    unsigned centre;
    unsigned radius;
  };

  bool Find() override;
  void Add(unsigned id, const Place& place);
  QXChem::QXAtomBondSet Read(unsigned i) const override;

  std::vector<Place> places_;
};

}  // namespace QXFingrix
