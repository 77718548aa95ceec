#include "chem/subsearch/MatchIter.h"

namespace QXChem {

MatchIter::MatchIter(std::shared_ptr<const Pattern> pattern, TargetPtr target, bool unique)
    : pattern_(std::move(pattern)), target_(std::move(target)), isUnique_(unique) {
  ToFirst();
}

void MatchIter::ToFirst() {
  passed_.Clear();
  search_.Start(*pattern_, *target_, isUnique_ ? Wanted::OneOfEachSet : Wanted::All);
  Next();
}

void MatchIter::Next() {
  while ((isValid_ = search_.Next())) {
    search_.GetMatch(match_);
    if (!isUnique_ || passed_.Add(match_.Atoms())) return;
  }
}

std::unique_ptr<QXSystem::QXIterBase<QXAtomBondSet>> MatchIter::Clone() const {
  return std::make_unique<MatchIter>(*this);
}

}  // namespace QXChem
