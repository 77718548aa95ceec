// MACCS keys: what the table of keys promises, and every key of real molecules against
// tests/reference/maccs_reference.py, in which RDKit decides.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <thread>

#include "Graphs.h"
#include "Molecules.h"
#include "QXChem/QXPerception.h"
#include "QXChem/QXSubSearchTarget.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMACCSFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "Reports.h"
#include "generators/maccs/KeyFinder.h"
#include "generators/maccs/KeyRows.h"
#include "generators/maccs/MACCSKey.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXChem::QXGraphMol;
using Keys = std::set<unsigned>;

const QXFPTypeBase* const maccsType = QXGetMACCS166FPType(8224);
const Keys neverSet = {44, 124, 137, 143, 147, 153, 160, 163};

Keys KeysOf(const QXGraphMol& mol) {
  QXFingerPrint fp;
  EXPECT_TRUE(QXMakeMACCS166FP(fp, mol));
  EXPECT_EQ(fp.GetSize(), 166u);
  EXPECT_EQ(fp.GetFPTypeBase(), maccsType);
  Keys keys;
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(bit)) keys.insert(static_cast<unsigned>(bit) + 1);
  for (const unsigned key : neverSet) EXPECT_FALSE(keys.contains(key)) << key;
  return keys;
}

Keys KeysOf(const std::string& smiles) {
  return KeysOf(test::ReadSmiles(smiles));
}

TEST(MACCSTable, EveryPatternCompilesAndEveryKeyIsDecidedOnce) {
  std::set<unsigned> decided = {twoAromaticSystemsKey, aromaticSystemKey, twoComponentsKey};
  unsigned last = 0;
  for (const MACCSKey& row : MACCS166Keys()) {
    EXPECT_TRUE(row.search.IsValid()) << row.smarts;
    EXPECT_GT(row.key, last);
    last = row.key;
    EXPECT_TRUE(decided.insert(row.repeatKey ? row.repeatKey : row.key).second) << row.key;
  }
  const std::set<unsigned> ofElements(std::begin(AtomicNumBit), std::end(AtomicNumBit));
  for (const unsigned key : ofElements) EXPECT_TRUE(key == 0 || decided.insert(key).second) << key;
  for (unsigned key = 1; key <= numMACCSKeys; ++key)
    EXPECT_NE(decided.contains(key), neverSet.contains(key)) << key;
}

// The table decides the bits of stored fingerprints, and the reference reads it from the source.
TEST(MACCSTable, IsFrozen) {
  std::string rows;
  for (const KeyRow& row : GetKeyRows()) {
    rows += std::to_string(row.key) + " " + row.smarts + " " + std::to_string(row.repeatKey) + "\n";
  }
  std::string elements;
  for (const unsigned key : AtomicNumBit) elements += std::to_string(key) + " ";
  const auto fnv = [](const std::string& text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
  };
  EXPECT_EQ(fnv(rows), 0x3f15f0adcae51788u);
  EXPECT_EQ(fnv(elements), 0x36054be40741c8e9u);
}

TEST(MACCS, KeysOfSmallMolecules) {
  const struct {
    const char* smiles;
    Keys set;
    Keys clear;
  } cases[] = {
      {"CCO", {164, 139, 114}, {166, 149}},
      {"c1ccccc1", {162, 165}, {125, 145, 163}},
      {"c1ccc2ccccc2c1", {162, 145}, {125, 163}},
      {"c1ccccc1-c1ccccc1", {162, 125, 145}, {163}},
      {"[Na+].[Cl-]", {166, 35, 103, 49}, {162}},
      {"CC.C", {166, 149}, {}},
      {"[2H]C", {1, 35}, {}},
      {"[13CH3][O+](C)C", {1, 152}, {35}},
      {"[H][H]", {35}, {1}},
      {"[Rf]", {2}, {}},
      {"[Cn]", {2}, {}},
      {"[Nh]", {}, {2, 3, 18}},
      {"*", {}, {35, 88, 161, 164}},
      {"[He].[Ne].[Ar].[Kr].[Xe].[Rn]", {166}, {2, 35}},
      {"OOO", {130}, {124}},
  };
  for (const auto& c : cases) {
    const Keys keys = KeysOf(c.smiles);
    for (const unsigned key : c.set) EXPECT_TRUE(keys.contains(key)) << c.smiles << " " << key;
    for (const unsigned key : c.clear) EXPECT_FALSE(keys.contains(key)) << c.smiles << " " << key;
  }
}

