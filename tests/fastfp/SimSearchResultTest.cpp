#include "QXFingrix/QXSimSearchResult.h"

#include <gtest/gtest.h>

#include "fastfp/SimSearchResultImpl.h"

namespace QXFingrix {
namespace {

TEST(SimSearchResult, StatusesHaveNames) {
  const std::pair<unsigned, const char*> cases[] = {
      {0, "Uninitialized"}, {1, "InProgress"}, {2, "Finished"}, {3, "Invalid"}, {4294967295U, "Invalid"}};
  for (const auto& [status, name] : cases) EXPECT_EQ(QXSimSearchStatusToName(status), name);
}

TEST(SimSearchResult, FreshOneIsValidAndEmpty) {
  QXSimSearchResult result;
  EXPECT_TRUE(result.IsValid());
  EXPECT_EQ(result.GetSearchStatus(), QXSimSearchStatus::Uninitialized);
  EXPECT_EQ(result.NumTargets(), 0U);
  EXPECT_EQ(result.NumSearched(), 0U);
  EXPECT_EQ(result.GetHistogram().GetNumBins(), 1U);
  EXPECT_FALSE(result.GetSortedScores());
  const QXSimSearchResult taker(std::move(result));
  EXPECT_TRUE(taker.IsValid());
  EXPECT_FALSE(result.IsValid());  // NOLINT: what a moved-from result answers is promised
  EXPECT_EQ(result.NumSearched(), 0U);
  EXPECT_FALSE(result.GetSortedScores());
}

TEST(SimSearchResultImpl, SingleUpdatesCountKeepAndStartOver) {
  QXSimSearchResultImpl result(10, 0.0, 1.0);
  QXFPDatabaseOptions options(2, QXSimMeasure::Tanimoto);
  for (int round = 0; round < 2; ++round) {
    result.Init(100, options);
    for (const auto& [idx, score] : {std::pair(5U, 0.3F), {1U, 0.5F}, {0U, 0.0F}, {4U, 0.5F}, {3U, 0.5F}}) {
      result.UpdateScores(idx, score);
    }
    EXPECT_EQ(result.GetSearchStatus(), QXSimSearchStatus::InProgress);
    EXPECT_TRUE(result.GetFinishedHits().empty());
    EXPECT_EQ(result.NumTargets(), 100U);
    EXPECT_EQ(result.NumSearched(), 5U);
    // In single precision 0.3 falls into bin 3.
    QXFPHistogram expected(10, 0.0, 1.0);
    for (const float score : {0.3F, 0.5F, 0.0F, 0.5F, 0.5F}) expected.AddSample(score);
    const QXFPHistogram histogram = result.GetHistogram();
    EXPECT_TRUE(std::ranges::equal(histogram.GetCounts(), expected.GetCounts()));
    result.Finish();
    EXPECT_EQ(result.GetFinishedHits(), (std::vector<QXSimScore>{{1, 0.5}, {3, 0.5}}));
  }
}

TEST(SimSearchResultImpl, WithoutBinsSingleUpdatesAreKeptButNotCounted) {
  QXSimSearchResultImpl result(0, 0.0, 1.0);
  result.Init(2, QXFPDatabaseOptions(1, QXSimMeasure::Tanimoto));
  result.UpdateScores(1, 0.25F);
  result.UpdateScores(0, 0.75F);
  result.Finish();
  EXPECT_EQ(result.NumSearched(), 2U);
  EXPECT_EQ(result.GetHistogram().NumSamples(), 0U);
  EXPECT_EQ(result.GetFinishedHits(), (std::vector<QXSimScore>{{0, 0.75}}));
}

}  // namespace
}  // namespace QXFingrix
