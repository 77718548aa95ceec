// Records turned on their side: of each block of 512 records, one column for each bit of the fingerprint, with
// a bit for each record. What is compared with a query is then the columns of its set bits alone.
// Source   Warren, Hacker's Delight, 2nd ed. 2012, section 7-3.
//
// A file of one instruction set includes this where Body.h is included; it needs
//   Column                                a vector of 64-bit words, as wide as the instruction set's
// and no vector operations but the compiler's own on whole words. A column is handled piece by piece, each as
// wide as that.

using ColumnPiece [[gnu::may_alias]] = Column;

constexpr std::size_t columnRecords = 64 * QXBitLists::columnWords;
constexpr std::size_t pieceLanes = sizeof(Column) / sizeof(std::uint64_t);
constexpr std::size_t numPieces = QXBitLists::columnWords / pieceLanes;
// Counts of a piece come out as 16 vectors of 16-bit counts, transposed 16 bits by 16. The bits of a block's
// records stand in the order that turns this into the order of the records.
constexpr std::size_t numPlanes = 16;
constexpr std::size_t rowRecords = columnRecords / numPlanes;

// The record of a block whose bits stand at a place of the columns.
constexpr std::size_t RecordAt(std::size_t place) {
  return rowRecords * (place % numPlanes) + place / numPlanes;
}

// The middle step of transpositions: swaps the upper half of every 2 * distance bits of a with the lower half
// of b's.
QX_KERNEL_TARGET inline void SwapBits(Column& a, Column& b, std::size_t distance) {
  const std::uint64_t low = ~std::uint64_t{0} / ((std::uint64_t{1} << distance) + 1);
  const Column differing = ((a >> distance) ^ b) & low;
  b ^= differing;
  a ^= differing << distance;
}

template <std::size_t far, std::size_t middle, std::size_t near>
QX_KERNEL_TARGET inline void SwapEight(Column (&eight)[8]) {
#pragma GCC unroll 4
  for (std::size_t k = 0; k < 4; ++k) SwapBits(eight[k], eight[k + 4], far);
#pragma GCC unroll 4
  for (std::size_t k : {0, 1, 4, 5}) SwapBits(eight[k], eight[k + 2], middle);
#pragma GCC unroll 4
  for (std::size_t k : {0, 2, 4, 6}) SwapBits(eight[k], eight[k + 1], near);
}

using RecordRows = const std::uint64_t* [64][QXBitLists::columnWords];  // by place: its bit, its word

// Transposes word w of the records of a piece, 64 x 64 bits in each lane.
QX_KERNEL_TARGET inline void TransposeWord(const RecordRows& rows, std::size_t piece, std::size_t w,
                                           std::uint64_t* columns) {
  Column block[64];
  // Rounds of three halvings each: eight vectors are all that stays in registers.
#pragma GCC unroll 1
  for (std::size_t i = 0; i < 8; ++i) {
    Column eight[8];
#pragma GCC unroll 8
    for (std::size_t k = 0; k < 8; ++k) {
      Column row{};
      for (std::size_t lane = 0; lane < pieceLanes; ++lane)
        row[lane] = rows[i + 8 * k][piece * pieceLanes + lane][w];
      eight[k] = row;
    }
    SwapEight<32, 16, 8>(eight);
#pragma GCC unroll 8
    for (std::size_t k = 0; k < 8; ++k) block[i + 8 * k] = eight[k];
  }
  std::uint64_t* column = columns + 64 * w * QXBitLists::columnWords + piece * pieceLanes;
#pragma GCC unroll 1
  for (std::size_t i = 0; i < 64; i += 8) {
    Column eight[8];
#pragma GCC unroll 8
    for (std::size_t k = 0; k < 8; ++k) eight[k] = block[i + k];
    SwapEight<4, 2, 1>(eight);
#pragma GCC unroll 8
    for (std::size_t k = 0; k < 8; ++k, column += QXBitLists::columnWords) {
      *reinterpret_cast<ColumnPiece*>(column) = eight[k];
    }
  }
}

QX_KERNEL_TARGET void MakeColumns(const std::uint64_t* const* records, std::size_t numRecords,
                                  std::size_t numWords, std::uint64_t* columns) {
  if (numRecords == 0) return;
  RecordRows rows;
  for (std::size_t place = 0; place < columnRecords; ++place) {
    rows[place % 64][place / 64] = records[std::min(RecordAt(place), numRecords - 1)];
  }
  for (std::size_t w = 0; w < numWords; ++w) {
    for (std::size_t piece = 0; piece < numPieces; ++piece) TransposeWord(rows, piece, w, columns);
  }
}