TEST(MACCS, InvalidAndEmptyMolecules) {
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeMACCS166FP(fp, test::ReadSmiles("CCO")));
  EXPECT_TRUE(KeysOf(QXGraphMol()).empty());
  QXGraphMol invalid;
  invalid.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeMACCS166FP(fp, invalid)); }), silence);
  EXPECT_FALSE(fp);
}

TEST(MACCS, HydrogensThatPreparationTakesAwayMakeNoDifference) {
  const QXGraphMol drawn = test::ReadSmiles("[H]OC([H])([H])C([H])([H])[H]");
  QXGraphMol prepared = drawn;
  QXPrepareForFingerprinting(prepared, QXFPType::MACCS166);
  EXPECT_EQ(KeysOf(drawn), KeysOf("OCC"));
  EXPECT_EQ(KeysOf(prepared), KeysOf("OCC"));
  EXPECT_EQ(drawn.NumAtoms(), 9u);
}

// An element without a key by its number, and more atoms than fit on the stack.
TEST(MACCS, MoleculesBeyondTheTables) {
  EXPECT_EQ(KeysOf(test::MakeGraph({113, 132}, {})), KeysOf("*.*"));
  std::string chains;
  for (int i = 0; i < 3000; ++i) chains += "CCCCCCCC.";
  EXPECT_EQ(KeysOf(chains + "C"), KeysOf("CCCCCCCC.CCCCCCCC.C"));
}

TEST(MACCS, ThreadsMakeWhatOneThreadMakes) {
  std::vector<QXGraphMol> mols;
  std::vector<Keys> expected;
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 100)) {
    expected.push_back(KeysOf(mols.emplace_back(test::ReadSmiles(line.smiles))));
  }
  std::vector<std::jthread> threads;
  for (unsigned t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (std::size_t i = 0; i < mols.size(); ++i) EXPECT_EQ(KeysOf(mols[i]), expected[i]);
    });
  }
}

// The pattern keys by the patterns themselves.
KeySet MatchPatterns(const QXGraphMol& mol) {
  static const std::vector<MACCSKey> rows = MACCS166Keys();
  const QXChem::QXSubSearchTarget target(mol);
  KeySet keys;
  for (const MACCSKey& row : rows) {
    auto match = row.search.Match(target, true);
    if (match && (row.repeatKey == 0 || ++match)) keys.Set(row.repeatKey ? row.repeatKey : row.key);
  }
  return keys;
}

std::size_t ExpectRulesAgreeWithPatterns(const std::string& file, std::size_t limit, KeySet* seen = nullptr) {
  KeyFinder finder;
  std::size_t numCompared = 0;
  for (const test::SmilesLine& line : test::ReadSmilesFile(file, limit)) {
    QXGraphMol mol = test::ReadSmiles(line.smiles);
    if (!mol.IsValid()) continue;
    QXPrepareForFingerprinting(mol, QXFPType::MACCS166);
    KeySet keys;
    finder.FindPatternKeys(keys, mol);
    const KeySet expected = MatchPatterns(mol);
    ++numCompared;
    for (unsigned key = 1; key <= numMACCSKeys; ++key) {
      EXPECT_EQ(keys.Has(key), expected.Has(key)) << key << " " << line.smiles;
      if (seen && keys.Has(key)) seen->Set(key);
    }
  }
  return numCompared;
}

// Every rule says what its pattern says.
TEST(MACCSRules, AgreeWithThePatterns) {
  KeySet seen;
  EXPECT_GT(ExpectRulesAgreeWithPatterns(QX_SOURCE_DIR "/data/molecules.smi", 4000, &seen), 3900u);
  for (const MACCSKey& row : MACCS166Keys()) {
    const bool isRare = row.key == 1 || row.key == 152;  // isotopes and oxonium are in KeysOfSmallMolecules
    EXPECT_NE(seen.Has(row.repeatKey ? row.repeatKey : row.key), isRare) << row.key;
  }
}

