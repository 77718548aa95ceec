// Adds up columns for all records of a panel at once: by carry-save adders, sixteen columns a step, into
// planes, where plane p holds bit p of every record's count. To be included after ColumnPanel.h.
// Source   Harley and Seal, in Warren, Hacker's Delight, 2nd ed. 2012, section 5-1.

/// The number of bits that each record of a panel shares with a query.
class ColumnCounts {
 public:
  /// Adds up the columns of a query's bits.
  QX_KERNEL_TARGET ColumnCounts(const ColumnPanel& panel, std::span<const std::uint16_t> bits)
      : numPlanes_(static_cast<std::size_t>(std::bit_width(bits.size()))) {
    const Column* const columns = panel.Columns();
    Column ones{}, twos{}, fours{}, eights{};
    for (const std::uint16_t* bit = bits.data(); bit != bits.data() + bits.size(); bit += 16) {
      Column twosA, twosB, foursA, foursB, eightsA, eightsB, sixteens;
      Add(ones, columns[bit[0]], columns[bit[1]], twosA);
      Add(ones, columns[bit[2]], columns[bit[3]], twosB);
      Add(twos, twosA, twosB, foursA);
      Add(ones, columns[bit[4]], columns[bit[5]], twosA);
      Add(ones, columns[bit[6]], columns[bit[7]], twosB);
      Add(twos, twosA, twosB, foursB);
      Add(fours, foursA, foursB, eightsA);
      Add(ones, columns[bit[8]], columns[bit[9]], twosA);
      Add(ones, columns[bit[10]], columns[bit[11]], twosB);
      Add(twos, twosA, twosB, foursA);
      Add(ones, columns[bit[12]], columns[bit[13]], twosA);
      Add(ones, columns[bit[14]], columns[bit[15]], twosB);
      Add(twos, twosA, twosB, foursB);
      Add(fours, foursA, foursB, eightsB);
      Add(eights, eightsA, eightsB, sixteens);
      for (std::size_t p = 4; p < numPlanes_; ++p) {
        const Column carry = planes_[p] & sixteens;
        planes_[p] ^= sixteens;
        sixteens = carry;
      }
    }
    planes_[0] = ones;
    planes_[1] = twos;
    planes_[2] = fours;
    planes_[3] = eights;
  }

  /// Whether a record has at least so many.
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
    return IsAnySet(isMore | isEqual);
  }

  /// Writes the counts of the first `size` records, or adds to what is there.
  QX_KERNEL_TARGET void Write(std::uint32_t* counts, std::size_t size, bool isAdding) const {
    Column rows[ColumnPanel::numPlanes];
    for (std::size_t p = 0; p < ColumnPanel::numPlanes; ++p) rows[p] = planes_[p];
    SwapPlanes<8>(rows);
    SwapPlanes<4>(rows);
    SwapPlanes<2>(rows);
    SwapPlanes<1>(rows);
    std::uint32_t all[ColumnPanel::numRecords];
    std::uint32_t* const out = size == ColumnPanel::numRecords && !isAdding ? counts : all;
#pragma GCC unroll 16
    for (std::size_t r = 0; r < ColumnPanel::numPlanes; ++r)
      Widen(rows[r], out + r * ColumnPanel::rowRecords);
    if (out == counts) return;
    for (std::size_t i = 0; i < size; ++i) counts[i] = isAdding ? counts[i] + all[i] : all[i];
  }

 private:
  // Replaces sum and two columns by their sum's low bit, in sum, and high bit.
  QX_KERNEL_TARGET static void Add(Column& sum, const Column& a, const Column& b, Column& high) {
    const Column odd = sum ^ a;
    high = (sum & a) | (odd & b);
    sum = odd ^ b;
  }

  QX_KERNEL_TARGET static bool IsAnySet(const Column& column) {
    std::uint64_t any = 0;
    for (std::size_t lane = 0; lane < ColumnPanel::numLanes; ++lane) any |= column[lane];
    return any != 0;
  }

  template <std::size_t distance>
  QX_KERNEL_TARGET static void SwapPlanes(Column (&rows)[ColumnPanel::numPlanes]) {
#pragma GCC unroll 16
    for (std::size_t r = 0; r < ColumnPanel::numPlanes; ++r) {
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
      __builtin_memcpy(counts + h * (ColumnPanel::rowRecords / 2), &wide, sizeof wide);
    }
  }

  std::size_t numPlanes_;
  Column planes_[ColumnPanel::numPlanes]{};
};
