#include "QXFingrix/QXFPTypeLookup.h"

#include <gtest/gtest.h>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPTypeParams.h"
#include "QXFingrix/QXFPTypeString.h"
#include "Reports.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

const std::string pathTail = ",size=1024,bonds=0-7,atype=DefaultPathAtom,btype=DefaultPathBond";

TEST(FPTypeLookup, TheFirstWordThatATextStartsWithDecidesTheKind) {
  const std::pair<const char*, unsigned> cases[] = {{"MACCS166,x", 101},
                                                    {"Lingo", 103},
                                                    {"Pathology", 102},
                                                    {"Circular", 104},
                                                    {"Tree", 105},
                                                    {"UHPath", 9000},
                                                    {"UHCircular", 9001},
                                                    {"UHTree", 9002},
                                                    {"MACCS", 0},
                                                    {"UH", 0},
                                                    {"path", 0},
                                                    {" Path", 0},
                                                    {"", 0}};
  for (const auto& [text, code] : cases) EXPECT_EQ(GetFPTypeFromTypeStringPrefix(text), code) << text;
}

TEST(FPTypeLookup, EqualStringsGiveOneDescriptorAndOtherSpellingsTheSame) {
  const QXFPTypeBase* type = QXGetFPType("Path,ver=2.0.0" + pathTail);
  ASSERT_TRUE(type);
  EXPECT_EQ(type, QXGetPathFPType(1024, 0, 7, 191, 3));
  EXPECT_EQ(type, QXGetFPType("Path,btype=Chiral|Order,atype=DefaultAtom,bonds=0-7,size=1024,ver=2.0.0"));
  EXPECT_EQ(QXGetFPType("ver=2.0.0,Path" + pathTail), nullptr) << "the kind is read off the start";
}

TEST(FPTypeLookup, EachFunctionAddsItsOwnReportOrNone) {
  enum Verdict { Current, Old, OldPlain, Malformed, MalformedPlain, Unknown };
  const std::string uhTail = ",bonds=0-5,atype=AtmNum,btype=Order";
  const struct {
    std::string text;
    Verdict verdict;
    unsigned version;
    Reports parser;
  } cases[] = {
      {"Path,ver=2.0.0" + pathTail, Current, 8192, {}},
      {"Nonsense,ver=2.0.0", Unknown, 0, {}},
      {"Path,ver=1.0.0" + pathTail, Old, 4096, {}},
      {"Path,ver=2.4096.0" + pathTail, Old, 8192, {}},  // the current version in its low 16 bits only
      {"Path,ver=2.0.0", Malformed, 0, {"Warning: Size cannot be initialized for `Path` type!"}},
      {"Path,ver=2.0.0,atype=Nonsense", Malformed, 0, {}},
      {"UHPathX,ver=2.0.0" + uhTail,
       Malformed,
       0,
       {"Warning: Invalid string can not be tokenized for `UHPath` type!"}},
      {"UHPath=1", Malformed, 0, {"Warning: 'UHPath' is not a valid fingerprint type primitive!"}},
      {"UHTree,ver=2.0.0" + uhTail, Current, 0, {}},
      {"UHTree,ver=2.0.1" + uhTail, Old, 0, {}},
      {"MACCS166,ver=2.2.0", Current, 8224, {}},
      {"MACCS166", OldPlain, 0, {}},
      {"Lingo,ver=2.1.0", OldPlain, 8208, {}},
      {"Lingo,ver=x", MalformedPlain, 0, {"Warning: Invalid version for `Lingo` type!"}},
  };
  for (const auto& c : cases) {
    const bool valid = c.verdict <= OldPlain;
    const bool unhashed = c.text.starts_with("UH");
    Reports lookup = c.parser, validity = c.parser;
    if (c.verdict == Malformed) lookup.push_back("Warning: QXGetFPType() invalid fingerprint type string");
    if (c.verdict == Old || c.verdict == OldPlain) {
      const std::string level = c.verdict == Old ? "Warning" : "Error";
      lookup.push_back(level + ": QXGetFPType() fingerprint type with old version number");
      validity.push_back("Warning: QXIsValidFPTypeString() fingerprint type with old version number");
    }
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFPType(c.text) != nullptr, c.verdict == Current); }), lookup)
        << c.text;
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXIsValidFPTypeString(c.text), valid); }), validity) << c.text;
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFPTypeVersion(c.text), c.version); }),
              unhashed ? silence : c.parser)
        << c.text;
  }
}

TEST(FPTypeLookup, CodesGiveTheirDefaults) {
  constexpr unsigned current = 4711;  // no VS variant is asked for
  const Reports unknown = {"Warning: QXGetFPType() unknown fingerprint type"};
  const Reports unknownVS = {"Warning: QXGetFPType() unknown VS fingerprint version"};
  const struct {
    unsigned code;
    unsigned vsVersion;
    const QXFPTypeBase* type;
    Reports reports;
  } cases[] = {
      {101, current, QXGetMACCS166FPType(8224), {}},
      {102, current, QXGetPathFPType(8192, 4096, 0, 5, 191, 3), {}},
      {103, current, QXGetLingoFPType(8192), {}},
      {104, current, QXGetCircularFPType(8192, 4096, 0, 5, 4239, 1), {}},
      {105, current, QXGetTreeFPType(8192, 4096, 0, 4, 63, 1), {}},
      {9000, current, QXGetUnhashedPathFPType(8192, 0, 5, 191, 3), {}},
      {9001, current, QXGetUnhashedCircularFPType(8192, 0, 5, 4239, 1), {}},
      {9002, current, QXGetUnhashedTreeFPType(8192, 0, 4, 63, 1), {}},
      {0, current, nullptr, unknown},
      {1, current, nullptr, unknown},
      {106, current, nullptr, unknown},
      {101, 1, QXGetMACCS166FPType(8224), {}},
      {9000, 2, QXGetUnhashedPathFPType(8192, 0, 5, 191, 3), {}},
      {101, 3, nullptr, unknownVS},
      {104, 3, nullptr, unknownVS},
      {9000, 3, nullptr, unknownVS},
      {0, 0, nullptr, unknown},
  };
  for (const auto& c : cases) {
    const bool vs = c.vsVersion != current;
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFPType(c.code, vs, vs ? c.vsVersion : 7), c.type) << c.code; }),
              c.reports);
  }
}

