#include <gtest/gtest.h>

#include <map>
#include <set>
#include <thread>

#include "QXFingrix/QXCircularFP.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Reports.h"
#include "chem/Shuffled.h"
#include "generators/Graphs.h"
#include "generators/IdentifierHash.h"
#include "generators/Reference.h"
#include "generators/circular/CircularIds.h"
#include "generators/circular/EnvironmentText.h"
#include "generators/circular/Environments.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXChem::QXGraphMol;
using test::ReadSmiles;

constexpr const char* script = "circular_reference.py";

constexpr const char* types[] = {
    "Circular,ver=2.0.0,size=4096,radius=0-5,atype=DefaultCircularAtom,btype=DefaultCircularBond",
    "Circular,ver=2.0.0,size=1000,radius=2-3,atype=AtmNum|Chiral|HCount,btype=Order|Chiral|InRing",
    "Circular,ver=2.0.0,size=65535,radius=0-8,atype=AtmNum|Arom|Hyb|InRing,btype=None",
    "Circular,ver=2.0.0,size=64,radius=1-1,atype=None,btype=Order",
};

TEST(CircularFP, BitsAgreeWithTheReference) {
  test::CompareWithReference(script, QX_SOURCE_DIR "/data/molecules.smi", 500, std::span(types).first(1));
  test::CompareWithReference(script, QX_SOURCE_DIR "/data/molecules.smi", 100, types);
  test::CompareWithReference(script, QX_SOURCE_DIR "/tests/golden/path_molecules.smi", 1000, types);
}

TEST(CircularFP, BitsAreStillThoseOfTheGoldenFile) {
  test::CompareWithGoldenFile("circular_bits.tsv");
}

// Published values of MurmurHash3_x86_32 for the bytes "test" and for FF FF FF FF, and of nothing.
TEST(CircularFP, IdentifiersAreMixedAsPublished) {
  const auto hash = [](unsigned seed, std::initializer_list<unsigned> words) {
    IdentifierHash mixer(seed);
    for (const unsigned word : words) mixer.Add(word);
    return mixer.Get();
  };
  EXPECT_EQ(hash(1, {}), 0x514e28b7u);
  EXPECT_EQ(hash(0, {0x74736574}), 0xba6bd213u);
  EXPECT_EQ(hash(0, {0xffffffff}), 0x76293b50u);
}

QXGraphMol Prepared(QXGraphMol mol) {
  QXPrepareForFingerprinting(mol, QXFPType::Circular);
  return mol;
}

// All bundled molecules from `first` up to `last` as one.
QXGraphMol Mixture(std::size_t first, std::size_t last) {
  const auto lines = test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", last);
  std::string smiles = lines[first].smiles;
  for (std::size_t i = first + 1; i < lines.size(); ++i) smiles += '.' + lines[i].smiles;
  return ReadSmiles(smiles);
}

// Every kind of graph there is to be searched: masks of one word, of some, and none.
std::vector<QXGraphMol> Graphs() {
  std::vector<QXGraphMol> mols = {ReadSmiles(test::fullerene),
                                  test::MakeCirculant(40, 5, {6}),
                                  test::MakeCirculant(300, 7, {6, 6, 7}),
                                  test::MakeCirculant(700, 26, {6}),
                                  ReadSmiles(std::string(1100, 'C')),
                                  Mixture(100, 150)};
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 200)) {
    mols.push_back(ReadSmiles(line.smiles));
  }
  return mols;
}

std::set<unsigned> BondsAround(const QXGraphMol& mol, unsigned centre, unsigned radius) {
  std::set<unsigned> atoms = {centre}, bonds;
  for (unsigned r = 0; r < radius; ++r) {
    for (const unsigned atom : std::set(atoms)) {
      for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
        bonds.insert(step.bond);
        atoms.insert(step.atom);
      }
    }
  }
  return bonds;
}

TEST(CircularFP, EnvironmentsAreTheSetsOfBondsThatHaveNotAppeared) {
  Environments environments;
  ASSERT_EQ(ReadSmiles(test::fullerene).NumBonds(), 90u);
  for (const QXGraphMol& mol : Graphs()) {
    std::set<std::set<unsigned>> appeared = {{}};
    environments.Load(mol);
    for (unsigned radius = 1; radius <= 7; ++radius) {
      std::map<std::set<unsigned>, std::vector<unsigned>> expected, found;
      for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
        std::set<unsigned> bonds = BondsAround(mol, atom, radius);
        if (!appeared.contains(bonds)) expected[std::move(bonds)].push_back(atom);
      }
      std::map<unsigned, std::vector<unsigned>> centres;
      for (const auto& [atom, environment] : environments.Grow()) centres[environment].push_back(atom);
      for (const auto& [environment, atoms] : centres) {
        ASSERT_LT(environment, environments.NumFound());
        found[BondsAround(mol, atoms[0], radius)] = atoms;
      }
      ASSERT_EQ(centres.size(), environments.NumFound());
      ASSERT_EQ(found, expected) << "radius " << radius << " of " << mol.NumAtoms() << " atoms";
      for (const auto& [bonds, atoms] : expected) appeared.insert(bonds);
    }
  }
}

