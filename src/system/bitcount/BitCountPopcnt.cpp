// Counts with the processor's bit-count instruction, one word at a time.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET [[gnu::target("popcnt")]]

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Sum = std::uint64_t;
  static constexpr std::size_t blockWords = 8;

  QX_KERNEL_TARGET static Sum CountWord(const std::uint64_t* query, const std::uint64_t* record) {
    return static_cast<Sum>(__builtin_popcountll(*query & *record));
  }

  // Two sums, so that an addition need not wait for the one before.
  QX_KERNEL_TARGET static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    Sum even = 0;
    Sum odd = 0;
#pragma GCC unroll 4
    for (std::size_t i = 0; i < blockWords; i += 2) {
      even += CountWord(query + i, record + i);
      odd += CountWord(query + i + 1, record + i + 1);
    }
    return sum + (even + odd);
  }

  QX_KERNEL_TARGET static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record,
                                      std::size_t numWords) {
    for (std::size_t i = 0; i < numWords; ++i) sum += CountWord(query + i, record + i);
    return sum;
  }

  static std::uint64_t Total(Sum sum) {
    return sum;
  }
};

using Column [[gnu::vector_size(16)]] = std::uint64_t;

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPopcntKernel() {
  return {"popcnt",     [] { return __builtin_cpu_supports("popcnt") != 0; },
          Count,        CountAnd,
          CountLists,   MakeColumns,
          StartColumns, AddColumns,
          WriteColumns, CountPair};
}

}  // namespace QXSystem::BitCount
