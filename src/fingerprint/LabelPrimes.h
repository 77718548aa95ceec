#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

// The factors that labels are products of. Frozen: fingerprint bits follow from them.
namespace QXFingrix::labelPrimes {

constexpr bool IsPrime(unsigned n) {
  for (unsigned d = 2; d * d <= n; ++d) {
    if (n % d == 0) return false;
  }
  return n >= 2;
}

/// The N primes from `first` upward, those in `except` left out.
template <std::size_t N, std::size_t M>
consteval std::array<unsigned, N> PrimesFrom(unsigned first, const std::array<unsigned, M>& except) {
  std::array<unsigned, N> primes{};
  std::size_t count = 0;
  for (unsigned n = first; count < N; ++n) {
    if (IsPrime(n) && std::ranges::find(except, n) == except.end()) primes[count++] = n;
  }
  return primes;
}

/// base to the powers 0 to N - 1.
template <std::size_t N>
consteval std::array<unsigned, N> PowersOf(unsigned base) {
  std::array<unsigned, N> powers{1};
  for (std::size_t i = 1; i < N; ++i) powers[i] = powers[i - 1] * base;
  return powers;
}

/// Atomic numbers 0 to 132.
inline constexpr std::size_t numElements = 133;

inline constexpr unsigned carbon = 179;
inline constexpr unsigned fluorine = 419;

struct ElementPrime {
  unsigned atomicNum;
  unsigned prime;
};
/// Common elements have primes of their own, in place of those that their numbers would give them.
inline constexpr ElementPrime commonElements[] = {{6, carbon}, {7, 283},  {8, 947}, {9, fluorine},
                                                  {15, 547},   {16, 811}, {17, 661}};

consteval std::array<unsigned, numElements> MakeElementPrimes() {
  auto primes = PrimesFrom<numElements>(181, std::array{283u, 419u, 547u, 661u, 811u, 947u});
  for (const ElementPrime& common : commonElements) primes[common.atomicNum] = common.prime;
  return primes;
}

/// By atomic number.
inline constexpr auto element = MakeElementPrimes();
/// The same with chlorine, bromine and iodine taken for fluorine.
inline constexpr auto elementEqHalo = [] {
  auto primes = element;
  for (const unsigned halogen : {17, 35, 53}) primes[halogen] = fluorine;
  return primes;
}();

inline constexpr unsigned donorAndAcceptor = 19;
inline constexpr unsigned donor = 19 * 19 * 19;
inline constexpr unsigned acceptor = 19 * 19;

/// By formal charge: charges -4 to 4 are entries 1 to 9; entries 0 and 10 stand for all others.
inline constexpr int maxCharge = 5;
inline constexpr std::array<unsigned, 11> charge = {512, 128, 32, 8, 2, 1, 4, 16, 64, 256, 512};

/// By heavy degree, hybridisation code and hydrogen count; the last entry stands for all larger numbers.
inline constexpr auto heavyDegree = PowersOf<7>(3);
inline constexpr auto hybridization = PowersOf<7>(5);
inline constexpr auto hydrogens = PowersOf<5>(17);

inline constexpr unsigned ringAtom = 7;
inline constexpr unsigned aromaticAtom = 11;
inline constexpr unsigned chiralAtom = 13;

/// By bond order 0 to 9. Aromatic bonds share the prime of order 5, which no ordinary bond has.
inline constexpr auto bondOrder = PrimesFrom<10>(127, std::array<unsigned, 0>{});
inline constexpr unsigned aromaticOrder = 5;
inline constexpr unsigned ringBond = 73;
inline constexpr unsigned chiralBond = 79;

}  // namespace QXFingrix::labelPrimes
