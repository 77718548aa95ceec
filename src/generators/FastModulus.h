#pragma once

#include <cstdint>

namespace QXFingrix {

/// n % divisor for 32-bit numbers by two multiplications: the fraction of n / divisor is kept in 64 bits, and
/// the remainder is the fraction times the divisor. Exact for every n and every divisor above 0. Source
/// Lemire, Kaser, Kurz, Software: Practice and Experience 2019, 49, 953, doi:10.1002/spe.2689.
class FastModulus {
 public:
  explicit FastModulus(std::uint32_t divisor) : inverse_(UINT64_MAX / divisor + 1), divisor_(divisor) {}

  std::uint32_t operator()(std::uint32_t n) const {
    __extension__ using Wide = unsigned __int128;
    const std::uint64_t fraction = inverse_ * n;
    return static_cast<std::uint32_t>((static_cast<Wide>(fraction) * divisor_) >> 64);
  }

 private:
  std::uint64_t inverse_;
  std::uint32_t divisor_;
};

}  // namespace QXFingrix
