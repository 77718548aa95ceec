#include "fastfp/FastFPScanImpl.h"

#include <algorithm>

#include "database/CutoffHits.h"
#include "database/WithinMemory.h"
#include "fastfp/BatchScan.h"
#include "fastfp/SortedScan.h"

namespace QXFingrix {

namespace {

std::vector<QXSimScore> CollectScores(const RecordTable& records, const QueryBits& query,
                                      const QXFPDatabaseOptions& options) {
  const Scorer scorer(options, records.NumBits(), query.numSet);
  std::vector<QXSimScore> scores;
  if (!options.HasCutoff()) {
    scores.reserve(records.numRecords);
    ScanAll(records, query, scorer, 0, records.numRecords,
            [&](unsigned idx, double score) { scores.emplace_back(idx, score); });
    return scores;
  }
  CutoffHits hits(options.GetCutoff(), options.GetDescendingOrder());
  CandidateFilter filter = MakeFilter(options, records, query);
  ScanCandidates(records, query, scorer, filter, 0, records.numRecords, hits);
  return hits.TakeHits();
}

}  // namespace

SimScoreIter FastFPScanImpl::GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetScores()";
  RecordTable records;
  if (!GetRecords(records, caller)) return {};
  SimScoreIter scores;
  WithinMemory(caller, [&] {
    const QueryBits query{fp.GetWords(), CountBits(fp)};
    scores = QXSystem::QXMakeVectorIter(CollectScores(records, query, options));
  });
  return scores;
}

SimScoreIter FastFPScanImpl::GetSortedScores(const QXFingerPrint& fp,
                                             const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetSortedScores()";
  RecordTable records;
  if (!GetRecords(records, caller)) return {};
  SimScoreIter scores;
  WithinMemory(caller, [&] {
    const auto hits = QXInitFPDatabaseHitList(records.numRecords, options);
    SortedScan scan(records, {fp.GetWords(), CountBits(fp)}, options, *hits);
    scan.Scan(0, records.numRecords);
    hits->Sort();
    scores = QXSystem::QXMakeVectorIter(hits->TakeHits());
  });
  return scores;
}

std::vector<SimScoreIter> FastFPScanImpl::GetSortedScores(std::span<const QXFingerPrint* const> fps,
                                                          const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetSortedScores()";
  std::vector<SimScoreIter> scores(fps.size());
  RecordTable records;
  if (!GetRecords(records, caller)) return scores;
  const bool isDone = WithinMemory(caller, [&] {
    std::vector<QueryBits> queries;
    for (const QXFingerPrint* fp : fps) queries.push_back({fp->GetWords(), CountBits(*fp)});
    auto hits = BatchScan(records, queries, options);
    std::ranges::transform(hits, scores.begin(), [](std::vector<QXSimScore>& hitsOfOne) {
      return QXSystem::QXMakeVectorIter(std::move(hitsOfOne));
    });
  });
  if (!isDone) std::ranges::fill(scores, SimScoreIter());
  return scores;
}

std::vector<double> FastFPScanImpl::GetRawScores(const QXFingerPrint& fp,
                                                 const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetRawScores()";
  RecordTable records;
  if (!GetRecords(records, caller)) return {};
  std::vector<double> scores;
  WithinMemory(caller, [&] {
    scores.resize(records.numRecords);
    const QueryBits query{fp.GetWords(), CountBits(fp)};
    ScanAll(records, query, Scorer(options, records.NumBits(), query.numSet), 0, records.numRecords,
            [out = scores.begin()](unsigned, double score) mutable { *out++ = score; });
  });
  return scores;
}

unsigned FastFPScanImpl::SortedSearch(QXSimSearchResultImpl& result, const QXFingerPrint& fp,
                                      const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::SortedSearch()";
  RecordTable records;
  if (!GetRecords(records, caller)) return QXSimSearchStatus::Uninitialized;
  const bool isDone = WithinMemory(caller, [&] {
    result.Init(records.numRecords, options);
    ThreadedScan(records, {fp.GetWords(), CountBits(fp)}, options, result);
    result.Finish();
  });
  if (!isDone) result.SetSearchStatus(QXSimSearchStatus::Uninitialized);
  return result.GetSearchStatus();
}

bool FastFPScanImpl::GetFingerPrint(std::vector<unsigned long>& words, std::uint64_t& molIndex,
                                    std::uint64_t& bitCount, std::uint64_t index) const {
  RecordTable records;
  if (!GetRecords(records, "QXFastFPDatabase::GetFingerPrint()")) return false;
  if (index >= records.numRecords) return false;
  const std::uint64_t* const record = records.Record(index);
  const std::uint64_t* const data = record + FileLayout::dataSlot;
  words.assign(data, data + records.numWords);
  molIndex = record[FileLayout::indexSlot];
  bitCount = record[FileLayout::bitCountSlot];
  return true;
}

}  // namespace QXFingrix
