#pragma once

#include <array>

namespace QXFingrix {

/// The first 6,543 primes, 2 to 65537, and a terminating 0.
inline constexpr unsigned numPrimes = 6543;
extern const std::array<unsigned, numPrimes + 1> PRIMES;

}  // namespace QXFingrix
