// The loops that all kernels share. A file of one instruction set defines QX_KERNEL_TARGET as the attribute
// that selects it, then Lanes and Column in an anonymous namespace, and then includes this file there. Column
// is told of in Columns.h; of Lanes it needs
//   Sum                                   running counts, one or several lanes wide; Sum{} is zero
//   blockWords                            words that AddBlock takes
//   Sum AddBlock(Sum, query, record)      adds the counts of query AND record over blockWords words
//   Sum AddTail(Sum, query, record, n)    the same over n words, 0 < n < blockWords, and reads no others
//   std::uint64_t Total(Sum)              the sum of the lanes
// It is included and not a template in a header of its own, because a template would have to name its target
// before it knows its lanes: code for one instruction set is inlined only into code for the same set.
//
// The scan of a large file is bound by memory. Hardware prefetchers stop at the borders of 4 KiB pages, so
// each cache line is asked for prefetchBytes before it is read. That is further than a record is long; the
// requests past the end of the block are harmless, since a prefetch never faults.

#include "system/bitcount/Columns.h"
// Needs the one above, and so stands apart from it.
#include "system/bitcount/ColumnCounts.h"

constexpr std::uintptr_t prefetchBytes = 6144;
constexpr std::size_t lineWords = 8;

QX_KERNEL_TARGET inline void PrefetchAhead(const std::uint64_t* address) {
  __builtin_prefetch(
      reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(address) + prefetchBytes));
}

template <bool isStreaming>
QX_KERNEL_TARGET inline std::uint64_t CountShared(const std::uint64_t* query, const std::uint64_t* record,
                                                  std::size_t numWords) {
  Lanes::Sum sum{};
  const std::size_t numBlockWords = numWords - numWords % Lanes::blockWords;
  std::size_t i = 0;
  for (; i < numBlockWords; i += Lanes::blockWords) {
    if constexpr (isStreaming) {
      for (std::size_t line = 0; line < Lanes::blockWords; line += lineWords)
        PrefetchAhead(record + i + line);
    }
    sum = Lanes::AddBlock(sum, query + i, record + i);
  }
  if constexpr (isStreaming) PrefetchAhead(record + i);
  if (i < numWords) sum = Lanes::AddTail(sum, query + i, record + i, numWords - i);
  return Lanes::Total(sum);
}

QX_KERNEL_TARGET std::uint64_t Count(const std::uint64_t* words, std::size_t numWords) {
  return CountShared<false>(words, words, numWords);
}

QX_KERNEL_TARGET void CountAnd(const std::uint64_t* query, std::size_t numWords, const std::uint64_t* records,
                               std::size_t stride, std::size_t numRecords, std::uint32_t* both) {
  for (std::size_t i = 0; i < numRecords; ++i, records += stride) {
    both[i] = static_cast<std::uint32_t>(CountShared<true>(query, records, numWords));
  }
}

// The counting of a few blocks side by side, sixteen columns at a time: a column's parts for neighbouring
// blocks lie side by side too. Pieces that cannot reach the least any more are left behind.
class BlockCounts {
 public:
  /// parts: room for the counts of the blocks' pieces.
  QX_KERNEL_TARGET BlockCounts(const std::uint64_t* columns, std::size_t stride, std::size_t numBlocks,
                               ColumnCounts* parts)
      : columns_(columns),
        stride_(stride),
        numBlocks_(numBlocks),
        numAlive_(numBlocks * numPieces),
        parts_(parts) {
    for (std::size_t i = 0; i < numAlive_; ++i) alive_[i] = static_cast<std::uint8_t>(i);
  }

  /// least: for each block. Whether a piece is left.
  QX_KERNEL_TARGET bool Count(std::span<const std::uint16_t> bits, const std::uint32_t* least) {
    if (bits.empty()) return !least || *std::min_element(least, least + numBlocks_) == 0;
    Prefetch(bits.first(std::min(bits.size(), 2 * step)));
    while (!bits.empty() && numAlive_ > 0) {
      if (bits.size() > 2 * step) Prefetch(bits.subspan(2 * step, std::min(bits.size() - 2 * step, step)));
      const auto next = bits.first(std::min(bits.size(), step));
      bits = bits.subspan(next.size());
      std::size_t numAlive = 0;
      for (std::size_t i = 0; i < numAlive_; ++i) {
        const std::size_t part = alive_[i];
        const std::uint32_t wanted = least ? least[part / numPieces] : 0;
        parts_[part].Add(columns_ + part * pieceLanes, stride_, next);
        if (wanted > bits.size() && !parts_[part].Reach(wanted - static_cast<std::uint32_t>(bits.size()))) {
          parts_[part].Clear();
        } else {
          alive_[numAlive++] = static_cast<std::uint8_t>(part);
        }
      }
      numAlive_ = numAlive;
    }
    return numAlive_ > 0;
  }

  bool IsAlive(std::size_t block) const {
    return std::any_of(alive_, alive_ + numAlive_,
                       [&](std::size_t part) { return part / numPieces == block; });
  }

