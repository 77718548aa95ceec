// What happens when memory runs out, and that a search does not take memory for each entry.

#include <gtest/gtest.h>

#include "Allocations.h"
#include "Reports.h"
#include "database/DatabaseData.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXTest::FailEachAllocation;

TEST(FPDatabaseMemory, AnEntryIsStoredWhollyOrNotAtAll) {
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    const auto fps = MoleculeFPs(database.GetFPTypeBase(), 12);
    for (unsigned i = 0; i < fps.size(); ++i) {
      FailEachAllocation([&] { database.AddFP(fps[i]); },
                         [&](std::size_t) { ASSERT_EQ(database.NumFingerPrints(), i); });
      ASSERT_EQ(database.NumFingerPrints(), i + 1);
    }
    const auto expected = ScoreEach(kind.scoreOf(1, 0, 0), fps[2], fps, 0, 99);
    EXPECT_EQ(Collect(database.GetScores(fps[2])), expected);
  }
}

TEST(FPDatabaseMemory, QueriesWithoutMemoryAreReported) {
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    const auto fps = MoleculeFPs(database.GetFPTypeBase(), 12);
    AddAll(database, fps);
    for (const bool isSorted : {true, false}) {
      QXSystem::QXIter<QXSimScore> found;
      const QXSystem::QXErrorCollector reports;
      FailEachAllocation(
          [&] { found = isSorted ? database.GetSortedScores(fps[0]) : database.GetScores(fps[0]); },
          [&](std::size_t n) {
            ASSERT_FALSE(found);
            ASSERT_EQ(reports.Count(), n);
            ASSERT_EQ(reports.Messages().back().text, std::string(isSorted ? "QXFPDatabase::GetSortedScores()"
                                                                           : "QXFPDatabase::GetScores()") +
                                                          ": not enough system memory to store results!");
          });
      EXPECT_TRUE(found);
    }
  }
}

TEST(FPDatabaseMemory, ASearchAllocatesNothingForAnEntry) {
  class FirstBits final : public QXSimFuncBase {
   public:
    float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override {
      return static_cast<float>(a.FirstBit()) / static_cast<float>(b.FirstBit() + 2);
    }
    QXSimFuncBase* CreateCopy() const override { return new FirstBits; }
    std::string GetSimTypeString() const override { return "FirstBits"; }
  };
  for (const Kind& kind : kinds) {
    QXFPDatabase small(kind.code);
    QXFPDatabase large(kind.code);
    const auto fps = MoleculeFPs(small.GetFPTypeBase(), 300);
    AddAll(small, {fps.begin(), fps.begin() + 150});
    AddAll(large, fps);
    for (const bool isOwn : {false, true}) {
      if (isOwn && kind.code != QXFPType::Path) continue;
      std::size_t counts[2] = {};
      for (QXFPDatabase* database : {&small, &large}) {
        if (isOwn) database->SetSimFunc(FirstBits());
        database->GetSortedScores(fps[1], 5);  // leaves what a thread keeps
        const std::size_t before = QXTest::numAllocations;
        database->GetSortedScores(fps[1], 5);
        counts[database == &large] = QXTest::numAllocations - before;
      }
      EXPECT_EQ(counts[0], counts[1]) << kind.code;
      EXPECT_LT(counts[1], 30U) << kind.code;
    }
  }
}

}  // namespace
}  // namespace QXFingrix
