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

// The counting of a block's columns, up to sixteen at a time. Pieces that cannot reach the least any more are left
// behind.
class BlockCounts {
 public:
  static constexpr std::size_t step = 16;

  /// Adds up to `step` columns. Whether a record may have at least so many of them.
  QX_KERNEL_TARGET bool Add(const std::uint64_t* columns, std::span<const std::uint16_t> bits,
                            std::span<const std::uint16_t> next, std::uint32_t least) {
    bool isAlive = false;
    for (std::size_t piece = 0; piece < numPieces; ++piece) {
      if (isDead_[piece]) continue;
      parts_[piece].Add(columns + piece * pieceLanes, bits, next);
      next = {};  // a line of memory holds all pieces of a column
      if (least != 0 && !parts_[piece].Reach(least)) {
        parts_[piece].Clear();
        isDead_[piece] = true;
      } else {
        isAlive = true;
      }
    }
    return isAlive;
  }

  QX_KERNEL_TARGET void Write(std::uint32_t* both, std::size_t size, bool isAdding) const {
    for (std::size_t piece = 0; piece < numPieces; ++piece) parts_[piece].Write(both, piece, size, isAdding);
  }

 private:
  ColumnCounts parts_[numPieces];
  bool isDead_[numPieces]{};
};

static_assert(sizeof(BlockCounts) <= sizeof(QXColumnCounts));

QX_KERNEL_TARGET void StartColumns(QXColumnCounts& counts) {
  new (counts.memory) BlockCounts;
}

QX_KERNEL_TARGET bool AddColumns(QXColumnCounts& counts, const std::uint64_t* columns,
                                 std::span<const std::uint16_t> bits, std::span<const std::uint16_t> next,
                                 std::uint32_t least) {
  return std::launder(reinterpret_cast<BlockCounts*>(counts.memory))->Add(columns, bits, next, least);
}

QX_KERNEL_TARGET void WriteColumns(const QXColumnCounts& counts, std::size_t numRecords,
                                   std::uint32_t* both) {
  std::launder(reinterpret_cast<const BlockCounts*>(counts.memory))->Write(both, numRecords, false);
}

// The columns of a block of records and a slice of the fingerprint, then the empty one that padding names.
struct ColumnPanel {
  alignas(64) std::uint64_t columns[QXBitLists::sliceBits + 1][QXBitLists::columnWords];
};

// Whether a record may reach the least.
QX_KERNEL_TARGET inline bool CountPanel(const ColumnPanel& panel, std::span<const std::uint16_t> bits,
                                        std::uint32_t least, BlockCounts& counts) {
  bool isAlive = least == 0 || !bits.empty();
  while (!bits.empty() && isAlive) {
    const auto next = bits.first(std::min(bits.size(), BlockCounts::step));
    bits = bits.subspan(next.size());
    const std::uint32_t left = static_cast<std::uint32_t>(bits.size());
    isAlive = counts.Add(panel.columns[0], next, {}, least > left ? least - left : 0);
  }
  return isAlive;
}

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
      MakeColumns(rows, size, std::min(QXBitLists::sliceWords, queries.NumWords() - word), panel.columns[0]);
      for (std::size_t q = 0; q < queries.NumVectors(); ++q) {
        BlockCounts counts;
        if (!CountPanel(panel, queries.Bits(q, slice), least ? least[q] : 0, counts)) continue;
        counts.Write(both + q * bothStride + begin, size, slice != 0);
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
