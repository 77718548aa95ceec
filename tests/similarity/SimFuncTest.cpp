#include "QXFingrix/QXSimFunc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QXChem/QXLingo.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXLingoFP.h"
#include "QXFingrix/QXLingoSimFunc.h"
#include "QXFingrix/QXSimilarity.h"
#include "QXFingrix/QXUnhashedSimFunc.h"
#include "Reports.h"
#include "fingerprint/FingerPrintText.h"

namespace QXFingrix {
namespace {

using Measure = std::function<float(const QXFingerPrint&, const QXFingerPrint&)>;

constexpr float alpha = 0.9F;
constexpr float beta = 0.2F;

struct Family {
  const char* name;
  Measure function;
  std::unique_ptr<const QXSimFuncBase> general;
  std::unique_ptr<const QXLingoSimFunc> lingo;
};

// Copies outlive what they were made of.
template <class General, class Lingo>
Family MakeFamily(const char* name, Measure function, const General& general, const Lingo& lingo) {
  return {name, std::move(function), std::unique_ptr<const QXSimFuncBase>(general.CreateCopy()),
          std::unique_ptr<const QXLingoSimFunc>(lingo.CreateCopy())};
}

std::vector<Family> Families() {
  std::vector<Family> families;
  families.push_back(MakeFamily("QXTanimoto", QXTanimoto, QXTanimotoSim(), QXTanimotoLingoSim()));
  families.push_back(MakeFamily("QXCosine", QXCosine, QXCosineSim(), QXCosineLingoSim()));
  families.push_back(MakeFamily("QXDice", QXDice, QXDiceSim(), QXDiceLingoSim()));
  families.push_back(MakeFamily("QXEuclid", QXEuclid, QXEuclidSim(), QXEuclidLingoSim()));
  families.push_back(MakeFamily(
      "QXTversky",
      [](const QXFingerPrint& a, const QXFingerPrint& b) { return QXTversky(a, b, alpha, beta); },
      QXTverskySim(alpha, beta), QXTverskyLingoSim(alpha, beta)));
  families.push_back(MakeFamily("QXManhattan", QXManhattan, QXManhattanSim(), QXManhattanLingoSim()));
  return families;
}

QXFingerPrint MakeLingoFP(std::string_view text) {
  QXFingerPrint fp;
  fp.SetFPTypeBase(QXGetLingoFPType(8192));
  SetFPText(fp, text);
  return fp;
}

TEST(SimFunc, CopiesKeepTheName) {
  for (const Family& family : Families()) {
    EXPECT_EQ(family.general->GetSimTypeString(), family.name);
    EXPECT_EQ(family.lingo->GetSimTypeString(), family.name);
  }
  const std::unique_ptr<const QXUnhashedSimFunc> copy(QXTanimotoUnhashedSim().CreateCopy());
  EXPECT_EQ(copy->GetSimTypeString(), "QXTanimoto");
}

// Lingos ABCD BCDE CDEF against ABCD BCDE CDEX DEXY EXYZ: a = 1, b = 3, c = 2, and nothing in neither.
TEST(SimFunc, LingosHaveNoFourthCount) {
  const float expected[] = {
      2 / 6.0F, 2 / std::sqrt(15.0F), 4 / 8.0F, std::sqrt(2 / 6.0F), 2 / (alpha * 1 + beta * 3 + 2),
      4 / 6.0F};
  const QXFingerPrint a = MakeLingoFP("ABCDEF");
  const QXFingerPrint b = MakeLingoFP("ABCDEXYZ");
  const QXChem::QXLingoSim profile(QXGetFPText(a), 1);
  std::size_t i = 0;
  for (const Family& family : Families()) {
    EXPECT_EQ(family.function(a, b), expected[i]) << family.name;
    EXPECT_EQ((*family.general)(a, b), expected[i]) << family.name;
    EXPECT_EQ((*family.lingo)(profile, b), expected[i++]) << family.name;
  }
  unsigned onlyA = 0, onlyB = 0, both = 0, neither = 7;
  EXPECT_TRUE(QXGetBitCounts(a, b, &onlyA, &onlyB, &both, &neither));
  EXPECT_EQ(neither, 7U);
}

// Texts without Lingos are equal or score 0.0 by the general measures, Manhattan included. A profile counts a
// short text as one Lingo, which makes texts that differ as far apart as can be.
TEST(SimFunc, ShortLingoTexts) {
  const QXFingerPrint cc = MakeLingoFP("CC");
  for (const char* const other : {"CC", "CCO", "CCOCC", ""}) {
    const QXFingerPrint b = MakeLingoFP(other);
    const QXChem::QXLingoSim profile(QXGetFPText(cc), 1);
    for (const Family& family : Families()) {
      const bool isDistance = std::string(family.name) == "QXManhattan";
      const bool isSame = std::string(other) == "CC";
      EXPECT_EQ(family.function(cc, b), isSame && !isDistance ? 1.0F : 0.0F) << family.name << other;
      EXPECT_EQ((*family.lingo)(profile, b), isSame != isDistance ? 1.0F : 0.0F) << family.name << other;
    }
  }
}

TEST(SimFunc, TextsWithoutAProfileScoreZeroWithAWarning) {
  const QXFingerPrint good = MakeLingoFP("CCCCO");
  const QXFingerPrint bad = MakeLingoFP("CC\x01\x02\x03");
  for (const Family& family : Families()) {
    EXPECT_EQ(QXTest::ReportsOf([&] { EXPECT_EQ(family.function(bad, good), 0.0F); }),
              QXTest::Reports{"Warning: Cannot initialize lingo similarity"});
    EXPECT_EQ(QXTest::ReportsOf([&] { EXPECT_EQ((*family.lingo)(QXChem::QXLingoSim(), good), 0.0F); }),
              QXTest::Reports{"Warning: lingo is not initialized"});
  }
}

TEST(SimFunc, LingoAndUnhashedClassesDoNotLookAtTwoFingerprints) {
  const QXFingerPrint typeless;
  EXPECT_EQ(QXTest::ReportsOf([&] {
              for (const Family& family : Families()) EXPECT_EQ((*family.lingo)(typeless, typeless), 0.0F);
              EXPECT_EQ(QXTanimotoUnhashedSim()(typeless, typeless), 0.0F);
            }),
            QXTest::silence);
}

}  // namespace
}  // namespace QXFingrix
