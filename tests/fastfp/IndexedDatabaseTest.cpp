// A database with an index beside one without: every query must give the same.

#include <gtest/gtest.h>

#include <random>

#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXFastFPIndex.h"
#include "Reports.h"
#include "fastfp/DataSet.h"

namespace QXFingrix {
namespace {

using namespace Testing;
namespace MemoryType = QXFastFPDatabaseMemoryType;
namespace IndexUse = QXFastFPDatabaseIndex;
using Hits = std::vector<QXSimScore>;

Hits Collect(const QXSystem::QXIter<QXSimScore>& iter) {
  Hits hits;
  for (const QXSimScore& hit : iter) hits.push_back(hit);
  return hits;
}

// Queries like the records, and others.
std::vector<QXFingerPrint> MakeQueries(const QXFastFPDatabase& db, const DataSet& data, std::size_t num) {
  std::mt19937_64 random(num);
  std::vector<QXFingerPrint> queries = data.Queries();
  while (queries.size() < num) {
    QXFingerPrint fp;
    EXPECT_TRUE(db.GetFingerPrint(fp, random() % db.NumFingerPrints()));
    for (std::size_t flips = random() % 9; flips > 0; --flips) fp.ToggleBit(random() % fp.GetSize());
    queries.push_back(fp);
  }
  return queries;
}

void ExpectSame(const QXFastFPDatabase& plain, const QXFastFPDatabase& indexed,
                const std::vector<QXFingerPrint>& queries, const QXFPDatabaseOptions& options) {
  std::vector<Hits> expected;
  for (const QXFingerPrint& query : queries)
    expected.push_back(Collect(plain.GetSortedScores(query, options)));
  for (const std::size_t num : {std::size_t{5}, queries.size()}) {  // few are searched for one by one
    const auto found = indexed.GetSortedScores(std::span(queries).first(num), options);
    ASSERT_EQ(found.size(), num);
    for (std::size_t i = 0; i < num; ++i) ASSERT_EQ(Collect(found[i]), expected[i]) << "query " << i;
  }
  for (std::size_t i = 0; i < 4; ++i) {
    ASSERT_EQ(Collect(indexed.GetSortedScores(queries[i], options)), expected[i]) << "query " << i;
    ASSERT_EQ(Collect(indexed.GetScores(queries[i], options)), Collect(plain.GetScores(queries[i], options)));
  }
}

void CheckAllMeasures(const QXFastFPDatabase& plain, const QXFastFPDatabase& indexed,
                      const std::vector<QXFingerPrint>& queries) {
  for (unsigned measure = QXSimMeasure::Tanimoto; measure <= QXSimMeasure::Manhattan; ++measure) {
    for (const unsigned limit : {0U, 7U}) {
      for (const bool descending : {true, false}) {
        SCOPED_TRACE("measure " + std::to_string(measure) + ", limit " + std::to_string(limit));
        QXFPDatabaseOptions options(limit, measure);
        options.SetDescendingOrder(descending);
        options.SetNumProcessors(1 + measure % 3);
        if (measure % 2 == 0 || limit == 0)
          options.SetCutoff(measure == QXSimMeasure::Manhattan ? 0.1F : 0.6F);
        ASSERT_NO_FATAL_FAILURE(ExpectSame(plain, indexed, queries, options));
      }
    }
  }
}

TEST(IndexedDatabase, FindsWhatAScanFinds) {
  for (const unsigned numBits : {256U, 2304U}) {
    const DataSet data(numBits, 4200, false, numBits);
    const QXFastFPDatabase plain(data.File());
    const std::vector<QXFingerPrint> queries = MakeQueries(plain, data, 100);
    CheckAllMeasures(plain, QXFastFPDatabase(data.File(), MemoryType::InMemory, IndexUse::Build), queries);
    ASSERT_TRUE(QXMakeFastFPIndexFile(data.File(), 2));
    for (const unsigned memoryType : {MemoryType::MemoryMapped, MemoryType::InMemory}) {
      CheckAllMeasures(plain, QXFastFPDatabase(data.File(), memoryType), queries);
    }
  }
}

// What the searches of one query say they do.
QXTest::Reports WaysOf(const QXFastFPDatabase& db, const QXFingerPrint& query,
                       const QXFPDatabaseOptions& options) {
  return QXTest::ReportsOf([&] { db.GetSortedScores(query, options); }, QXSystem::QXErrorLevel::Verbose);
}

TEST(IndexedDatabase, SaysWhetherItUsesTheIndex) {
  const QXTest::Reports searched = {"Verbose: QXFastFPDatabase::GetSortedScores() : searching the index"};
  const QXTest::Reports scanned = {"Verbose: QXFastFPDatabase::GetSortedScores() : scanning the records"};
  const DataSet data(1024, 5000, false, 1);
  ASSERT_TRUE(QXMakeFastFPIndexFile(data.File(), 1));
  const QXFastFPDatabase db(data.File());
  QXFPDatabaseOptions options(10, QXSimMeasure::Tanimoto);
  EXPECT_EQ(WaysOf(db, data.Queries()[2], options), searched);
  EXPECT_EQ(WaysOf(QXFastFPDatabase(data.File(), MemoryType::MemoryMapped, IndexUse::None), data.Queries()[2],
                   options),
            scanned);
  options.SetDescendingOrder(false);  // the least similar ones
  EXPECT_EQ(WaysOf(db, data.Queries()[2], options), scanned);
  QXFingerPrint full = data.Queries()[2];
  for (std::size_t i = 0; i < full.GetSize(); ++i) full.SetBitOn(i);
  options.SetDescendingOrder(true);
  EXPECT_EQ(WaysOf(db, full, options), scanned);
}

TEST(IndexedDatabase, DamagedRecordsAreScanned) {
  const DataSet damaged(256, 5000, true, 2);
  const auto reports = QXTest::ReportsOf([&] {
    const QXFastFPDatabase db(damaged.File(), MemoryType::MemoryMapped, IndexUse::Build);
    EXPECT_TRUE(db.IsValid());
    EXPECT_EQ(WaysOf(db, damaged.Queries()[1], QXFPDatabaseOptions(3, QXSimMeasure::Dice)).size(), 1U);
  });
  EXPECT_EQ(reports, QXTest::Reports{"Warning: QXFastFPDatabase::QXFastFPDatabase() : " + damaged.File() +
                                     " cannot have an index!"});
}

}  // namespace
}  // namespace QXFingrix
