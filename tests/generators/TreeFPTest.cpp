// Tree fingerprints, hashed and unhashed.

#include "QXFingrix/QXTreeFP.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <thread>

#include "QXChem/QXSubSearch.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Reports.h"
#include "chem/Shuffled.h"
#include "generators/Graphs.h"
#include "generators/Reference.h"
#include "generators/tree/SmallTrees.h"
#include "generators/tree/TreeCentre.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using test::ReadSmiles;

struct Params {
  unsigned numbits, minbonds, maxbonds, atype, btype;
};

constexpr Params defaults = {4096, 0, 4, 63, 1};

bool MakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const Params& p) {
  return QXMakeTreeFP(fp, mol, p.numbits, p.minbonds, p.maxbonds, p.atype, p.btype);
}

const QXFPTypeBase* TypeOf(const Params& p) {
  return QXGetTreeFPType(8192, p.numbits, p.minbonds, p.maxbonds, p.atype, p.btype);
}

std::string TextOf(const QXChem::QXMolBase& mol, const Params& p) {
  QXFingerPrint fp;
  EXPECT_TRUE(QXMakeUnhashedTreeFP(fp, mol, p.minbonds, p.maxbonds, p.atype, p.btype));
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetUnhashedTreeFPType(8192, p.minbonds, p.maxbonds, p.atype, p.btype));
  return std::string(QXGetFPText(fp));
}

std::vector<QXChem::QXGraphMol> BundledMolecules(std::size_t limit) {
  std::vector<QXChem::QXGraphMol> mols;
  for (const auto& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", limit)) {
    mols.push_back(ReadSmiles(line.smiles));
  }
  EXPECT_EQ(mols.size(), limit);
  return mols;
}

constexpr const char* referenceTypes[] = {
    "Tree,ver=2.0.0,size=4096,bonds=0-4,atype=DefaultTreeAtom,btype=DefaultTreeBond",
    "Tree,ver=2.0.0,size=65535,bonds=1-4,atype=AtmNum|Chiral|HCount,btype=Order|Chiral|InRing",
    "Tree,ver=2.0.0,size=1021,bonds=2-3,atype=AtmNum|EqHalo|EqArom|EqHBAcc|EqHBDon|InRing,btype=None",
    "Tree,ver=2.0.0,size=512,bonds=4-7,atype=None,btype=Order",
};

TEST(TreeReference, BitsAgreeForBundledMolecules) {
  test::CompareWithReference("tree_reference.py", QX_SOURCE_DIR "/data/molecules.smi", 500,
                             std::span(referenceTypes).first(3));
}

TEST(TreeReference, BitsOfLargeTreesAgreeForBundledMolecules) {
  test::CompareWithReference("tree_reference.py", QX_SOURCE_DIR "/data/molecules.smi", 10, referenceTypes);
}

TEST(TreeReference, BitsAreStillThoseOfTheGoldenFile) {
  test::CompareWithGoldenFile("tree_bits.tsv");
}

// Both ways to find trees must set the same bits and find as many.
void ExpectShapesLikeGeneralWalk(QXChem::QXGraphMol mol) {
  QXPrepareForFingerprinting(mol, QXFPType::Tree);
  std::vector<unsigned> atomLabels, bondLabels;
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, 63, 1);
  constexpr unsigned numBits = 65521;
  SmallTrees small;
  TreeWalk walk;
  TreeIds ids(atomLabels, bondLabels);
  for (unsigned from = 1; from <= 4; ++from) {
    for (unsigned to = from; to <= 4; ++to) {
      std::vector<std::uint64_t> expected(1024), words(1024);
      HashedBits expectedBits(expected, numBits), bits(words, numBits);
      std::uint64_t numTrees = 0;
      walk.Walk(mol, 1, to, UINT64_MAX, [&](std::span<const TreeNode> nodes) {
        ++numTrees;
        if (nodes.size() > from) expectedBits.Set(BuildFromLeaves(nodes, ids));
        return true;
      });
      EXPECT_TRUE(small.SetBits(bits, mol, atomLabels, bondLabels, from, to, numTrees));
      EXPECT_TRUE(words == expected) << from << '-' << to;
      EXPECT_FALSE(numTrees > 0 && small.SetBits(bits, mol, atomLabels, bondLabels, from, to, numTrees - 1));
    }
  }
}

