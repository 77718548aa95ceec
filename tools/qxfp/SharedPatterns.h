#pragma once

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
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

/// By bit and identifier.
using FoundPatterns = std::map<std::pair<unsigned, unsigned>, FoundPattern>;

FoundPatterns FindPatterns(const QXChem::QXMolBase& mol, const QXFingrix::QXFPTypeBase* type,
                           std::optional<unsigned> onlyBit = std::nullopt);

/// Leaves in both what both have.
void KeepShared(FoundPatterns& a, FoundPatterns& b);

/// The texts of the patterns with the most bonds, at most `limit`; of those on the same atoms and bonds, such
/// as a path read from its two ends, one.
std::vector<std::string> LargestPatterns(const FoundPatterns& found, std::size_t limit);

/// All atoms and bonds of some patterns.
QXChem::QXAtomBondSet CollectPatterns(const FoundPatterns& found);

/// Only the patterns with at least half as many bonds as the largest one: nearly every atom of two molecules
/// takes part in some small pattern that both have.
FoundPatterns LargePatterns(const FoundPatterns& found);

/// Writes an SVG file. Errors: false after a report, and no file then.
bool WriteDrawing(std::span<const QXChem::QXDepiction> depictions, const std::string& path);

}  // namespace qxfp
