#include "QXFingrix/QXMakeFP.h"

#include <gtest/gtest.h>

#include "Molecules.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXPathFP.h"
#include "fingerprint/Reports.h"

namespace QXFingrix {
namespace {

using test::Reports;
using test::ReportsOf;

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
}

TEST(MakeFP, WithoutADescriptorOrAGeneratorItAnswersFalseSilentlyAndTouchesNothing) {
  const StrangeType strange;
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakePathFP(fp, Aspirin()));
  const QXFingerPrint before = fp;
  const QXFPTypeBase* const types[] = {nullptr, &strange};
  for (const QXFPTypeBase* type : types) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeFP(fp, Aspirin(), type)); }), test::none);
    EXPECT_TRUE(fp == before);
  }
}

TEST(MakeFP, ACodeMakesTheDefaultTypeOrTheDeprecatedVSType) {
  QXFingerPrint fp;
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeFP(fp, Aspirin(), 102, false)); }), test::none);
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetPathFPType(4096, 0, 5, 191, 3));
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeFP(fp, Aspirin(), 102, true)); }),
            Reports{"Info: QXMakeFP: (102) (deprecated) use QXMakeVSFP() for generating VS fingerprints"});
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetPathFPType(4096, 0, 5, 151, 3));
}

TEST(MakeFP, EveryEntryPointReportsInItsOwnWords) {
  QXFingerPrint fp;
  const struct {
    unsigned type;
    bool vs;
    Reports reports;
  } byCode[] = {
      {101, true, {}},
      {104,
       true,
       {"Warning: QXMakeFP: (104) use QXMakeVSFP() for generating VS fingerprints - deprecated CircularVS "
        "fingerprints are being generated"}},
      {105, true, {"Info: QXMakeFP: (105) (deprecated) use QXMakeVSFP() for generating VS fingerprints"}},
      {0,
       false,
       {"Warning: QXGetFPType() unknown fingerprint type", "Warning: QXMakeFP() unknown fingerprint type"}},
      {3,
       true,
       {"Warning: QXGetFPType() unknown fingerprint type", "Warning: QXMakeFP() unknown fingerprint type"}},
  };
  for (const auto& c : byCode) {
    EXPECT_EQ(ReportsOf([&] { QXMakeFP(fp, Aspirin(), c.type, c.vs); }), c.reports) << c.type;
  }
  const struct {
    unsigned type;
    unsigned version;
    Reports reports;
  } vs[] = {
      {104, 2, {}},
      {104, 1, {}},
      {102, 3, {"Warning: QXMakeVSFP: unknown vsVersion specified: 3"}},
      {101,
       0,
       {"Warning: QXGetVSFPType: no VS fingerprint type defined for requested fingerprint type: 101",
        "Warning: QXMakeVSFP() unknown fingerprint type"}},
      {0,
       1,
       {"Warning: QXGetVSFPType: no VS fingerprint type defined for requested fingerprint type: 0",
        "Warning: QXMakeVSFP() unknown fingerprint type"}},
  };
  for (const auto& c : vs) {
    EXPECT_EQ(ReportsOf([&] { QXMakeVSFP(fp, Aspirin(), c.type, c.version); }), c.reports) << c.type;
  }
  EXPECT_EQ(ReportsOf([&] { EXPECT_TRUE(QXMakeVSFP(fp, Aspirin(), 102, 0)); }), test::none);
  EXPECT_EQ(fp.GetFPTypeBase(), QXGetVSFPType(102, 2));
}

TEST(MakeFP, AnInvalidMoleculeGivesFalseAndATypelessFingerprint) {
  QXChem::QXGraphMol invalid;
  invalid.Invalidate();
  QXFingerPrint fp;
  ASSERT_TRUE(QXMakeFP(fp, Aspirin(), 102, false));
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(QXMakeFP(fp, invalid, 102, false)); }), test::none);
  EXPECT_FALSE(fp);
}

}  // namespace
}  // namespace QXFingrix
