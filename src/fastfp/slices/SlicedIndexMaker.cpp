#include "fastfp/slices/SlicedIndexMaker.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "QXSystem/QXBitCountKernel.h"

namespace QXFingrix {

namespace {

constexpr std::size_t sampledBlocks = 128;  // for the order of the bits

}  // namespace

SlicedIndexMaker::SlicedIndexMaker(const RecordTable& records, const SlicedOrders& orders)
    : records_(records),
      orders_(orders),
      step_(std::max<std::size_t>(1, SlicedIndex::NumBlocks(records.numRecords) / sampledBlocks)),
      frequencies_(records.NumBits()) {}

// By counting, and stable: records of a file lie in the order in which they are read again.
bool SlicedIndexMaker::SortRecords() {
  std::vector<std::uint32_t> next(records_.NumBits() + 1);
  std::vector<std::uint16_t> bitCounts(records_.numRecords);  // records are far apart: each is visited once
  for (std::size_t i = 0; i < bitCounts.size(); ++i) {
    const std::uint64_t* const record = records_.Record(i);
    const std::uint64_t bits = record[FileLayout::bitCountSlot];
    if (bits > records_.NumBits() || record[FileLayout::indexSlot] != i) {
      unsound_ = i;
      return false;
    }
    bitCounts[i] = static_cast<std::uint16_t>(bits);
    ++next[bits];
  }
  std::uint32_t first = 0;
  for (std::uint32_t& count : next) count = std::exchange(first, first + count);
  for (std::size_t i = 0; i < bitCounts.size(); ++i) {
    const std::uint32_t place = next[bitCounts[i]]++;
    orders_.places[place] = static_cast<std::uint32_t>(i);
    orders_.bitCounts[place] = bitCounts[i];
  }
  return true;
}

bool SlicedIndexMaker::MakeBlock(std::size_t block, std::uint64_t* columns) {
  const auto& kernel = QXSystem::QXGetBitCountKernel();
  const std::size_t first = block * SlicedIndex::blockRecords;
  const std::size_t size = std::min(SlicedIndex::blockRecords, records_.numRecords - first);
  const std::uint64_t* rows[SlicedIndex::blockRecords];
  for (std::size_t i = 0; i < size; ++i) {
    rows[i] = records_.Record(orders_.places[first + i]) + FileLayout::dataSlot;
    if (kernel.count(rows[i], records_.numWords) != orders_.bitCounts[first + i]) {
      unsound_ = orders_.places[first + i];
      return false;
    }
  }
  kernel.makeColumns(rows, size, records_.numWords, columns);
  std::fill_n(columns + records_.NumBits() * SlicedIndex::columnWords, SlicedIndex::columnWords,
              std::uint64_t{0});
  if (block % step_ != 0) return true;
  for (std::atomic<std::uint32_t>& frequency : frequencies_) {
    const auto count = static_cast<std::uint32_t>(kernel.count(columns, SlicedIndex::columnWords));
    frequency.fetch_add(count, std::memory_order_relaxed);
    columns += SlicedIndex::columnWords;
  }
  return true;
}

std::optional<std::uint64_t> SlicedIndexMaker::Unsound() const {
  const std::uint64_t record = unsound_;
  return record == noRecord ? std::nullopt : std::optional(record);
}

void SlicedIndexMaker::OrderBits() {
  std::iota(orders_.rarestFirst.begin(), orders_.rarestFirst.end(), std::uint16_t{0});
  std::ranges::stable_sort(orders_.rarestFirst, {},
                           [&](std::uint16_t bit) { return frequencies_[bit].load(); });
}

}  // namespace QXFingrix
