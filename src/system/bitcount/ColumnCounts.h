// Adds up columns for all records of a piece at once: by carry-save adders, eight columns a step, into planes,
// where plane p holds bit p of every record's count. To be included after Columns.h.
// Source   Harley and Seal, in Warren, Hacker's Delight, 2nd ed. 2012, section 5-1.

class ColumnCounts {
 public:
  /// Adds up columns; false, with counts of 0, as soon as no record can come to `least` any more.
  /// Shape    columns: of one piece, column i at columns + i * stride; bits: which, a multiple of 8 of them and
  ///          fewer than 2^16.
  template <bool isStreaming>
  QX_KERNEL_TARGET bool Add(const std::uint64_t* columns, std::size_t stride,
                            std::span<const std::uint16_t> bits, std::uint32_t least) {
    const std::uint16_t* next = bits.data();
    std::size_t left = bits.size();
    Column ones{}, twos{}, fours{}, eights{};
    while (left > 0) {
      Column eightsA, eightsB{}, sixteens;
      AddEight<isStreaming>(columns, stride, next, ones, twos, fours, eightsA);
      if (left > 8) AddEight<isStreaming>(columns, stride, next + 8, ones, twos, fours, eightsB);
      const std::size_t step = left > 8 ? 16 : 8;
      AddTwo(eights, eightsA, eightsB, sixteens);
      next += step;
      left -= step;
      numPlanes_ = static_cast<std::size_t>(std::bit_width(bits.size() - left));
      for (std::size_t p = 4; p < numPlanes_; ++p) {
        const Column carry = planes_[p] & sixteens;
        planes_[p] ^= sixteens;
        sixteens = carry;
      }
      if (least <= left && left > 0) continue;
      planes_[0] = ones;
      planes_[1] = twos;
      planes_[2] = fours;
      planes_[3] = eights;
      if (least > left && !Reach(least - static_cast<std::uint32_t>(left))) {
        std::fill_n(planes_, numPlanes, Column{});
        return false;
      }
    }
    return least == 0 || !bits.empty();
  }

  /// Writes the counts of a block's records that are among the first `size` and in this piece, or adds to what
  /// is there.
  QX_KERNEL_TARGET void Write(std::uint32_t* counts, std::size_t piece, std::size_t size,
                              bool isAdding) const {
    Column rows[numPlanes];
    for (std::size_t p = 0; p < numPlanes; ++p) rows[p] = planes_[p];
    SwapPlanes<8>(rows);
    SwapPlanes<4>(rows);
    SwapPlanes<2>(rows);
    SwapPlanes<1>(rows);
    constexpr std::size_t pieceRecords = rowRecords / numPieces;  // of a row
    for (std::size_t r = 0; r < numPlanes; ++r) {
      const std::size_t first = r * rowRecords + piece * pieceRecords;
      if (first + pieceRecords <= size && !isAdding) {
        Widen(rows[r], counts + first);
        continue;
      }
      std::uint32_t row[pieceRecords];
      Widen(rows[r], row);
      for (std::size_t i = first; i < std::min(size, first + pieceRecords); ++i) {
        counts[i] = (isAdding ? counts[i] : 0) + row[i - first];
      }
    }
  }

 private:
  static constexpr std::size_t prefetchWords = 3 * QXBitLists::columnWords;

  QX_KERNEL_TARGET static const Column& Load(const std::uint64_t* columns, std::size_t stride,
                                             std::uint16_t bit) {
    return *reinterpret_cast<const ColumnPiece*>(columns + bit * stride);
  }

  // Adds eight columns to the low planes. In a stream of blocks, each column's part for a later block, which
  // lies a few cache lines further, is asked for.
  template <bool isStreaming>
  QX_KERNEL_TARGET static void AddEight(const std::uint64_t* columns, std::size_t stride,
                                        const std::uint16_t* bits, Column& ones, Column& twos, Column& fours,
                                        Column& eights) {
    if constexpr (isStreaming) {
      for (std::size_t i = 0; i < 8; ++i) __builtin_prefetch(columns + bits[i] * stride + prefetchWords);
    }
    Column twosA, twosB, foursA, foursB;
    AddTwo(ones, Load(columns, stride, bits[0]), Load(columns, stride, bits[1]), twosA);
    AddTwo(ones, Load(columns, stride, bits[2]), Load(columns, stride, bits[3]), twosB);
    AddTwo(twos, twosA, twosB, foursA);
    AddTwo(ones, Load(columns, stride, bits[4]), Load(columns, stride, bits[5]), twosA);
    AddTwo(ones, Load(columns, stride, bits[6]), Load(columns, stride, bits[7]), twosB);
    AddTwo(twos, twosA, twosB, foursB);
    AddTwo(fours, foursA, foursB, eights);
  }

  // Replaces sum and two columns by the low bit of their sum, in sum, and its high bit.
  QX_KERNEL_TARGET static void AddTwo(Column& sum, const Column& a, const Column& b, Column& high) {
    const Column odd = sum ^ a;
    high = (sum & a) | (odd & b);
    sum = odd ^ b;
  }

  // Whether a record has at least so many of the columns added.
  QX_KERNEL_TARGET bool Reach(std::uint32_t least) const {
    if (least >> numPlanes_ != 0) return false;
    Column isEqual = ~Column{};
    Column isMore{};
    for (std::size_t p = numPlanes_; p-- > 0;) {
      if ((least >> p & 1) != 0) {
        isEqual &= planes_[p];
      } else {
        isMore |= isEqual & planes_[p];
        isEqual &= ~planes_[p];
      }
    }
    const Column reaching = isMore | isEqual;
    std::uint64_t any = 0;
    for (std::size_t lane = 0; lane < pieceLanes; ++lane) any |= reaching[lane];
    return any != 0;
  }

  template <std::size_t distance>
  QX_KERNEL_TARGET static void SwapPlanes(Column (&rows)[numPlanes]) {
#pragma GCC unroll 16
    for (std::size_t r = 0; r < numPlanes; ++r) {
      if ((r & distance) == 0) SwapBits(rows[r], rows[r + distance], distance);
    }
  }

  // Writes the 16-bit counts of a row as 32-bit ones.
  QX_KERNEL_TARGET static void Widen(const Column& row, std::uint32_t* counts) {
    using Narrow [[gnu::vector_size(sizeof(Column) / 2)]] = std::uint16_t;
    using Wide [[gnu::vector_size(sizeof(Column))]] = std::uint32_t;
    Narrow halves[2];
    __builtin_memcpy(halves, &row, sizeof row);
#pragma GCC unroll 2
    for (std::size_t h = 0; h < 2; ++h) {
      const auto wide = __builtin_convertvector(halves[h], Wide);
      __builtin_memcpy(counts + h * (sizeof(Narrow) / 2), &wide, sizeof wide);
    }
  }

  std::size_t numPlanes_ = 0;
  Column planes_[numPlanes]{};
};
