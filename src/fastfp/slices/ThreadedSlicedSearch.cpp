#include "fastfp/slices/ThreadedSlicedSearch.h"

#include <atomic>
#include <new>

#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/SlicedSearch.h"

namespace QXFingrix {

void ThreadedSlicedSearch(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
                          const QXFPDatabaseOptions& options, QXSimSearchResultImpl& result) {
  SlicedSearch search(index, records, query, options, index.NumBlocks());
  std::atomic<bool> isOutOfMemory{false};
  // Run by every thread; an exception must not leave it.
  const auto work = [&]() noexcept {
    try {
      const auto hits = QXInitFPDatabaseHitList(records.numRecords, options);
      search.Run(*hits, [&](std::size_t numSearched) { result.AddSearched(numSearched); });
      result.Merge(result.MakeHistogram(), hits->GetHits());
    } catch (const std::bad_alloc&) {
      isOutOfMemory = true;
      search.Stop();
    }
  };
  RunThreads(options.GetNumProcessors(), work);
  if (isOutOfMemory) throw std::bad_alloc();
}

}  // namespace QXFingrix
