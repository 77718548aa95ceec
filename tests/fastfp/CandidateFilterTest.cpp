#include "similarity/CandidateFilter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "database/BitScorer.h"
#include "fastfp/scan/Scorer.h"

namespace {

using namespace QXFingrix;

constexpr unsigned measures[] = {QXSimMeasure::Tanimoto, QXSimMeasure::Cosine,  QXSimMeasure::Dice,
                                 QXSimMeasure::Euclid,   QXSimMeasure::Tversky, QXSimMeasure::Manhattan};

struct Case {
  CandidateFilter::Search search;
  std::uint64_t numBits;
  std::uint64_t queryBits;
};

class CandidateFilterTest : public testing::TestWithParam<unsigned> {
 protected:
  std::uint64_t Below(std::uint64_t end) { return random_() % end; }
  float Coefficient() {
    const float ends[] = {0.0F, 1.0F, 0.95F, std::ldexp(0.999F, -static_cast<int>(Below(60)))};
    return Below(2) == 0 ? ends[Below(4)] : static_cast<float>(Below(1001)) / 1000.0F;
  }
  Case RandomCase() {
    constexpr std::uint64_t sizes[] = {64, 166, 2048, 65280};
    const std::uint64_t numBits = sizes[Below(4)];
    return {{GetParam(), Coefficient(), Coefficient(), Below(2) == 0}, numBits, Below(numBits + 1)};
  }

  std::mt19937_64 random_{7};
};

bool Reaches(double score, double bar, bool descending) {
  return descending ? score >= bar : score <= bar;
}

// Bars are the scores of records, so that ties are frequent, or whatever a user may ask for. Every third record
// is as a damaged file may have it: its bit count says anything.
TEST_P(CandidateFilterTest, WhatReachesTheBarPasses) {
  constexpr double oddBars[] = {0.0,
                                1.0,
                                -0.5,
                                1.5,
                                std::numeric_limits<double>::min(),
                                1e30,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::infinity()};
  unsigned numReaching = 0;
  for (int round = 0; round < 40'000; ++round) {
    const Case c = RandomCase();
    QXFPDatabaseOptions options(10, c.search.measure);
    options.SetTverskyCoeffs(static_cast<float>(c.search.alpha), static_cast<float>(c.search.beta));
    const Scorer exact(options, c.numBits, c.queryBits);
    const BitScorer single(
        MeasureFormula(c.search.measure, options.GetTverskyAlpha(), options.GetTverskyBeta()),
        static_cast<unsigned>(c.numBits), static_cast<unsigned>(c.queryBits));
    std::uint64_t bits = Below(c.numBits + 1);
    const std::uint64_t least = bits + c.queryBits > c.numBits ? bits + c.queryBits - c.numBits : 0;
    const std::uint64_t shared = least + Below(std::min(bits, c.queryBits) - least + 1);
    const double bar = Below(4) == 0 ? oddBars[Below(std::size(oddBars))]
                                     : exact(std::min(bits + Below(3), c.numBits), shared + Below(2));
    const bool isDamaged = Below(3) == 0;
    if (isDamaged) bits = Below(2) == 0 ? Below(c.numBits) : Below(2) == 0 ? 0 : random_();
    CandidateFilter filter(c.search, c.numBits, c.queryBits);
    filter.SetBar(bar);
    const bool reaches = Reaches(exact(bits, shared), bar, c.search.descending) ||
                         (!isDamaged && Reaches(single(bits, shared), bar, c.search.descending));
    if (!reaches) continue;
    ++numReaching;
    ASSERT_TRUE(filter.Passes(static_cast<float>(bits), static_cast<std::uint32_t>(shared)))
        << c.numBits << ' ' << c.queryBits << ' ' << bits << ' ' << shared << ' ' << bar << ' '
        << c.search.alpha << ' ' << c.search.beta << ' ' << c.search.descending;
    ASSERT_LE(filter.LeastShared(static_cast<float>(bits)), shared);
    if (!isDamaged) {
      ASSERT_TRUE(filter.CanPass(static_cast<std::uint32_t>(bits)));
    }
  }
  EXPECT_GT(numReaching, 10'000u);
}

// Else the filter would be of no use: of what misses the bar by more than a few bits, nothing passes.
TEST_P(CandidateFilterTest, WhatIsFarFromTheBarDoesNotPass) {
  const bool descending = GetParam() != QXSimMeasure::Manhattan;
  QXFPDatabaseOptions options(10, GetParam());
  const Scorer scorer(options, 2048, 200);
  CandidateFilter filter({GetParam(), options.GetTverskyAlpha(), options.GetTverskyBeta(), descending}, 2048,
                         200);
  filter.SetBar(scorer(180, 120));
  EXPECT_TRUE(filter.Passes(180.0F, 120));
  EXPECT_FALSE(filter.Passes(180.0F, 118));
  EXPECT_GE(filter.LeastShared(180.0F), 118u);
  EXPECT_TRUE(filter.CanPass(200));
}

INSTANTIATE_TEST_SUITE_P(Measures, CandidateFilterTest, testing::ValuesIn(measures),
                         [](const auto& measure) { return QXGetSimilarityMeasureName(measure.param); });

}  // namespace
