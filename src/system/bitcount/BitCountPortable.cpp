// Counts by adding neighbouring bits, pairs and nibbles under masks, 128 bits at a time: the compiler turns
// the vectors into whatever every processor of the architecture has.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Vector [[gnu::vector_size(16)]] = std::uint64_t;
  using Sum = Vector;
  static constexpr std::size_t blockWords = 8;

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

  // The nibble counts of four words, two by two: up to 8.
  static Vector HalfBlock(const std::uint64_t* query, const std::uint64_t* record) {
    return NibbleCounts(Load(query) & Load(record)) + NibbleCounts(Load(query + 2) & Load(record + 2));
  }

  static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    return sum +
           AddBytes(ByteCounts(HalfBlock(query, record)) + ByteCounts(HalfBlock(query + 4, record + 4)));
  }

  static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record, std::size_t numWords) {
    std::size_t i = 0;
    for (; numWords - i >= 4; i += 4) sum += AddBytes(ByteCounts(HalfBlock(query + i, record + i)));
    for (; i < numWords; ++i) sum[0] += AddBytes(ByteCounts(NibbleCounts(query[i] & record[i])));
    return sum;
  }

  static std::uint64_t Total(Sum sum) { return sum[0] + sum[1]; }
};

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPortableKernel() {
  return {"portable", [] { return true; }, Count, CountAnd, CountAndTile, CountPair};
}

}  // namespace QXSystem::BitCount
