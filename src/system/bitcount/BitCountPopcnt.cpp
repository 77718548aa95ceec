// Counts with the processor's bit-count instruction, one word at a time.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET [[gnu::target("popcnt")]]

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Sum = std::uint64_t;
  static constexpr std::size_t blockWords = 8;

  QX_KERNEL_TARGET static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record,
                                      std::size_t numWords) {
#pragma GCC unroll 8
    for (std::size_t i = 0; i < numWords; ++i) {
      sum += static_cast<std::uint64_t>(__builtin_popcountll(query[i] & record[i]));
    }
    return sum;
  }

  QX_KERNEL_TARGET static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    return AddTail(sum, query, record, blockWords);
  }

  static std::uint64_t Total(Sum sum) {
    return sum;
  }
};

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetPopcntKernel() {
  return {"popcnt", [] { return __builtin_cpu_supports("popcnt") != 0; }, Count, CountAnd};
}

}  // namespace QXSystem::BitCount
