#pragma once

#include <memory>
#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "QXSystem/QXIter.h"
#include "chem/subsearch/Search.h"
#include "chem/subsearch/UniqueMatches.h"

namespace QXChem {

using TargetPtr = std::shared_ptr<const Target>;

/// Walks over the matches, each searched for when it is asked for.
class MatchIter final : public QXSystem::QXIterBase<QXAtomBondSet> {
 public:
  MatchIter(std::shared_ptr<const Pattern> pattern, TargetPtr target, bool unique);

  bool IsValid() const override { return isValid_; }
  const QXAtomBondSet& Get() const override { return match_; }
  void Next() override;
  void ToFirst() override;
  std::unique_ptr<QXSystem::QXIterBase<QXAtomBondSet>> Clone() const override;

 private:
  std::shared_ptr<const Pattern> pattern_;
  TargetPtr target_;
  bool isUnique_;
  bool isValid_ = false;
  Search search_;
  UniqueMatches passed_;
  QXAtomBondSet match_;
};

}  // namespace QXChem