TEST(MACCSRules, AgreeWithThePatternsForDifficultMolecules) {
  std::size_t numCompared = 0;
  for (const char* name : {"odd.smi", "natural_macrocycles.smi", "natural_products_4k.smi", "drug_5k.smi"}) {
    numCompared += ExpectRulesAgreeWithPatterns(QX_SHARED_DATA_DIR "/" + std::string(name), 2000);
  }
  if (numCompared == 0) GTEST_SKIP() << "no shared data";
}

void ExpectRulesAgreeWithPatterns(QXGraphMol& mol, const std::string& what) {
  QXChem::QXFindRingAtomsAndBonds(mol);
  KeySet keys;
  KeyFinder().FindPatternKeys(keys, mol);
  const KeySet expected = MatchPatterns(mol);
  for (unsigned key = 1; key <= numMACCSKeys; ++key) {
    EXPECT_EQ(keys.Has(key), expected.Has(key)) << key << " " << what;
  }
}

// A circulant with a branch, and with hydrogens, orders and aromatic bonds that follow each other by a number.
QXGraphMol MakeDenseGraph(unsigned numAtoms, unsigned chord, const std::vector<unsigned>& elements,
                          unsigned number) {
  const unsigned hydrogens = number % 4;
  QXGraphMol mol = test::MakeCirculant(numAtoms, chord, elements);
  for (unsigned i = 0; i < numAtoms; ++i) mol.GetAtom(i)->SetImplicitHCount((i + hydrogens) % 4);
  for (unsigned i = 0; i < mol.NumBonds(); i += 1 + number / 4) mol.GetBond(i)->SetOrder(1 + number / 4);
  mol.NewAtom(8);
  mol.NewBond(0, numAtoms, 1);
  for (unsigned i = 0; i < mol.NumBonds(); ++i) mol.GetBond(i)->SetAromatic(i % 3 == hydrogens);
  return mol;
}

// Small rings, chains that end where they begin, and substituents that are one atom.
TEST(MACCSRules, AgreeWithThePatternsInDenseGraphs) {
  const std::vector<unsigned> elements[] = {{6}, {7, 6}, {8, 6, 6}, {6, 6, 16, 7}, {8, 9, 14}, {0, 1, 6}};
  for (unsigned numAtoms = 3; numAtoms <= 9; ++numAtoms) {
    for (unsigned i = 0; i < 16 * std::size(elements); ++i) {
      for (unsigned chord = 2; chord <= 3 && numAtoms > 2 * chord - 1; ++chord) {
        QXGraphMol mol = MakeDenseGraph(numAtoms, chord, elements[i / 16], i % 16);
        ExpectRulesAgreeWithPatterns(mol, std::to_string(numAtoms) + " " + std::to_string(i));
      }
    }
  }
}

// The atoms of either side are bonded to all of the other one; with `isComplete` all are bonded to all.
QXGraphMol MakeHubs(const std::vector<unsigned>& hubs, unsigned numLeaves, bool isComplete, unsigned leaf,
                    unsigned numHydrogens = 0) {
  std::vector<unsigned> elements = hubs;
  elements.resize(hubs.size() + numLeaves, leaf);
  std::vector<test::GraphBond> bonds;
  for (unsigned a = 0; a < elements.size(); ++a) {
    for (unsigned b = a + 1; b < elements.size(); ++b) {
      if (isComplete || (a < hubs.size() && b >= hubs.size())) bonds.push_back({a, b});
    }
  }
  QXGraphMol mol = test::MakeGraph(elements, bonds);
  for (unsigned i = 0; i < mol.NumAtoms(); ++i) mol.GetAtom(i)->SetImplicitHCount(numHydrogens);
  QXChem::QXFindRingAtomsAndBonds(mol);
  return mol;
}

// Of three hubs there are rings of four and six atoms, and no chain of eight.
TEST(MACCSRules, HubsAndCliquesTakeNoTime) {
  for (const unsigned leaf : {6, 7, 92}) {
    for (const unsigned numHydrogens : {0, 2}) {
      QXGraphMol small = MakeHubs({6, 6, 6}, 8, false, leaf, numHydrogens);
      ExpectRulesAgreeWithPatterns(small, "hubs of " + std::to_string(leaf));
      const Keys keys = KeysOf(small);
      EXPECT_TRUE(keys.contains(11) && keys.contains(145) && !keys.contains(101) && !keys.contains(19));
      for (const unsigned numLeaves : {60, 1000}) {
        EXPECT_EQ(KeysOf(MakeHubs({6, 6, 6}, numLeaves, false, leaf, numHydrogens)), keys) << numLeaves;
      }
      const Keys ofClique = KeysOf(MakeHubs({}, 12, true, leaf, numHydrogens));
      for (const unsigned numAtoms : {20, 31, 33}) {
        EXPECT_EQ(KeysOf(MakeHubs({}, numAtoms, true, leaf, numHydrogens)), ofClique) << numAtoms;
      }
    }
  }
}

