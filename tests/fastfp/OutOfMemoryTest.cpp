// What happens when memory runs out, operation by operation, and how many threads a search starts: both seen
// through the allocator.

#include <gtest/gtest.h>

#include <functional>

#include "Allocations.h"
#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "fastfp/DataSet.h"
#include "fastfp/FastFPMemoryMapDatabaseImpl.h"

namespace QXFingrix {
namespace {

using namespace Testing;
using QXSystem::QXErrorCollector;
using QXTest::FailEachAllocation;

const std::string noMemory = ": not enough system memory to store results!";

TEST(FastFPMemory, EveryOperationReportsThatMemoryRanOut) {
  const DataSet data(256, 20, false, 1);
  const QXFastFPDatabase db(data.File());
  const QXFPDatabaseOptions options(3, QXSimMeasure::Tanimoto);
  const QXFPDatabaseOptions tversky(3, QXSimMeasure::Tversky);
  const std::vector<float> values(20, 1.0F);
  const std::vector<QXFingerPrint>& fps = data.Queries();
  const std::pair<const char*, std::function<bool()>> cases[] = {
      // whether there is a result
      {"GetAllScores", [&] { return !db.GetAllScores(options).empty(); }},
      {"GetAllScores", [&] { return !db.GetAllScores(tversky).empty(); }},
      {"GetHistogram", [&] { return db.GetHistogram(options, 5).NumSamples() != 0; }},
      {"GetVariogram", [&] { return db.GetVariogram(values, options, 5).NumSamples() != 0; }},
      {"GetSparseMatrix", [&] { return static_cast<bool>(db.GetSparseMatrix(options)); }},
      {"GetScores", [&] { return static_cast<bool>(db.GetScores(fps[1], options)); }},
      {"GetRawScores", [&] { return !db.GetRawScores(fps[1], options).empty(); }},
      {"GetSortedScores", [&] { return static_cast<bool>(db.GetSortedScores(fps[1], options)); }},
      {"GetSortedScores",
       [&] {
         const auto hits = db.GetSortedScores(std::span(fps), options);
         return !hits.empty() && hits.back();
       }},
      {"GetMolculeIndex", [&] { return db.GetMoleculeIndex(0) == 0; }},
  };
  for (const auto& [name, call] : cases) {
    SCOPED_TRACE(name);
    const QXErrorCollector reports;
    bool isFound = false;
    std::size_t numFailures = 0;
    FailEachAllocation(
        [&, &call = call] {
          isFound = true;  // stays when an exception gets out
          isFound = call();
        },
        [&, name = name](std::size_t n) {
          numFailures = n;
          ASSERT_FALSE(isFound);
          ASSERT_EQ(reports.Count(), n);
          ASSERT_EQ(Texts(reports).back(), "QXFastFPDatabase::" + std::string(name) + "()" + noMemory);
        });
    if (HasFatalFailure()) return;
    EXPECT_TRUE(isFound);
    EXPECT_GT(numFailures, 0U);
  }
}

// A refusal gives a histogram without samples, whose bins take memory too.
TEST(FastFPMemory, RefusalsReportThatMemoryRanOut) {
  const DataSet data(256, 4, false, 1);
  const QXFastFPDatabase db(data.File());
  const QXErrorCollector opening;
  const QXFastFPDatabase none(data.File() + ".none");
  const QXFPDatabaseOptions tversky(3, QXSimMeasure::Tversky);
  const std::pair<const char*, std::function<unsigned()>> cases[] = {
      {"GetHistogram", [&] { return none.GetHistogram(tversky, 5).GetNumBins(); }},
      {"GetVariogram", [&] { return none.GetVariogram({}, tversky, 5).GetNumBins(); }},
      {"GetVariogram", [&] { return db.GetVariogram({}, tversky, 5).GetNumBins(); }},
  };
  for (const auto& [name, call] : cases) {
    const QXErrorCollector reports;
    std::size_t numWithoutBins = 0;
    unsigned numBins = 0;
    FailEachAllocation(
        [&, &call = call] {
          numBins = 99;  // stays when the report of the refusal finds no memory
          numBins = call();
        },
        [&](std::size_t) { numWithoutBins += numBins == 0; });
    EXPECT_EQ(numBins, 5U);
    const std::string expected = "QXFastFPDatabase::" + std::string(name) + "()" + noMemory;
    EXPECT_GT(numWithoutBins, 0U);
    EXPECT_EQ(std::ranges::count(Texts(reports), expected), static_cast<std::ptrdiff_t>(numWithoutBins));
  }
}

// Lower layers may have their say first.
TEST(FastFPMemory, QueriesThatFetchOrMakeAFingerPrintReportThatMemoryRanOut) {
  const DataSet data(256, 20, false, 1);
  const QXFastFPDatabase db(data.File());
  const QXFPDatabaseOptions options(3, QXSimMeasure::Tanimoto);
  QXChem::QXGraphMol mol;
  ASSERT_TRUE(QXChem::QXParseSmiles(mol, "CCO"));
  QXSimSearchResult result;
  QXFingerPrint fp;
  const std::function<bool()> calls[] = {
      [&] { return db.GetFingerPrint(fp, 1); },
      [&] { return static_cast<bool>(db.GetSortedScores(std::uint64_t{1}, options)); },
      [&] { return static_cast<bool>(db.GetScores(mol, options)); },
      [&] { return db.SortedSearch(result, mol, options) == QXSimSearchStatus::Finished; },
  };
  for (const auto& call : calls) {
    bool isFound = true;
    FailEachAllocation(
        [&] {
          isFound = true;
          const QXErrorCollector reports;
          isFound = call() || reports.Count() == 0;
        },
        [&](std::size_t n) { ASSERT_FALSE(isFound) << n; });
    if (HasFatalFailure()) return;
    EXPECT_TRUE(isFound);
  }
}

TEST(FastFPMemory, ResultWithoutMemoryIsNotValid) {
  const QXErrorCollector reports;
  bool isValid = true;
  FailEachAllocation([&] { isValid = QXSimSearchResult(50).IsValid(); },
                     [&](std::size_t n) {
                       ASSERT_FALSE(isValid);
                       ASSERT_EQ(reports.Count(), n);
                     });
  EXPECT_TRUE(isValid);
  EXPECT_EQ(Texts(reports).at(0), "QXSimSearchResult::QXSimSearchResult()" + noMemory);
}

// Every thread of a search allocates its hit list, so those that have never allocated before are new ones.
TEST(FastFPThreads, ShortFilesAreSearchedByTheCaller) {
  for (const auto& [numRecords, isThreaded] : {std::pair(999U, false), {1000U, true}}) {
    const DataSet data(256, numRecords, false, 1);
    const QXFastFPMemoryMapDatabaseImpl engine(data.File());
    QXFPDatabaseOptions options(5, QXSimMeasure::Tanimoto);
    options.SetNumProcessors(2);
    QXSimSearchResultImpl result(0, 0.0, 1.0);
    const unsigned before = QXTest::numThreads;
    EXPECT_EQ(engine.SortedSearch(result, data.Queries()[1], options), QXSimSearchStatus::Finished);
    EXPECT_EQ(QXTest::numThreads - before, isThreaded ? 2U : 0U);
    EXPECT_EQ(result.NumSearched(), numRecords);
  }
}

}  // namespace
}  // namespace QXFingrix
