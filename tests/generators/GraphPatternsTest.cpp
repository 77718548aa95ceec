// Patterns, coverage and overlap of path, circular and tree fingerprints.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <tuple>
#include <unordered_map>

#include "QXChem/QXPerception.h"
#include "QXChem/QXSubSearch.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPPatterns.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXPrimes.h"
#include "Reports.h"
#include "chem/Shuffled.h"
#include "generators/Graphs.h"
#include "generators/Molecules.h"
#include "generators/PathGenerator.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXChem::QXAtomBondSet;
using QXChem::QXBondBase;
using QXChem::QXGraphMol;
using test::ReadSmiles;
using Indices = std::vector<unsigned>;

constexpr const char* types[] = {
    "Path,ver=2.0.0,size=4096,bonds=0-5,atype=DefaultPathAtom,btype=DefaultPathBond",
    "Path,ver=2.0.0,size=100,bonds=2-7,atype=AtmNum|Chiral|HCount,btype=Order|Chiral|InRing",
    "Path,ver=2.0.0,size=4096,bonds=0-0,atype=AtmNum,btype=None",
    "Circular,ver=2.0.0,size=4096,radius=0-5,atype=DefaultCircularAtom,btype=DefaultCircularBond",
    "Circular,ver=2.0.0,size=64,radius=2-3,atype=None,btype=Order",
    "Tree,ver=2.0.0,size=4096,bonds=0-4,atype=DefaultTreeAtom,btype=DefaultTreeBond",
    "Tree,ver=2.0.0,size=1000,bonds=3-6,atype=AtmNum|Chiral|InRing,btype=Order|Chiral",
};

constexpr const char* unhashedTypes[] = {
    "UHPath,ver=2.0.0,bonds=0-4,atype=AtmNum|Arom|HvyDeg,btype=Order|InRing",
    "UHCircular,ver=2.0.0,radius=0-3,atype=AtmNum|Arom|HCount,btype=Order",
    "UHTree,ver=2.0.0,bonds=0-4,atype=AtmNum|Arom|HvyDeg,btype=Order|InRing",
};

std::vector<const char*> AllTypes() {
  std::vector<const char*> all(std::begin(types), std::end(types));
  all.insert(all.end(), std::begin(unhashedTypes), std::end(unhashedTypes));
  return all;
}

std::vector<QXGraphMol> Molecules(std::size_t number) {
  std::vector<QXGraphMol> molecules(1);
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", number)) {
    molecules.push_back(ReadSmiles(line.smiles));
  }
  for (const char* smiles : {"C", "[H][H]", "[2H]O", "[H]O[H].[H][H]", "C1CC1", "C12C3C4C1C5C2C3C45",
                             "[H]N([H])C([H])(C)C(=O)O[H]", "CC.CC.[Na+]", "*[H]"}) {
    molecules.push_back(ReadSmiles(smiles));
    EXPECT_TRUE(molecules.back().IsValid()) << smiles;
  }
  return molecules;
}

Indices ToIndices(std::span<const unsigned> values) {
  return {values.begin(), values.end()};
}

template <class T>
std::vector<T> ToVector(const QXSystem::QXIter<T>& iter) {
  std::vector<T> values;
  for (const T& value : iter) values.push_back(value);
  return values;
}

// The places of a bond's ends among the atoms of a set, the smaller first.
std::pair<std::ptrdiff_t, std::ptrdiff_t> EndPlaces(const QXGraphMol& mol, const QXAtomBondSet& set,
                                                    unsigned bond) {
  const auto place = [&](unsigned atom) {
    return std::ranges::find(set.Atoms(), atom) - set.Atoms().begin();
  };
  return std::minmax({place(mol.GetBond(bond)->GetBgnIdx()), place(mol.GetBond(bond)->GetEndIdx())});
}

