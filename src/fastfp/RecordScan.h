#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "QXSystem/QXBitCountKernel.h"
#include "fastfp/CandidateFilter.h"
#include "fastfp/FileLayout.h"
#include "fastfp/Scorer.h"

// The scan over records: blocks of shared bit counts from the kernel, then one pass over the counts. What a caller
// does with a score is a function object, inlined into that pass.

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

/// Calls visit(record, shared bits) for the records from begin to end - 1, in order.
template <class Visit>
void ScanRecords(const RecordTable& records, const QueryBits& query, std::uint64_t begin, std::uint64_t end,
                 Visit visit) {
  constexpr std::uint64_t blockSize =
      128;  // so that bit counts are read while the block is in the first cache
  std::array<std::uint32_t, blockSize> shared;
  const auto countAnd = QXSystem::QXGetBitCountKernel().countAnd;
  const std::size_t stride = FileLayout::RecordWords(records.numWords);
  for (std::uint64_t block = begin; block < end; block += blockSize) {
    const std::uint64_t size = std::min(blockSize, end - block);
    const std::uint64_t* record = records.Record(block);
    countAnd(query.words.data(), records.numWords, record + FileLayout::dataSlot, stride, size,
             shared.data());
    for (std::uint64_t i = 0; i < size; ++i, record += stride) visit(record, shared[i]);
  }
}

/// Calls take(index, score) for every record.
template <class Take>
void ScanAll(const RecordTable& records, const QueryBits& query, const Scorer& scorer, std::uint64_t begin,
             std::uint64_t end, Take take) {
  ScanRecords(records, query, begin, end, [&](const std::uint64_t* record, std::uint32_t shared) {
    take(static_cast<unsigned>(record[FileLayout::indexSlot]),
         scorer(record[FileLayout::bitCountSlot], shared));
  });
}

/// Calls offer(index, score) for every record that can reach the bar and for some that miss it. Where a score misses
/// the bar, offer returns the bar, otherwise nothing.
template <class Offer>
void ScanCandidates(const RecordTable& records, const QueryBits& query, const Scorer& scorer,
                    CandidateFilter& filter, std::uint64_t begin, std::uint64_t end, Offer offer) {
  ScanRecords(records, query, begin, end, [&](const std::uint64_t* record, std::uint32_t shared) {
    const std::uint64_t recordBits = record[FileLayout::bitCountSlot];
    if (!filter.Passes(recordBits, shared)) return;
    const double score = scorer(recordBits, shared);
    const std::optional<double> missedBar =
        offer(static_cast<unsigned>(record[FileLayout::indexSlot]), score);
    if (missedBar) filter.Narrow(recordBits, *missedBar);
  });
}

}  // namespace QXFingrix
