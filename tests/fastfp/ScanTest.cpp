// The scan against the naive search: every measure, both orders, cutoffs and limits around the edges, ties,
// empty records, records whose counts are wrong, any number of threads, both back ends.

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <ostream>
#include <thread>

#include "fastfp/DataSet.h"
#include "fastfp/FastFPInMemoryDatabaseImpl.h"
#include "fastfp/FastFPMemoryMapDatabaseImpl.h"

namespace QXFingrix {

std::ostream& operator<<(std::ostream& out, const QXSimScore& hit) {
  return out << '(' << hit.GetIdx() << ' ' << hit.GetScore() << ')';
}

namespace {

using namespace Testing;

std::vector<QXSimScore> Collect(const SimScoreIter& iter) {
  std::vector<QXSimScore> hits;
  for (const QXSimScore& hit : iter) hits.push_back(hit);
  return hits;
}

// Scores must agree to the last bit; one that is not a number agrees with another.
void ExpectSame(const std::vector<QXSimScore>& found, const std::vector<QXSimScore>& expected) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const bool isSame =
        found[i] == expected[i] || (found[i].GetIdx() == expected[i].GetIdx() &&
                                    std::isnan(found[i].GetScore()) && std::isnan(expected[i].GetScore()));
    ASSERT_TRUE(isSame) << "at " << i << ": " << found[i] << " instead of " << expected[i];
  }
}

template <class Engine>
class Scan : public testing::Test {};
using Engines = testing::Types<QXFastFPMemoryMapDatabaseImpl, QXFastFPInMemoryDatabaseImpl>;
TYPED_TEST_SUITE(Scan, Engines);

void CheckRawScores(const std::vector<double>& found, const std::vector<QXSimScore>& expected) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const double score = expected[i].GetScore();
    ASSERT_TRUE(found[i] == score || (std::isnan(found[i]) && std::isnan(score))) << "at " << i;
  }
}

