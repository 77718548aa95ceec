#include "fastfp/slices/ThreadedSlicedSearch.h"

#include <atomic>
#include <new>

#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/SlicedSearch.h"

namespace QXFingrix {

void ThreadedSlicedSearch(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
                          const QXFPDatabaseOptions& options, QXSimSearchResultImpl& result) {
  constexpr std::uint64_t minThreaded = 100'000;  // records; below, starting threads costs more than it gains
  SlicedSearch search(index, records, query, options, index.NumBlocks());
  std::atomic<bool> isOutOfMemory{false};
  // Run by every thread; an exception must not leave it.
  const auto work = [&]() noexcept {
    try {
      const auto hits = QXInitFPDatabaseHitList(records.numRecords, options);
      search.Run(*hits, [&](std::size_t numRecords) { result.AddSearched(numRecords); });
      result.Merge(result.MakeHistogram(), hits->GetHits());
    } catch (const std::bad_alloc&) {
      isOutOfMemory = true;
      search.Stop();
    }
  };
  RunThreads(records.numRecords < minThreaded ? 1 : options.GetNumProcessors(), work);
  if (isOutOfMemory) throw std::bad_alloc();
}

}  // namespace QXFingrix
