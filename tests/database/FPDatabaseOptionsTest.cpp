#include "QXFingrix/QXFPDatabaseOptions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "QXPlatform/QXProcessor.h"
#include "Reports.h"

namespace QXFingrix {
namespace {

using namespace QXTest;
using QXSystem::QXInterface;

TEST(FPDatabaseOptions, UnknownMeasuresAreIgnoredInWords) {
  EXPECT_EQ(ReportsOf([] { EXPECT_EQ(QXFPDatabaseOptions(10, 0).GetSimFunc(), 1U); }),
            Reports{"Warning: QXFPDatabaseOptions::QXFPDatabaseOptions() unknown similarity function type 0 "
                    "ignored!"});
  QXFPDatabaseOptions options(10, 6);
  for (const unsigned measure : {0U, 7U, 4294967295U}) {
    EXPECT_EQ(ReportsOf([&] { options.SetSimFunc(measure); }),
              Reports{"Warning: QXFPDatabaseOptions::SetSimFunc() unknown similarity function type " +
                      std::to_string(measure) + " ignored!"});
    EXPECT_EQ(options.GetSimFunc(), 6U);
  }
  for (unsigned measure = 1; measure <= 6; ++measure) {
    options.SetSimFunc(measure);
    EXPECT_EQ(options.GetSimFunc(), measure);
  }
}

TEST(FPDatabaseOptions, TverskyCoefficientsOutsideZeroToOneAreIgnored) {
  QXFPDatabaseOptions options;
  options.SetTverskyCoeffs(1.0F, 0.0F);
  const std::pair<float, float> bad[] = {{1.5F, 0.5F}, {0.5F, -0.1F}, {NAN, 0.5F}, {0.5F, NAN}};
  for (const auto& [alpha, beta] : bad) {
    EXPECT_EQ(
        ReportsOf([&] { options.SetTverskyCoeffs(alpha, beta); }),
        Reports{"Warning: QXFPDatabaseOptions::SetTverskyCoeffs() illegal alpha/beta values for Tversky "
                "similarity function are ignored!"});
    EXPECT_EQ(options.GetTverskyAlpha(), 1.0F);
    EXPECT_EQ(options.GetTverskyBeta(), 0.0F);
  }
}

TEST(FPDatabaseOptions, ThreadsAreAtMostTwiceTheProcessors) {
  const unsigned available = QXPlatform::QXGetNumProcessors();
  QXFPDatabaseOptions options;
  const std::pair<unsigned, unsigned> cases[] = {
      {0, available}, {1, 1}, {2 * available, 2 * available}, {100 * available, 2 * available}};
  for (const auto& [asked, expected] : cases) {
    options.SetNumProcessors(asked);
    EXPECT_EQ(options.GetNumProcessors(), expected);
  }
}

TEST(FPDatabaseHitList, FirstBarIsTheCutoffOrTheExtreme) {
  struct Case {
    bool descending, hasCutoff;
    float cutoff;
    double bar;
  };
  const Case cases[] = {{true, false, 0.5F, 2.2250738585072014e-308},
                        {false, false, 0.5F, 1.7976931348623157e308},
                        {true, true, 0.7F, double{0.7F}},
                        {false, true, 0.3F, double{0.3F}}};
  for (const Case& test : cases) {
    const auto hits = QXInitFPDatabaseHitList(3, test.descending, test.hasCutoff, test.cutoff);
    EXPECT_EQ(hits->GetBar(), QXSimScore(4294967295U, test.bar));
    EXPECT_EQ(hits->GetLimit(), 3U);
    EXPECT_FALSE(hits->AddHit(QXSimScore(0, test.bar)));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(
        hits->AddHit(QXSimScore(0, std::nextafter(test.bar, test.descending ? infinity : -infinity))));
  }
}

TEST(FPDatabaseHitList, OptionsLimitOfZeroMeansEveryTarget) {
  QXFPDatabaseOptions options(5, QXSimMeasure::Tanimoto);
  EXPECT_EQ(QXInitFPDatabaseHitList(std::uint64_t{3}, options)->GetLimit(), 5U);
  options.SetLimit(0);
  EXPECT_EQ(QXInitFPDatabaseHitList(std::uint64_t{3}, options)->GetLimit(), 3U);
  EXPECT_EQ(QXInitFPDatabaseHitList(std::uint64_t{1} << 40, options)->GetLimit(), 4294967295U);
}

// The best hits are the same whatever the order of the offers, ties included.
TEST(FPDatabaseHitList, EqualScoresAreOrderedByLowerIndex) {
  std::vector<QXSimScore> scores;
  for (unsigned i = 0; i < 300; ++i) scores.emplace_back(i, 0.1 * (i % 4));
  std::mt19937_64 random(1);
  for (const bool descending : {true, false}) {
    std::vector<QXSimScore> expected = scores;
    std::erase_if(expected, [&](const QXSimScore& hit) { return descending && hit.GetScore() == 0.0; });
    std::stable_sort(expected.begin(), expected.end(), [&](const QXSimScore& a, const QXSimScore& b) {
      return descending ? a.GetScore() > b.GetScore() : a.GetScore() < b.GetScore();
    });
    expected.resize(40);
    std::vector<QXSimScore> offers = scores;
    for (int round = 0; round < 20; ++round) {
      const auto hits = QXInitFPDatabaseHitList(40, descending, false, 0.0F);
      for (const QXSimScore& hit : offers) hits->AddHit(hit);
      hits->Sort();
      EXPECT_TRUE(hits->GetHits() == expected) << descending << " round " << round;
      std::shuffle(offers.begin(), offers.end(), random);
    }
  }
}

struct ExpectedParameter {
  const char *name, *alias, *brief, *detail, *dflt;
};

void ExpectParameter(const QXInterface& itf, const ExpectedParameter& expected) {
  const QXSystem::QXParameter* const parameter = itf.GetParameter(expected.name);
  ASSERT_NE(parameter, nullptr) << expected.name;
  EXPECT_EQ(parameter->GetAlias(), expected.alias);
  EXPECT_EQ(parameter->GetBrief(), expected.brief);
  EXPECT_EQ(parameter->GetDetail().find(expected.detail), 0U) << parameter->GetDetail();
  EXPECT_EQ(parameter->HasDefault(), expected.dflt != nullptr);
  if (expected.dflt != nullptr) {
    EXPECT_EQ(parameter->GetDefault(), expected.dflt);
  }
}

constexpr ExpectedParameter limit = {"-limit", "-l", "Maximum number of similarity scores",
                                     "\n\tIf set to zero, then all of the similarity scores are "
                                     "returned\n\tAPI : QXFPDatabaseOptions::SetLimit method",
                                     "10"};
constexpr ExpectedParameter simfunc = {
    "-simfunc", "-s", "Similarity measure",
    "\n\tAPI : QXSimMeasure namespace, QXFPDatabaseOptions::SetSimFunc method and ", "Tanimoto"};
constexpr ExpectedParameter cutoff = {
    "-cutoff", "-c", "Similarity cutoff value",
    "\n\tBy default there is no similarity cutoff\n\tAPI : QXFPDatabaseOptions::SetCutoff method", nullptr};
constexpr ExpectedParameter descending = {
    "-descending", "-d", "Order of similarity scores",
    "\n\tIf true scores are returned in descending order otherwise in ascending order"
    "\n\tAPI : QXFPDatabaseOptions::SetDescendingOrder method",
    "true"};

TEST(ConfigureFPDatabaseOptions, FlagsChooseTheParameters) {
  for (unsigned flags = 0; flags < 8; ++flags) {
    QXInterface itf("tool");
    ASSERT_TRUE(QXConfigureFPDatabaseOptions(itf, flags));
    ASSERT_EQ(itf.GetInterfaces().size(), 1U);
    EXPECT_EQ(itf.GetInterfaces()[0].GetName(), "fingerprint database search options");
    EXPECT_EQ(itf.Has("-limit"), (flags & 1) != 0);
    EXPECT_EQ(itf.Has("-simfunc"), (flags & 2) != 0);
    EXPECT_EQ(itf.Has("-cutoff"), (flags & 4) != 0);
    EXPECT_FALSE(itf.Has("-descending"));
  }
  QXInterface itf("tool");
  QXConfigureFPDatabaseOptions(itf, 7);
  for (const ExpectedParameter& expected : {limit, simfunc, cutoff}) ExpectParameter(itf, expected);
  EXPECT_FALSE(itf.HasValue("-cutoff"));
}

TEST(ConfigureFPDatabaseOptions, DefaultsComeFromTheOptions) {
  QXFPDatabaseOptions defaults(77, QXSimMeasure::Manhattan);
  defaults.SetDescendingOrder(false);
  ExpectedParameter expected[] = {limit, simfunc, cutoff, descending};
  expected[0].dflt = "77";
  expected[1].dflt = "Manhattan";
  expected[3].dflt = "false";
  for (const bool hasCutoff : {false, true}) {
    if (hasCutoff) defaults.SetCutoff(0.3F);
    expected[2].dflt = hasCutoff ? "0.3" : nullptr;
    QXInterface itf("tool");
    ASSERT_TRUE(QXConfigureFPDatabaseOptions(itf, defaults));
    for (const ExpectedParameter& parameter : expected) ExpectParameter(itf, parameter);

    QXFPDatabaseOptions read;
    EXPECT_TRUE(QXSetupFPDatabaseOptions(read, itf));
    EXPECT_EQ(read.GetLimit(), 77U);
    EXPECT_EQ(read.GetSimFunc(), QXSimMeasure::Manhattan);
    EXPECT_EQ(read.GetDescendingOrder(), false);
    EXPECT_EQ(read.HasCutoff(), hasCutoff);
    EXPECT_EQ(read.GetCutoff(), hasCutoff ? 0.3F : 0.0F);
  }
}

TEST(ConfigureFPDatabaseOptions, LargestLimitsComeBack) {
  for (const unsigned large : {3000000000U, 4294967295U}) {
    QXInterface itf("tool");
    ASSERT_TRUE(QXConfigureFPDatabaseOptions(itf, QXFPDatabaseOptions(large, QXSimMeasure::Tanimoto)));
    QXFPDatabaseOptions read;
    EXPECT_TRUE(QXSetupFPDatabaseOptions(read, itf));
    EXPECT_EQ(read.GetLimit(), large);
  }
}

TEST(ConfigureFPDatabaseOptions, SecondTimeIsRefusedInWords) {
  QXInterface itf("tool");
  ASSERT_TRUE(QXConfigureFPDatabaseOptions(itf, 7));
  const Reports reports = ReportsOf([&] { EXPECT_FALSE(QXConfigureFPDatabaseOptions(itf, 7)); });
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.back(),
            "Warning: QXConfigureFPDatabaseOptions() problem configuring fingerprint interface!");
}

TEST(ConfigureFPDatabaseOptions, ValuesOutsideTheLegalOnesDoNotGetThrough) {
  QXInterface itf("tool");
  QXConfigureFPDatabaseOptions(itf, QXFPDatabaseOptions());
  const Reports reports = ReportsOf([&] {
    EXPECT_FALSE(itf.Set("-limit", "-1") || itf.Set("-limit", "100001") || itf.Set("-simfunc", "Hamming"));
  });
  EXPECT_EQ(reports.size(), 3U);
  EXPECT_TRUE(itf.Set("-limit", "100000") && itf.Set("-s", "Tversky"));
  QXFPDatabaseOptions read;
  EXPECT_TRUE(QXSetupFPDatabaseOptions(read, itf));
  EXPECT_EQ(read.GetLimit(), 100000U);
  EXPECT_EQ(read.GetSimFunc(), QXSimMeasure::Tversky);
}

TEST(SetupFPDatabaseOptions, AbsentParametersAndWrongTypesLeaveTheOptionsAlone) {
  using QXSystem::QXParameter;
  QXFPDatabaseOptions options(7, QXSimMeasure::Dice);
  EXPECT_TRUE(QXSetupFPDatabaseOptions(options, QXInterface("empty")));
  QXInterface itf("foreign");
  itf.AddParameter(QXParameter("-limit", QXSystem::QXParameterType::String).SetDefault("3"));
  itf.AddParameter(QXParameter("-simfunc", QXSystem::QXParameterType::String).SetDefault("Hamming"));
  EXPECT_EQ(
      ReportsOf([&] { EXPECT_FALSE(QXSetupFPDatabaseOptions(options, itf)); }),
      (Reports{"Warning: QXInterface::Get, requested parameter -limit is not of requested type",
               "Warning: QXFPDatabaseOptions::SetSimFunc() unknown similarity function type 0 ignored!"}));
  EXPECT_EQ(options.GetLimit(), 7U);
  EXPECT_EQ(options.GetSimFunc(), QXSimMeasure::Dice);
}

}  // namespace
}  // namespace QXFingrix