  QX_KERNEL_TARGET void Write(std::size_t block, std::uint32_t* both, std::size_t size, bool isAdding) const {
    for (std::size_t piece = 0; piece < numPieces; ++piece) {
      parts_[block * numPieces + piece].Write(both, piece, size, isAdding);
    }
  }

 private:
  static constexpr std::size_t step = 16;

  QX_KERNEL_TARGET void Prefetch(std::span<const std::uint16_t> bits) const {
    if (numBlocks_ == 1) return;  // a panel, in the caches already
    for (const std::uint16_t bit : bits) {
      for (std::size_t block = 0; block < numBlocks_; ++block) {
        __builtin_prefetch(columns_ + bit * stride_ + block * QXBitLists::columnWords);
      }
    }
  }

  const std::uint64_t* columns_;
  std::size_t stride_;
  std::size_t numBlocks_;
  std::size_t numAlive_;
  ColumnCounts* parts_;
  std::uint8_t alive_[QXBitLists::maxBlocks * numPieces];
};

QX_KERNEL_TARGET unsigned CountColumns(const std::uint64_t* columns, std::size_t stride,
                                       std::span<const std::uint16_t> bits, const std::uint32_t* least,
                                       std::size_t numRecords, std::uint32_t* both) {
  const std::size_t numBlocks = (numRecords + columnRecords - 1) / columnRecords;
  ColumnCounts parts[QXBitLists::maxBlocks * numPieces];
  BlockCounts counts(columns, stride, numBlocks, parts);
  if (!counts.Count(bits, least)) return 0;
  unsigned reached = 0;
  for (std::size_t block = 0; block < numBlocks; ++block) {
    if (!counts.IsAlive(block)) continue;
    reached |= 1U << block;
    const std::size_t first = block * columnRecords;
    counts.Write(block, both + first, std::min(columnRecords, numRecords - first), false);
  }
  return reached;
}

// The columns of a block of records and a slice of the fingerprint, then the empty one that padding names.
struct ColumnPanel {
  alignas(64) std::uint64_t columns[QXBitLists::sliceBits + 1][QXBitLists::columnWords];
};

QX_KERNEL_TARGET void CountLists(const QXBitLists& queries, const std::uint64_t* records, std::size_t stride,
                                 std::size_t numRecords, const std::uint32_t* least, std::uint32_t* both,
                                 std::size_t bothStride, bool* reaches) {
  const std::size_t numSlices = queries.NumSlices();
  if (numSlices != 1) least = nullptr;  // one slice of several does not tell
  for (std::size_t q = 0; q < queries.NumVectors(); ++q) {
    if (least || numSlices == 0) std::fill_n(both + q * bothStride, numRecords, 0u);
    if (reaches) reaches[q] = !least;
  }
  ColumnPanel panel;
  std::fill_n(panel.columns[QXBitLists::sliceBits], QXBitLists::columnWords, std::uint64_t{0});
  for (std::size_t begin = 0; begin < numRecords; begin += columnRecords) {
    const std::size_t size = std::min(columnRecords, numRecords - begin);
    for (std::size_t slice = 0; slice < numSlices; ++slice) {
      const std::size_t word = slice * QXBitLists::sliceWords;
      const std::uint64_t* rows[columnRecords];
      for (std::size_t i = 0; i < size; ++i) rows[i] = records + (begin + i) * stride + word;
      MakeColumns(rows, size, std::min(QXBitLists::sliceWords, queries.NumWords() - word), panel.columns[0],
                  QXBitLists::columnWords);
      for (std::size_t q = 0; q < queries.NumVectors(); ++q) {
        ColumnCounts parts[numPieces];
        BlockCounts counts(panel.columns[0], QXBitLists::columnWords, 1, parts);
        if (!counts.Count(queries.Bits(q, slice), least ? &least[q] : nullptr)) continue;
        counts.Write(0, both + q * bothStride + begin, size, slice != 0);
        if (least) reaches[q] = true;
      }
    }
  }
}

QX_KERNEL_TARGET void CountPair(const std::uint64_t* a, const std::uint64_t* b, std::size_t numWords,
                                std::uint64_t* ofA, std::uint64_t* ofB, std::uint64_t* both) {
  Lanes::Sum sumA{};
  Lanes::Sum sumB{};
  Lanes::Sum shared{};
  const std::size_t numBlockWords = numWords - numWords % Lanes::blockWords;
  std::size_t i = 0;
  for (; i < numBlockWords; i += Lanes::blockWords) {
    sumA = Lanes::AddBlock(sumA, a + i, a + i);
    sumB = Lanes::AddBlock(sumB, b + i, b + i);
    shared = Lanes::AddBlock(shared, a + i, b + i);
  }
  if (i < numWords) {
    sumA = Lanes::AddTail(sumA, a + i, a + i, numWords - i);
    sumB = Lanes::AddTail(sumB, b + i, b + i, numWords - i);
    shared = Lanes::AddTail(shared, a + i, b + i, numWords - i);
  }
  *ofA = Lanes::Total(sumA);
  *ofB = Lanes::Total(sumB);
  *both = Lanes::Total(shared);
}
