// Counts 256 bits at a time by looking up both nibbles of every byte in a table of 16 counts.
// Source   Mula, Kurz, Lemire, Computer Journal 2018, 61, 111, section 3.

#include <immintrin.h>

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET [[gnu::target("avx2")]]

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  // Of our own kind: the attributes that __m256i carries are lost, with a warning, in a template argument.
  using Sum [[gnu::vector_size(32)]] = long long;
  static constexpr std::size_t blockWords = 16;

  QX_KERNEL_TARGET static __m256i Load(const std::uint64_t* words) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
  }

  QX_KERNEL_TARGET static __m256i LoadMasked(const std::uint64_t* words, __m256i mask) {
    return _mm256_maskload_epi64(reinterpret_cast<const long long*>(words), mask);
  }

  QX_KERNEL_TARGET static __m256i ByteCounts(__m256i bits) {
    const __m256i table = _mm256_setr_epi8(0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4,  //
                                           0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4);
    const __m256i lowNibble = _mm256_set1_epi8(15);
    const __m256i low = _mm256_and_si256(bits, lowNibble);
    const __m256i high = _mm256_and_si256(_mm256_srli_epi16(bits, 4), lowNibble);
    return _mm256_add_epi8(_mm256_shuffle_epi8(table, low), _mm256_shuffle_epi8(table, high));
  }

  QX_KERNEL_TARGET static Sum AddBytes(Sum sum, __m256i byteCounts) {
    return sum + reinterpret_cast<Sum>(_mm256_sad_epu8(byteCounts, _mm256_setzero_si256()));
  }

  QX_KERNEL_TARGET static __m256i SharedByteCounts(const std::uint64_t* query, const std::uint64_t* record) {
    return ByteCounts(_mm256_and_si256(Load(query), Load(record)));
  }

  QX_KERNEL_TARGET static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    const __m256i low =
        _mm256_add_epi8(SharedByteCounts(query, record), SharedByteCounts(query + 4, record + 4));
    const __m256i high =
        _mm256_add_epi8(SharedByteCounts(query + 8, record + 8), SharedByteCounts(query + 12, record + 12));
    return AddBytes(sum, _mm256_add_epi8(low, high));
  }

  QX_KERNEL_TARGET static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record,
                                      std::size_t numWords) {
    for (; numWords >= 4; query += 4, record += 4, numWords -= 4) {
      sum = AddBytes(sum, SharedByteCounts(query, record));
    }
    if (numWords == 0) return sum;
    alignas(32) static constexpr std::uint64_t masks[8] = {~0ull, ~0ull, ~0ull, ~0ull, 0, 0, 0, 0};
    const __m256i mask = Load(masks + 4 - numWords);
    return AddBytes(sum, ByteCounts(_mm256_and_si256(LoadMasked(query, mask), LoadMasked(record, mask))));
  }

  // Halving beats taking the lanes out one by one, which shows where records are short.
  QX_KERNEL_TARGET static std::uint64_t Total(Sum sum) {
    const auto half = __builtin_shufflevector(sum, sum, 0, 1) + __builtin_shufflevector(sum, sum, 2, 3);
    return static_cast<std::uint64_t>(half[0] + half[1]);
  }
};

using Column [[gnu::vector_size(32)]] = std::uint64_t;

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetAvx2Kernel() {
  return {"avx2",       [] { return __builtin_cpu_supports("avx2") != 0; },
          Count,        CountAnd,
          CountLists,   MakeColumns,
          StartColumns, AddColumns,
          WriteColumns, CountPair};
}

}  // namespace QXSystem::BitCount
