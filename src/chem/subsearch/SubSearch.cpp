#include "QXChem/QXSubSearch.h"

#include <algorithm>

#include "QXSystem/QXErrorHandler.h"
#include "chem/SmilesGuard.h"
#include "chem/ThreadScratch.h"
#include "chem/rdkit/Queries.h"
#include "chem/subsearch/MatchIter.h"
#include "chem/subsearch/SmartsGuard.h"

namespace QXChem {
namespace {

using Matches = QXSystem::QXIter<QXAtomBondSet>;

std::shared_ptr<const Pattern> Compile(const std::string& smarts, unsigned flags, std::string& reason) {
  if (flags != 0) {
    reason = "flags " + std::to_string(flags) + " are not supported";
    return nullptr;
  }
  const std::string token(SmilesToken(smarts));
  Query query;
  if (!IsSafeSmarts(token, reason) || !ReadSmartsWithRDKit(query, token, reason)) return nullptr;
  return std::make_shared<const Pattern>(CompilePattern(query));
}

// Has the target find what only some patterns ask for.
bool Inform(const Target& target, const Pattern& pattern, std::string& reason) {
  target.FindTwins();
  if (pattern.asksSmallestRings) target.FindSmallestRings();
  return !pattern.asksRingCounts || target.CountRings(reason);
}

bool HasMatch(const Pattern& pattern, const Target& target, std::string& reason) {
  if (!CanMatch(pattern, target) || !Inform(target, pattern, reason)) return false;
  if (pattern.numAtoms == 1 && !pattern.steps[0].hasTest) {
    const auto passes = [&](std::uint64_t word) { return (word & pattern.steps[0].forbidden) == 0; };
    return std::any_of(target.Words(), target.Words() + target.NumAtoms(), passes);
  }
  ThreadScratch<Search> search(target.GetMol());
  search->Start(pattern, target, Wanted::One);
  return search->Next();
}

Matches Iterate(std::shared_ptr<const Pattern> pattern, TargetPtr target, bool unique, std::string& reason) {
  if (!Inform(*target, *pattern, reason)) return Matches();
  return Matches(std::make_unique<MatchIter>(std::move(pattern), std::move(target), unique));
}

void Report(const char* function, const std::string& smarts, const std::string& reason) {
  if (reason.empty()) return;
  QXSystem::QXThrow.Warning("%s : cannot match '%s' (%s)!", function, smarts.c_str(), reason.c_str());
}

}  // namespace

QXSubSearch::QXSubSearch(const std::string& smarts, unsigned flags) : smarts_(smarts) {
  std::string reason;
  pattern_ = Compile(smarts, flags, reason);
  if (pattern_) return;
  QXSystem::QXThrow.Warning("QXSubSearch::QXSubSearch() : cannot take pattern '%s' (%s)!", smarts.c_str(),
                            reason.c_str());
}

QXSubSearch::QXSubSearch(const QXSubSearch& other) = default;
QXSubSearch::QXSubSearch(QXSubSearch&& other) noexcept = default;
QXSubSearch& QXSubSearch::operator=(const QXSubSearch& other) = default;
QXSubSearch& QXSubSearch::operator=(QXSubSearch&& other) noexcept = default;
QXSubSearch::~QXSubSearch() = default;

unsigned QXSubSearch::NumAtoms() const {
  return pattern_ ? pattern_->numAtoms : 0;
}
unsigned QXSubSearch::NumBonds() const {
  return pattern_ ? static_cast<unsigned>(pattern_->bonds.size()) : 0;
}

bool QXSubSearch::SingleMatch(const QXMolBase& mol) const {
  if (!pattern_ || !mol) return false;
  std::string reason;
  bool found = false;
  {
    ThreadScratch<QXSubSearchTarget> target(mol);
    target->Assign(mol);
    found = HasMatch(*pattern_, *target->target_, reason);
  }
  Report("QXSubSearch::SingleMatch()", smarts_, reason);  // a sink may match in its turn
  return found;
}

bool QXSubSearch::SingleMatch(const QXSubSearchTarget& target) const {
  if (!pattern_ || !target.target_) return false;
  std::string reason;
  const bool found = HasMatch(*pattern_, *target.target_, reason);
  Report("QXSubSearch::SingleMatch()", smarts_, reason);
  return found;
}

Matches QXSubSearch::Match(const QXMolBase& mol, bool unique) const {
  if (!pattern_ || !mol) return Matches();
  const auto target = std::make_shared<Target>();
  target->Assign(mol);
  std::string reason;
  Matches matches = Iterate(pattern_, target, unique, reason);
  Report("QXSubSearch::Match()", smarts_, reason);
  return matches;
}

Matches QXSubSearch::Match(const QXSubSearchTarget& target, bool unique) const {
  if (!pattern_ || !target.target_) return Matches();
  std::string reason;
  const TargetPtr borrowed(TargetPtr(), target.target_.get());  // the caller's to keep
  Matches matches = Iterate(pattern_, borrowed, unique, reason);
  Report("QXSubSearch::Match()", smarts_, reason);
  return matches;
}

}  // namespace QXChem
