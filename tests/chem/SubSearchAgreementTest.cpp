// The matcher against RDKit's own on the same graphs: the same matches for hundreds of patterns on thousands
// of molecules.

#include <RDGeneral/RDConfig.h>

#include <GraphMol/GraphMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>
#include <GraphMol/Substruct/SubstructMatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>
#include <set>

#include "QXChem/QXSubSearch.h"
#include "chem/SharedMolecules.h"

namespace QXChem {
namespace {

using RDKitMol = std::unique_ptr<RDKit::RWMol>;
using AtomSet = std::vector<unsigned>;

std::vector<std::string> Lines(const std::string& path) {
  std::ifstream stream(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with("# ")) lines.push_back(line);
  }
  return lines;
}

struct BothPatterns {
  explicit BothPatterns(const std::string& smarts) : ours(smarts), theirs(RDKit::SmartsToMol(smarts)) {}
  QXSubSearch ours;
  RDKitMol theirs;
};

constexpr std::size_t maxMatches = 20'000;  // more are not compared one by one

std::vector<AtomSet> Sorted(std::vector<AtomSet> matches) {
  std::ranges::sort(matches);
  return matches;
}

std::size_t CountSets(std::vector<AtomSet> matches) {
  for (AtomSet& match : matches) std::ranges::sort(match);
  return std::set<AtomSet>(matches.begin(), matches.end()).size();
}

std::vector<AtomSet> TheirMatches(const RDKit::ROMol& mol, const RDKit::ROMol& pattern) {
  RDKit::SubstructMatchParameters params;
  params.uniquify = false;
  params.maxMatches = maxMatches;
  std::vector<AtomSet> matches;
  for (const RDKit::MatchVectType& found : RDKit::SubstructMatch(mol, pattern, params)) {
    AtomSet& match = matches.emplace_back(found.size());
    for (const auto& [query, atom] : found) {
      match[static_cast<unsigned>(query)] = static_cast<unsigned>(atom);
    }
  }
  return matches;
}

std::vector<AtomSet> OurMatches(const QXSubSearchTarget& target, const QXSubSearch& pattern, bool unique) {
  std::vector<AtomSet> matches;
  for (const QXAtomBondSet& match : pattern.Match(target, unique)) {
    if (matches.size() == maxMatches) break;
    matches.emplace_back(match.Atoms().begin(), match.Atoms().end());
  }
  return matches;
}

std::vector<BothPatterns> ReadPatterns() {
  std::vector<BothPatterns> patterns;
  for (const std::string& smarts : Lines(QX_SOURCE_DIR "/tests/chem/patterns.smarts")) {
    patterns.emplace_back(smarts);
    EXPECT_TRUE(patterns.back().ours && patterns.back().theirs) << smarts;
  }
  EXPECT_GT(patterns.size(), 400u);
  return patterns;
}

bool Agree(const RDKit::ROMol& theirs, const QXSubSearchTarget& ours, const BothPatterns& pattern) {
  const std::vector<AtomSet> expected = Sorted(TheirMatches(theirs, *pattern.theirs));
  const std::vector<AtomSet> found = Sorted(OurMatches(ours, pattern.ours, false));
  if (pattern.ours.SingleMatch(ours) == expected.empty()) return false;
  if (expected.size() == maxMatches) return found.size() == maxMatches;
  return found == expected && OurMatches(ours, pattern.ours, true).size() == CountSets(expected);
}

// What a bond of any order does to hydrogens and aromaticity depends on the numbers of the atoms, and a
// wildcard in an aromatic ring has half bonds for RDKit and whole ones for us.
bool IsAmbiguous(const std::string& smiles) {
  for (const char* mark : {"~", "1*", ":*", "@SP", "@TB", "@OH", "@AL"}) {
    if (smiles.find(mark) != std::string::npos) return true;
  }
  return false;
}

// Without the drawn stereo, from which RDKit takes the hybridisation.
std::string GetPlainSmiles(const std::string& line) {
  std::string smiles = line.substr(0, line.find_first_of(" \t"));
  if (!IsAmbiguous(smiles)) std::erase(smiles, '@');
  return smiles;
}

// Of each molecule with every third pattern, another third from molecule to molecule.
void ExpectAgreement(const std::vector<std::string>& lines) {
  constexpr std::size_t stride = 3;
  const std::vector<BothPatterns> patterns = ReadPatterns();
  std::map<std::string, std::string> differing;  // a molecule for each pattern
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string smiles = GetPlainSmiles(lines[i]);
    if (IsAmbiguous(smiles)) continue;
    constexpr std::size_t longest = 1000;  // RDKit stops after 1,000 matches of a recursive pattern
    if (smiles.size() > longest) continue;
    RDKit::SmilesParserParams params;
    params.removeHs = false;
    const RDKitMol theirs(RDKit::SmilesToMol(smiles, params));
    const QXGraphMol ours = FromSmiles(smiles);
    ASSERT_TRUE(theirs) << smiles;
    const QXSubSearchTarget target(ours);
    for (std::size_t k = i % stride; k < patterns.size(); k += stride) {
      if (!Agree(*theirs, target, patterns[k])) differing.emplace(patterns[k].ours.GetSmarts(), smiles);
    }
  }
  EXPECT_TRUE(differing.empty()) << testing::PrintToString(differing);
}

TEST(SubSearchAgreement, MatchesAreThoseOfRDKitOnTheBundledMolecules) {
  std::vector<std::string> lines = Lines(QX_SOURCE_DIR "/data/molecules.smi");
  lines.resize(2000);
  ExpectAgreement(lines);
}

class SubSearchOnFile : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Files, SubSearchOnFile,
                         testing::Values("odd.smi", "natural_products_4k.smi", "natural_macrocycles.smi"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           return name.substr(0, name.find('.'));
                         });

TEST_P(SubSearchOnFile, MatchesAreThoseOfRDKit) {
  std::vector<std::string> lines = SharedLines(GetParam());
  if (lines.empty()) GTEST_SKIP() << "no " << GetParam() << " in " QX_SHARED_DATA_DIR;
  lines.resize(std::min<std::size_t>(lines.size(), 800));
  ExpectAgreement(lines);
}

}  // namespace
}  // namespace QXChem
