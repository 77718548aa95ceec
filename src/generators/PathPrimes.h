#pragma once

#include <array>

namespace QXFingrix {

/// Position weights of a path: atom i counts with entry 2i + 1, the bond after it with entry 2i + 2.
/// Frozen: published fingerprints depend on them.
inline constexpr std::array<unsigned, 51> PATH_PRIMES = {
    0,    947,  983,  1019, 1049, 1087, 1109, 1153, 1193, 1229, 1277, 1297, 1321, 1381, 1429, 1453, 1487,
    1523, 1559, 1597, 1619, 1663, 1699, 1741, 1783, 1823, 1871, 1901, 1949, 1993, 2017, 2063, 2089, 2131,
    2161, 2221, 2267, 2293, 2339, 2371, 2399, 2441, 2477, 2543, 2591, 2633, 2671, 2693, 2719, 2749, 2791};

/// The most bonds of a path whose atoms and bonds all have a weight of their own.
inline constexpr unsigned maxWeightedBonds = (PATH_PRIMES.size() - 2) / 2;

}  // namespace QXFingrix
