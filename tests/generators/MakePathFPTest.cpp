#include <gtest/gtest.h>

#include <climits>

#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "Reports.h"
#include "generators/Graphs.h"
#include "generators/Molecules.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using test::MakeGraph;
using test::ReadSmiles;

struct Params {
  unsigned numbits, minbonds, maxbonds, atype, btype;
};

bool MakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const Params& p) {
  return QXMakePathFP(fp, mol, p.numbits, p.minbonds, p.maxbonds, p.atype, p.btype);
}

const QXFPTypeBase* TypeOf(const Params& p) {
  return QXGetPathFPType(8192, p.numbits, p.minbonds, p.maxbonds, p.atype, p.btype);
}

TEST(MakePathFP, ParametersOutOfRangeAreReportedAndReplaced) {
  const auto size = [](const std::string& number) {
    return "invalid bit vector size " + number + " for path fingerprint (default 4096 is used)!";
  };
  const auto low = [](const std::string& number) {
    return "invalid min bonds " + number + " for path fingerprint (default 0 is used)!";
  };
  const auto high = [](const std::string& number) {
    return "invalid max bonds " + number + " for path fingerprint (default 5 is used)!";
  };
  const std::string crossed =
      "invalid min bonds 7 > max bonds 5 for path fingerprint (minbonds = maxbonds is used)!";
  const std::string noMasks =
      "invalid to have both atom and bond types set to be None (default types are used)!";
  const struct {
    Params given, used;
    Reports reports;
  } cases[] = {
      {{16, 0, 5, 191, 3}, {16, 0, 5, 191, 3}, {}},
      {{65535, 20, 20, 191, 3}, {65535, 20, 20, 191, 3}, {}},
      {{64, 2, 4, 0, 1}, {64, 2, 4, 0, 1}, {}},
      {{64, 2, 4, 1, 0}, {64, 2, 4, 1, 0}, {}},
      {{15, 0, 5, 191, 3}, {4096, 0, 5, 191, 3}, {size("15")}},
      {{65536, 0, 5, 191, 3}, {4096, 0, 5, 191, 3}, {size("65536")}},
      {{UINT_MAX, 0, 5, 191, 3}, {4096, 0, 5, 191, 3}, {size("-1")}},
      {{64, 21, 5, 191, 3}, {64, 0, 5, 191, 3}, {low("21")}},
      {{64, 0, 21, 191, 3}, {64, 0, 5, 191, 3}, {high("21")}},
      {{64, 7, 5, 191, 3}, {64, 5, 5, 191, 3}, {crossed}},
      {{64, 7, 21, 191, 3}, {64, 5, 5, 191, 3}, {high("21"), crossed}},
      {{64, 0, 5, 0, 0}, {64, 0, 5, 191, 3}, {noMasks}},
      {{10, 21, 22, 0, 0}, {4096, 0, 5, 191, 3}, {size("10"), low("21"), high("22"), noMasks}},
  };
  const QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  for (const auto& c : cases) {
    QXFingerPrint fp;
    QXFingerPrint expected;
    ASSERT_TRUE(MakeFP(expected, mol, c.used));
    Reports reports;
    for (const std::string& report : c.reports) reports.push_back("Warning: QXMakePathFP() : " + report);
    EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(MakeFP(fp, mol, c.given)); }), reports);
    EXPECT_EQ(fp.GetSize(), c.used.numbits);
    EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(c.used));
    EXPECT_TRUE(fp == expected);
  }
}

TEST(MakePathFP, DefaultsAreThoseOfTheDefaultType) {
  const QXChem::QXGraphMol mol = ReadSmiles("c1ccccc1");
  QXFingerPrint plain;
  QXFingerPrint full;
  QXFingerPrint typed;
  ASSERT_TRUE(QXMakePathFP(plain, mol));
  ASSERT_TRUE(MakeFP(full, mol, {4096, 0, 5, 191, 3}));
  ASSERT_TRUE(QXMakePathFP(typed, mol, QXGetFPType(QXFPType::Path, false, 0)));
  EXPECT_TRUE(plain == full);
  EXPECT_TRUE(plain == typed);
}

TEST(MakePathFP, InvalidMoleculeClearsTheTypeAndNothingElse) {
  QXChem::QXGraphMol mol = ReadSmiles("CCO");
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, mol));
  const QXSystem::QXBitVector before = fp;
  mol.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(MakeFP(fp, mol, {10, 30, 40, 0, 0})); }), silence);
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
  EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(fp) == before);
}

TEST(MakePathFP, TypesThatAreNoPathTypesAreReportedAndLeftOut) {
  const QXChem::QXGraphMol mol = ReadSmiles("CCO");
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, mol));
  const QXFingerPrint before = fp;
  const QXFPTypeBase* const others[] = {QXGetTreeFPType(4096, 0, 4, 63, 1), QXGetMACCS166FPType(8224),
                                        nullptr};
  for (const QXFPTypeBase* type : others) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakePathFP(fp, mol, type)); }),
              Reports{"Warning: QXMakePathFP : invalid path fingerprint type!"});
    EXPECT_TRUE(fp == before);
  }
  // An atom mask of 17 bits spills into the reserved field.
  const QXFPTypeBase* spilt = QXGetPathFPType(8192, 512, 1, 4, 0x10001, 1);
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakePathFP(fp, mol, spilt)); }),
            Reports{"Warning: Unrecognised data in QXFPPathType!"});
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf({512, 1, 4, 1, 1}));
}