// One measure, order and query: cutoffs, limits and threads are varied inside.
void CheckSearches(const QXFastFPDatabaseImplBase& engine, const QXFingerPrint& query,
                   const std::vector<QXSimScore>& scores, QXFPDatabaseOptions options) {
  CheckRawScores(engine.GetRawScores(query, options), scores);
  const float noCutoff = -100.0F;
  for (const float cutoff : {noCutoff, 0.0F, 0.5F, 0.7F, 1.0F}) {
    options.ClearCutoff();
    if (cutoff != noCutoff) options.SetCutoff(cutoff);
    SCOPED_TRACE("cutoff " + std::to_string(cutoff));
    ExpectSame(Collect(engine.GetScores(query, options)), NaiveKept(scores, options));
    for (const unsigned limit : {0U, 1U, 7U, 250U}) {
      SCOPED_TRACE("limit " + std::to_string(limit));
      options.SetLimit(limit);
      const auto expected = NaiveSorted(scores, options);
      ExpectSame(Collect(engine.GetSortedScores(query, options)), expected);
      // Short files are searched by the caller, whatever the options ask for.
      for (const unsigned numThreads : {1U, 2U, 3U, 8U}) {
        if (scores.size() < 1000 && numThreads < 8) continue;
        options.SetNumProcessors(numThreads);
        QXSimSearchResultImpl result(limit == 7 ? 10 : 0, 0.0, 1.0);
        ASSERT_EQ(engine.SortedSearch(result, query, options), QXSimSearchStatus::Finished);
        ExpectSame(result.GetHits(), expected);
        ASSERT_EQ(result.NumSearched(), scores.size());
        QXFPHistogram histogram = result.MakeHistogram();
        if (result.HasHistogram()) {
          for (const QXSimScore& hit : scores) histogram.AddSample(hit.GetScore());
        }
        const QXFPHistogram found = result.GetHistogram();
        ASSERT_TRUE(std::ranges::equal(found.GetCounts(), histogram.GetCounts()));
      }
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

template <class Engine>
void CheckDataSet(const DataSet& data) {
  const Engine engine(data.File());
  ASSERT_TRUE(engine.IsValid());
  // Weights so small that rounding can make a score fall where it should rise are among them.
  const std::pair<float, float> weights[] = {{0.95F, 0.05F}, {1, 0}, {0, 1},
                                             {0, 0},         {1, 1}, {1e-12F, 3e-14F}};
  for (std::size_t i = 0; i < data.Queries().size(); ++i) {
    const QXFingerPrint& fp = data.Queries()[i];
    const NaiveRecord query{0, fp.CountBits(), {fp.GetWords().begin(), fp.GetWords().end()}};
    for (unsigned measure = 1; measure <= 6; ++measure) {
      for (const auto& [alpha, beta] : weights) {
        for (const bool descending : {true, false}) {
          QXFPDatabaseOptions options(1000, measure);
          options.SetTverskyCoeffs(alpha, beta);
          options.SetDescendingOrder(descending);
          SCOPED_TRACE(testing::Message()
                       << "query " << i << " " << QXGetSimilarityMeasureName(measure)
                       << (descending ? " descending " : " ascending ") << alpha << ' ' << beta);
          CheckSearches(engine, fp, NaiveScores(data.Records(), query, options), options);
          if (testing::Test::HasFatalFailure()) return;
        }
        if (measure != QXSimMeasure::Tversky) break;
      }
    }
  }
}

TYPED_TEST(Scan, AgreesWithTheNaiveSearch) {
  const std::pair<unsigned, std::size_t> sizes[] = {{256, 999},  {256, 1801},  {1024, 0},   {1024, 1},
                                                    {1024, 100}, {1024, 1000}, {2048, 101}, {2048, 1250}};
  unsigned seed = 1;
  for (const auto& [numBits, numRecords] : sizes) {
    SCOPED_TRACE(testing::Message() << numBits << " bits, " << numRecords << " records");
    CheckDataSet<TypeParam>(DataSet(numBits, numRecords, false, seed++));
    if (this->HasFatalFailure()) return;
  }
}

// Bit counts this large are refused when the records are read into memory.
TEST(DamagedScan, AgreesWithTheNaiveSearch) {
  CheckDataSet<QXFastFPMemoryMapDatabaseImpl>(DataSet(256, 500, true, 1));
  CheckDataSet<QXFastFPMemoryMapDatabaseImpl>(DataSet(2048, 1200, true, 2));
}

// Stored bit counts that are too large make Euclid scores of few shared bits no number. The first record
// misses the cutoff, the second passes with fewer shared bits, the third has no score.
TYPED_TEST(Scan, EuclidFindsRecordsBesideThoseWithoutAScore) {
  const TempDir dir;
  const QXFPTypeBase* const type = PathType(1024);
  std::vector<QXFingerPrint> fps(3);
  const unsigned numShared[] = {512, 246, 0};
  for (std::size_t i = 0; i < fps.size(); ++i) {
    fps[i].SetSize(1024);
    fps[i].SetFPTypeBase(type);
    for (unsigned bit = 0; bit < numShared[i]; ++bit) fps[i].SetBitOn(bit);
  }
  std::string bytes = FpbinBytes(type, fps);
  const std::uint64_t bitCount = 1000;
  for (std::size_t i = 0; i < fps.size(); ++i) std::memcpy(bytes.data() + 800 + i * 144 + 8, &bitCount, 8);
  WriteFile(dir.File("x.fpbin"), bytes);
  const TypeParam engine(dir.File("x.fpbin"));
  QXFPDatabaseOptions options(10, QXSimMeasure::Euclid);
  options.SetDescendingOrder(false);
  options.SetCutoff(0.1F);
  const std::vector<QXSimScore> expected = {{1, std::sqrt(4.0 / 1024)}};
  ExpectSame(Collect(engine.GetScores(fps[0], options)), expected);
  ExpectSame(Collect(engine.GetSortedScores(fps[0], options)), expected);
}

// A claim is cut into pieces of 800 records, so this file makes many claims for every thread; the last block
// is a half one.
TYPED_TEST(Scan, ProgressGrowsInWholeBlocksWhileSearchesShareADatabase) {
  const std::size_t numRecords = 59950;
  TempDir dir;
  const QXFPTypeBase* const type = PathType(1024);
  std::mt19937_64 random(5);
  std::vector<QXFingerPrint> fps;
  for (int i = 0; i < 50; ++i) fps.push_back(RandomFP(type, random, 0.1));
  while (fps.size() < numRecords) fps.push_back(fps[random() % 50]);
  WriteFile(dir.File("x.fpbin"), FpbinBytes(type, fps));
  const TypeParam engine(dir.File("x.fpbin"));
  QXFPDatabaseOptions options(20, QXSimMeasure::Tanimoto);
  const auto expected = Collect(engine.GetSortedScores(fps[0], options));

  QXSimSearchResultImpl results[2] = {{0, 0.0, 1.0}, {50, 0.0, 1.0}};
  std::atomic<bool> isSeen = false;  // the search on one thread, when it had done some of the records
  std::atomic<int> numDone = 0;
  std::vector<std::jthread> threads;
  for (QXSimSearchResultImpl& result : results) {
    threads.emplace_back([&, numThreads = &result == results ? 1U : 4U] {
      QXFPDatabaseOptions mine = options;
      mine.SetNumProcessors(numThreads);
      for (int round = 0; round < 5 || (!isSeen && round < 5000); ++round) {
        engine.SortedSearch(result, fps[0], mine);
        EXPECT_EQ(result.GetHits(), expected);
      }
      ++numDone;
    });
  }
  for (int i = 0; i < 2000 || (!isSeen && numDone < 2); ++i) {
    for (const QXSimSearchResultImpl& result : results) {
      const std::uint64_t numSearched = result.NumSearched();
      EXPECT_TRUE(numSearched % 100 == 0 || numSearched % 100 == 50) << numSearched;
      if (&result == results && numSearched != 0 && numSearched < numRecords - 50) isSeen = true;
      ASSERT_LE(result.GetHits().size(), 2 * 20U);
      ASSERT_TRUE(result.GetFinishedHits().empty() || result.GetFinishedHits() == expected);
    }
  }
  threads.clear();
  EXPECT_TRUE(isSeen);
  EXPECT_EQ(results[1].NumSearched(), numRecords);
  EXPECT_EQ(results[1].GetHistogram().NumSamples(), numRecords);
}

}  // namespace
}  // namespace QXFingrix
