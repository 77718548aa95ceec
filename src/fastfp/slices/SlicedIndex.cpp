#include "fastfp/slices/SlicedIndex.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <limits>
#include <new>

#include "QXSystem/QXBitCountKernel.h"
#include "QXSystem/QXBitLists.h"
#include "fastfp/RunThreads.h"

namespace QXFingrix {

namespace {

constexpr std::size_t columnWords = QXSystem::QXBitLists::columnWords;
constexpr std::align_val_t columnAlignment{columnWords * sizeof(std::uint64_t)};
constexpr std::size_t maxBits = 65528;  // bits have 16-bit numbers, the empty column among them
constexpr std::size_t sampledSuperblocks = 16;

}  // namespace

void SlicedIndex::FreeColumns::operator()(std::uint64_t* columns) const {
  operator delete[](columns, columnAlignment);
}

SlicedIndex::SlicedIndex(const RecordTable& records) : records_(records) {}

std::unique_ptr<const SlicedIndex> SlicedIndex::Make(const RecordTable& records, unsigned numThreads) {
  if (records.numRecords > std::numeric_limits<std::uint32_t>::max() || records.NumBits() > maxBits) {
    return nullptr;
  }
  std::unique_ptr<SlicedIndex> index(new SlicedIndex(records));
  if (!index->SortByBitCount()) return nullptr;
  index->MakeColumns(numThreads);
  index->CountFrequencies();
  return index;
}

// By counting, and stable: records of a file lie in the order in which they are read again.
bool SlicedIndex::SortByBitCount() {
  std::vector<std::uint16_t> bitCounts(records_.numRecords);
  std::vector<std::uint32_t> next(records_.NumBits() + 1);
  for (std::size_t i = 0; i < bitCounts.size(); ++i) {
    const std::uint64_t bits = records_.Record(i)[FileLayout::bitCountSlot];
    if (bits > records_.NumBits()) return false;
    bitCounts[i] = static_cast<std::uint16_t>(bits);
    ++next[bits];
  }
  std::uint32_t first = 0;
  for (std::uint32_t& count : next) count = std::exchange(first, first + count);
  places_.resize(bitCounts.size());
  bitCounts_.resize(bitCounts.size());
  for (std::size_t i = 0; i < bitCounts.size(); ++i) {
    const std::uint32_t place = next[bitCounts[i]]++;
    places_[place] = static_cast<std::uint32_t>(i);
    bitCounts_[place] = bitCounts[i];
  }
  return true;
}

std::size_t SlicedIndex::Stride(std::size_t numRecords) {
  return (numRecords + blockRecords - 1) / blockRecords * columnWords;
}

SlicedIndex::Superblock SlicedIndex::GetSuperblock(std::size_t i) const {
  const std::size_t first = i * superblockRecords;
  const std::size_t size = std::min(superblockRecords, places_.size() - first);
  return {columns_.get() + i * Stride(superblockRecords) * NumColumns(),
          Stride(size),
          {bitCounts_.data() + first, size},
          {places_.data() + first, size}};
}

void SlicedIndex::MakeColumns(unsigned numThreads) {
  const std::size_t numWhole = places_.size() / superblockRecords;
  const std::size_t numWords =
      NumColumns() * (numWhole * Stride(superblockRecords) + Stride(places_.size() % superblockRecords));
  columns_.reset(new (columnAlignment) std::uint64_t[numWords]);
  std::atomic<std::size_t> next{0};
  RunThreads(numThreads, [&] {
    for (std::size_t i; (i = next.fetch_add(1)) < NumSuperblocks();) MakeSuperblock(i);
  });
}

void SlicedIndex::MakeSuperblock(std::size_t i) {
  const Superblock superblock = GetSuperblock(i);
  auto* const columns = const_cast<std::uint64_t*>(superblock.columns);
  const auto makeColumns = QXSystem::QXGetBitCountKernel().makeColumns;
  const std::uint64_t* rows[blockRecords];
  for (std::size_t first = 0; first < superblock.places.size(); first += blockRecords) {
    const std::size_t size = std::min(blockRecords, superblock.places.size() - first);
    for (std::size_t k = 0; k < size; ++k) {
      rows[k] = records_.Record(superblock.places[first + k]) + FileLayout::dataSlot;
    }
    makeColumns(rows, size, records_.numWords, columns + first / blockRecords * columnWords,
                superblock.stride);
  }
  std::fill_n(columns + records_.NumBits() * superblock.stride, superblock.stride, std::uint64_t{0});
}

void SlicedIndex::CountFrequencies() {
  frequencies_.resize(records_.NumBits());
  const std::size_t step = std::max<std::size_t>(1, NumSuperblocks() / sampledSuperblocks);
  for (std::size_t i = 0; i < NumSuperblocks(); i += step) {
    const Superblock superblock = GetSuperblock(i);
    const auto count = QXSystem::QXGetBitCountKernel().count;
    for (std::size_t bit = 0; bit < frequencies_.size(); ++bit) {
      frequencies_[bit] +=
          static_cast<std::uint32_t>(count(superblock.columns + bit * superblock.stride, superblock.stride));
    }
  }
}

std::vector<std::uint16_t> SlicedIndex::RarestFirst(const QueryBits& query) const {
  constexpr std::size_t padding = QXSystem::QXBitLists::padding;
  std::vector<std::uint16_t> bits;
  bits.reserve(query.numSet + padding);
  for (std::size_t w = 0; w < query.words.size(); ++w) {
    for (std::uint64_t word = query.words[w]; word != 0; word &= word - 1) {
      bits.push_back(static_cast<std::uint16_t>(64 * w + static_cast<unsigned>(std::countr_zero(word))));
    }
  }
  std::ranges::sort(bits, {}, [this](std::uint16_t bit) { return std::pair(frequencies_[bit], bit); });
  bits.resize((bits.size() + padding - 1) / padding * padding,
              static_cast<std::uint16_t>(records_.NumBits()));
  return bits;
}

}  // namespace QXFingrix