TEST(MakePathFP, MoleculesWithoutAStartGiveNoBitsAndAType) {
  // Hydrogen and wildcards start nothing.
  for (const QXChem::QXGraphMol& mol : {QXChem::QXGraphMol(), MakeGraph({1, 1, 0}, {{0, 1}})}) {
    QXFingerPrint fp;
    ASSERT_TRUE(QXMakePathFP(fp, ReadSmiles("CCO")));
    ASSERT_TRUE(MakeFP(fp, mol, {100, 0, 5, 191, 3}));
    EXPECT_EQ(fp.GetSize(), 100u);
    EXPECT_EQ(fp.CountBits(), 0u);
    EXPECT_EQ(fp.GetFPTypeBase(), TypeOf({100, 0, 5, 191, 3}));
  }
}

TEST(MakePathFP, BitsFollowFromLabelsAndWeights) {
  // Labels under AtmNum and Order: C 179, N 283, O 947, single bond 131, double bond 137.
  const QXChem::QXGraphMol mol = ReadSmiles("NC=O");
  std::set<unsigned> expected;
  for (const unsigned atom : {179u, 283u, 947u}) expected.insert(atom * 947 % 997);
  const unsigned twoAtoms[][3] = {{283, 131, 179}, {179, 131, 283}, {179, 137, 947}, {947, 137, 179}};
  for (const auto& [a, bond, b] : twoAtoms) expected.insert((a * 947 + bond * 983 + b * 1019) % 997);
  expected.insert((283 * 947 + 131 * 983 + 179 * 1019 + 137 * 1049 + 947 * 1087) % 997);
  expected.insert((947 * 947 + 137 * 983 + 179 * 1019 + 131 * 1049 + 283 * 1087) % 997);
  QXFingerPrint fp;
  ASSERT_TRUE(MakeFP(fp, mol, {1000, 0, 5, 1, 1}));
  std::set<unsigned> bits;
  for (int bit = fp.FirstBit(); bit >= 0; bit = fp.NextBit(bit)) bits.insert(bit);
  EXPECT_EQ(bits, expected);
}

TEST(MakePathFP, CallersMoleculeIsLeftAlone) {
  QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  const unsigned markBefore = mol.GetPreparedMark();
  mol.SetTitle("paracetamol");
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, mol));
  EXPECT_EQ(mol.GetPreparedMark(), markBefore);
  EXPECT_EQ(mol.GetTitle(), "paracetamol");
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) EXPECT_EQ(atom.GetSymmetryClass(), 0u);
}

TEST(MakePathFP, SymmetryClassesOfTheCallerDoNotLeaveOutStarts) {
  // Refinement cannot tell the two rings apart.
  for (const char* const smiles : {"C1CC1.C1CCCCC1", "C1CC1.C1CCCCC1.C1CCCCCCC1.C1CCCC1"}) {
    QXChem::QXGraphMol mol = ReadSmiles(smiles);
    QXFingerPrint expected;
    QXFingerPrint fp;
    ASSERT_TRUE(QXMakePathFP(expected, mol));
    QXChem::QXPerceiveSymmetry(mol, false, false);
    ASSERT_EQ(mol.GetAtom(0)->GetSymmetryClass(), mol.GetAtom(5)->GetSymmetryClass());
    ASSERT_TRUE(QXMakePathFP(fp, mol));
    EXPECT_TRUE(fp == expected) << smiles;
  }
}

TEST(MakePathFP, ChainOfTenThousandAtomsIsNoMoreThanItsShortPaths) {
  const QXChem::QXGraphMol chain = ReadSmiles(std::string(10000, 'C'));
  const QXChem::QXGraphMol shorter = ReadSmiles(std::string(100, 'C'));
  QXFingerPrint ofChain;
  QXFingerPrint ofShorter;
  ASSERT_TRUE(QXMakePathFP(ofChain, chain));
  ASSERT_TRUE(QXMakePathFP(ofShorter, shorter));
  EXPECT_TRUE(ofChain == ofShorter);
}

TEST(MakePathFP, CallFromAnErrorSinkDoesNotDisturbTheCallThatReported) {
  const QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  const QXChem::QXGraphMol other = ReadSmiles("FC(F)(F)C1CCNCC1");
  QXFingerPrint expected;
  ASSERT_TRUE(QXMakePathFP(expected, mol));
  QXSystem::QXThrow.SetSink([&](QXSystem::QXErrorLevel, const std::string&) {
    QXFingerPrint inner;
    QXMakePathFP(inner, other);
  });
  QXFingerPrint fp;
  MakeFP(fp, mol, {1, 30, 30, 0, 0});
  QXSystem::QXThrow.SetSink({});
  EXPECT_TRUE(fp == expected);
}

}  // namespace
}  // namespace QXFingrix