// No walk ends in time here, so that all is left to the search for paths: rings of odd sizes beside many even
// ones, of an element that is far from most of the others.
TEST(MACCSRules, WhatIsTooMuchToWalkIsFound) {
  const unsigned oddSizes[] = {3, 5, 7};
  const unsigned anyKeys[] = {22, 96, 19};
  const unsigned heteroKeys[] = {16, 83, 0};
  for (unsigned numOdd = 0; numOdd < 3; ++numOdd) {
    for (const unsigned element : {6, 7}) {
      QXGraphMol mol = MakeHubs(std::vector<unsigned>(31, 6), 31, false, 6);
      const unsigned size = oddSizes[numOdd];
      for (unsigned i = 0; i < size; ++i) mol.NewAtom(i == 0 ? element : 6);
      for (unsigned i = 0; i < size; ++i) mol.NewBond(62 + i, 62 + (i + 1) % size, 1);
      mol.NewBond(0, 63, 1);
      mol.NewBond(31, 64, 1);
      QXChem::QXFindRingAtomsAndBonds(mol);
      const Keys keys = KeysOf(mol);
      EXPECT_TRUE(keys.contains(anyKeys[numOdd])) << size;
      EXPECT_EQ(keys.contains(22), size == 3) << size;
      EXPECT_EQ(keys.contains(heteroKeys[numOdd]), element == 7 && size < 7) << size;
      EXPECT_TRUE(keys.contains(101));
    }
  }
}

std::string JoinKeys(const QXGraphMol& mol) {
  if (!mol.IsValid()) return "-";
  std::string text;
  for (const unsigned key : KeysOf(mol)) text += (text.empty() ? "" : ",") + std::to_string(key);
  return text;
}

// Compares line by line with the reference.
void CompareWithReference(const std::string& file, std::size_t limit) {
  const std::string python = "/usr/bin/python3";
  if (std::system((python + " -c 'import rdkit' 2> /dev/null").c_str()) != 0)
    GTEST_SKIP() << "no Python with RDKit";
  const std::string command = python + " " QX_SOURCE_DIR "/tests/reference/maccs_reference.py --limit " +
                              std::to_string(limit) + " '" + file + "'";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  ASSERT_NE(pipe, nullptr);
  unsigned numDifferent = 0;
  for (const test::SmilesLine& line : test::ReadSmilesFile(file, limit)) {
    char answer[2000];
    ASSERT_NE(std::fgets(answer, sizeof answer, pipe.get()), nullptr)
        << "the reference stopped before " << line.name;
    if (line.smiles.find('~') != std::string::npos) continue;  // for RDKit such bonds are queries, not bonds
    const std::string expected = line.name + "\t" + JoinKeys(test::ReadSmiles(line.smiles)) + "\n";
    if (expected == answer) continue;
    if (++numDifferent > 3) continue;  // the first few say enough
    EXPECT_EQ(answer, expected) << line.smiles;
  }
  EXPECT_EQ(numDifferent, 0u);
}

TEST(MACCSReference, KeysAgreeForBundledMolecules) {
  CompareWithReference(QX_SOURCE_DIR "/data/molecules.smi", 300);
}

TEST(MACCSReference, KeysAgreeForFiveThousandDrugLikeMolecules) {
  const std::string file = QX_SHARED_DATA_DIR "/drug_5k.smi";
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "no " << file;
  CompareWithReference(file, 5000);
}

TEST(MACCSReference, KeysAgreeForDifficultMolecules) {
  const std::string file = QX_SHARED_DATA_DIR "/odd.smi";
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "no " << file;
  CompareWithReference(file, 1000);
}

}  // namespace
}  // namespace QXFingrix
