#include "fastfp/slices/MakeSlicedIndex.h"

#include <atomic>

#include "fastfp/scan/RunThreads.h"
#include "fastfp/slices/HugePages.h"
#include "fastfp/slices/SlicedIndexLayout.h"
#include "fastfp/slices/SlicedIndexMaker.h"

namespace QXFingrix {

std::unique_ptr<const SlicedIndex> MakeSlicedIndex(const RecordTable& records, unsigned numThreads) {
  if (!SlicedIndexLayout::IsPossible(records.numRecords, records.NumBits())) return nullptr;
  const SlicedIndexLayout layout{records.numRecords, records.NumBits()};
  const std::shared_ptr<void> memory = AllocateHugePages(layout.NumBytes());
  auto* const first = static_cast<char*>(memory.get());
  SlicedIndexMaker maker(records, layout.Orders(first + layout.ColumnBytes()));
  if (!maker.SortRecords()) return nullptr;
  std::atomic<std::size_t> next{0};
  RunThreads(numThreads, [&] {
    for (std::size_t i; (i = next.fetch_add(1)) < layout.NumBlocks() && !maker.Unsound();) {
      maker.MakeBlock(i, reinterpret_cast<std::uint64_t*>(first + i * layout.BlockBytes()));
    }
  });
  if (maker.Unsound()) return nullptr;
  maker.OrderBits();
  return std::make_unique<const SlicedIndex>(layout.Index(first, memory));
}

}  // namespace QXFingrix
