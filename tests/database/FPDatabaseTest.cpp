// Searches of every kind of database against the measures called one by one: the same indices, the same
// scores to the last bit, the same order.

#include "QXFingrix/QXFPDatabase.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <thread>

#include "NaiveHits.h"
#include "Reports.h"
#include "database/BitScorer.h"
#include "database/DatabaseData.h"

namespace QXFingrix {

std::ostream& operator<<(std::ostream& out, const QXSimScore& hit) {
  return out << '(' << hit.GetIdx() << ' ' << hit.GetScore() << ')';
}

namespace {

using namespace Testing;

void ExpectSame(const std::vector<QXSimScore>& found, const std::vector<QXSimScore>& expected) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    ASSERT_EQ(found[i].GetIdx(), expected[i].GetIdx()) << "at " << i;
    const double x = found[i].GetScore();
    const double y = expected[i].GetScore();
    ASSERT_TRUE(x == y || (std::isnan(x) && std::isnan(y))) << "at " << i << ": " << x << ", not " << y;
  }
}

// One measure and query: order, cutoff, range and limit are varied. The answer without options must be that
// of the database's own settings, the answer with options theirs.
void CheckSearches(QXFPDatabase& database, const Score& score, const QXFingerPrint& query,
                   const std::vector<QXFingerPrint>& entries, QXFPDatabaseOptions options, bool withOptions) {
  const unsigned size = static_cast<unsigned>(entries.size());
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const std::pair<unsigned, unsigned> ranges[] = {{0, 0}, {5, size - 3}, {130, size + 9}, {9, 9}, {size, 0}};
  for (const auto& [begin, end] : ranges) {
    if (withOptions && begin != 0) break;
    const auto scores = ScoreEach(score, query, entries, begin, end == 0 ? size : end);
    const float someScore = scores.empty() ? 0.5F : static_cast<float>(scores[scores.size() / 3].GetScore());
    for (const float cutoff : {std::nanf(""), -infinity, -0.2F, 0.2F, someScore, 1.0F, infinity}) {
      for (const bool descending : {true, false}) {
        SCOPED_TRACE(testing::Message() << begin << '-' << end << " cutoff " << cutoff << ' ' << descending);
        options.ClearCutoff();
        if (!std::isnan(cutoff)) options.SetCutoff(cutoff);
        options.SetDescendingOrder(descending);
        if (!withOptions) {
          database.SetDescendingOrder(descending);
          database.ClearCutoff();
          if (options.HasCutoff()) database.SetCutoff(cutoff);
        }
        ExpectSame(
            Collect(withOptions ? database.GetScores(query, options) : database.GetScores(query, begin, end)),
            NaiveKept(scores, options));
        for (const unsigned limit : {0U, 7U, 4294967295U}) {
          options.SetLimit(limit);
          ExpectSame(Collect(withOptions ? database.GetSortedScores(query, options)
                                         : database.GetSortedScores(query, limit, begin, end)),
                     NaiveSorted(scores, options));
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(FPDatabase, AgreesWithTheMeasureOfEveryEntry) {
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    const auto fps = MoleculeFPs(database.GetFPTypeBase(), 300);
    ASSERT_GT(fps.size(), 300U);
    AddAll(database, fps);
    ASSERT_EQ(database.NumFingerPrints(), fps.size());
    for (const QXFingerPrint& query : {fps[3], fps[20], fps[250]}) {
      for (unsigned measure = 1; measure <= kind.numMeasures; ++measure) {
        SCOPED_TRACE(testing::Message() << kind.code << ' ' << QXGetSimilarityMeasureName(measure));
        database.SetSimFunc(measure);
        CheckSearches(database, kind.scoreOf(measure, numberedAlpha, numberedBeta), query, fps, {}, false);
        QXFPDatabaseOptions options(10, measure);
        options.SetTverskyCoeffs(0.3F, 0.9F);
        database.SetSimFunc(measure % kind.numMeasures + 1, false);  // the options count
        database.SetCutoff(3.0F);
        CheckSearches(database, kind.scoreOf(measure, 0.3F, 0.9F), query, fps, options, true);
        if (HasFatalFailure()) return;
      }
    }
  }
}

// Coefficients at which scores are not monotone, not finite or rounded to nothing.
TEST(FPDatabase, AgreesWithTverskyOfAnyCoefficients) {
  QXFPDatabase database(QXFPType::Path);
  const auto fps = MoleculeFPs(database.GetFPTypeBase(), 150);
  AddAll(database, fps);
  const float inf = std::numeric_limits<float>::infinity();
  const std::pair<float, float> coefficients[] = {
      {0, 0},  {1, 0},   {0, 1},     {1e-7F, 3e-8F}, {1e-42F, 0},       {-0.5F, 2},
      {2, -1}, {-1, -1}, {1e38F, 1}, {inf, 0},       {0, std::nanf("")}};
  for (const auto& [alpha, beta] : coefficients) {
    SCOPED_TRACE(testing::Message() << alpha << ' ' << beta);
    database.SetSimFunc(QXTverskySim(alpha, beta));
    CheckSearches(database, BitScore(QXSimMeasure::Tversky, alpha, beta), fps[7], fps, {}, false);
    if (HasFatalFailure()) return;
  }
}

// Small fingerprints in families, dense ones among them, so that bars rise slowly and scores tie; enough of
// them for many chunks of memory.
TEST(FPDatabase, AgreesOnManySmallFingerprints) {
  QXFPDatabase database(QXFPType::MACCS166);
  std::mt19937_64 random(7);
  std::vector<QXFingerPrint> fps;
  QXFingerPrint fp = MakeEmpty(database.GetFPTypeBase());
  for (int i = 0; i < 100000; ++i) {
    for (std::size_t flips = random() % 8; flips > 0; --flips) fp.ToggleBit(random() % 166);
    if (random() % 1000 == 0) fp.ClearBits();
    if (random() % 1000 == 0) fp.NegateBits();
    fps.push_back(fp);
  }
  AddAll(database, fps);
  for (unsigned measure = 1; measure <= 6; ++measure) {
    const auto scores = ScoreEach(BitScore(measure, 0.95F, 0.05F), fps[500], fps, 0, 100000);
    for (const unsigned limit : {1U, 100U, 30000U}) {
      for (const bool descending : {true, false}) {
        QXFPDatabaseOptions options(limit, measure);
        options.SetDescendingOrder(descending);
        SCOPED_TRACE(testing::Message() << measure << ' ' << limit << ' ' << descending);
        ExpectSame(Collect(database.GetSortedScores(fps[500], options)), NaiveSorted(scores, options));
        options.SetCutoff(0.75F);
        ExpectSame(Collect(database.GetScores(fps[500], options)), NaiveKept(scores, options));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(FPDatabase, ScoresFingerprintsOfOtherSizesAsTheMeasureDoes) {
  QXFPDatabase database(QXFPType::Path);
  auto fps = MoleculeFPs(database.GetFPTypeBase(), 40);
  for (const auto& [at, size] : {std::pair(0, 4095U), {7, 0U}, {8, 64U}, {9, 64U}, {30, 70000U}})
    fps[at].SetSize(size);
  AddAll(database, fps);
  for (const std::size_t q : {1, 7, 8, 30}) {
    for (unsigned measure = 1; measure <= 6; ++measure) {
      database.SetSimFunc(measure, measure != QXSimMeasure::Manhattan);
      std::vector<QXSimScore> found;
      std::vector<QXSimScore> expected;
      const auto reportsOf = [](auto call) {  // in any order
        auto reports = QXTest::ReportsOf(call);
        std::ranges::sort(reports);
        return reports;
      };
      const auto reports = reportsOf([&] { found = Collect(database.GetScores(fps[q])); });
      EXPECT_EQ(reports, reportsOf([&] {
                  expected = ScoreEach(BitScore(measure, numberedAlpha, numberedBeta), fps[q], fps, 0, 99);
                }));
      ExpectSame(found, expected);
      QXFPDatabaseOptions options(5, measure);
      options.SetDescendingOrder(database.GetDescendingOrder());
      EXPECT_EQ(reports, reportsOf([&] { found = Collect(database.GetSortedScores(fps[q], 5)); }));
      ExpectSame(found, NaiveSorted(expected, options));
      if (HasFatalFailure()) return;
    }
  }
}

// How many bits the query has too many or too few; below 0 for the latter.
class BitDifference final : public QXSimFuncBase {
 public:
  explicit BitDifference(float offset) : offset_(offset) {}
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override {
    return static_cast<float>(a.CountBits()) - static_cast<float>(b.CountBits()) + offset_;
  }
  QXSimFuncBase* CreateCopy() const override {
    return std::isnan(offset_) ? nullptr : new BitDifference(offset_);
  }
  std::string GetSimTypeString() const override { return "BitDifference"; }

 private:
  float offset_;
};

TEST(FPDatabase, TakesACopyOfAMeasureOfOnesOwn) {
  QXFPDatabase database(QXFPType::Path);
  const auto fps = MoleculeFPs(database.GetFPTypeBase(), 150);
  AddAll(database, fps);
  database.SetSimFunc(BitDifference(1.0F));
  CheckSearches(database, BitDifference(1.0F), fps[5], fps, {}, false);
  database.SetDescendingOrder(false);
  EXPECT_EQ(
      QXTest::ReportsOf([&] { database.SetSimFunc(BitDifference(std::nanf("")), true); }),
      QXTest::Reports{"Warning: QXFPDatabase::SetSimFunc() the similarity measure gives no copy of itself"});
  EXPECT_FALSE(database.GetDescendingOrder());
  CheckSearches(database, BitDifference(1.0F), fps[6], fps, {}, false);
  CheckSearches(database, QXDice, fps[6], fps, QXFPDatabaseOptions(9, QXSimMeasure::Dice), true);
}

// A molecule's queries are those of its fingerprint.
TEST(FPDatabase, GivesBackFingerprintsAndTakesMoleculesForTheirs) {
  const QXChem::QXGraphMol mol = test::ReadSmiles("CC(=O)Oc1ccccc1C(=O)O");
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    auto fps = MoleculeFPs(database.GetFPTypeBase(), 50);
    AddAll(database, fps);
    const QXFingerPrint& fp = fps.emplace_back();
    ASSERT_TRUE(QXMakeFP(fps.back(), mol, database.GetFPTypeBase()));
    EXPECT_EQ(database.AddFP(mol), fps.size() - 1);
    auto iter = database.GetFingerPrints();
    for (int round = 0; round < 2; ++round, iter.ToFirst()) {
      std::size_t i = 0;
      for (const QXFingerPrint& entry : iter) ASSERT_TRUE(entry == fps.at(i++));
      EXPECT_EQ(i, fps.size());
    }
    const QXFPDatabaseOptions options(3, QXSimMeasure::Tanimoto);
    EXPECT_EQ(Collect(database.GetSortedScores(mol, 3)), Collect(database.GetSortedScores(fp, 3)));
    EXPECT_EQ(Collect(database.GetSortedScores(mol, options)), Collect(database.GetSortedScores(fp, 3)));
    EXPECT_EQ(Collect(database.GetScores(mol, 4, 9)), Collect(database.GetScores(fp, 4, 9)));
    EXPECT_EQ(Collect(database.GetScores(mol, options)), Collect(database.GetScores(fp)));
  }
}

TEST(FPDatabase, IsQueriedByManyThreads) {
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    const auto fps = MoleculeFPs(database.GetFPTypeBase(), 200);
    AddAll(database, fps);
    QXFPDatabase strangers(kind.code);  // unhashed queries hold tokens that no entry has
    AddAll(strangers, {fps.begin(), fps.begin() + 20});
    std::vector<std::jthread> threads;
    for (unsigned t = 0; t < 4; ++t) {
      threads.emplace_back([&, t] {
        for (unsigned q = t; q < fps.size(); q += 4) {
          const auto best = database.GetSortedScores(fps[q], 1);
          EXPECT_EQ(best ? best->GetScore() : 1.0, 1.0) << q;  // itself, unless it has no token
          const auto scores = ScoreEach(kind.scoreOf(1, 0, 0), fps[q], fps, 0, 20);
          ExpectSame(Collect(strangers.GetScores(fps[q])), scores);
        }
      });
    }
  }
}

}  // namespace
}  // namespace QXFingrix
