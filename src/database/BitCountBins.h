#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "database/FingerPrintStore.h"
#include "database/WordArena.h"

namespace QXFingrix {

/// Entries of bits in bins by bit count; counts in one bin differ by an eighth at most. Those of one size
/// that are added to a bin in a row lie side by side, as the kernels want them, and so do their bit counts.
class BitCountBins {
 public:
  /// The bin of entries with so many bits set.
  static constexpr unsigned BinOf(unsigned bitCount) {
    const auto width = static_cast<unsigned>(std::bit_width(bitCount));
    return width <= 4 ? bitCount : (width - 3) * 8 + (bitCount >> (width - 4)) % 8;
  }
  /// The smallest bit count of a bin.
  static constexpr unsigned FirstBitCount(unsigned bin) {
    return bin < 16 ? bin : (8 + bin % 8) << (bin / 8 - 1);
  }

  unsigned NumBins() const { return static_cast<unsigned>(bins_.size()); }
  /// Whether all entries of a bin have this size.
  bool HasOneSize(unsigned bin, unsigned numBits) const {
    return bins_[bin].hasOneSize && (bins_[bin].runs.empty() || bins_[bin].runs.front().numBits == numBits);
  }

  /// Entries of a bin that have one size and lie side by side, ascending.
  struct Run {
    std::span<const unsigned> entries;
    const unsigned* bitCounts;  // of each
    const std::uint64_t* words;
    unsigned numBits;
  };
  /// Calls visit(run) for runs of at most maxSize entries that together are the entries from begin to end - 1
  /// of a bin.
  template <class Visit>
  void ForRuns(unsigned bin, unsigned begin, unsigned end, std::size_t maxSize, Visit visit) const;

  /// Appends fp to the store, its words to its bin.
  /// Errors   std::bad_alloc, nothing stored.
  void Append(const QXFingerPrint& fp, FingerPrintStore& store);

 private:
  struct RunStart {
    std::size_t first;  // among the entries of the bin
    const std::uint64_t* words;
    unsigned numBits;
  };

  struct Bin {
    WordArena words;
    std::vector<unsigned> entries;
    std::vector<unsigned> bitCounts;
    std::vector<RunStart> runs;
    bool hasOneSize = true;
  };

  std::vector<Bin> bins_;
};

static_assert(BitCountBins::BinOf(15) == 15 && BitCountBins::BinOf(16) == 16);
static_assert(BitCountBins::FirstBitCount(BitCountBins::BinOf(352)) == 352 &&
              BitCountBins::BinOf(351) + 1 == BitCountBins::BinOf(352));

template <class Visit>
void BitCountBins::ForRuns(unsigned binNumber, unsigned begin, unsigned end, std::size_t maxSize,
                           Visit visit) const {
  const Bin& bin = bins_[binNumber];
  const auto positionOf = [&bin](unsigned entry) {
    return static_cast<std::size_t>(std::ranges::lower_bound(bin.entries, entry) - bin.entries.begin());
  };
  std::size_t first = positionOf(begin);
  const std::size_t last = positionOf(end);
  for (auto run = std::ranges::upper_bound(bin.runs, first, {}, &RunStart::first); first < last; ++run) {
    const RunStart& start = *(run - 1);
    const std::size_t runEnd = run == bin.runs.end() ? last : std::min(last, run->first);
    for (std::size_t size = 0; first < runEnd; first += size) {
      size = std::min(maxSize, runEnd - first);
      visit(Run{{bin.entries.data() + first, size},
                bin.bitCounts.data() + first,
                start.words + (first - start.first) * NumWords(start.numBits),
                start.numBits});
    }
  }
}

}  // namespace QXFingrix
