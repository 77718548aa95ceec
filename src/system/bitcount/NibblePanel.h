// The panel of kernels that can look up bytes in a table of 16. The table belongs to a nibble of the query and
// is indexed by nibbles of the records: entry n is the number of bits that n shares with the query's nibble.
// One lookup then counts 4 bits of 32 records, where a table of plain counts needs an AND for every pair and
// one more to separate the nibbles. The panel holds the records for that: byte by byte, and of each byte the
// low nibbles and then the high nibbles of 32 records side by side. Sums come out in the records' order, and
// no vector is ever summed up across its lanes.

// By the query's byte: the 16 counts for its low nibble, then those for its high nibble.
struct NibbleTables {
  static constexpr std::size_t size = 16;
  alignas(2 * size) std::uint8_t counts[256][2][size];
};

constexpr NibbleTables nibbleTables = [] {
  NibbleTables tables{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    for (unsigned n = 0; n < NibbleTables::size; ++n) {
      tables.counts[byte][0][n] = static_cast<std::uint8_t>(std::popcount(byte & n));
      tables.counts[byte][1][n] = static_cast<std::uint8_t>(std::popcount((byte >> 4) & n));
    }
  }
  return tables;
}();

class Panel {
 public:
  static constexpr std::size_t tileQueries = 4;
  static constexpr std::size_t tileRecords = 64;
  static constexpr std::size_t maxWords = 32;  // 32 KiB: half of it is slower, for its 16-bit sums

  QX_KERNEL_TARGET Panel(const std::uint64_t* records, std::size_t stride, std::size_t numWords)
      : numBytes_(numWords * sizeof(std::uint64_t)) {
    for (std::size_t w = 0; w < numWords; ++w) {
      for (std::size_t g = 0; g < numGroups; ++g) {
        SetWord(w, g, records + g * groupRecords * stride + w, stride);
      }
    }
  }

  QX_KERNEL_TARGET void AddTile(const std::uint64_t* queries, std::size_t queryStride, std::uint32_t* both,
                                std::size_t bothStride) const {
    const std::uint8_t* bytes[tileQueries];
    for (std::size_t q = 0; q < tileQueries; ++q) {
      bytes[q] = reinterpret_cast<const std::uint8_t*>(queries + q * queryStride);
    }
    __m256i sums[tileQueries][numGroups][2]{};
    for (std::size_t begin = 0; begin < numBytes_; begin += maxByteSums) {
      AddBytes(bytes, begin, std::min(numBytes_, begin + maxByteSums), sums);
    }
    for (std::size_t q = 0; q < tileQueries; ++q) {
      for (std::size_t g = 0; g < numGroups; ++g) {
        std::uint32_t* const row = both + q * bothStride + g * groupRecords;
        for (std::size_t half = 0; half < 2; ++half) {
          AddCounts(row + 8 * half, _mm256_castsi256_si128(sums[q][g][half]));
          AddCounts(row + 16 + 8 * half, _mm256_extracti128_si256(sums[q][g][half], 1));
        }
      }
    }
  }

 private:
  static constexpr std::size_t groupRecords = 32;
  static constexpr std::size_t numGroups = tileRecords / groupRecords;
  static constexpr std::size_t maxByteSums = 31;  // 8 bits each in a sum of at most 255

  // Word w of the records of group g.
  QX_KERNEL_TARGET void SetWord(std::size_t w, std::size_t g, const std::uint64_t* words,
                                std::size_t stride) {
    __m256i rows[8];
#pragma GCC unroll 8
    for (std::size_t j = 0; j < 8; ++j) {
      const std::uint64_t* const pair = words + 2 * j * stride;
      rows[j] = _mm256_set_epi64x(static_cast<long long>(pair[17 * stride]),
                                  static_cast<long long>(pair[16 * stride]),
                                  static_cast<long long>(pair[stride]), static_cast<long long>(pair[0]));
    }
    // A byte's place in either half of the rows is a number of 7 bits: 3 of the row, 4 within the half, 1 of
    // which says which of two records and 3 which byte. To interleave the rows that are 4 apart rotates the
    // number by one bit. After 4 times the row says which byte, and the place in it which record.
#pragma GCC unroll 4
    for (std::size_t round = 0; round < 4; ++round) {
      __m256i mixed[8];
#pragma GCC unroll 4
      for (std::size_t j = 0; j < 4; ++j) {
        mixed[2 * j] = _mm256_unpacklo_epi8(rows[j], rows[j + 4]);
        mixed[2 * j + 1] = _mm256_unpackhi_epi8(rows[j], rows[j + 4]);
      }
#pragma GCC unroll 8
      for (std::size_t j = 0; j < 8; ++j) rows[j] = mixed[j];
    }
    const __m256i lowNibble = _mm256_set1_epi8(15);
#pragma GCC unroll 8
    for (std::size_t j = 0; j < 8; ++j) {
      nibbles_[8 * w + j][0][g] = _mm256_and_si256(rows[j], lowNibble);
      nibbles_[8 * w + j][1][g] = _mm256_and_si256(_mm256_srli_epi16(rows[j], 4), lowNibble);
    }
  }

  // Sums bytes begin to end of the pairs, at most maxByteSums, in 8 bits and adds them to sums of 16 bits.
  QX_KERNEL_TARGET void AddBytes(const std::uint8_t* const (&queries)[tileQueries], std::size_t begin,
                                 std::size_t end, __m256i (&sums)[tileQueries][numGroups][2]) const {
    __m256i byteSums[tileQueries][numGroups]{};
    for (std::size_t b = begin; b < end; ++b) {
#pragma GCC unroll 2
      for (std::size_t half = 0; half < 2; ++half) {
#pragma GCC unroll 4
        for (std::size_t q = 0; q < tileQueries; ++q) {
          const __m256i table = _mm256_broadcastsi128_si256(
              _mm_load_si128(reinterpret_cast<const __m128i*>(nibbleTables.counts[queries[q][b]][half])));
#pragma GCC unroll 2
          for (std::size_t g = 0; g < numGroups; ++g) {
            __m256i sum = _mm256_add_epi8(byteSums[q][g], _mm256_shuffle_epi8(table, nibbles_[b][half][g]));
            // Keeps the compiler from adding the halves first, for which it lacks registers.
            asm("" : "+x"(sum));
            byteSums[q][g] = sum;
          }
        }
      }
    }
    const __m256i zero = _mm256_setzero_si256();
#pragma GCC unroll 4
    for (std::size_t q = 0; q < tileQueries; ++q) {
#pragma GCC unroll 2
      for (std::size_t g = 0; g < numGroups; ++g) {
        sums[q][g][0] = _mm256_add_epi16(sums[q][g][0], _mm256_unpacklo_epi8(byteSums[q][g], zero));
        sums[q][g][1] = _mm256_add_epi16(sums[q][g][1], _mm256_unpackhi_epi8(byteSums[q][g], zero));
      }
    }
  }

  QX_KERNEL_TARGET static void AddCounts(std::uint32_t* both, __m128i counts) {
    auto* const place = reinterpret_cast<__m256i*>(both);
    _mm256_storeu_si256(place, _mm256_add_epi32(_mm256_loadu_si256(place), _mm256_cvtepu16_epi32(counts)));
  }

  std::size_t numBytes_;
  __m256i nibbles_[maxWords * sizeof(std::uint64_t)][2][numGroups];
};
