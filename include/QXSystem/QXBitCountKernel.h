#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "QXSystem/QXExport.h"

namespace QXSystem {

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
  /// popcount(query q AND record i).
  /// Shape    queries: numQueries of numWords words, queryStride words apart; records: as for countAnd; both:
  ///          numQueries rows of numRecords counts, bothStride counts apart. Any numbers, 0 included; tiles
  ///          that the caches hold, and multiples of 4 queries and 64 records, are fastest.
  /// Cost     O(numWords numQueries numRecords), no allocation; each record is loaded once for several
  ///          queries.
  void (*countAndTile)(const std::uint64_t* queries, std::size_t queryStride, std::size_t numQueries,
                       const std::uint64_t* records, std::size_t stride, std::size_t numRecords,
                       std::size_t numWords, std::uint32_t* both, std::size_t bothStride);

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
