#include "QXFingrix/QXMakeFP.h"

#include <gtest/gtest.h>

#include "Molecules.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXPathFP.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

/// A descriptor of no kind that there is.
class StrangeType : public QXFPTypeBase {
 public:
  unsigned GetFPType() const override { return 4711; }
  std::string GetFPTypeString() const override { return "Strange"; }
};

const QXChem::QXGraphMol& Aspirin() {
  static const QXChem::QXGraphMol mol = test::ReadSmiles("CC(=O)Oc1ccccc1C(=O)O");
  return mol;
}

TEST(MakeFP, ADescriptorIsSentToItsGenerator) {
  const QXFPTypeBase* type = QXGetPathFPType(1024, 1, 4, 191, 3);
  QXFingerPrint fp, expected;
  EXPECT_TRUE(QXMakeFP(fp, Aspirin(), type));
  ASSERT_TRUE(QXMakePathFP(expected, Aspirin(), type));
  EXPECT_TRUE(fp == expected);
  EXPECT_EQ(fp.GetFPTypeBase(), type);
  EXPECT_GT(fp.CountBits(), 0u);

  QXFingerPrint again;
  EXPECT_TRUE(QXMakeFP(again, Aspirin(), QXGetFPType(type->GetFPTypeString())));
  EXPECT_TRUE(again == fp) << "equal strings, equal types";

  EXPECT_TRUE(QXMakeFP(fp, test::ReadSmiles("ClC1CC1"), QXGetLingoFPType(8192)));
  EXPECT_EQ(QXGetFPText(fp), "LC0CC0");

  EXPECT_TRUE(QXMakeFP(fp, test::ReadSmiles("CO"), QXGetMACCS166FPType(8224)));
  EXPECT_TRUE(fp.IsBitOn(163));

  const QXFPTypeBase* unhashed = QXGetFPType("UHPath,ver=2.0.0,bonds=1-1,atype=Arom,btype=Order");
  EXPECT_TRUE(QXMakeFP(fp, test::ReadSmiles("C=O"), unhashed));
  EXPECT_EQ(QXGetFPText(fp), "A=A A=A");
  EXPECT_EQ(fp.GetFPTypeBase(), unhashed);
}

TEST(MakeFP, WithoutADescriptorOfAKnownKindItAnswersFalseSilentlyAndTouchesNothing) {
  const StrangeType strange;
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, Aspirin()));
  const QXFingerPrint before = fp;
  for (const QXFPTypeBase* type :
       {static_cast<const QXFPTypeBase*>(nullptr), static_cast<const QXFPTypeBase*>(&strange)}) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeFP(fp, Aspirin(), type)); }), silence);
    EXPECT_TRUE(fp == before);
  }
}

TEST(MakeFP, EveryEntryPointReportsInItsOwnWords) {
  const Reports unknown = {"Warning: QXGetFPType() unknown fingerprint type",
                           "Warning: QXMakeFP() unknown fingerprint type"};
  const std::string useVS = " use QXMakeVSFP() for generating VS fingerprints";
  const std::string beingMade = " - deprecated CircularVS fingerprints are being generated";
  const struct {
    unsigned type;
    bool vs;
    bool made;
    Reports reports;
  } byCode[] = {
      {102, false, true, {}},
      {102, true, true, {"Info: QXMakeFP: (102) (deprecated)" + useVS}},
      {101, true, true, {}},
      {104, true, true, {"Warning: QXMakeFP: (104)" + useVS + beingMade}},
      {105, true, true, {"Info: QXMakeFP: (105) (deprecated)" + useVS}},
      {0, false, false, unknown},
      {3, true, false, unknown},
  };
  QXFingerPrint fp;
  for (const auto& c : byCode) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXMakeFP(fp, Aspirin(), c.type, c.vs), c.made) << c.type; }),
              c.reports);
    if (c.made && c.type == QXFPType::Path) {
      EXPECT_EQ(fp.GetFPTypeBase(), QXGetPathFPType(4096, 0, 5, c.vs ? 151 : 191, 3));
    } else if (c.made && c.type == QXFPType::Circular) {
      EXPECT_EQ(fp.GetFPTypeBase(), QXGetCircularFPType(8192, 4096, 0, 5, 4231, 1));
    }
  }
  const auto undefined = [](const std::string& code) {
    return Reports{
        "Warning: QXGetVSFPType: no VS fingerprint type defined for requested fingerprint type: " + code,
        "Warning: QXMakeVSFP() unknown fingerprint type"};
  };
  const QXFPTypeBase* const path = QXGetPathFPType(4096, 0, 5, 151, 3);
  const struct {
    unsigned type;
    unsigned version;
    bool made;
    const QXFPTypeBase* typeAfter;
    Reports reports;
  } vs[] = {
      {104, 2, true, QXGetCircularFPType(8192, 4096, 0, 5, 135, 1), {}},
      {104, 1, true, QXGetCircularFPType(8192, 4096, 0, 5, 4231, 1), {}},
      {102, 0, true, path, {}},
      {102, 3, false, path, {"Warning: QXMakeVSFP: unknown vsVersion specified: 3"}},
      {101, 0, false, path, undefined("101")},
      {0, 1, false, path, undefined("0")},
  };
  for (const auto& c : vs) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXMakeVSFP(fp, Aspirin(), c.type, c.version), c.made) << c.type; }),
              c.reports);
    EXPECT_EQ(fp.GetFPTypeBase(), c.typeAfter) << "left as it was where nothing is made";
  }
}

}  // namespace
}  // namespace QXFingrix