// Every bond joins atoms of the set; without rings the n-th bond leads from an earlier atom to the n-th.
void CheckSubgraph(const QXGraphMol& mol, const QXAtomBondSet& set, const QXFPTypeParams& params) {
  const Indices atoms = ToIndices(set.Atoms());
  ASSERT_EQ(std::set<unsigned>(atoms.begin(), atoms.end()).size(), atoms.size());
  for (const unsigned atom : atoms) ASSERT_LT(atom, mol.NumAtoms());
  std::ptrdiff_t next = 0;
  for (const unsigned bond : set.Bonds()) {
    ASSERT_LT(bond, mol.NumBonds());
    const auto [from, to] = EndPlaces(mol, set, bond);
    ASSERT_LT(to, set.NumAtoms());
    ++next;
    if (params.GetFPType() == QXFPType::Circular) continue;
    ASSERT_EQ(to, next);
    if (params.GetFPType() == QXFPType::Path) {
      ASSERT_EQ(from, next - 1);
    }
  }
  if (params.GetFPType() == QXFPType::Circular) return;
  ASSERT_EQ(set.NumAtoms(), set.NumBonds() + 1);
  ASSERT_GE(set.NumBonds(), params.GetMinDistance());
  ASSERT_LE(set.NumBonds(), params.GetMaxDistance());
}

// The bonds at atoms less than some radius away from the first atom, and the atoms at their ends.
bool IsEnvironment(const QXGraphMol& mol, const QXAtomBondSet& set, unsigned minRadius, unsigned maxRadius) {
  std::set<unsigned> atoms = {set.Atoms()[0]};
  std::set<unsigned> bonds;
  for (unsigned radius = 0; radius <= maxRadius; ++radius) {
    if (radius >= minRadius && std::ranges::equal(bonds, std::set(set.Bonds().begin(), set.Bonds().end()))) {
      return std::ranges::equal(atoms, std::set(set.Atoms().begin(), set.Atoms().end()));
    }
    std::set<unsigned> ends;
    for (const unsigned atom : atoms) {
      for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
        if (QXChem::QXIsSuppressibleHydrogen(*mol.GetAtom(step.atom))) continue;
        bonds.insert(step.bond);
        ends.insert(step.atom);
      }
    }
    atoms.insert(ends.begin(), ends.end());
  }
  return false;
}

TEST(GraphPatterns, AreSubgraphsThatSetTheBitsOfTheFingerprint) {
  const auto molecules = Molecules(150);
  for (const char* text : types) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    ASSERT_TRUE(type) << text;
    const QXFPTypeParams params(type);
    for (const QXGraphMol& mol : molecules) {
      QXFingerPrint fp;
      ASSERT_TRUE(QXMakeFP(fp, mol, type));
      std::set<int> bits;
      std::pair<unsigned, unsigned> last;
      std::multiset<std::pair<Indices, Indices>> sets;
      for (const QXFPPattern& pattern : QXGetFPPatterns(mol, type)) {
        ASSERT_EQ(pattern.bit, pattern.id % QXGetHashSize(params.GetNumBits()));
        ASSERT_TRUE(bits.empty() || last < std::pair(pattern.bit, pattern.id));
        ASSERT_FALSE(pattern.text.empty());
        last = {pattern.bit, pattern.id};
        bits.insert(static_cast<int>(pattern.bit));
        ASSERT_TRUE(pattern.matches);
        for (const QXAtomBondSet& match : pattern.matches) {
          ASSERT_NO_FATAL_FAILURE(CheckSubgraph(mol, match, params)) << pattern.text;
          if (params.GetFPType() == QXFPType::Circular) {
            ASSERT_TRUE(IsEnvironment(mol, match, params.GetMinDistance(), params.GetMaxDistance()));
          }
          Indices atoms = ToIndices(match.Atoms());
          Indices bonds = ToIndices(match.Bonds());
          std::ranges::sort(atoms);
          std::ranges::sort(bonds);
          sets.emplace(std::move(atoms), std::move(bonds));
        }
      }
      std::set<int> expected;
      for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(bit)) expected.insert(bit);
      ASSERT_EQ(bits, expected) << text;
      EXPECT_EQ(ToVector(QXGetFPCoverage(mol, type, false)).size(), sets.size());
      EXPECT_EQ(ToVector(QXGetFPCoverage(mol, type, true)).size(), std::set(sets.begin(), sets.end()).size());
    }
  }
}