TEST(FPTypeLookup, VSVariantsExistForPathCircularAndTreeInTwoVersions) {
  const std::string undefined =
      "Warning: QXGetVSFPType: no VS fingerprint type defined for requested fingerprint type: ";
  const Reports unknown = {"Warning: QXGetVSFPType() unknown VS fingerprint version"};
  const struct {
    unsigned code;
    unsigned version;
    const QXFPTypeBase* type;
    Reports reports;
  } cases[] = {
      {102, 1, QXGetPathFPType(4096, 0, 5, 151, 3), {}},
      {102, 2, QXGetPathFPType(4096, 0, 5, 151, 3), {}},
      {104, 0, QXGetCircularFPType(4096, 0, 5, 135, 1), {}},
      {104, 1, QXGetCircularFPType(4096, 0, 5, 4231, 1), {}},
      {104, 2, QXGetCircularFPType(4096, 0, 5, 135, 1), {}},
      {105, 1, QXGetTreeFPType(4096, 0, 4, 23, 1), {}},
      {105, 2, QXGetTreeFPType(4096, 0, 4, 23, 1), {}},
      {0, 0, nullptr, {undefined + "0"}},
      {0, 3, nullptr, unknown},
      {9000, 0, nullptr, {undefined + "9000"}},
      {104, 3, nullptr, unknown},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetVSFPType(c.code, c.version), c.type) << c.code; }), c.reports);
    if (c.type) {
      EXPECT_EQ(QXGetFPType(c.code, true, c.version), c.type) << c.code << ' ' << c.version;
    }
  }
}

TEST(FPTypeLookup, NamesAndSizesOfDescriptors) {
  const struct {
    const QXFPTypeBase* type;
    const char* name;
    unsigned size;
    Reports reports;
  } cases[] = {
      {nullptr, "UNKNOWN", 0, {}},
      {QXGetMACCS166FPType(8224), "MACCS166", 166, {}},
      {QXGetLingoFPType(8192), "Lingo", 0, {}},
      {QXGetPathFPType(1024, 0, 5, 191, 3), "Path", 1024, {}},
      {QXGetCircularFPType(2048, 0, 5, 191, 3), "Circular", 2048, {}},
      {QXGetTreeFPType(65535, 0, 5, 191, 3), "Tree", 65535, {}},
      {QXGetUnhashedPathFPType(8192, 0, 5, 191, 3), "UNKNOWN", 0, {}},
      {QXGetPathFPType(0, 0, 5, 191, 3),
       "UNKNOWN",
       0,
       {"Warning: Size cannot be initialized for `Path` type!"}},
      {QXGetPathFPType(64, 0, 5, 2048, 3), "UNKNOWN", 0, {}},  // a mask without a name
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFingerPrintName(c.type), c.name); }), c.reports);
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFingerPrintSize(c.type), c.size); }), c.reports) << c.name;
  }
}

TEST(FPTypeParams, DecodesStringsAndDescriptorsAndNothingElse) {
  const QXFPTypeParams circular(QXGetCircularFPType(4097, 2048, 1, 3, 5, 6));
  EXPECT_TRUE(circular.IsValid());
  EXPECT_EQ(std::vector<unsigned>({circular.GetFPType(), circular.GetVersion(), circular.GetNumBits(),
                                   circular.GetMinDistance(), circular.GetMaxDistance(),
                                   circular.GetAtomTypes(), circular.GetBondTypes()}),
            (std::vector<unsigned>{104, 4097, 2048, 1, 3, 5, 6}));

  const struct {
    const char* text;
    bool valid;
    unsigned code;
    unsigned numbits;
    Reports reports;
  } cases[] = {
      {"MACCS166", true, 101, 166, {}},
      {"Lingo,ver=2.0.0", true, 103, 0, {}},
      {"UHPath,ver=2.0.0,bonds=0-5,atype=AtmNum,btype=Order", false, 9000, 0, {}},
      {"Path,size=7", false, 102, 0, {"Warning: Missing fingerprint version!"}},
      {"Nonsense", false, 0, 0, {}},
  };
  for (const auto& c : cases) {
    QXFPTypeParams params;
    EXPECT_EQ(ReportsOf([&] { params = QXFPTypeParams(std::string(c.text)); }), c.reports) << c.text;
    EXPECT_EQ(params.IsValid(), c.valid) << c.text;
    EXPECT_EQ(params.GetFPType(), c.code) << c.text;
    EXPECT_EQ(params.GetNumBits(), c.numbits) << c.text;
    EXPECT_EQ(params.GetAtomTypes(), 0u) << c.text;
  }
  EXPECT_FALSE(QXFPTypeParams(nullptr).IsValid());
}

}  // namespace
}  // namespace QXFingrix
