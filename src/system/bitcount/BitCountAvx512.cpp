// Counts 512 bits at a time with the processor's vector bit-count instruction. The vectors are the compiler's
// own and not those of immintrin.h, whose definitions draw warnings about uninitialised variables.

#include "system/bitcount/Kernels.h"

#define QX_KERNEL_TARGET [[gnu::target("avx512f,avx512vpopcntdq")]]

namespace QXSystem::BitCount {

namespace {

struct Lanes {
  using Sum [[gnu::vector_size(64)]] = long long;
  using Unaligned [[gnu::vector_size(64), gnu::aligned(8), gnu::may_alias]] = long long;
  static constexpr std::size_t blockWords = 8;

  QX_KERNEL_TARGET static Sum AddBlock(Sum sum, const std::uint64_t* query, const std::uint64_t* record) {
    const Sum bits = *reinterpret_cast<const Unaligned*>(query) & *reinterpret_cast<const Unaligned*>(record);
    return sum + __builtin_ia32_vpopcountq_v8di(bits);
  }

  QX_KERNEL_TARGET static Sum LoadMasked(const std::uint64_t* words, unsigned char mask) {
    return __builtin_ia32_loaddqudi512_mask(reinterpret_cast<const long long*>(words), Sum{}, mask);
  }

  QX_KERNEL_TARGET static Sum AddTail(Sum sum, const std::uint64_t* query, const std::uint64_t* record,
                                      std::size_t numWords) {
    const auto mask = static_cast<unsigned char>((1u << numWords) - 1);
    return sum + __builtin_ia32_vpopcountq_v8di(LoadMasked(query, mask) & LoadMasked(record, mask));
  }

  // Halving beats taking the lanes out one by one, which shows where records are short.
  QX_KERNEL_TARGET static std::uint64_t Total(Sum sum) {
    const auto half =
        __builtin_shufflevector(sum, sum, 0, 1, 2, 3) + __builtin_shufflevector(sum, sum, 4, 5, 6, 7);
    const auto quarter =
        __builtin_shufflevector(half, half, 0, 1) + __builtin_shufflevector(half, half, 2, 3);
    return static_cast<std::uint64_t>(quarter[0] + quarter[1]);
  }
};

using Column [[gnu::vector_size(64)]] = std::uint64_t;

#include "system/bitcount/Body.h"

}  // namespace

QXBitCountKernel GetAvx512Kernel() {
  const auto isSupported = [] {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vpopcntdq");
  };
  return {"avx512",    isSupported,  Count,      CountAnd,     CountLists,
          MakeColumns, StartColumns, AddColumns, WriteColumns, CountPair};
}

}  // namespace QXSystem::BitCount