// Calls make(fp, mol) for all molecules in several threads and for shuffled copies.
template <class Make>
void ExpectOneAnswer(Make make) {
  std::vector<QXGraphMol> mols = {ReadSmiles(test::fullerene), Mixture(0, 10), Mixture(300, 350)};
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 300)) {
    mols.push_back(ReadSmiles(line.smiles));
  }
  std::vector<QXFingerPrint> expected(mols.size());
  for (std::size_t i = 0; i < mols.size(); ++i) ASSERT_TRUE(make(expected[i], mols[i]));
  const auto check = [&](unsigned seed) {
    std::mt19937 random(seed);
    std::vector<unsigned> order;
    QXFingerPrint fp;
    for (std::size_t i = 0; i < mols.size(); ++i) {
      EXPECT_TRUE(make(fp, QXChem::Shuffled(mols[i], random, order)));
      EXPECT_TRUE(fp == expected[i]) << i;
    }
  };
  std::vector<std::jthread> threads;
  for (unsigned seed = 1; seed <= 3; ++seed) threads.emplace_back(check, seed);
}

TEST(CircularFP, NeitherTheOrderOfTheAtomsNorThreadsMatter) {
  ExpectOneAnswer([](QXFingerPrint& fp, const QXGraphMol& mol) { return QXMakeCircularFP(fp, mol); });
  ExpectOneAnswer([](QXFingerPrint& fp, const QXGraphMol& mol) {
    return QXMakeUnhashedCircularFP(fp, mol, 0, 4, 4239, 1);
  });
}

TEST(CircularFP, AMixtureAndARangeOfRadiiHaveTheBitsOfTheirParts) {
  const auto lines = test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 60);
  QXFingerPrint whole, part;
  QXSystem::QXBitVector parts;
  const auto add = [&](const QXGraphMol& mol, unsigned minradius, unsigned maxradius) {
    ASSERT_TRUE(QXMakeCircularFP(part, mol, 8192, minradius, maxradius, 1, 1));
    for (int bit = part.FirstBit(); bit >= 0; bit = part.NextBit(bit)) parts.SetBitOn(bit);
  };
  ASSERT_TRUE(parts.SetSize(8192));
  for (const test::SmilesLine& line : lines) add(ReadSmiles(line.smiles), 0, 9);
  ASSERT_TRUE(QXMakeCircularFP(whole, Mixture(0, 60), 8192, 0, 9, 1, 1));
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(whole) == parts);
  parts.ClearBits();
  for (unsigned radius = 0; radius <= 9; ++radius) add(Mixture(0, 60), radius, radius);
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(whole) == parts);
}

std::string TextOf(const QXGraphMol& mol, unsigned minradius, unsigned maxradius, unsigned atype,
                   unsigned btype) {
  QXFingerPrint fp;
  EXPECT_TRUE(QXMakeUnhashedCircularFP(fp, mol, minradius, maxradius, atype, btype));
  return std::string(QXGetFPText(fp));
}

TEST(UnhashedCircularFP, TextsOfSmallMolecules) {
  const struct {
    const char* smiles;
    unsigned minradius, maxradius;
    const char* text;
  } cases[] = {
      {"NC=O", 0, 5, "C C,N-0,O=0 N N,C-0 O O,C=0"},
      {"CCl", 0, 5, "C C,Cl-0 Cl"},  // both atoms are centres of the one bond
      {"CC(C)(C)C", 1, 5, "C,4C-0 C,C-0 C,C-0 C,C-0 C,C-0"},
      {"C1CC1", 1, 5, "C,2C-0 C,2C-0 C,2C-0 C,2C-0-1"},
      {"c1ccccc1", 3, 3, "c,2c:0,2c:1,c:2:2"},
      {"C1CCC1.C=C", 2, 2, "C,2C-0,C-1-1"},
      {"[Na+].[Cl-].[H][H].*", 0, 5, "Cl [#0] [#1] [#1] [#1],[#1]-0 [Na]"},
      {"", 0, 5, ""},
      {"CCC", 3, 5, ""},
  };
  for (const auto& [smiles, minradius, maxradius, text] : cases) {
    const QXGraphMol mol = *smiles ? ReadSmiles(smiles) : QXGraphMol();
    EXPECT_EQ(TextOf(mol, minradius, maxradius, 3, 1), text) << smiles;
  }
}

