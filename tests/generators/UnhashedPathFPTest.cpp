#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXPathFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXFingrix/QXUnhashedFP.h"
#include "Reports.h"
#include "generators/Graphs.h"
#include "generators/Molecules.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using test::ReadSmiles;

struct Params {
  unsigned minbonds, maxbonds, atype, btype;
};

constexpr Params defaults = {0, 5, 191, 3};

bool MakeFP(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const Params& p) {
  return QXMakeUnhashedPathFP(fp, mol, p.minbonds, p.maxbonds, p.atype, p.btype);
}

const QXFPTypeBase* TypeOf(const Params& p) {
  return QXGetUnhashedPathFPType(8192, p.minbonds, p.maxbonds, p.atype, p.btype);
}

std::string TextOf(const QXChem::QXMolBase& mol, const Params& params) {
  QXFingerPrint fp;
  EXPECT_TRUE(MakeFP(fp, mol, params));
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(params));
  const std::string text(QXGetFPText(fp));
  EXPECT_EQ(fp.GetSize(), CHAR_BIT * (text.size() + 1));
  return text;
}

// The text must be the identifiers of the plain walk from every heavy atom, sorted as strings.
void ExpectPlainPaths(QXChem::QXGraphMol mol, const Params& p) {
  const std::string text = TextOf(mol, p);
  QXPrepareForFingerprinting(mol, QXFPType::UHPath);
  std::vector<std::string> atomLabels, bondLabels, tokens;
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, p.atype, p.btype);
  mol.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXPathIdGeneratorStack(tokens, mol, atomLabels, bondLabels, p.minbonds, p.maxbonds);
  std::ranges::sort(tokens);
  std::string expected;
  for (const std::string& token : tokens) {
    ASSERT_FALSE(token.empty());
    ASSERT_TRUE(std::ranges::all_of(token, [](unsigned char c) { return c > ' ' && c < 0x7f; })) << token;
    expected += (expected.empty() ? "" : " ") + token;
  }
  ASSERT_EQ(text, expected) << "masks " << p.atype << ' ' << p.btype;
}

TEST(UnhashedPathFP, TokensAreThePathsOfThePlainWalk) {
  const Params params[] = {defaults,        {0, 7, 191, 3}, {2, 6, 3, 0},    {0, 5, 1, 7}, {0, 6, 0, 1},
                           {3, 3, 6143, 7}, {0, 4, 3, 1},   {0, 5, 4279, 3}, {5, 5, 3, 2}};
  const auto lines = test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi");
  ASSERT_GT(lines.size(), 1000u);
  for (std::size_t i = 0; i < lines.size() && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(lines[i].smiles);
    ExpectPlainPaths(ReadSmiles(lines[i].smiles), params[i % std::size(params)]);
  }
}

TEST(UnhashedPathFP, TokensAreThePathsOfThePlainWalkUnderEveryMask) {
  const QXChem::QXGraphMol mol =
      ReadSmiles("C/C(F)=C/C(Cl)C(Br)[Si](C)(I)OB(O)c1c[nH]cc1[N+](C)(C)CC#N.[2H]S(=O)(=O)[O-].*[Na].P$C");
  ASSERT_TRUE(mol.IsValid());
  for (unsigned masks = 1; masks < 8192 * 8 && !HasFatalFailure(); ++masks) {
    const unsigned atype = masks / 8;
    if (!(atype & 2048)) ExpectPlainPaths(mol, {0, 1, atype, masks % 8});  // 2048 is no flag
  }
}

TEST(UnhashedPathFP, TextsOfSmallMolecules) {
  constexpr Params elements = {0, 5, 1, 1};
  constexpr Params symbols = {0, 5, 3, 0};
  const struct {
    const char* smiles;
    Params params;
    const char* text;
  } cases[] = {
      {"NC=O", elements,
       "[#6] [#6]-[#7] [#6]=[#8] [#7] [#7]-[#6] [#7]-[#6]=[#8] [#8] [#8]=[#6] [#8]=[#6]-[#7]"},
      {"O=CN", {1, 1, 1, 1}, "[#6]-[#7] [#6]=[#8] [#7]-[#6] [#8]=[#6]"},
      {"CCl", symbols, "C Cl Cl~C C~Cl"},  // a symbol that begins with another one
      {"Cl.BrB.C", {0, 5, 3, 1}, "B B-Br Br Br-B C Cl"},
      {"[2H]O", elements, "[#8] [#8]-[#1]"},
      {"[H][H]", defaults, ""},
      {"*", defaults, ""},
      {"", defaults, ""},
      {"CO", {4, 5, 191, 3}, ""},
  };
  for (const auto& [smiles, params, text] : cases) {
    const QXChem::QXGraphMol mol = *smiles ? ReadSmiles(smiles) : QXChem::QXGraphMol();
    EXPECT_EQ(TextOf(mol, params), text) << smiles;
  }
}

