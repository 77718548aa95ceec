#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "QXSystem/QXBitLists.h"

namespace QXFingrix {

/// Records stored by bit instead of by record: a query reads the columns of its own set bits alone. Records are
/// ordered by bit count and cut into blocks; a column says which records of a block have a bit.
/// Shape    blocks of 512 records; a block has a column of 64 bytes for each bit of a fingerprint and then an
///          empty one. Blocks lie apart, and so what a query reads of one lies in few pages.
/// Threads  reading is safe from several threads.
/// Source   bounds from bit counts: Swamidass, Baldi, J. Chem. Inf. Model. 2007, 47, 302; records found through
///          the query's bits: Nasr, Vernica, Li, Baldi, J. Chem. Inf. Model. 2012, 52, 891. Columns of bits, and
///          giving up on blocks of them, are our own.
struct SlicedIndex {
  static constexpr std::size_t columnWords = QXSystem::QXBitLists::columnWords;
  static constexpr std::size_t blockRecords = 64 * columnWords;
  static constexpr std::size_t columnAlignment = columnWords * sizeof(std::uint64_t);
  static constexpr std::uint64_t maxBits = 65472;  // whole words; columns are counted in 16 bits, padding too

  std::uint64_t numBits = 0;                   // of a fingerprint
  std::span<const std::uint32_t> places;       // of the records in the table, by bit count, then place
  std::span<const std::uint16_t> bitCounts;    // of the same records
  std::span<const std::uint16_t> rarestFirst;  // all bits, those that fewest records have first
  std::span<const std::uint64_t> columns;      // block after block, aligned
  std::shared_ptr<const void> memory;          // in which they lie

  static std::size_t NumBlocks(std::size_t numRecords) {
    return (numRecords + blockRecords - 1) / blockRecords;
  }
  static std::size_t BlockWords(std::uint64_t numBits) { return (numBits + 1) * columnWords; }

  std::size_t NumBlocks() const { return NumBlocks(places.size()); }
  const std::uint64_t* Columns(std::size_t block) const {
    return columns.data() + block * BlockWords(numBits);
  }
  std::size_t First(std::size_t block) const { return block * blockRecords; }
  std::size_t Size(std::size_t block) const { return std::min(blockRecords, places.size() - First(block)); }
  std::uint16_t FewestBits(std::size_t block) const { return bitCounts[First(block)]; }
  std::uint16_t MostBits(std::size_t block) const { return bitCounts[First(block) + Size(block) - 1]; }
};

}  // namespace QXFingrix
