#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/file/FileLayout.h"
#include "fastfp/scan/Scorer.h"
#include "similarity/CandidateFilter.h"

// The scan over records: blocks of shared bit counts from the kernel, then one pass over the counts. What a
// caller does with a score is a function object, inlined into that pass.

namespace QXFingrix {

/// Records in memory, laid out as in the file.
struct RecordTable {
  const std::uint64_t* first = nullptr;
  std::uint64_t numWords = 0;  // of one fingerprint
  std::uint64_t numRecords = 0;

  const std::uint64_t* Record(std::uint64_t i) const { return first + i * FileLayout::RecordWords(numWords); }
  std::uint64_t NumBits() const { return numWords * 64; }
};

/// The bits of a query as the kernels take them.
struct QueryBits {
  std::span<const std::uint64_t> words;
  std::uint64_t numSet = 0;
};

inline constexpr std::uint64_t scanBlockSize =
    128;  // so that bit counts are read while the block is in the first cache

/// Calls visit(first record, size, shared bits of each) for blocks of the records from begin to end - 1, in
/// order.
template <class Visit>
void ScanBlocks(const RecordTable& records, const QueryBits& query, std::uint64_t begin, std::uint64_t end,
                Visit visit) {
  std::array<std::uint32_t, scanBlockSize> shared;
  const auto countAnd = QXSystem::QXGetBitCountKernel().countAnd;
  const std::size_t stride = FileLayout::RecordWords(records.numWords);
  for (std::uint64_t block = begin; block < end; block += scanBlockSize) {
    const auto size = static_cast<std::uint32_t>(std::min(scanBlockSize, end - block));
    const std::uint64_t* const first = records.Record(block);
    countAnd(query.words.data(), records.numWords, first + FileLayout::dataSlot, stride, size, shared.data());
    visit(first, size, shared.data());
  }
}

/// Calls take(index, score) for every record.
template <class Take>
void ScanAll(const RecordTable& records, const QueryBits& query, const Scorer& scorer, std::uint64_t begin,
             std::uint64_t end, Take take) {
  const std::size_t stride = FileLayout::RecordWords(records.numWords);
  ScanBlocks(records, query, begin, end,
             [&](const std::uint64_t* record, std::uint32_t size, const std::uint32_t* shared) {
               for (std::uint32_t i = 0; i < size; ++i, record += stride) {
                 take(static_cast<unsigned>(record[FileLayout::indexSlot]),
                      scorer(record[FileLayout::bitCountSlot], shared[i]));
               }
             });
}

/// The bit counts of a block's records.
inline void ReadBitCounts(const RecordTable& records, const std::uint64_t* first, std::uint32_t size,
                          float* bitCounts) {
  const std::size_t stride = FileLayout::RecordWords(records.numWords);
  for (std::uint32_t i = 0; i < size; ++i) {
    bitCounts[i] = static_cast<float>(first[i * stride + FileLayout::bitCountSlot]);
  }
}

/// A filter for the search that the options ask for.
inline CandidateFilter MakeFilter(const QXFPDatabaseOptions& options, const RecordTable& records,
                                  const QueryBits& query) {
  return CandidateFilter({options.GetSimFunc(), options.GetTverskyAlpha(), options.GetTverskyBeta(),
                          options.GetDescendingOrder()},
                         records.NumBits(), query.numSet);
}

/// Offers to a list the hits of a block's records that pass a filter.
/// Shape    first: the block's first record; bitCounts, shared: a count for each record.
template <class Hits>
void OfferCandidates(const RecordTable& records, const Scorer& scorer, CandidateFilter& filter,
                     const std::uint64_t* first, std::uint32_t size, const float* bitCounts,
                     const std::uint32_t* shared, Hits& hits) {
  const std::size_t stride = FileLayout::RecordWords(records.numWords);
  filter.OfferPassing(
      size, bitCounts, shared,
      [&](std::uint32_t i) { return scorer(first[i * stride + FileLayout::bitCountSlot], shared[i]); },
      [&](std::uint32_t i) { return static_cast<unsigned>(first[i * stride + FileLayout::indexSlot]); },
      hits);
}

/// The same for all records from begin to end - 1.
template <class Hits>
void ScanCandidates(const RecordTable& records, const QueryBits& query, const Scorer& scorer,
                    CandidateFilter& filter, std::uint64_t begin, std::uint64_t end, Hits& hits) {
  std::array<float, scanBlockSize> bitCounts;
  ScanBlocks(records, query, begin, end,
             [&](const std::uint64_t* first, std::uint32_t size, const std::uint32_t* shared) {
               ReadBitCounts(records, first, size, bitCounts.data());
               OfferCandidates(records, scorer, filter, first, size, bitCounts.data(), shared, hits);
             });
}

}  // namespace QXFingrix