TEST(UnhashedPathFP, NeitherAtomOrderNorSymmetryMatters) {
  // Molecules written in two ways. The number of tokens is that of all walks, known for the symmetric ones.
  const struct {
    const char* a;
    const char* b;
    std::ptrdiff_t numTokens;
  } cases[] = {
      {"c1ccccc1", "C1=CC=CC=C1", 66},
      {"CC(C)(C)C", "C(C)(C)(C)C", 25},
      {"C12C3C4C1C5C2C3C45", "C12C3C4C5C3C1C5C24", 8 + 24 + 48 + 96 + 144 + 240},
      {"CC(=O)Nc1ccc(O)cc1.[Na+]", "[Na+].Oc1ccc(NC(C)=O)cc1", 0},
      {"C/C=C/CCc1c(Cl)cncc1CC(C)CCNC(=O)OC", "COC(=O)NCCC(C)Cc1cncc(Cl)c1CC/C=C/C", 0},
  };
  for (const auto& [smiles, other, numTokens] : cases) {
    QXChem::QXGraphMol mol = ReadSmiles(smiles);
    const std::string text = TextOf(mol, defaults);
    EXPECT_EQ(TextOf(ReadSmiles(other), defaults), text);
    if (numTokens > 0) {
      EXPECT_EQ(std::ranges::count(text, ' ') + 1, numTokens) << smiles;
    }
    QXChem::QXPerceiveSymmetry(mol, false, false);
    EXPECT_EQ(TextOf(mol, defaults), text);
  }
}

TEST(UnhashedPathFP, ATextThatCannotFitEndsTheWalkWithTheReport) {
  const QXChem::QXGraphMol cages[] = {test::MakeCirculant(60, 7, {6}),
                                      test::MakeCirculant(60, 7, {6, 14, 6, 32, 50})};
  QXFingerPrint fp;
  for (const QXChem::QXGraphMol& cage : cages) {
    for (const Params& p : {Params{0, 20, 191, 3}, Params{20, 20, 0, 1}}) {
      ASSERT_TRUE(MakeFP(fp, ReadSmiles("NC=O"), {0, 5, 1, 1}));
      const QXSystem::QXBitVector before = fp;
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(MakeFP(fp, cage, p)); }),
                Reports{"Error: Max size for an QXBitVector is INT_MAX"});
      EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
      EXPECT_TRUE(static_cast<const QXSystem::QXBitVector&>(fp) == before);
    }
  }
}

TEST(UnhashedPathFP, ParametersOutOfRangeAreReportedAndReplaced) {
  const QXChem::QXGraphMol mol = ReadSmiles("CC(=O)Nc1ccc(O)cc1");
  const std::string start = "Warning: QXMakeUnhashedPathFP() : invalid ";
  const std::string low = start + "min bonds 21 for path fingerprint (default 0 is used)!";
  const std::string high = start + "max bonds 22 for path fingerprint (default 5 is used)!";
  const std::string noMasks =
      start + "to have both atom and bond types set to be None (default types are used)!";
  const std::string crossed =
      start + "min bonds 7 > max bonds 5 for path fingerprint (minbonds = maxbonds is used)!";
  QXFingerPrint fp;
  EXPECT_EQ(ReportsOf([&] { MakeFP(fp, mol, {21, 22, 0, 0}); }), (Reports{low, high, noMasks}));
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(defaults));
  EXPECT_EQ(QXGetFPText(fp), TextOf(mol, defaults));
  EXPECT_EQ(ReportsOf([&] { MakeFP(fp, mol, {7, 22, 1, 0}); }), (Reports{high, crossed}));
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf({5, 5, 1, 0}));
  EXPECT_EQ(ReportsOf([&] { MakeFP(fp, mol, {20, 20, 0, 1}); }), silence);
  const std::string used = " for path fingerprint (191 and 3 are used)!";
  EXPECT_EQ(ReportsOf([&] {
              MakeFP(fp, mol, {0, 5, 0x10000 + 2048 + 191, 3});
            }),
            Reports{start + "atom type mask 67775 or bond type mask 3" + used});
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(defaults));
  EXPECT_EQ(QXGetFPText(fp), TextOf(mol, defaults));
  const std::string unknown =
      "atom type mask 32768 or bond type mask 8 for path fingerprint (0 and 0 are used)!";
  EXPECT_EQ(ReportsOf([&] { MakeFP(fp, mol, {0, 5, 32768, 8}); }), (Reports{start + unknown, noMasks}));
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf(defaults));
  EXPECT_EQ(ReportsOf([&] {
              EXPECT_TRUE(QXMakeUnhashedPathFP(fp, mol, TypeOf({0, 5, 2048 + 191, 3})));
            }),
            silence);
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf({0, 5, 2048 + 191, 3}));
}

TEST(UnhashedPathFP, InvalidMoleculesAndTypesAreRefused) {
  QXChem::QXGraphMol mol = ReadSmiles("CCO");
  QXFingerPrint fp;
  ASSERT_TRUE(MakeFP(fp, mol, defaults));
  const QXFingerPrint before = fp;
  for (const QXFPTypeBase* type : {QXGetPathFPType(4096, 0, 5, 191, 3), (const QXFPTypeBase*)nullptr}) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeUnhashedPathFP(fp, mol, type)); }),
              Reports{"Warning: QXMakeUnhashedPathFP : invalid unhashed path fingerprint type!"});
    EXPECT_TRUE(fp == before);
  }
  // An atom mask of 17 bits spills into the reserved field.
  EXPECT_EQ(ReportsOf([&] {
              EXPECT_TRUE(QXMakeUnhashedPathFP(fp, mol, TypeOf({1, 4, 0x10001, 1})));
            }),
            Reports{"Warning: Unrecognised data!"});
  EXPECT_EQ(fp.GetFPTypeBase(), TypeOf({1, 4, 1, 1}));
  mol.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(MakeFP(fp, mol, {30, 40, 0, 0})); }), silence);
  EXPECT_EQ(fp.GetFPTypeBase(), nullptr);
}

}  // namespace
}  // namespace QXFingrix
