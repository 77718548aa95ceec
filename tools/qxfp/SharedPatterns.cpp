#include "SharedPatterns.h"

#include <algorithm>
#include <fstream>
#include <functional>

#include "Messages.h"
#include "PendingFile.h"
#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPPatterns.h"
#include "QXSystem/QXErrorHandler.h"

namespace qxfp {

using QXSystem::QXThrow;

namespace {

// The iterator of nothing after a report is not that of a molecule without patterns.
QXSystem::QXIter<QXFingrix::QXFPPattern> GetPatterns(const QXChem::QXMolBase& mol,
                                                     const QXFingrix::QXFPTypeBase* type,
                                                     std::string& reason) {
  const QXSystem::QXErrorCollector collector(QXSystem::QXErrorLevel::Warning);
  auto patterns = QXFingrix::QXGetFPPatterns(mol, type);
  reason = patterns ? "" : JoinMessages(collector);
  return patterns;
}

}  // namespace

bool CanFindPatterns(const QXFingrix::QXFPTypeBase* type, std::string& reason) {
  if (QXFingrix::QXHasFPPatterns(type)) return true;
  GetPatterns(QXChem::QXGraphMol(), type, reason);
  return false;
}

bool FindPatterns(FoundPatterns& patterns, const QXChem::QXMolBase& mol, const QXFingrix::QXFPTypeBase* type,
                  std::optional<unsigned> onlyBit, std::string& reason) {
  patterns.clear();
  const auto all = GetPatterns(mol, type, reason);
  if (!reason.empty()) return false;
  for (const QXFingrix::QXFPPattern& pattern : all) {
    if (onlyBit && pattern.bit != *onlyBit) continue;
    FoundPattern& found = patterns[{pattern.bit, pattern.id, pattern.token}];
    found.text = pattern.text;
    auto matches = pattern.matches;
    if (matches) found.numBonds = matches->NumBonds();
    for (; matches && found.numMatches < kMaxMatches; ++matches, ++found.numMatches) {
      found.atoms.insert(matches->Atoms().begin(), matches->Atoms().end());
      found.bonds.insert(matches->Bonds().begin(), matches->Bonds().end());
    }
    found.isComplete = !matches;
  }
  return true;
}

void KeepShared(FoundPatterns& a, FoundPatterns& b) {
  std::erase_if(a, [&](const auto& entry) { return !b.contains(entry.first); });
  std::erase_if(b, [&](const auto& entry) { return !a.contains(entry.first); });
}

std::vector<std::string> LargestPatterns(const FoundPatterns& found, std::size_t limit) {
  std::vector<const FoundPattern*> sorted;
  for (const auto& [key, pattern] : found) sorted.push_back(&pattern);
  std::ranges::stable_sort(sorted, std::greater(), &FoundPattern::numBonds);
  std::vector<std::string> texts;
  std::set<std::pair<std::set<unsigned>, std::set<unsigned>>> seen;
  for (const FoundPattern* pattern : sorted) {
    if (limit > 0 && texts.size() == limit) break;
    if (seen.emplace(pattern->atoms, pattern->bonds).second) texts.push_back(pattern->text);
  }
  return texts;
}

QXChem::QXAtomBondSet CollectPatterns(const FoundPatterns& found) {
  std::set<unsigned> atoms;
  std::set<unsigned> bonds;
  for (const auto& [key, pattern] : found) {
    atoms.insert(pattern.atoms.begin(), pattern.atoms.end());
    bonds.insert(pattern.bonds.begin(), pattern.bonds.end());
  }
  QXChem::QXAtomBondSet set;
  for (const unsigned atom : atoms) set.AddAtom(atom);
  for (const unsigned bond : bonds) set.AddBond(bond);
  return set;
}

FoundPatterns LargePatterns(const FoundPatterns& found) {
  unsigned largest = 0;
  for (const auto& [key, pattern] : found) largest = std::max(largest, pattern.numBonds);
  FoundPatterns large = found;
  std::erase_if(large, [&](const auto& entry) { return 2 * entry.second.numBonds < largest; });
  return large;
}

bool WriteDrawing(std::span<const QXChem::QXDepiction> depictions, const std::string& path) {
  const std::string svg = QXChem::QXDepictSVG(depictions);
  if (svg.empty()) return false;  // reported
  PendingFile file;
  std::string reason;
  if (!file.Create(path, reason)) {
    QXThrow.Error("cannot make '%s': %s", path.c_str(), reason.c_str());
    return false;
  }
  std::ofstream stream(file.GetName(), std::ios::binary);
  if (!(stream << svg << std::flush)) {
    QXThrow.Error("cannot write all of '%s'", path.c_str());
    return false;
  }
  if (file.Commit(reason)) return true;
  QXThrow.Error("cannot give the finished file the name '%s': %s", path.c_str(), reason.c_str());
  return false;
}

}  // namespace qxfp