TEST(TreeFP, ShapesFindTheTreesOfTheGeneralWalk) {
  for (const QXChem::QXGraphMol& mol : BundledMolecules(300)) ExpectShapesLikeGeneralWalk(mol);
  for (const char* const smiles : {"C1CC1", "C12C3C1C23", "C1CCC1", "C12C3C4C1C5C2C3C45", "CC(C)(C)C", "C"}) {
    ExpectShapesLikeGeneralWalk(ReadSmiles(smiles));
  }
  ExpectShapesLikeGeneralWalk(test::MakeCirculant(9, 2, {6, 7}));
  ExpectShapesLikeGeneralWalk(test::MakeCirculant(12, 3, {6, 7, 8, 16, 17}));
}

TEST(TreeFP, ATokenStandsAsOftenAsItMatchesAsAPattern) {
  constexpr Params params = {0, 0, 5, 1 | 2 | 8, 1};
  std::size_t numTokens = 0;
  for (QXChem::QXGraphMol& mol : BundledMolecules(60)) {
    std::map<std::string, unsigned> tokens;
    for (const std::string& token : test::Split(TextOf(mol, params), ' ')) ++tokens[token];
    QXPrepareForFingerprinting(mol, QXFPType::UHTree);
    for (const auto& [token, count] : tokens) {
      const QXChem::QXSubSearch pattern(token);
      ASSERT_TRUE(pattern) << token;
      std::set<std::set<unsigned>> matches;  // an atom or the bonds
      for (const QXChem::QXAtomBondSet& match : pattern.Match(mol)) {
        const auto members = match.NumBonds() == 0 ? match.Atoms() : match.Bonds();
        matches.emplace(members.begin(), members.end());
      }
      ASSERT_EQ(count, matches.size()) << token;
      numTokens += count;
    }
  }
  EXPECT_GT(numTokens, 20'000u);
}

TEST(TreeFP, TextsAndNumbersOfSmallMolecules) {
  const struct {
    const char* smiles;
    Params params;
    const char* text;
  } cases[] = {
      {"NC=O", {0, 0, 4, 1, 1}, "[#6] [#6](-[#7])=[#8] [#6]-[#7] [#6]=[#8] [#7] [#8]"},
      {"C1CC1",
       {0, 1, 3, 1, 1},
       "[#6](-[#6])-[#6] [#6](-[#6])-[#6] [#6](-[#6])-[#6] [#6]-[#6] [#6]-[#6] [#6]-[#6]"},
      {"CCl", {0, 1, 1, 3, 0}, "Cl~C"},
      {"CC(F)(Cl)Br",
       {0, 3, 4, 3, 0},
       "C(~Br)(~C)(~Cl)~F C(~Br)(~C)~Cl C(~Br)(~C)~F C(~Br)(~Cl)~F C(~C)(~Cl)~F"},
      {"NCCO", {0, 3, 3, 3, 0}, "C(~C~N)~O"},
      {"CC(C)CO", {0, 4, 4, 3, 0}, "C(~C(~C)~C)~O"},
      {"[2H]O", {0, 0, 4, 1, 1}, "[#1]-[#8] [#8]"},
      {"[H][H].*.**", {0, 0, 4, 1, 1}, ""},
      {"**C", {0, 2, 2, 1, 0}, "[#0](~[#0])~[#6]"},
      {"", defaults, ""},
      {"CO", {0, 2, 4, 63, 1}, ""},
  };
  for (const auto& [smiles, params, text] : cases) {
    const QXChem::QXGraphMol mol = *smiles ? ReadSmiles(smiles) : QXChem::QXGraphMol();
    EXPECT_EQ(TextOf(mol, params), text) << smiles;
    QXFingerPrint fp;
    ASSERT_TRUE(MakeFP(fp, mol, {65535, params.minbonds, params.maxbonds, params.atype, params.btype}));
    std::vector<std::string> tokens = test::Split(text, ' ');
    tokens.erase(std::unique(tokens.begin(), tokens.end()), tokens.end());
    EXPECT_EQ(fp.CountBits(), *text ? tokens.size() : 0) << smiles;
  }
}

TEST(TreeFP, AcetamideIsAsInTheDocumentation) {
  QXFingerPrint fp;
  ASSERT_TRUE(MakeFP(fp, ReadSmiles("CC(=O)N"), {1000, 0, 4, 1, 1}));
  std::vector<int> bits;
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(bit)) bits.push_back(bit);
  EXPECT_EQ(bits, (std::vector{84, 151, 199, 323, 358, 380, 386, 499, 607, 729}));
  EXPECT_EQ(TextOf(ReadSmiles("CC(=O)N"), {0, 0, 4, 1, 1}),
            "[#6] [#6] [#6](-[#6])(-[#7])=[#8] [#6](-[#6])-[#7] [#6](-[#6])=[#8] [#6](-[#7])=[#8] [#6]-[#6] "
            "[#6]-[#7] [#6]=[#8] [#7] [#8]");
}

