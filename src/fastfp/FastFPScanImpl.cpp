#include "fastfp/FastFPScanImpl.h"

#include <algorithm>

#include "QXPlatform/QXProcessor.h"
#include "QXSystem/QXErrorHandler.h"
#include "database/CutoffHits.h"
#include "database/WithinMemory.h"
#include "fastfp/scan/BatchScan.h"
#include "fastfp/scan/SortedScan.h"
#include "fastfp/slices/IsIndexFaster.h"
#include "fastfp/slices/MakeSlicedIndex.h"
#include "fastfp/slices/SlicedBatch.h"
#include "fastfp/slices/SlicedSearch.h"
#include "fastfp/slices/ThreadedSlicedSearch.h"

namespace QXFingrix {

namespace {

// On the calling thread.
template <class Hits>
void SearchIndex(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
                 const QXFPDatabaseOptions& options, Hits& hits) {
  SlicedSearch search(index, records, query, options, index.NumBlocks());
  search.Run(hits, [](std::size_t) {});
}

std::vector<QXSimScore> CollectScores(const RecordTable& records, const SlicedIndex* index,
                                      const QueryBits& query, const QXFPDatabaseOptions& options) {
  const Scorer scorer(options, records.NumBits(), query.numSet);
  std::vector<QXSimScore> scores;
  if (!options.HasCutoff()) {
    scores.reserve(records.numRecords);
    ScanAll(records, query, scorer, 0, records.numRecords,
            [&](unsigned idx, double score) { scores.emplace_back(idx, score); });
    return scores;
  }
  CutoffHits hits(options.GetCutoff(), options.GetDescendingOrder());
  if (index != nullptr) {
    SearchIndex(*index, records, query, options, hits);
    hits.Sort();
  } else {
    CandidateFilter filter = MakeFilter(options, records, query);
    ScanCandidates(records, query, scorer, filter, 0, records.numRecords, hits);
  }
  return hits.TakeHits();
}

}  // namespace

FastFPScanImpl::FastFPScanImpl(const std::string& fpbinFile, unsigned indexUse)
    : QXFastFPDatabaseImplBase(fpbinFile),
      indexUse_(indexUse),
      stamp_(indexUse == QXFastFPDatabaseIndex::None ? FpbinStamp() : FpbinStamp::Of(fpbinFile)) {}

void FastFPScanImpl::OpenIndex(SlicedIndexFile::Memory memory) {
  constexpr const char* caller = fastFPDatabaseConstructor;
  if (indexUse_ == QXFastFPDatabaseIndex::None) return;
  auto file = std::make_unique<SlicedIndexFile>(FileName(), stamp_, Params(), caller);
  if (indexUse_ != QXFastFPDatabaseIndex::Build) {
    if (file->State() == QXFastFPIndexState::Usable) index_.Use(std::move(file), memory);
    return;
  }
  const unsigned numThreads = QXPlatform::QXGetNumWorkers(0);
  std::unique_ptr<const SlicedIndex> loaded = file->Load(memory, numThreads, caller);
  if (loaded != nullptr) return index_.Use(std::move(loaded));
  RecordTable records;
  if (!GetRecords(records, caller)) return;
  WithinMemory(caller, [&] {
    auto index = MakeSlicedIndex(records, numThreads);
    if (index == nullptr)
      QXSystem::QXThrow.Warning("%s : %s cannot have an index!", caller, FileName().c_str());
    index_.Use(std::move(index));
  });
}

const SlicedIndex* FastFPScanImpl::IndexFor(const RecordTable& records, std::span<const QueryBits> queries,
                                            const QXFPDatabaseOptions& options, const char* caller) const {
  const bool isFaster = IsIndexFaster(records, queries, options);
  const SlicedIndex* const index = isFaster ? index_.Get(options.GetNumProcessors(), caller) : nullptr;
  QXSystem::QXThrow.Verbose("%s : %s", caller,
                            index != nullptr ? "searching the index" : "scanning the records");
  return index;
}

SimScoreIter FastFPScanImpl::GetScores(const QXFingerPrint& fp, const QXFPDatabaseOptions& options) const {
  constexpr const char* caller = "QXFastFPDatabase::GetScores()";
  RecordTable records;
  if (!GetRecords(records, caller)) return {};
  SimScoreIter scores;
  WithinMemory(caller, [&] {
    const QueryBits query{fp.GetWords(), CountBits(fp)};
    const SlicedIndex* const index =
        options.HasCutoff() ? IndexFor(records, {&query, 1}, options, caller) : nullptr;
    scores = QXSystem::QXMakeVectorIter(CollectScores(records, index, query, options));
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
    const QueryBits query{fp.GetWords(), CountBits(fp)};
    const auto hits = QXInitFPDatabaseHitList(records.numRecords, options);
    if (const SlicedIndex* const index = IndexFor(records, {&query, 1}, options, caller)) {
      SearchIndex(*index, records, query, options, *hits);
    } else {
      SortedScan(records, query, options, *hits).Scan(0, records.numRecords);
    }
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
    const SlicedIndex* const index = IndexFor(records, queries, options, caller);
    auto hits = index != nullptr ? SlicedBatch(*index, records, queries, options)
                                 : BatchScan(records, queries, options);
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
    const QueryBits query{fp.GetWords(), CountBits(fp)};
    const SlicedIndex* const index =
        result.HasHistogram() ? nullptr : IndexFor(records, {&query, 1}, options, caller);
    if (index != nullptr) {
      ThreadedSlicedSearch(*index, records, query, options, result);
    } else {
      ThreadedScan(records, query, options, result);
    }
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
