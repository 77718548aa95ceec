// Records turned on their side: a panel holds a block of them as columns, one for each bit of a slice of the
// fingerprint, with a bit for each record. A comparison then reads the columns of the query's set bits alone.
// Source   Warren, Hacker's Delight, 2nd ed. 2012, section 7-3.
//
// A file of one instruction set includes this where Body.h is included; it needs
//   Column                                a vector of 64-bit words, as wide as the instruction set's
// and no vector operations but the compiler's own on whole words.

// The middle step of transpositions: swaps the upper half of every 2 * distance bits of a with the lower half
// of b's.
QX_KERNEL_TARGET inline void SwapBits(Column& a, Column& b, std::size_t distance) {
  const std::uint64_t low = ~std::uint64_t{0} / ((std::uint64_t{1} << distance) + 1);
  const Column differing = ((a >> distance) ^ b) & low;
  b ^= differing;
  a ^= differing << distance;
}

class ColumnPanel {
 public:
  static constexpr std::size_t numRecords = 8 * sizeof(Column);
  static constexpr std::size_t numLanes = sizeof(Column) / sizeof(std::uint64_t);
  static constexpr std::size_t maxWords = QXBitLists::sliceWords;
  static constexpr std::size_t numPlanes = 16;                       // enough for the bits of maxWords words
  static constexpr std::size_t rowRecords = numRecords / numPlanes;  // counts that a vector has room for

  /// Takes numWords words, at most maxWords, of each record; of fewer records than a panel holds, the others
  /// are empty.
  /// Shape    record i: numWords words at records + i * stride; size: at most numRecords.
  QX_KERNEL_TARGET void Fill(const std::uint64_t* records, std::size_t stride, std::size_t size,
                             std::size_t numWords) {
    static constexpr std::uint64_t emptyRecord[maxWords]{};
    const std::uint64_t* rows[wordBits][numLanes];
    for (std::size_t p = 0; p < wordBits; ++p) {
      for (std::size_t lane = 0; lane < numLanes; ++lane) {
        const std::size_t record = RecordAt(wordBits * lane + p);
        rows[p][lane] = record < size ? records + record * stride : emptyRecord;
      }
    }
    for (std::size_t w = 0; w < numWords; ++w) FillWord(rows, w);
    columns_[QXBitLists::sliceBits] = Column{};
  }

  /// By bit; behind the last an empty one, which padding names.
  const Column* Columns() const { return columns_; }

 private:
  static constexpr std::size_t wordBits = 64;

  // The record whose bits stand at a place of the columns. Turned back, 16 planes become 16 vectors of counts;
  // records stand so that those come out in their order.
  static constexpr std::size_t RecordAt(std::size_t place) {
    return rowRecords * (place % numPlanes) + place / numPlanes;
  }

  // Transposes one word of all records, 64 x 64 bits in each lane.
  QX_KERNEL_TARGET void FillWord(const std::uint64_t* const (&rows)[wordBits][numLanes], std::size_t w) {
    Column* const block = columns_ + wordBits * w;
    // Rounds of three halvings each: eight columns are all that stays in registers.
#pragma GCC unroll 1
    for (std::size_t i = 0; i < 8; ++i) {
      Column eight[8];
#pragma GCC unroll 8
      for (std::size_t k = 0; k < 8; ++k) {
        Column row{};
        for (std::size_t lane = 0; lane < numLanes; ++lane) row[lane] = rows[i + 8 * k][lane][w];
        eight[k] = row;
      }
      SwapEight<32, 16, 8>(eight);
#pragma GCC unroll 8
      for (std::size_t k = 0; k < 8; ++k) block[i + 8 * k] = eight[k];
    }
#pragma GCC unroll 1
    for (std::size_t i = 0; i < wordBits; i += 8) {
      Column eight[8];
#pragma GCC unroll 8
      for (std::size_t k = 0; k < 8; ++k) eight[k] = block[i + k];
      SwapEight<4, 2, 1>(eight);
#pragma GCC unroll 8
      for (std::size_t k = 0; k < 8; ++k) block[i + k] = eight[k];
    }
  }

  template <std::size_t far, std::size_t middle, std::size_t near>
  QX_KERNEL_TARGET static void SwapEight(Column (&eight)[8]) {
#pragma GCC unroll 4
    for (std::size_t k = 0; k < 4; ++k) SwapBits(eight[k], eight[k + 4], far);
#pragma GCC unroll 4
    for (std::size_t k : {0, 1, 4, 5}) SwapBits(eight[k], eight[k + 2], middle);
#pragma GCC unroll 4
    for (std::size_t k : {0, 2, 4, 6}) SwapBits(eight[k], eight[k + 1], near);
  }

  alignas(64) Column columns_[QXBitLists::sliceBits + 1];
};
