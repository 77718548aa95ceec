#include <gtest/gtest.h>

#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPVersion.h"
#include "Reports.h"
#include "database/DatabaseData.h"
#include "fingerprint/FingerPrintText.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXTest::Reports;
using QXTest::ReportsOf;

// A user's descriptor of a kind, or of none.
class OwnType final : public QXFPTypeBase {
 public:
  explicit OwnType(unsigned code) : code_(code) {}
  unsigned GetFPType() const override { return code_; }
  std::string GetFPTypeString() const override { return "Own"; }

 private:
  unsigned code_;
};

TEST(FPDatabaseMessages, EveryKindHasItsDefaultTypeOrTheOneGiven) {
  for (const unsigned code : {101U, 102U, 103U, 104U, 105U, 9000U, 9001U, 9002U}) {
    QXFPDatabase database(code);
    EXPECT_TRUE(database.IsValid());
    EXPECT_EQ(database.GetFPTypeBase(), QXGetFPType(code, false, 0));
    const OwnType type(code);
    QXFPDatabase own(&type);
    EXPECT_EQ(own.GetFPTypeBase(), &type);
    QXFingerPrint fp = MakeEmpty(database.GetFPTypeBase());
    EXPECT_EQ(own.AddFP(fp), QXSimScore::NoIndex);
    fp.SetFPTypeBase(&type);
    EXPECT_EQ(own.AddFP(fp), 0U);
  }
}

TEST(FPDatabaseMessages, AnUnknownTypeLeavesADatabaseThatDoesNothing) {
  const Reports unknown = {"Error: QXFPDatabase::QXFPDatabase() unknown fingerprint type"};
  for (const unsigned code : {0U, 100U, 106U, 9003U, 4294967295U}) {
    const OwnType type(code);
    EXPECT_EQ(ReportsOf([&] { QXFPDatabase{code}; }), unknown);
    EXPECT_EQ(ReportsOf([&] { QXFPDatabase{&type}; }), unknown);
  }
  EXPECT_EQ(ReportsOf([] {
              QXFPDatabase database(nullptr);
              EXPECT_FALSE(database.IsValid());
              EXPECT_EQ(database.GetFPTypeBase(), nullptr);
              QXFingerPrint fp;
              const QXChem::QXGraphMol mol = test::ReadSmiles("CC");
              EXPECT_EQ(database.AddFP(fp), QXSimScore::NoIndex);
              EXPECT_EQ(database.AddFP(mol), QXSimScore::NoIndex);
              EXPECT_EQ(database.NumFingerPrints(), 0U);
              database.SetSimFunc(9);
              database.SetSimFunc(QXDiceSim());
              database.SetCutoff(0.5F);
              EXPECT_FALSE(database.HasCutoff() || database.GetScores(fp) || database.GetSortedScores(mol) ||
                           database.GetFingerPrints());
            }),
            unknown);
}

TEST(FPDatabaseMessages, StrangersAreRefused) {
  const QXFPDatabaseOptions options;
  const Reports scores = {"Warning: QXFPDatabase::GetScores() fingerprint type mismatch!"};
  const Reports sorted = {"Warning: QXFPDatabase::GetSortedScores() fingerprint type mismatch!"};
  const Reports noScores = {
      "Warning: QXFPDatabase::GetScores() the fingerprint of the molecule cannot be made!"};
  const Reports noSorted = {
      "Warning: QXFPDatabase::GetSortedScores() the fingerprint of the molecule cannot be made!"};
  const QXChem::QXGraphMol invalid = test::ReadSmiles("C1");
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    AddAll(database, MoleculeFPs(database.GetFPTypeBase(), 5));
    const unsigned size = database.NumFingerPrints();
    for (const QXFPTypeBase* type :
         {(const QXFPTypeBase*)nullptr, QXGetFPType(QXFPType::MACCS166, false, 0)}) {
      QXFingerPrint fp;
      fp.SetFPTypeBase(type);
      EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(database.AddFP(fp), QXSimScore::NoIndex); }), QXTest::silence);
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetScores(fp)); }), scores);
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetScores(fp, options)); }), scores);
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetSortedScores(fp)); }), sorted);
      EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetSortedScores(fp, options)); }), sorted);
    }
    EXPECT_EQ(ReportsOf([&] { EXPECT_EQ(database.AddFP(invalid), QXSimScore::NoIndex); }), QXTest::silence);
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetScores(invalid)); }), noScores);
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetScores(invalid, options)); }), noScores);
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetSortedScores(invalid)); }), noSorted);
    EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetSortedScores(invalid, options)); }), noSorted);
    EXPECT_EQ(database.NumFingerPrints(), size);
  }
}

TEST(FPDatabaseMessages, UnknownMeasuresAreTanimoto) {
  const Reports unknown = {"Warning: QXFPDatabase::SetSimFunc() unknown similarity measure"};
  for (const Kind& kind : kinds) {
    QXFPDatabase database(kind.code);
    const auto fps = MoleculeFPs(database.GetFPTypeBase(), 30);
    AddAll(database, fps);
    const auto expected = ScoreEach(kind.scoreOf(QXSimMeasure::Tanimoto, 0, 0), fps[2], fps, 0, 12);
    for (const unsigned measure : {0U, 2U, 6U, 7U, 4294967295U}) {
      if (measure != 0 && measure <= kind.numMeasures) continue;
      database.SetSimFunc(QXSimMeasure::Tanimoto, true);
      EXPECT_EQ(ReportsOf([&] { database.SetSimFunc(measure, false); }), unknown);
      EXPECT_FALSE(database.GetDescendingOrder());
      EXPECT_EQ(Collect(database.GetScores(fps[2], 0, 12)), expected);
      if (!QXIsSimilarityMeasure(measure)) continue;
      EXPECT_EQ(
          ReportsOf([&] { EXPECT_TRUE(database.GetSortedScores(fps[2], QXFPDatabaseOptions(1, measure))); }),
          unknown);
    }
  }
}

TEST(FPDatabaseMessages, LingoAndUnhashedDatabasesTakeNoMeasureOfOnesOwn) {
  const std::pair<unsigned, Reports> cases[] = {
      {QXFPType::Lingo,
       {"Warning: QXFPDatabase::SetSimFunc() user defined similarity measure not allowed with Lingo "
        "database"}},
      {QXFPType::UHTree,
       {"Warning: QXFPDatabase::SetSimFunc() user defined similarity measure not allowed with unhashed "
        "database"}}};
  for (const auto& [code, reports] : cases) {
    QXFPDatabase database(code);
    EXPECT_EQ(ReportsOf([&] { database.SetSimFunc(QXDiceSim(), false); }), reports);
    EXPECT_TRUE(database.GetDescendingOrder());
  }
}

TEST(FPDatabaseMessages, ALingoQueryMustHoldALingoText) {
  QXFPDatabase database(QXFPType::Lingo);
  QXFingerPrint fp;
  fp.SetFPTypeBase(database.GetFPTypeBase());
  ASSERT_TRUE(SetFPText(fp, "CC\x01OCC"));
  EXPECT_EQ(database.AddFP(fp), 0U);
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetScores(fp)); }),
            Reports{"Warning: QXFPDatabase::GetScores() cannot initialize lingo similarity!"});
  EXPECT_EQ(ReportsOf([&] { EXPECT_FALSE(database.GetSortedScores(fp)); }),
            Reports{"Warning: QXFPDatabase::GetSortedScores() cannot initialize lingo similarity!"});
}

}  // namespace
}  // namespace QXFingrix
