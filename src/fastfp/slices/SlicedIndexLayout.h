#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>

#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// The parts of an index beside its columns, to be filled.
struct SlicedOrders {
  std::span<std::uint32_t> places;
  std::span<std::uint16_t> bitCounts;
  std::span<std::uint16_t> rarestFirst;
};

/// How the parts of an index lie in one piece of memory, and in its file: columns, places, bitCounts and
/// rarestFirst, without gaps; the last three are its orders. Frozen: files hold it; docs/IndexFile.md.
struct SlicedIndexLayout {
  /// Whether so many records of so many bits can have an index. No size overflows then.
  static bool IsPossible(std::uint64_t numRecords, std::uint64_t numBits) {
    return numRecords <= std::numeric_limits<std::uint32_t>::max() && numBits <= SlicedIndex::maxBits &&
           numBits % 64 == 0;
  }

  std::size_t numRecords = 0;
  std::uint64_t numBits = 0;

  std::size_t NumBlocks() const { return SlicedIndex::NumBlocks(numRecords); }
  std::size_t BlockBytes() const { return SlicedIndex::BlockWords(numBits) * sizeof(std::uint64_t); }
  std::size_t ColumnBytes() const { return NumBlocks() * BlockBytes(); }
  std::size_t OrderBytes() const {
    return numRecords * (sizeof(std::uint32_t) + sizeof(std::uint16_t)) + numBits * sizeof(std::uint16_t);
  }
  std::size_t NumBytes() const { return ColumnBytes() + OrderBytes(); }

  /// The orders that begin at an address, aligned to 4 bytes.
  SlicedOrders Orders(void* first) const {
    auto* const places = static_cast<std::uint32_t*>(first);
    auto* const bitCounts = reinterpret_cast<std::uint16_t*>(places + numRecords);
    return {{places, numRecords}, {bitCounts, numRecords}, {bitCounts + numRecords, numBits}};
  }

  /// The index whose columns begin at an address, aligned to 64 bytes.
  SlicedIndex Index(const char* first, std::shared_ptr<const void> memory) const {
    const SlicedOrders orders = Orders(const_cast<char*>(first + ColumnBytes()));
    const std::span columns(reinterpret_cast<const std::uint64_t*>(first),
                            ColumnBytes() / sizeof(std::uint64_t));
    return {numBits, orders.places, orders.bitCounts, orders.rarestFirst, columns, std::move(memory)};
  }
};

}  // namespace QXFingrix
