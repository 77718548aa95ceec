#pragma once

#include <compare>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXDepict.h"
#include "QXChem/QXMolBase.h"
#include "QXFingrix/QXFPTypeBase.h"

namespace qxfp {

/// A pattern can match in more ways than anybody reads.
inline constexpr unsigned kMaxMatches = 10000;

/// Where a pattern is found in a molecule.
struct FoundPattern {
  std::string text;
  unsigned numBonds = 0;  // of its first match
  unsigned numMatches = 0;
  bool isComplete = true;  // there are no more matches than kMaxMatches
  std::set<unsigned> atoms;
  std::set<unsigned> bonds;
};

/// By what two molecules know that they share it: bit and identifier, or the token of an unhashed fingerprint.
struct PatternKey {
  unsigned bit;
  unsigned id;
  std::string token;

  auto operator<=>(const PatternKey&) const = default;
};

using FoundPatterns = std::map<PatternKey, FoundPattern>;

/// Whether fingerprints of the type have patterns. Errors: false and a reason in words.
bool CanFindPatterns(const QXFingrix::QXFPTypeBase* type, std::string& reason);

/// Replaces `patterns` by those of a molecule, which may be none.
/// Errors   false and a reason in words: too many. No report.
bool FindPatterns(FoundPatterns& patterns, const QXChem::QXMolBase& mol, const QXFingrix::QXFPTypeBase* type,
                  std::optional<unsigned> onlyBit, std::string& reason);

/// Leaves in both what both have.
void KeepShared(FoundPatterns& a, FoundPatterns& b);

/// The texts of the patterns with the most bonds, at most `limit` of them or, when it is 0, all; of those on the
/// same atoms and bonds, such as a path read from its two ends, one.
std::vector<std::string> LargestPatterns(const FoundPatterns& found, std::size_t limit);

/// All atoms and bonds of some patterns.
QXChem::QXAtomBondSet CollectPatterns(const FoundPatterns& found);

/// Only the patterns with at least half as many bonds as the largest one: nearly every atom of two molecules
/// takes part in some small pattern that both have.
FoundPatterns LargePatterns(const FoundPatterns& found);

/// Writes an SVG file. Errors: false after a report, and no file then.
bool WriteDrawing(std::span<const QXChem::QXDepiction> depictions, const std::string& path);

}  // namespace qxfp
