// Counts with the processor's bit-count instruction, one word at a time.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET [[gnu::target("popcnt")]]

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Sum = std::uint64_t;
  static constexpr std::size_t blockWords = 8;

  QX_KERNEL_TARGET static std::uint64_t CountWord(std::uint64_t word) {
    return static_cast<std::uint64_t>(__builtin_popcountll(word));
  }

  QX_KERNEL_TARGET static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    Sum even = 0;
    Sum odd = 0;
    for (std::size_t i = 0; i < blockWords; i += 2) {
      even += CountWord(query[i] & record[i]);
      odd += CountWord(query[i + 1] & record[i + 1]);
    }
    return sum + even + odd;
  }

  static std::uint64_t Total(Sum sum) { return sum; }
};

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPopcntKernel() {
  return {"popcnt", [] { return __builtin_cpu_supports("popcnt") != 0; }, Count, CountAnd};
}

}  // namespace QXSystem::BitCount
