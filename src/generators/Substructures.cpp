#include "generators/Substructures.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>
#include <tuple>
#include <utility>

#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPrimes.h"
#include "fingerprint/FingerPrintText.h"
#include "generators/SubgraphSmarts.h"

namespace QXFingrix {

Substructures::Substructures(const QXChem::QXMolBase& mol, unsigned code, const TypeParams& params)
    : params_(params),
      copy_(mol, code),
      isUnhashed_(IsUnhashedType(code)),
      modulus_(isUnhashed_ ? 1 : QXGetHashSize(params.numbits)) {
  QXChem::QXMolBase& copy = copy_.Mol();
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels_, bondLabels_, copy, params.atype, params.btype);
  if (isUnhashed_) QXGetFingerprintAtomTypes(atomTexts_, bondTexts_, copy, params.atype, params.btype);
}

Substructures::Outcome Substructures::FindAll() {
  if (!Find()) return Outcome::TooMany;
  if (isUnhashed_ && !RankTokens()) return Outcome::TokensTooLong;
  sorted_.resize(ids_.size());
  std::iota(sorted_.begin(), sorted_.end(), 0U);
  std::ranges::sort(sorted_, {}, [this](unsigned i) { return std::tuple(GetBit(i), ids_[i], i); });
  return Outcome::Found;
}

// Replaces identifiers by the places of the tokens in ascending order.
bool Substructures::RankTokens() {
  std::map<std::string, std::vector<unsigned>> found;
  std::size_t size = 0;
  for (unsigned i = 0; i < NumFound(); ++i) {
    const auto [entry, isNew] = found.try_emplace(WriteToken(i));
    if (isNew) size += entry->first.size();
    if (size > maxFPTextSize) return false;
    entry->second.push_back(i);
  }
  while (!found.empty()) {
    auto entry = found.extract(found.begin());
    for (const unsigned i : entry.mapped()) ids_[i] = static_cast<unsigned>(tokens_.size());
    tokens_.push_back(std::move(entry.key()));
  }
  return true;
}

std::strong_ordering Substructures::ComparePatterns(const Substructures& a, unsigned i,
                                                    const Substructures& b, unsigned k) {
  const auto key = [](const Substructures& found, unsigned place) {
    return std::tuple(found.GetBit(place), found.GetId(place), std::string_view(found.GetToken(place)));
  };
  return key(a, i) <=> key(b, k);
}

std::string Substructures::GetSmarts(unsigned i) const {
  return SubgraphSmarts(Mol(), Read(i), params_.atype, params_.btype);
}

}  // namespace QXFingrix
