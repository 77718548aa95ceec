#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "fastfp/RecordScan.h"

namespace QXFingrix {

/// Records stored by bit instead of by record: a query reads the columns of its own set bits alone. Records
/// are ordered by bit count and cut into superblocks; a column says which records of a superblock have a bit.
/// Shape    superblocks of up to 4,096 records; a superblock has a column for each bit of a fingerprint and then
///          an empty one, each of 64 bytes for every block of 512 records.
/// Threads  reading is safe from several threads.
/// Source   bounds from bit counts: Swamidass, Baldi, J. Chem. Inf. Model. 2007, 47, 302; records found through
///          the query's bits: Nasr, Vernica, Li, Baldi, J. Chem. Inf. Model. 2012, 52, 891. Columns of bits, and
///          giving up on blocks of them, are our own.
class SlicedIndex {
 public:
  static constexpr std::size_t blockRecords = 512;
  static constexpr std::size_t superblockRecords = 4096;

  /// Makes the index of the records, which are referred to. Null when they cannot be indexed: a bit count is
  /// larger than a fingerprint, as in a damaged file, or there are more than 2^32 - 1 records.
  /// Errors   std::bad_alloc.
  /// Cost     O(words of the records), about as many bytes as the records have.
  static std::unique_ptr<const SlicedIndex> Make(const RecordTable& records, unsigned numThreads);

  struct Superblock {
    const std::uint64_t* columns;
    std::size_t stride;                        // from column to column, in words
    std::span<const std::uint16_t> bitCounts;  // of its records, ascending
    std::span<const std::uint32_t> places;     // of its records in the table
  };
  std::size_t NumSuperblocks() const { return (places_.size() + superblockRecords - 1) / superblockRecords; }
  Superblock GetSuperblock(std::size_t i) const;

  /// The bits that are set in a query, those that fewest records have first; filled up as countColumns wants it.
  std::vector<std::uint16_t> RarestFirst(const QueryBits& query) const;

 private:
  explicit SlicedIndex(const RecordTable& records);
  bool SortByBitCount();
  void MakeColumns(unsigned numThreads);
  void MakeSuperblock(std::size_t i);
  void CountFrequencies();
  std::size_t NumColumns() const { return records_.NumBits() + 1; }
  static std::size_t Stride(std::size_t numRecords);

  const RecordTable records_;
  std::vector<std::uint32_t> places_;
  std::vector<std::uint16_t> bitCounts_;
  struct FreeColumns {
    void operator()(std::uint64_t* columns) const;
  };
  std::unique_ptr<std::uint64_t[], FreeColumns> columns_;
  std::vector<std::uint32_t> frequencies_;  // of bits, in a sample
};

}  // namespace QXFingrix
