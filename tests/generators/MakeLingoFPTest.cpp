#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "Molecules.h"
#include "QXChem/QXLingo.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXLingoFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "Reports.h"
#include "fingerprint/FingerPrintText.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXChem::QXGraphMol;
using QXChem::QXLingoSim;

const QXFPTypeBase* const lingoType = QXGetLingoFPType(8192);

TEST(MakeLingoFP, TheTextAndAZeroByteAreTheBits) {
  QXFingerPrint fp;
  for (const std::string smiles : {"C", "CCOCCC", "CCOCCCO", "C[N+](C)(C)CCCCCCCCCCCCCCCC=O", "CN"}) {
    ASSERT_TRUE(QXMakeLingoFP(fp, test::ReadSmiles(smiles)));
    EXPECT_EQ(fp.GetSize(), 8 * (smiles.size() + 1));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(fp.GetData()), fp.GetDataSize()),
              std::string(QXGetFPText(fp)) + '\0');
    EXPECT_EQ(QXGetFPText(fp).size(), smiles.size());
    EXPECT_EQ(fp.GetFPTypeBase(), lingoType);
  }
}

TEST(MakeLingoFP, APreparedMoleculeAndOneWithHydrogensGiveTheSame) {
  const QXGraphMol drawn = test::ReadSmiles("[H]C([2H])([H])OC([H])=[CH:3]Cl");
  QXGraphMol prepared = drawn;
  QXPrepareForFingerprinting(prepared, QXFPType::Lingo);
  ASSERT_LT(prepared.NumAtoms(), drawn.NumAtoms());
  for (const QXGraphMol& mol : {drawn, prepared}) {
    const unsigned numAtoms = mol.NumAtoms();
    QXFingerPrint fp;
    ASSERT_TRUE(QXMakeLingoFP(fp, mol));
    EXPECT_EQ(QXGetFPText(fp), "COC=CL");
    EXPECT_EQ(mol.NumAtoms(), numAtoms);
  }
}

TEST(MakeLingoFP, MoleculesWithoutAText) {
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeLingoFP(fp, test::ReadSmiles("CCCCCCCCCCCCCC")));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeLingoFP(fp, QXGraphMol())); }), silence) << "empty";
  EXPECT_EQ(fp.GetSize(), 1u);
  EXPECT_FALSE(fp.IsBitOn(0));
  EXPECT_EQ(QXGetFPText(fp), "");
  EXPECT_EQ(fp.GetFPTypeBase(), lingoType);

  QXGraphMol invalid;
  invalid.Invalidate();
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeLingoFP(fp, invalid)); }), silence);
  EXPECT_FALSE(fp);

  ASSERT_TRUE(QXMakeLingoFP(fp, test::ReadSmiles("CC")));
  const QXGraphMol giant = test::ReadSmiles(std::string(5001, 'C'));
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeLingoFP(fp, giant)); }),
            Reports{"Warning: QXMakeLingoFP() : no Lingo text for a molecule of 5001 atoms (more than 5000, "
                    "or a structure that cannot be written)!"});
  EXPECT_FALSE(fp);
}

TEST(MakeLingoFP, ThreadsMakeWhatOneThreadMakes) {
  std::vector<QXGraphMol> mols;
  std::vector<QXFingerPrint> expected;
  for (const test::SmilesLine& line : test::ReadSmilesFile(QX_SOURCE_DIR "/data/molecules.smi", 200)) {
    mols.push_back(test::ReadSmiles(line.smiles));
    ASSERT_TRUE(QXMakeLingoFP(expected.emplace_back(), mols.back()));
  }
  std::vector<std::jthread> threads;
  for (unsigned t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (std::size_t i = 0; i < mols.size(); ++i) {
        QXFingerPrint fp;
        EXPECT_TRUE(QXMakeLingoFP(fp, mols[i]));
        EXPECT_TRUE(fp == expected[i]);
      }
    });
  }
}

TEST(LingoFingerPrintType, ReadingAndWritingLeaveTheStreamAlone) {
  std::stringstream stream("text");
  QXFingerPrint fp;
  EXPECT_TRUE(QXReadLingoFingerPrintType(stream, 4096, fp));
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetLingoFPType(4096));
  EXPECT_TRUE(QXWriteLingoFingerPrintType(stream, fp));
  EXPECT_EQ(stream.str(), "text");
  EXPECT_EQ(stream.tellg(), 0);
}

struct Terms {
  unsigned onlyA = 77, onlyB = 77, both = 77;
  bool operator==(const Terms&) const = default;
};

QXFingerPrint FromText(std::string_view text) {
  QXFingerPrint fp;
  EXPECT_TRUE(SetFPText(fp, text));
  fp.SetFPTypeBase(lingoType);
  return fp;
}

TEST(LingoSimTerms, OfTwoFingerprints) {
  const Terms untouched;
  const struct {
    const char* a;
    const char* b;
    bool counted;
    Terms terms;
    Reports reports = {};
  } cases[] = {
      {"CCCCO", "CCCCCC", true, {1, 2, 1}},
      {"CCCC", "OOOO", true, {1, 1, 0}},
      // below four characters the texts themselves are compared
      {"CC", "CC", true, {0, 0, 2}},
      {"", "", true, {0, 0, 0}},
      {"CC", "CCO", false, {2, 3, 0}},
      {"CCO", "CCOC", false, {3, 4, 0}},
      {"CCOC", "", false, {4, 0, 0}},
      {"CC\nCC", "CCCC", false, untouched, {"Warning: Cannot initialize lingo similarity"}},
  };
  for (const auto& c : cases) {
    Terms terms;
    const QXFingerPrint a = FromText(c.a);
    const QXFingerPrint b = FromText(c.b);
    EXPECT_EQ(ReportsOf([&] {
                EXPECT_EQ(QXGetLingoSimTerms(a, b, &terms.onlyA, &terms.onlyB, &terms.both), c.counted);
              }),
              c.reports)
        << c.a << " " << c.b;
    EXPECT_EQ(terms, c.terms) << c.a << " " << c.b;
  }
}

TEST(LingoSimTerms, AgainstAProfile) {
  const QXFingerPrint fp = FromText("CCCCCC");
  Terms terms;
  EXPECT_EQ(ReportsOf([&] {
              EXPECT_FALSE(QXGetLingoSimTerms(QXLingoSim(), fp, &terms.onlyA, &terms.onlyB, &terms.both));
            }),
            Reports{"Warning: lingo is not initialized"});
  EXPECT_EQ(terms, Terms());
  EXPECT_TRUE(QXGetLingoSimTerms(QXLingoSim("CCCCO", 1), fp, &terms.onlyA, &terms.onlyB, &terms.both));
  EXPECT_EQ(terms, (Terms{1, 2, 1}));
}

}  // namespace
}  // namespace QXFingrix
