// Adds up columns for all records of a piece at once: by carry-save adders, eight columns a step, into planes,
// where plane p holds bit p of every record's count. To be included after Columns.h.
// Source   Harley and Seal, in Warren, Hacker's Delight, 2nd ed. 2012, section 5-1.

class ColumnCounts {
 public:
  QX_KERNEL_TARGET ColumnCounts() {
    for (std::size_t p = 0; p < 4; ++p) planes_[p] = Column{};
  }

  /// Adds eight or sixteen columns, and asks for others to be fetched from memory meanwhile: requests that come
  /// all at once hold up the processor.
  /// Shape    columns: of one piece, column i at columns + i * columnWords; bits: which; next: which to fetch,
  ///          as many, or empty.
  QX_KERNEL_TARGET void Add(const std::uint64_t* columns, std::span<const std::uint16_t> bits,
                            std::span<const std::uint16_t> next) {
    Column eightsA, eightsB{}, sixteens;
    AddEight(columns, bits.first(8), next, eightsA);
    if (bits.size() > 8) {
      AddEight(columns, bits.subspan(8), next.subspan(std::min<std::size_t>(next.size(), 8)), eightsB);
    }
    AddTwo(planes_[3], eightsA, eightsB, sixteens);
    const std::size_t numBefore = std::max<std::size_t>(4, NumPlanes());
    for (std::size_t p = 4; p < numBefore; ++p) {
      const Column carry = planes_[p] & sixteens;
      planes_[p] ^= sixteens;
      sixteens = carry;
    }
    numAdded_ += bits.size();
    if (numBefore < NumPlanes()) planes_[numBefore] = sixteens;
  }

  /// Whether a record has at least so many of the columns added.
  QX_KERNEL_TARGET bool Reach(std::uint32_t least) const {
    if (least >> NumPlanes() != 0) return false;
    Column isEqual = ~Column{};
    Column isMore{};
    for (std::size_t p = NumPlanes(); p-- > 0;) {
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

  void Clear() { numAdded_ = 0; }  // counts of what is left behind are not added to

  /// Writes the counts of a block's records that are among the first `size` and in this piece, or adds to what
  /// is there.
  QX_KERNEL_TARGET void Write(std::uint32_t* counts, std::size_t piece, std::size_t size,
                              bool isAdding) const {
    Column rows[numPlanes]{};
    for (std::size_t p = 0; p < NumPlanes(); ++p) rows[p] = planes_[p];
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
  std::size_t NumPlanes() const { return static_cast<std::size_t>(std::bit_width(numAdded_)); }

  QX_KERNEL_TARGET static const Column& Load(const std::uint64_t* columns, std::uint16_t bit) {
    return *reinterpret_cast<const ColumnPiece*>(columns + bit * QXBitLists::columnWords);
  }

  QX_KERNEL_TARGET void AddEight(const std::uint64_t* columns, std::span<const std::uint16_t> bits,
                                 std::span<const std::uint16_t> next, Column& eights) {
    if (next.size() < 8) {
      AddEight<false>(columns, bits.data(), nullptr, eights);
    } else {
      AddEight<true>(columns, bits.data(), next.data(), eights);
    }
  }

  // Adds eight columns to the low planes.
  template <bool isFetching>
  QX_KERNEL_TARGET inline void AddEight(const std::uint64_t* columns, const std::uint16_t* bits,
                                        const std::uint16_t* next, Column& eights) {
    Column ones = planes_[0], twos = planes_[1], fours = planes_[2];
    Column twosA, twosB, foursA, foursB;
    Fetch<isFetching>(columns, next, 0);
    AddTwo(ones, Load(columns, bits[0]), Load(columns, bits[1]), twosA);
    Fetch<isFetching>(columns, next, 2);
    AddTwo(ones, Load(columns, bits[2]), Load(columns, bits[3]), twosB);
    AddTwo(twos, twosA, twosB, foursA);
    Fetch<isFetching>(columns, next, 4);
    AddTwo(ones, Load(columns, bits[4]), Load(columns, bits[5]), twosA);
    Fetch<isFetching>(columns, next, 6);
    AddTwo(ones, Load(columns, bits[6]), Load(columns, bits[7]), twosB);
    AddTwo(twos, twosA, twosB, foursB);
    AddTwo(fours, foursA, foursB, eights);
    planes_[0] = ones;
    planes_[1] = twos;
    planes_[2] = fours;
  }

  template <bool isFetching>
  QX_KERNEL_TARGET static void Fetch(const std::uint64_t* columns, const std::uint16_t* next, std::size_t i) {
    if constexpr (isFetching) {
      __builtin_prefetch(columns + next[i] * QXBitLists::columnWords);
      __builtin_prefetch(columns + next[i + 1] * QXBitLists::columnWords);
    }
  }

  // Replaces sum and two columns by the low bit of their sum, in sum, and its high bit.
  QX_KERNEL_TARGET static void AddTwo(Column& sum, const Column& a, const Column& b, Column& high) {
    const Column odd = sum ^ a;
    high = (sum & a) | (odd & b);
    sum = odd ^ b;
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

  std::size_t numAdded_ = 0;
  Column planes_[numPlanes];  // the first four, and those that numAdded_ needs
};