std::multiset<std::pair<Indices, Indices>> Covered(const QXGraphMol& mol, const QXFPTypeBase* type) {
  std::multiset<std::pair<Indices, Indices>> sets;
  for (const QXAtomBondSet& set : QXGetFPCoverage(mol, type, false)) {
    Indices atoms = ToIndices(set.Atoms());
    Indices bonds = ToIndices(set.Bonds());
    std::ranges::sort(atoms);
    std::ranges::sort(bonds);
    sets.emplace(std::move(atoms), std::move(bonds));
  }
  return sets;
}

// As many of each token as there are matches, on the subgraphs of the hashed kind.
TEST(GraphPatterns, OfUnhashedFingerprintsAreTheirTokens) {
  for (const std::string text : unhashedTypes) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    const QXFPTypeBase* const hashed = QXGetFPType(text.substr(2) + ",size=4096");
    ASSERT_TRUE(type && hashed) << text;
    for (const QXGraphMol& mol : Molecules(100)) {
      QXFingerPrint fp;
      ASSERT_TRUE(QXMakeFP(fp, mol, type));
      std::map<std::string, std::size_t> tokens;
      std::istringstream words{std::string(QXGetFPText(fp))};
      for (std::string token; words >> token;) ++tokens[token];
      std::map<std::string, std::size_t> found;
      for (const QXFPPattern& pattern : QXGetFPPatterns(mol, type)) {
        ASSERT_TRUE(found.empty() || found.rbegin()->first < pattern.token);
        ASSERT_EQ(pattern.bit + pattern.id, 0u);
        found[pattern.token] = ToVector(pattern.matches).size();
      }
      EXPECT_EQ(found, tokens) << text;
      EXPECT_EQ(Covered(mol, type), Covered(mol, hashed)) << text;
    }
  }
}

// What is not in files of molecules: orders without a symbol, contacts, dative bonds, and the wide rings and
// many ring closures of a cage.
std::vector<QXGraphMol> OddMolecules() {
  std::vector<QXGraphMol> molecules;
  for (const char* smiles : {"[NH3]->[Cu]<-[NH3]", "C[Re]$[Re]C", "[2H]N(C)CC(*)O[2H]",
                             "c1cc[se]c1.c1cc[o+]cc1.C[N+](C)(C)C.C[n+]1cc[nH]c1",
                             "CS(=O)C.CS(C)(=O)=O.S1C=CC=C1.FCCCl.C=CC#C[O-]",
                             "c1ccccc1[Si](C)(C)[SiH3].[Te]1C=CC=C1", test::fullerene}) {
    molecules.push_back(ReadSmiles(smiles));
    EXPECT_TRUE(molecules.back().IsValid()) << smiles;
  }
  QXGraphMol& made = molecules.emplace_back();
  for (unsigned order = 0; order < 10; ++order) {
    made.NewAtom(26);
    made.NewAtom(24);
    made.NewBond(2 * order, 2 * order + 1, order);
  }
  return molecules;
}