// What an identifier tells apart must be in the text. Chirality has no part in the texts, and integers merge
// large counts, so the masks leave these out.
TEST(UnhashedCircularFP, EqualTextsHaveEqualIdentifiers) {
  constexpr unsigned atype = 1 + 2 + 8, btype = 5;
  std::map<std::string, unsigned> idOfText;
  CircularIds ids;
  Environments environments;
  EnvironmentText writer;
  std::vector<unsigned> atoms, bonds;
  std::vector<std::string> atomTexts, bondTexts;
  std::string text;
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 500)) {
    QXGraphMol mol = Prepared(ReadSmiles(line.smiles));
    QXGetFingerprintAtomTypes(atoms, bonds, mol, atype, btype);
    QXGetFingerprintAtomTypes(atomTexts, bondTexts, mol, atype, btype);
    ids.Load(mol, atoms, bonds);
    writer.Load(mol, atomTexts, bondTexts);
    environments.Load(mol);
    for (unsigned radius = 1; radius <= 5; ++radius) {
      ids.Grow();
      for (const auto& [atom, environment] : environments.Grow()) {
        writer.Write(atom, radius, text);
        ASSERT_TRUE(std::ranges::all_of(text, [](unsigned char c) { return c > ' ' && c < 0x7f; })) << text;
        const unsigned id = ids.Get()[atom];
        ASSERT_EQ(idOfText.emplace(text, id).first->second, id) << text;
      }
    }
  }
  std::set<unsigned> distinct;
  for (const auto& [known, id] : idOfText) distinct.insert(id);
  EXPECT_GT(distinct.size(), 10'000u);
  // Two environments have one identifier and two texts where walks do not tell rings apart: seldom.
  EXPECT_GT(distinct.size(), idOfText.size() * 99 / 100);
}

TEST(UnhashedCircularFP, ATextThatCannotFitIsReported) {
  std::string smiles;
  for (unsigned i = 0; i < 7000; ++i) smiles += "NNO";
  const QXGraphMol chain = ReadSmiles(smiles);
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeCircularFP(fp, ReadSmiles("CCO")));
  const QXSystem::QXBitVector before = fp;
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeUnhashedCircularFP(fp, chain, 0, 20, 6143, 7)); }),
            Reports{"Error: Max size for an QXBitVector is INT_MAX"});
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(fp) == before);
}

TEST(CircularFP, ParametersOutOfRangeAreReportedAndReplaced) {
  const QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  const std::string ofCircular = " for circular fingerprint ";
  const auto reports = [&](const std::string& function, bool withSize) {
    const std::string start = "Warning: " + function + "() : invalid ";
    Reports all = {
        start + "bit vector size 10" + ofCircular + "(default 4096 is used)!",
        start + "min radius 21" + ofCircular + "(default 0 is used)!",
        start + "max radius 22" + ofCircular + "(default 5 is used)!",
        start + "to have both atom and bond types set to be None (default types are used)!",
    };
    if (!withSize) all.erase(all.begin());
    return all;
  };
  QXFingerPrint fp, expected;
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeCircularFP(fp, mol, 10, 21, 22, 0, 0)); }),
            reports("QXMakeCircularFP", true));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeCircularFP(expected, mol)); }), silence);
  EXPECT_TRUE(fp == expected);
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetCircularFPType(8192, 4096, 0, 5, 4239, 1));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeUnhashedCircularFP(fp, mol, 21, 22, 0, 0)); }),
            reports("QXMakeUnhashedCircularFP", false));
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetUnhashedCircularFPType(8192, 0, 5, 4239, 1));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeCircularFP(fp, mol, 512, 7, 5, 1, 0)); }),
            Reports{"Warning: QXMakeCircularFP() : invalid min radius 7 > max radius 5" + ofCircular +
                    "(minradius = maxradius is used)!"});
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetCircularFPType(8192, 512, 5, 5, 1, 0));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeCircularFP(fp, mol, 16, 20, 20, 0, 1)); }), silence);
}

TEST(CircularFP, InvalidMoleculesAndTypesAreRefused) {
  QXGraphMol mol = ReadSmiles("CCO");
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeCircularFP(fp, mol));
  const QXFingerPrint before = fp;
  for (const QXFPTypeBase* type : {QXGetPathFPType(8192, 4096, 0, 5, 191, 3), (const QXFPTypeBase*)nullptr}) {
    EXPECT_EQ(ReportsOf([&] {
                EXPECT_FALSE(QXMakeCircularFP(fp, mol, type));
                EXPECT_FALSE(QXMakeUnhashedCircularFP(fp, mol, type));
              }),
              (Reports{"Warning: QXMakeCircularFP : invalid circular fingerprint type!",
                       "Warning: QXMakeUnhashedCircularFP : invalid unhashed circular fingerprint type!"}));
    EXPECT_TRUE(fp == before);
  }
  mol.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeCircularFP(fp, mol, 1, 30, 40, 0, 0)); }), silence);
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
}

TEST(CircularFP, AtomsAloneHaveOneBitEachWhateverElseThereIs) {
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeCircularFP(fp, QXGraphMol()));
  EXPECT_EQ(fp.CountBits(), 0u);
  ASSERT_TRUE(QXMakeCircularFP(fp, ReadSmiles("[Na+].[Cl-].*")));
  EXPECT_EQ(fp.CountBits(), 3u);
  ASSERT_TRUE(QXMakeCircularFP(fp, ReadSmiles("[Na+].[Cl-].*"), 4096, 1, 5, 4239, 1));
  EXPECT_EQ(fp.CountBits(), 0u);
}

}  // namespace
}  // namespace QXFingrix
