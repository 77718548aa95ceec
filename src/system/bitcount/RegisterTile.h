// The panel of kernels that read the records where they lie: a tile of running sums is kept in registers, so
// that every word is loaded once for several pairs. A file of one instruction set includes this between its
// Lanes and Body.h; of Lanes it needs, besides what Body.h asks for,
//   tileQueries, tileRecords              the tile's sides
//   AddTotals(sums, both)                 adds the totals of tileRecords sums to as many counts

class Panel {
 public:
  static constexpr std::size_t tileQueries = Lanes::tileQueries;
  static constexpr std::size_t tileRecords = Lanes::tileRecords;
  static constexpr std::size_t maxWords = ~std::size_t{0} >> 1;

  QX_KERNEL_TARGET Panel(const std::uint64_t* records, std::size_t stride, std::size_t numWords)
      : records_(records), stride_(stride), numWords_(numWords) {}

  QX_KERNEL_TARGET void AddTile(const std::uint64_t* queries, std::size_t queryStride, std::uint32_t* both,
                                std::size_t bothStride) const {
    Lanes::Sum sums[tileQueries][tileRecords]{};
    const std::size_t numBlockWords = numWords_ - numWords_ % Lanes::blockWords;
    for (std::size_t i = 0; i < numBlockWords; i += Lanes::blockWords) {
#pragma GCC unroll 8
      for (std::size_t q = 0; q < tileQueries; ++q) {
#pragma GCC unroll 8
        for (std::size_t r = 0; r < tileRecords; ++r) {
          sums[q][r] = Lanes::AddBlock(sums[q][r], queries + q * queryStride + i, records_ + r * stride_ + i);
        }
      }
    }
    if (const std::size_t i = numBlockWords; i < numWords_) {
#pragma GCC unroll 8
      for (std::size_t q = 0; q < tileQueries; ++q) {
#pragma GCC unroll 8
        for (std::size_t r = 0; r < tileRecords; ++r) {
          sums[q][r] = Lanes::AddTail(sums[q][r], queries + q * queryStride + i, records_ + r * stride_ + i,
                                      numWords_ - i);
        }
      }
    }
#pragma GCC unroll 8
    for (std::size_t q = 0; q < tileQueries; ++q) Lanes::AddTotals(sums[q], both + q * bothStride);
  }

 private:
  const std::uint64_t* records_;
  std::size_t stride_;
  std::size_t numWords_;
};
