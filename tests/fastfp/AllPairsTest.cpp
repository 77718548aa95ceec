// All against all beside the plain double loop, to the last bit: every measure, widths and numbers of records
// on both sides of tiles and bands, real fingerprints, empty and damaged records.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXMakeFP.h"
#include "fastfp/DataSet.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;

using Scores = std::vector<std::vector<double>>;

Scores AllScores(const DataSet& data, const QXFPDatabaseOptions& options) {
  Scores scores;
  for (const NaiveRecord& query : data.Records()) {
    std::vector<double>& row = scores.emplace_back();
    for (const QXSimScore& score : NaiveScores(data.Records(), query, options))
      row.push_back(score.GetScore());
  }
  return scores;
}

// Equal to the last bit, or both not a number.
template <class T>
bool IsSame(const std::vector<T>& x, const std::vector<T>& y) {
  return std::ranges::equal(x, y, [](T a, T b) { return a == b || (a != a && b != b); });
}

template <class T>
std::vector<T> Collect(const QXSystem::QXIter<T>& iter) {
  std::vector<T> items;
  for (const T& item : iter) items.push_back(item);
  return items;
}

void CheckAllScores(const QXFastFPDatabase& db, const Scores& scores, const QXFPDatabaseOptions& options) {
  std::vector<float> expected;
  for (const auto& row : scores) expected.insert(expected.end(), row.begin(), row.end());
  ASSERT_TRUE(IsSame(db.GetAllScores(options), expected));
}

void CheckHistograms(const QXFastFPDatabase& db, const Scores& scores, const QXFPDatabaseOptions& options) {
  const bool isTversky = options.GetSimFunc() == QXSimMeasure::Tversky;
  QXFPHistogram histogram(7, 0.0, 1.0);
  QXFPVariogram variogram(7, 0.0, 1.0);
  std::vector<float> values;
  for (std::size_t i = 0; i < scores.size(); ++i) values.push_back(std::sin(static_cast<float>(i)));
  for (std::size_t i = 0; i < scores.size(); ++i) {
    for (std::size_t j = isTversky ? 0 : i + 1; j < scores.size(); ++j) {
      histogram.AddSample(scores[i][j]);
      variogram.AddSample(static_cast<float>(scores[i][j]), values[i] - values[j]);
    }
  }
  ASSERT_EQ(Collect(db.GetHistogram(options, 7).GetCounts()), Collect(histogram.GetCounts()));
  if (isTversky) return;
  const QXFPVariogram found = db.GetVariogram(values, options, 7);
  ASSERT_EQ(Collect(found.GetCounts()), Collect(variogram.GetCounts()));
  ASSERT_TRUE(IsSame(found.GetVariogram(), variogram.GetVariogram()));
}

std::vector<QXSimScorePair> NearestPairs(const Scores& scores, const QXFPDatabaseOptions& options) {
  const bool descending = options.GetDescendingOrder();
  std::vector<QXSimScorePair> pairs;
  for (unsigned i = 0; i < scores.size(); ++i) {
    std::vector<QXSimScorePair> row;
    for (unsigned j = 0; j < scores.size(); ++j) {
      const auto score = static_cast<float>(scores[i][j]);
      const bool passes = descending ? score >= options.GetCutoff() : score <= options.GetCutoff();
      if (options.HasCutoff() ? passes : !std::isnan(score)) row.emplace_back(i, j, score);
    }
    std::ranges::stable_sort(row, [&](const QXSimScorePair& x, const QXSimScorePair& y) {
      return descending ? x.GetScore() > y.GetScore() : x.GetScore() < y.GetScore();
    });
    if (options.GetLimit() != 0 && row.size() > options.GetLimit()) row.resize(options.GetLimit());
    pairs.insert(pairs.end(), row.begin(), row.end());
  }
  return pairs;
}

void CheckSparseMatrices(const QXFastFPDatabase& db, const Scores& scores, QXFPDatabaseOptions options) {
  for (const bool descending : {true, false}) {
    options.SetDescendingOrder(descending);
    for (const float cutoff : {-1.0F, 0.0F, 0.5F, 1.0F}) {
      options.ClearCutoff();
      if (cutoff >= 0.0F) options.SetCutoff(cutoff);
      for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{5}, scores.size()}) {
        if (limit > scores.size()) continue;
        options.SetLimit(static_cast<unsigned>(limit));
        const QXErrorCollector reports;
        ASSERT_EQ(Collect(db.GetSparseMatrix(options)), NearestPairs(scores, options))
            << "descending " << descending << " cutoff " << cutoff << " limit " << limit;
      }
    }
  }
}

