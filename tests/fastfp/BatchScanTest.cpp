// Several queries at once beside one search after the other.

#include <gtest/gtest.h>

#include "QXFingrix/QXFastFPDatabase.h"
#include "fastfp/DataSet.h"

namespace QXFingrix {
namespace {

using namespace Testing;
namespace MemoryType = QXFastFPDatabaseMemoryType;
using Hits = std::vector<QXSimScore>;

Hits Collect(const QXSystem::QXIter<QXSimScore>& iter) {
  Hits hits;
  for (const QXSimScore& hit : iter) hits.push_back(hit);
  return hits;
}

// Numbers of queries on both sides of tiles and groups of them.
void CheckDataSet(const DataSet& data, unsigned numBits, unsigned memoryType = MemoryType::MemoryMapped) {
  const QXFastFPDatabase db(data.File(), memoryType);
  std::vector<QXFingerPrint> fps = data.Queries();
  std::mt19937_64 random(7);
  while (fps.size() < 300) {
    fps.push_back(fps[random() % fps.size()]);
    for (std::size_t flips = random() % 9; flips > 0; --flips) fps.back().ToggleBit(random() % numBits);
  }
  for (unsigned measure = 1; measure <= 6; ++measure) {
    for (const unsigned limit : {0U, 7U}) {
      for (const bool descending : {true, false}) {
        QXFPDatabaseOptions options(limit, measure);
        options.SetDescendingOrder(descending);
        if (measure == QXSimMeasure::Dice) options.SetCutoff(0.5F);
        std::vector<Hits> expected;
        for (const QXFingerPrint& fp : fps) expected.push_back(Collect(db.GetSortedScores(fp, options)));
        for (const std::size_t numQueries : {std::size_t{0}, std::size_t{1}, std::size_t{33}, fps.size()}) {
          options.SetNumProcessors(1 + static_cast<unsigned>(numQueries % 4));
          const auto found = db.GetSortedScores(std::span(fps).first(numQueries), options);
          ASSERT_EQ(found.size(), numQueries);
          for (std::size_t i = 0; i < numQueries; ++i) {
            ASSERT_EQ(Collect(found[i]), expected[i]) << "query " << i << ", measure " << measure;
          }
        }
      }
    }
  }
}

TEST(BatchScan, FindsWhatSingleSearchesFind) {
  CheckDataSet(DataSet(256, 0, false, 1), 256);
  CheckDataSet(DataSet(1024, 129, false, 2), 1024, MemoryType::InMemory);
  CheckDataSet(DataSet(256, 4500, false, 3), 256);
  CheckDataSet(DataSet(2304, 600, true, 4), 2304);
}

TEST(BatchScan, SearchesForSuitableQueriesBesideOthers) {
  const DataSet data(256, 50, false, 1);
  const QXFastFPDatabase db(data.File());
  const QXFPDatabaseOptions options(5, QXSimMeasure::Tanimoto);
  const std::vector<QXFingerPrint> fps = {QXFingerPrint(), data.Queries()[1],
                                          DataSet(1024, 1, false, 1).Queries()[1], data.Queries()[2]};
  const QXSystem::QXErrorCollector reports;
  const auto hits = db.GetSortedScores(std::span(fps), options);
  EXPECT_EQ(Texts(reports), (Strings{"QXFastFPDatabase::GetSortedScores() : invalid fingerprint type!",
                                     "QXFastFPDatabase::GetSortedScores() : fingerprint type mismatch!"}));
  ASSERT_EQ(hits.size(), fps.size());
  EXPECT_FALSE(hits[0]);
  EXPECT_EQ(Collect(hits[1]), Collect(db.GetSortedScores(fps[1], options)));
  EXPECT_FALSE(hits[2]);
  EXPECT_EQ(Collect(hits[3]), Collect(db.GetSortedScores(fps[3], options)));
  EXPECT_TRUE(hits[3]);
}

}  // namespace
}  // namespace QXFingrix
