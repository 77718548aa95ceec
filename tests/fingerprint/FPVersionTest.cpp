#include "QXFingrix/QXFPVersion.h"

#include <gtest/gtest.h>

#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;

TEST(FPVersion, EveryCodeHasItsCurrentVersionAndUnknownOnesAreReported) {
  const Reports unknown = {"Warning: QXGetFingerPrintVersion : unknown fingerprint type!"};
  const struct {
    unsigned type;
    unsigned version;
    Reports reports;
  } cases[] = {
      {101, 8224, {}},  {102, 8192, {}},  {103, 8192, {}},  {104, 8192, {}},   {105, 8192, {}},
      {9000, 8192, {}}, {9001, 8192, {}}, {9002, 8192, {}}, {1, 0, {}},        {2, 0, {}},
      {3, 0, {}},       {0, 0, unknown},  {4, 0, unknown},  {100, 0, unknown}, {9003, 0, unknown},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(QXGetFingerPrintVersion(c.type), c.version); }), c.reports) << c.type;
  }
}

TEST(FPVersion, OnlyTheMajorNumberIsBounded) {
  const struct {
    const char* text;
    bool valid;
    unsigned version;
  } cases[] = {
      {"2.0.0", true, 8192},
      {"2.2.0", true, 8224},
      {"14.255.15", true, 61439},
      {"2.999.99", true, 8192 + (999 << 4) + 99},
      {"14.4096.0", true, (14 << 12) + 65536},
      {"15.0.0", false, 15 << 12},
      {"99.1.2", false, (99 << 12) + 18},
      {"0.0.0", true, 0},
      {"2.0", false, 0},
      {"2.0.0.0", false, 0},
      {"2..0.0", false, 0},
      {".2.0.0", false, 0},
      {"2.0.0.", false, 0},
      {"2.0.x", false, 0},
      {"-2.0.0", false, 0},
      {"2.0.4294967296", false, 0},
      {"", false, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(QXIsValidFingerPrintVersion(c.text), c.valid) << c.text;
    EXPECT_EQ(QXGetFingerPrintVersion(std::string(c.text)), c.version) << c.text;
  }
}

TEST(FPVersion, EveryNumberWithAValidMajorSurvivesItsText) {
  for (unsigned version = 0; version < (15u << 12); ++version) {
    const std::string text = QXGetFingerPrintVersionString(static_cast<unsigned short>(version));
    ASSERT_TRUE(QXIsValidFingerPrintVersion(text)) << text;
    ASSERT_EQ(QXGetFingerPrintVersion(text), version) << text;
  }
  EXPECT_EQ(QXGetFingerPrintVersionString(65535), "15.255.15");
}

}  // namespace
}  // namespace QXFingrix