// A pattern's text finds the first match, centre or end first, in the molecule that labels see.
TEST(GraphPatterns, AreWrittenAsSmartsThatFindThem) {
  std::unordered_map<std::string, QXChem::QXSubSearch> searches;
  std::size_t numFound = 0;
  const auto check = [&](QXGraphMol mol, const char* text) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    ASSERT_TRUE(type) << text;
    QXPrepareForFingerprinting(mol, type->GetFPType());
    QXChem::QXAssignHybridization(mol);
    const QXChem::QXSubSearchTarget target(mol);
    for (const QXFPPattern& pattern : QXGetFPPatterns(mol, type)) {
      const QXChem::QXSubSearch& search = searches.try_emplace(pattern.text, pattern.text).first->second;
      ASSERT_TRUE(search.IsValid()) << pattern.text;
      const QXAtomBondSet wanted = *pattern.matches;
      ASSERT_EQ(search.NumBonds(), wanted.NumBonds()) << pattern.text;
      const auto sorted = [](std::span<const unsigned> values) {
        return std::set(values.begin(), values.end());
      };
      auto matches = search.Match(target);
      while (matches && (matches->Atoms()[0] != wanted.Atoms()[0] ||
                         sorted(matches->Bonds()) != sorted(wanted.Bonds()) ||
                         sorted(matches->Atoms()) != sorted(wanted.Atoms()))) {
        ++matches;
      }
      ASSERT_TRUE(matches) << pattern.text << " is not found at atom " << wanted.Atoms()[0] << ", " << text;
      ++numFound;
    }
  };
  constexpr const char* oddTypes[] = {
      "Path,ver=2.0.0,size=64,bonds=0-3,atype=AtmNum|Arom|EqArom|InRing|HCount,btype=Order|Chiral|InRing",
      "Circular,ver=2.0.0,size=64,radius=0-2,atype=AtmNum|Chiral|FCharge|EqHBAcc|EqHBDon|EqArom,btype=InRing",
      "Tree,ver=2.0.0,size=64,bonds=0-3,atype=Arom|HvyDeg|Hyb|EqHalo,btype=Order|InRing",
  };
  std::vector<QXGraphMol> molecules = Molecules(300);
  for (QXGraphMol& mol : OddMolecules()) molecules.push_back(std::move(mol));
  for (std::size_t i = 0; i < molecules.size(); ++i) {
    for (const std::size_t kind : {0, 3, 5}) ASSERT_NO_FATAL_FAILURE(check(molecules[i], types[kind])) << i;
    if (i > 30 && i < 300) continue;
    for (const char* text : oddTypes) ASSERT_NO_FATAL_FAILURE(check(molecules[i], text)) << i;
    for (const char* text : unhashedTypes) ASSERT_NO_FATAL_FAILURE(check(molecules[i], text)) << i;
  }
  EXPECT_GT(numFound, 100000u);
}

TEST(GraphPatterns, PathsAreThoseOfThePathGenerator) {
  using Path = std::tuple<unsigned, Indices, Indices>;
  const QXFPTypeBase* const type = QXGetPathFPType(4096, 1, 6, 191, 3);
  for (QXGraphMol mol : Molecules(50)) {
    QXPrepareForFingerprinting(mol, QXFPType::Path);
    std::multiset<Path> found;
    for (const QXFPPattern& pattern : QXGetFPPatterns(mol, type)) {
      for (const QXAtomBondSet& match : pattern.matches) {
        found.emplace(pattern.id, ToIndices(match.Atoms()), ToIndices(match.Bonds()));
      }
    }
    Indices atomLabels, bondLabels, ids;
    QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, 191, 3);
    mol.ForgetPerceived(QXChem::QXPerceived::Symmetry);
    std::vector<QXFPAtomBondSet<unsigned>> sink;
    PathGenerator<unsigned>(mol, atomLabels, bondLabels, 1, 6, 0, &sink).GeneratePathIdsStack(ids);
    std::multiset<Path> expected;
    for (const auto& path : sink) {
      expected.emplace(path.GetId(), ToIndices(path.Atoms()), ToIndices(path.Bonds()));
    }
    EXPECT_EQ(found, expected);
  }
}

TEST(GraphPatterns, DoNotDependOnTheOrderOfAtoms) {
  std::mt19937 random(5);
  const auto count = [](const QXGraphMol& mol, const QXFPTypeBase* type) {
    std::map<std::pair<unsigned, std::string>, std::size_t> counts;
    for (const QXFPPattern& pattern : QXGetFPPatterns(mol, type)) {
      counts[{pattern.id, pattern.token}] = ToVector(pattern.matches).size();
    }
    return counts;
  };
  for (const char* text : AllTypes()) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    for (const QXGraphMol& mol : Molecules(40)) {
      Indices order;
      const auto expected = count(mol, type);
      EXPECT_EQ(count(QXChem::Shuffled(mol, random, order), type), expected) << text;
    }
  }
}