TEST(TreeFP, NeitherAtomOrderNorThreadsMatter) {
  const std::vector<QXChem::QXGraphMol> mols = BundledMolecules(200);
  std::vector<QXFingerPrint> expected(mols.size());
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < mols.size(); ++i) {
    ASSERT_TRUE(MakeFP(expected[i], mols[i], {4096, 0, 5, 63, 1}));
    texts.push_back(TextOf(mols[i], {0, 0, 4, 63, 1}));
  }
  const auto compare = [&](unsigned seed) {
    std::mt19937 random(seed);
    std::vector<unsigned> order;
    for (std::size_t i = 0; i < mols.size(); ++i) {
      const QXChem::QXGraphMol shuffled = QXChem::Shuffled(mols[i], random, order);
      QXFingerPrint fp;
      EXPECT_TRUE(MakeFP(fp, shuffled, {4096, 0, 5, 63, 1}));
      EXPECT_TRUE(fp == expected[i]) << i;
      EXPECT_EQ(TextOf(shuffled, {0, 0, 4, 63, 1}), texts[i]);
    }
  };
  std::vector<std::jthread> threads;
  for (unsigned seed = 1; seed <= 3; ++seed) threads.emplace_back(compare, seed);
}

TEST(TreeFP, ParametersOutOfRangeAreReportedAndReplaced) {
  const auto invalid = [](const std::string& what, const std::string& used) {
    return "invalid " + what + " for tree fingerprint (" + used + " is used)!";
  };
  const std::string size = invalid("bit vector size 10", "default 4096");
  const std::string low = invalid("min bonds 11", "default 0");
  const std::string high = invalid("max bonds 11", "default 4");
  const std::string crossed = invalid("min bonds 7 > max bonds 4", "minbonds = maxbonds");
  const std::string noMasks =
      "invalid to have both atom and bond types set to be None (default types are used)!";
  const struct {
    Params given, used;
    Reports reports;
  } cases[] = {
      {{65535, 10, 10, 0, 1}, {65535, 10, 10, 0, 1}, {}},
      {{64, 0, 11, 1, 0}, {64, 0, 4, 1, 0}, {high}},
      {{64, 7, 11, 63, 1}, {64, 4, 4, 63, 1}, {high, crossed}},
      {{10, 11, 11, 0, 0}, defaults, {size, low, high, noMasks}},
  };
  const QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  for (const auto& c : cases) {
    QXFingerPrint fp, expected;
    ASSERT_TRUE(MakeFP(expected, mol, c.used));
    const auto reportsFrom = [&](const std::string& function, bool hasSize) {
      Reports reports;
      for (const std::string& report : c.reports) {
        if (hasSize || report != size) reports.push_back("Warning: " + function + "() : " + report);
      }
      return reports;
    };
    EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(MakeFP(fp, mol, c.given)); }), reportsFrom("QXMakeTreeFP", true));
    EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(c.used));
    EXPECT_TRUE(fp == expected);
    EXPECT_EQ(ReportsOf([&] {
                QXMakeUnhashedTreeFP(fp, mol, c.given.minbonds, c.given.maxbonds, c.given.atype,
                                     c.given.btype);
              }),
              reportsFrom("QXMakeUnhashedTreeFP", false));
    EXPECT_EQ(QXGetFPText(fp), TextOf(mol, c.used));
  }
}

