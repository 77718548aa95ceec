#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "QXSystem/QXBitLists.h"
#include "QXSystem/QXExport.h"

namespace QXSystem {

/// Counts of columns, kept by a kernel from startColumns() to writeColumns().
struct QXColumnCounts {
  static constexpr std::size_t step = 8;  ///< columns that are best added at once
  alignas(64) unsigned char memory[18 * 64];
};

/// The bit-count routines of one instruction set. All of them give the same counts.
/// Threads  all functions are safe on disjoint outputs.
struct QXBitCountKernel {
  const char* name;  ///< "avx512", "avx2", "popcnt" or "portable"

  /// Whether this processor and its operating system can run it.
  bool (*isSupported)();

  /// Counts the bits of numWords words.
  std::uint64_t (*count)(const std::uint64_t* words, std::size_t numWords);

  /// Counts the bits that one query shares with each record of a block: both[i] = popcount(query AND record
  /// i).
  /// Shape    query: numWords words; record i: numWords words at records + i * stride, 8-byte aligned; both:
  ///          numRecords counts, none of them inside the records. Any number of words; multiples of 8 are
  ///          fastest, then multiples of 4.
  /// Units    64-bit words; stride in words, at least numWords.
  /// Cost     O(numWords numRecords), no allocation; prefetches the records that follow, past the block's end
  ///          too.
  void (*countAnd)(const std::uint64_t* query, std::size_t numWords, const std::uint64_t* records,
                   std::size_t stride, std::size_t numRecords, std::uint32_t* both);

  /// Counts the bits that each query of a group shares with each record of a block: both[q * bothStride + i] =
  /// popcount(query q AND record i). Where `least` is given, counts below least[q] may come out as 0.
  /// Shape    records: numRecords of queries.NumWords() words, as for countAnd; least: null, or one count for
  ///          each query; both: a row of numRecords counts for each query, bothStride counts apart; reaches:
  ///          null when least is, or for each query whether a count of its row may reach least[q], and if not
  ///          all of the row may be 0. Any numbers, 0 included; blocks of multiples of 512 records are fastest.
  /// Cost     O(records (words + bits set in the queries)), no allocation; 144 KiB of stack. Each block of
  ///          records is transposed once for all queries: below eight of them countAnd is faster.
  void (*countLists)(const QXBitLists& queries, const std::uint64_t* records, std::size_t stride,
                     std::size_t numRecords, const std::uint32_t* least, std::uint32_t* both,
                     std::size_t bothStride, bool* reaches);

  /// Turns a block of at most 512 records on its side: column c, with a bit for each record, says which of them
  /// have bit c. The bits stand in an order of their own, the same for every kernel, that suits addColumns.
  /// Shape    records: pointers to numRecords records of numWords words; columns: 64 numWords columns of
  ///          QXBitLists::columnWords words, 64-byte aligned. Columns of a block that is not full repeat its last
  ///          record.
  /// Cost     O(numWords), 9 KiB of stack.
  void (*makeColumns)(const std::uint64_t* const* records, std::size_t numRecords, std::size_t numWords,
                      std::uint64_t* columns);

  /// Starts to count, for each record of a block, how many of some columns it has.
  void (*startColumns)(QXColumnCounts& counts);

  /// Adds columns of the block. The result says whether a record may have at least `least` of all that were
  /// added: if not, the block can be given up. Counts below least may come out as 0 from then on.
  /// Shape    columns: as makeColumns made them; bits: which, 8 or 16 of them; next: columns that the
  ///          processor is to fetch from memory meanwhile, or none. In all fewer than 2^16 columns are added.
  bool (*addColumns)(QXColumnCounts& counts, const std::uint64_t* columns,
                     std::span<const std::uint16_t> bits, std::span<const std::uint16_t> next,
                     std::uint32_t least);

  /// Writes the counts of the first numRecords records of the block.
  void (*writeColumns)(const QXColumnCounts& counts, std::size_t numRecords, std::uint32_t* both);

  /// Counts the bits of two vectors of numWords words, and those that they share, in one pass.
  void (*countPair)(const std::uint64_t* a, const std::uint64_t* b, std::size_t numWords, std::uint64_t* ofA,
                    std::uint64_t* ofB, std::uint64_t* both);
};

/// All kernels that were built, best first, whether this processor supports them or not.
QX_API std::span<const QXBitCountKernel> QXGetBitCountKernels();

/// The best kernel that this processor supports; chosen once per process. The environment variable
/// QX_BITCOUNT_KERNEL names another one; a name that is unknown or unsupported here draws a warning and is
/// ignored.
QX_API const QXBitCountKernel& QXGetBitCountKernel();

}  // namespace QXSystem