// The same molecule with its hydrogens written: a map from its atoms and bonds to those of the other.
TEST(GraphPatterns, AreFoundInTheMoleculeAsDrawn) {
  const QXGraphMol drawn = ReadSmiles("[H]OC([H])([H])C([H])(N([H])[H])c1c([H])cccc1");
  const QXGraphMol plain = ReadSmiles("OCC(N)c1ccccc1");
  const Indices atoms = {1, 2, 5, 7, 10, 11, 13, 14, 15, 16};
  for (const char* text : types) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    const auto ofDrawn = ToVector(QXGetFPPatterns(drawn, type));
    const auto ofPlain = ToVector(QXGetFPPatterns(plain, type));
    ASSERT_EQ(ofDrawn.size(), ofPlain.size());
    for (std::size_t i = 0; i < ofPlain.size(); ++i) {
      EXPECT_EQ(ofDrawn[i].id, ofPlain[i].id);
      std::multiset<Indices> expected;
      for (const QXAtomBondSet& match : ofPlain[i].matches) {
        Indices mapped;
        for (const unsigned atom : match.Atoms()) mapped.push_back(atoms[atom]);
        expected.insert(mapped);
      }
      std::multiset<Indices> found;
      for (const QXAtomBondSet& match : ofDrawn[i].matches) {
        found.insert(ToIndices(match.Atoms()));
        for (const unsigned bond : match.Bonds())
          EXPECT_LT(EndPlaces(drawn, match, bond).second, match.NumAtoms());
      }
      EXPECT_EQ(found, expected) << ofPlain[i].text;
    }
  }
}

TEST(GraphOverlap, PairsEveryMatchWithEveryMatchOfTheSamePattern) {
  const auto molecules = Molecules(12);
  for (const char* text : AllTypes()) {
    const QXFPTypeBase* const type = QXGetFPType(text);
    const bool isCircular = std::string_view(text).find("Circular") != std::string_view::npos;
    for (std::size_t i = 0; i < molecules.size(); ++i) {
      for (const std::size_t k : {i, (i + 1) % molecules.size()}) {
        const QXGraphMol& a = molecules[i];
        const QXGraphMol& b = molecules[k];
        std::map<std::pair<unsigned, std::string>, std::size_t> ofA;
        for (const QXFPPattern& pattern : QXGetFPPatterns(a, type)) {
          ofA[{pattern.id, pattern.token}] = ToVector(pattern.matches).size();
        }
        std::size_t expected = 0;
        for (const QXFPPattern& pattern : QXGetFPPatterns(b, type)) {
          const auto shared = ofA.find({pattern.id, pattern.token});
          if (shared != ofA.end()) expected += shared->second * ToVector(pattern.matches).size();
        }
        std::size_t found = 0;
        for (const QXFPMatch& match : QXGetFPOverlap(a, b, type)) {
          ++found;
          if (isCircular) continue;
          ASSERT_EQ(match.a.NumAtoms(), match.b.NumAtoms());
          for (unsigned n = 0; n < match.a.NumBonds(); ++n) {
            ASSERT_EQ(EndPlaces(a, match.a, match.a.Bonds()[n]), EndPlaces(b, match.b, match.b.Bonds()[n]));
          }
        }
        EXPECT_EQ(found, expected) << text;
      }
    }
  }
}

TEST(GraphPatterns, TooManyAreRefused) {
  const QXGraphMol mol = test::MakeCirculant(40, 7, {6});
  const struct {
    const QXFPTypeBase* type;
    std::string end;
  } cases[] = {
      {QXGetPathFPType(4096, 0, 20, 191, 3), "20 for path fingerprint!"},
      {QXGetTreeFPType(4096, 10, 10, 191, 3), "10 for tree fingerprint!"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXGetFPPatterns(mol, c.type)); }),
              Reports{"Error: QXGetFPPatterns() : more than 2000000 patterns with max bonds " + c.end});
  }
}

TEST(GraphOverlap, ParametersAreCorrectedWithOneWarningForBothMolecules) {
  const QXGraphMol mol = ReadSmiles("CCO");
  const QXFPTypeBase* const type = QXGetTreeFPType(4096, 0, 11, 63, 1);
  EXPECT_EQ(
      ReportsOf([&] { EXPECT_TRUE(QXGetFPOverlap(mol, mol, type)); }),
      Reports{"Warning: QXGetFPOverlap() : invalid max bonds 11 for tree fingerprint (default 4 is used)!"});
}

}  // namespace
}  // namespace QXFingrix
