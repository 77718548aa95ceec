#include "QXChem/QXMolBase.h"
#include "QXFingrix/QXFPAtomLabels.h"

namespace QXFingrix {
namespace {

enum Element : unsigned { Nitrogen = 7, Oxygen = 8, Sulfur = 16 };

}  // namespace

bool IsHydrogenBondDonor(const QXChem::QXAtomBase* atom) {
  if (!atom) return false;
  switch (atom->GetAtomicNum()) {
    case Nitrogen:
    case Oxygen:
    case Sulfur:
      return atom->GetTotalHCount() > 0;
    default:
      return false;
  }
}

bool IsHydrogenBondAcceptor(const QXChem::QXAtomBase* atom) {
  if (!atom || atom->GetFormalCharge() > 0) return false;
  switch (atom->GetAtomicNum()) {
    case Nitrogen:  // with three connections its lone pair is taken to be delocalised or hindered
      return atom->GetDegree() + atom->GetImplicitHCount() != 3 && atom->GetValence() != 5;
    case Oxygen:
      return atom->GetFormalCharge() < 0 || !atom->IsAromatic();
    case Sulfur:
      return !atom->IsAromatic() && atom->GetValence() != 4;
    default:
      return false;
  }
}

}  // namespace QXFingrix
