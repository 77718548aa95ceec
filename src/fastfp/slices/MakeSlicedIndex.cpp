#include "fastfp/slices/MakeSlicedIndex.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/RunThreads.h"
#include "fastfp/slices/HugePages.h"

namespace QXFingrix {

namespace {

constexpr std::size_t sampledBlocks = 128;  // for the order of the bits

// Gives out parts of one piece of memory.
class Room {
 public:
  explicit Room(std::size_t numBytes)
      : memory_(AllocateHugePages(numBytes)), next_(static_cast<char*>(memory_.get())) {}

  template <class T>
  std::span<T> Take(std::size_t num) {
    auto* const first = reinterpret_cast<T*>(next_);
    next_ += num * sizeof(T);
    return {first, num};
  }
  std::shared_ptr<const void> Memory() const { return memory_; }

 private:
  std::shared_ptr<void> memory_;
  char* next_;
};

class Maker {
 public:
  explicit Maker(const RecordTable& records) : records_(records), index_(std::make_unique<SlicedIndex>()) {
    const std::size_t numRecords = records.numRecords;
    const std::uint64_t numBits = records.NumBits();
    const std::size_t numWords = SlicedIndex::NumBlocks(numRecords) * SlicedIndex::BlockWords(numBits);
    Room room(numWords * sizeof(std::uint64_t) +
              numRecords * (sizeof(std::uint32_t) + sizeof(std::uint16_t)) + numBits * sizeof(std::uint16_t));
    columns_ = room.Take<std::uint64_t>(numWords);  // first: it is aligned
    places_ = room.Take<std::uint32_t>(numRecords);
    bitCounts_ = room.Take<std::uint16_t>(numRecords);
    rarestFirst_ = room.Take<std::uint16_t>(numBits);
    *index_ = {numBits, places_, bitCounts_, rarestFirst_, columns_, room.Memory()};
  }

  std::unique_ptr<const SlicedIndex> Make(unsigned numThreads) {
    if (!SortByBitCount()) return nullptr;
    std::atomic<std::size_t> next{0};
    RunThreads(numThreads, [&] {
      for (std::size_t i; (i = next.fetch_add(1)) < index_->NumBlocks();) MakeBlock(i);
    });
    OrderBits();
    return std::move(index_);
  }

 private:
  // By counting, and stable: records of a file lie in the order in which they are read again.
  bool SortByBitCount() {
    std::vector<std::uint32_t> next(records_.NumBits() + 1);
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const std::uint64_t bits = BitCount(i);
      if (bits > records_.NumBits()) return false;
      ++next[bits];
    }
    std::uint32_t first = 0;
    for (std::uint32_t& count : next) count = std::exchange(first, first + count);
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const std::uint64_t bits = BitCount(i);
      const std::uint32_t place = next[bits]++;
      places_[place] = static_cast<std::uint32_t>(i);
      bitCounts_[place] = static_cast<std::uint16_t>(bits);
    }
    return true;
  }

  std::uint64_t BitCount(std::size_t i) const { return records_.Record(i)[FileLayout::bitCountSlot]; }

  void MakeBlock(std::size_t block) {
    const std::size_t first = index_->First(block);
    const std::size_t size = index_->Size(block);
    const std::uint64_t* rows[SlicedIndex::blockRecords];
    for (std::size_t i = 0; i < size; ++i) {
      rows[i] = records_.Record(places_[first + i]) + FileLayout::dataSlot;
    }
    std::uint64_t* const columns = columns_.data() + block * SlicedIndex::BlockWords(index_->numBits);
    QXSystem::QXGetBitCountKernel().makeColumns(rows, size, records_.numWords, columns);
    std::fill_n(columns + index_->numBits * SlicedIndex::columnWords, SlicedIndex::columnWords,
                std::uint64_t{0});
  }

  void OrderBits() {
    std::vector<std::uint32_t> frequencies(index_->numBits);
    const auto count = QXSystem::QXGetBitCountKernel().count;
    const std::size_t step = std::max<std::size_t>(1, index_->NumBlocks() / sampledBlocks);
    for (std::size_t block = 0; block < index_->NumBlocks(); block += step) {
      const std::uint64_t* column = index_->Columns(block);
      for (std::uint32_t& frequency : frequencies) {
        frequency += static_cast<std::uint32_t>(count(column, SlicedIndex::columnWords));
        column += SlicedIndex::columnWords;
      }
    }
    std::iota(rarestFirst_.begin(), rarestFirst_.end(), std::uint16_t{0});
    std::ranges::stable_sort(rarestFirst_, {}, [&](std::uint16_t bit) { return frequencies[bit]; });
  }

  const RecordTable& records_;
  std::unique_ptr<SlicedIndex> index_;
  std::span<std::uint64_t> columns_;
  std::span<std::uint32_t> places_;
  std::span<std::uint16_t> bitCounts_;
  std::span<std::uint16_t> rarestFirst_;
};

}  // namespace

std::unique_ptr<const SlicedIndex> MakeSlicedIndex(const RecordTable& records, unsigned numThreads) {
  if (records.numRecords > std::numeric_limits<std::uint32_t>::max() ||
      records.NumBits() > SlicedIndex::maxBits) {
    return nullptr;
  }
  return Maker(records).Make(numThreads);
}

}  // namespace QXFingrix