TEST(TreeFP, EveryEntryPointMakesTheTypeThatItPromises) {
  const QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  QXFingerPrint fp, expected;
  ASSERT_TRUE(MakeFP(expected, mol, defaults));
  ASSERT_TRUE(QXMakeTreeFP(fp, mol));
  EXPECT_TRUE(fp == expected);
  ASSERT_TRUE(QXMakeFP(fp, mol, TypeOf(defaults)));
  EXPECT_TRUE(fp == expected);
  ASSERT_TRUE(MakeFP(expected, mol, {4096, 0, 4, 23, 1}));
  ASSERT_TRUE(QXMakeVSFP(fp, mol, QXFPType::Tree, 0));
  EXPECT_TRUE(fp == expected);
  ASSERT_TRUE(QXMakeFP(fp, mol, QXFPType::UHTree, false));
  EXPECT_EQ(QXGetFPText(fp), TextOf(mol, defaults));
}

TEST(TreeFP, InvalidMoleculesAndTypesAreRefused) {
  QXChem::QXGraphMol mol = ReadSmiles("CCO");
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeTreeFP(fp, mol));
  const QXFingerPrint before = fp;
  for (const QXFPTypeBase* type : {QXGetPathFPType(4096, 0, 4, 63, 1), (const QXFPTypeBase*)nullptr}) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeTreeFP(fp, mol, type)); }),
              Reports{"Warning: QXMakeTreeFP : invalid tree fingerprint type!"});
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeUnhashedTreeFP(fp, mol, type)); }),
              Reports{"Warning: QXMakeUnhashedTreeFP : invalid unhashed tree fingerprint type!"});
    EXPECT_TRUE(fp == before);
  }
  mol.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeTreeFP(fp, mol)); }), silence);
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(fp) ==
              static_cast<const QXSystem::QXBitVector&>(before));
}

TEST(TreeFP, MoleculesWithTooManyTreesAreRefusedInTime) {
  QXChem::QXGraphMol hub;  // C(230, 4) trees of four bonds
  hub.NewAtom(92);
  for (unsigned i = 1; i <= 230; ++i) {
    hub.NewAtom(2 + i % 100);
    hub.NewBond(0, i, 1);
  }
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeTreeFP(fp, ReadSmiles("CCO")));
  EXPECT_EQ(
      ReportsOf([&] { EXPECT_FALSE(QXMakeTreeFP(fp, hub)); }),
      Reports{"Error: QXMakeTreeFP() : more than 100000000 trees of at most 4 bonds for tree fingerprint!"});
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
  EXPECT_EQ(fp.CountBits(), 0u);
  EXPECT_TRUE(MakeFP(fp, hub, {4096, 0, 3, 63, 1}));

  // Hubs whose pairs of bonds are too many to be looked at.
  constexpr unsigned numBonds = 20'000;
  for (const unsigned element : {0U, 6U}) {
    QXChem::QXGraphMol star;
    for (unsigned i = 0; i <= numBonds; ++i) star.NewAtom(element);
    for (unsigned i = 1; i <= numBonds; ++i) star.NewBond(0, i, 1);
    EXPECT_TRUE(MakeFP(fp, star, {4096, 0, 1, 1, 1}));
    for (const unsigned maxbonds : {2U, 3U, 4U, 10U}) {
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(MakeFP(fp, star, {4096, 0, maxbonds, 1, 1})); }).size(), 1u);
    }
  }
}

}  // namespace
}  // namespace QXFingrix
