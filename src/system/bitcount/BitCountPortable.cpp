// Counts by adding neighbouring bits, pairs and nibbles under masks, 128 bits at a time: the compiler turns
// the vectors into whatever every processor of the architecture has.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Vector [[gnu::vector_size(16)]] = std::uint64_t;
  using Sum = Vector;
  static constexpr std::size_t blockWords = 16;

  static constexpr std::uint64_t pairs = 0x5555555555555555;
  static constexpr std::uint64_t nibbles = 0x3333333333333333;
  static constexpr std::uint64_t bytes = 0x0f0f0f0f0f0f0f0f;
  static constexpr std::uint64_t shorts = 0x00ff00ff00ff00ff;

  static Vector Load(const std::uint64_t* words) { return Vector{words[0], words[1]}; }

  // The count of every nibble, 0 to 4.
  template <class Word>
  static Word NibbleCounts(Word bits) {
    bits -= (bits >> 1) & pairs;
    return (bits & nibbles) + ((bits >> 2) & nibbles);
  }

  // Nibble counts up to 15 become byte counts up to 30.
  template <class Word>
  static Word ByteCounts(Word counts) {
    return (counts & bytes) + ((counts >> 4) & bytes);
  }

  // The sum of the eight byte counts of every word.
  template <class Word>
  static Word AddBytes(Word counts) {
    counts = (counts & shorts) + ((counts >> 8) & shorts);
    counts += counts >> 32;
    counts += counts >> 16;
    return counts & 0xffff;
  }

  // The byte counts of 2 numVectors words: numVectors at most 3, so that no nibble count exceeds 12.
  template <std::size_t numVectors>
  static Vector SharedByteCounts(const std::uint64_t* query, const std::uint64_t* record) {
    Vector counts{};
#pragma GCC unroll 3
    for (std::size_t i = 0; i < 2 * numVectors; i += 2) {
      counts += NibbleCounts(Load(query + i) & Load(record + i));
    }
    return ByteCounts(counts);
  }

  static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    return sum + AddBytes(SharedByteCounts<3>(query, record) + SharedByteCounts<3>(query + 6, record + 6) +
                          SharedByteCounts<2>(query + 12, record + 12));
  }

  static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record, std::size_t numWords) {
    Vector bytes{};
    std::size_t i = 0;
    for (; numWords - i >= 4; i += 4) bytes += SharedByteCounts<2>(query + i, record + i);
    for (; i < numWords; ++i) bytes[0] += ByteCounts(NibbleCounts(query[i] & record[i]));
    return sum + AddBytes(bytes);
  }

  static std::uint64_t Total(Sum sum) {
    return sum[0] + sum[1];
  }
};

using Column = Lanes::Vector;

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPortableKernel() {
  return {"portable",  [] { return true; }, Count,      CountAnd,     CountLists,
          MakeColumns, StartColumns,        AddColumns, WriteColumns, CountPair};
}

}  // namespace QXSystem::BitCount