void CheckDataSet(const DataSet& data, unsigned memoryType = QXFastFPDatabaseMemoryType::MemoryMapped) {
  const QXFastFPDatabase db(data.File(), memoryType);
  for (unsigned measure = 1; measure <= 6; ++measure) {
    SCOPED_TRACE(testing::Message() << data.Records().size() << " records, "
                                    << QXGetSimilarityMeasureName(measure));
    const QXFPDatabaseOptions options(0, measure);
    const Scores scores = AllScores(data, options);
    CheckAllScores(db, scores, options);
    CheckHistograms(db, scores, options);
    CheckSparseMatrices(db, scores, options);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(AllPairs, AgreeWithThePlainDoubleLoop) {
  unsigned seed = 1;
  for (const unsigned numBits : {256U, 1024U, 2304U}) {
    for (const std::size_t numRecords : {0U, 1U, 9U, 64U, 197U}) {
      CheckDataSet(DataSet(numBits, numRecords, false, seed++));
    }
    CheckDataSet(DataSet(numBits, 130, true, seed++));
    if (HasFatalFailure()) return;
  }
}

TEST(AllPairs, AgreeWithThePlainDoubleLoopOverRealFingerPrints) {
  const QXFPTypeBase* const type = PathType(4096);
  QXChem::QXMolDatabase molecules;
  ASSERT_TRUE(molecules.Open(QX_SOURCE_DIR "/data/molecules.smi"));
  std::vector<QXFingerPrint> fps;
  QXChem::QXGraphMol mol;
  for (unsigned i = 0; i < molecules.GetMaxMolIdx() && fps.size() < 300; ++i) {
    QXFingerPrint fp;
    if (molecules.GetMolecule(mol, i) && QXMakeFP(fp, mol, type)) fps.push_back(fp);
  }
  ASSERT_EQ(fps.size(), 300U);
  CheckDataSet(DataSet(type, fps), QXFastFPDatabaseMemoryType::InMemory);
}

TEST(AllPairs, ATracerIsAdvancedByEachComparison) {
  struct Counts {
    std::uint64_t updates = 0;
    std::uint64_t totals = 0;
  };
  class Tracer final : public QXSystem::QXDots {
   public:
    explicit Tracer(Counts& counts) : QXDots(0, 0, "", nullptr), counts_(counts) {}
    std::unique_ptr<QXDots> CreateCopy() const override { return std::make_unique<Tracer>(*this); }
    void Update(unsigned n) override { counts_.updates += n; }
    void Total() override { ++counts_.totals; }

   private:
    Counts& counts_;
  };
  constexpr std::uint64_t num = 700;
  const DataSet data(256, num, false, 1);
  const QXFastFPDatabase db(data.File());
  for (const unsigned measure : {QXSimMeasure::Tanimoto, QXSimMeasure::Tversky}) {
    const QXFPDatabaseOptions options(3, measure);
    const std::vector<float> values(num);
    const bool isTversky = measure == QXSimMeasure::Tversky;
    Counts counts;
    const Tracer tracer(counts);
    db.GetAllScores(options, &tracer);
    db.GetHistogram(options, 3, &tracer);
    db.GetSparseMatrix(options, &tracer);
    if (!isTversky) db.GetVariogram(values, options, 3, &tracer);
    EXPECT_EQ(counts.updates, isTversky ? 3 * num * num : 4 * num * (num + 1) / 2);
    EXPECT_EQ(counts.totals, isTversky ? 3U : 4U);
  }
}

TEST(AllPairs, ReportWhatCannotBeDone) {
  const DataSet data(256, 4, false, 1);
  const QXFastFPDatabase db(data.File());
  const QXFastFPDatabase noDatabase(data.File() + ".none");
  const QXErrorCollector reports;
  const QXFPDatabaseOptions tanimoto(0, QXSimMeasure::Tanimoto);
  const QXFPDatabaseOptions tversky(5, QXSimMeasure::Tversky);

  EXPECT_EQ(db.GetVariogram({1, 2, 3, 4}, tversky, 3).GetVariogram(), std::vector<double>(3, 0.0));
  EXPECT_EQ(db.GetVariogram({1, 2, 3}, tanimoto, 3).NumSamples(), 0U);
  EXPECT_EQ(db.GetVariogram({1, 2, 3, 4, 5}, tanimoto, 3).NumSamples(), 0U);
  EXPECT_FALSE(db.GetSparseMatrix(tversky));
  EXPECT_EQ(Collect(db.GetSparseMatrix(tanimoto)).size(), 16U);
  EXPECT_TRUE(noDatabase.GetAllScores(tanimoto).empty());
  EXPECT_EQ(noDatabase.GetHistogram(tanimoto, 3).GetNumBins(), 3U);
  EXPECT_EQ(noDatabase.GetVariogram({}, tanimoto, 3).GetNumBins(), 3U);
  EXPECT_FALSE(noDatabase.GetSparseMatrix(tanimoto));
  const std::string invalid = " : invalid QXFastFPDatabase object!";
  EXPECT_EQ(
      Texts(reports),
      (Strings{"QXFastFPDatabase::GetVariogram() : Tversky similarity is not supported!",
               "QXFastFPDatabase::GetVariogram() : 3 values for 4 fingerprints!",
               "QXFastFPDatabase::GetVariogram() : 5 values for 4 fingerprints!",
               "QXFastFPDatabase::GetSparseMatrix() set to retrieve more nearest neighbors (5) than there "
               "are fingerprints (4)!",
               "QXFastFPDatabase::GetSparseMatrix() : set to retrieve all nxn scores!",
               "QXFastFPDatabase::GetSparseMatrix() : no cutoff specified, all results will be returned!",
               "QXFastFPDatabase::GetAllScores()" + invalid, "QXFastFPDatabase::GetHistogram()" + invalid,
               "QXFastFPDatabase::GetVariogram()" + invalid,
               "QXFastFPDatabase::GetSparseMatrix()" + invalid}));
}

}  // namespace
}  // namespace QXFingrix
