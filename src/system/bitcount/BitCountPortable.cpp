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

  // The sum of four 16-bit counts.
  template <class Word>
  static Word AddShorts(Word counts) {
    counts += counts >> 32;
    counts += counts >> 16;
    return counts & 0xffff;
  }

  static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    const auto counts = [&](std::size_t i) { return NibbleCounts(Load(query + i) & Load(record + i)); };
    const Vector low = counts(0) + counts(2);  // nibbles up to 8
    const Vector high = counts(4) + counts(6);
    const Vector byteCounts = (low & bytes) + ((low >> 4) & bytes) + (high & bytes) + ((high >> 4) & bytes);
    return sum + AddShorts((byteCounts & shorts) + ((byteCounts >> 8) & shorts));
  }

  static std::uint64_t Total(Sum sum) { return sum[0] + sum[1]; }

  static std::uint64_t CountWord(std::uint64_t word) {
    const std::uint64_t counts = NibbleCounts(word);
    return (((counts + (counts >> 4)) & bytes) * 0x0101010101010101) >> 56;
  }
};

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPortableKernel() {
  return {"portable", [] { return true; }, Count, CountAnd};
}

}  // namespace QXSystem::BitCount
