#include "generators/Substructures.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPrimes.h"

namespace QXFingrix {

Substructures::Substructures(const QXChem::QXMolBase& mol, unsigned code, const TypeParams& params)
    : copy_(mol, code), params_(params), modulus_(QXGetHashSize(params.numbits)) {
  QXChem::QXMolBase& copy = copy_.Mol();
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels_, bondLabels_, copy, params.atype, params.btype);
  QXGetFingerprintAtomTypes(atomTexts_, bondTexts_, copy, params.atype, params.btype);
}

bool Substructures::FindAll() {
  if (!Find()) return false;
  sorted_.resize(ids_.size());
  std::iota(sorted_.begin(), sorted_.end(), 0U);
  std::ranges::sort(sorted_, {}, [this](unsigned i) { return std::tuple(GetBit(i), GetId(i), i); });
  return true;
}

}  // namespace QXFingrix
