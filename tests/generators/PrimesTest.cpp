#include "QXFingrix/QXPrimes.h"

#include <gtest/gtest.h>

#include <climits>

#include "generators/PrimeTable.h"

namespace QXFingrix {
namespace {

bool IsPrime(unsigned n) {
  for (unsigned divisor = 2; divisor * divisor <= n; ++divisor) {
    if (n % divisor == 0) return false;
  }
  return n > 1;
}

TEST(Primes, TableHoldsEveryPrimeInOrderAndEndsWithZero) {
  unsigned count = 0;
  for (unsigned n = 0; n <= 65537; ++n) {
    if (IsPrime(n)) {
      ASSERT_EQ(PRIMES[count++], n);
    }
  }
  EXPECT_EQ(count, numPrimes);
  EXPECT_EQ(PRIMES[numPrimes], 0u);
}

TEST(Primes, EveryWayFindsTheLargestPrimeNotAboveEverySize) {
  unsigned largest = 2;
  for (unsigned n = 3; n <= 65536; ++n) {
    if (IsPrime(n)) largest = n;
    ASSERT_EQ(QXGetHashSize(n), largest) << n;
    ASSERT_EQ(QXGetNearestSmallerPrimeNumber(n), largest) << n;
    if (n % 16 < 2) {
      ASSERT_EQ(QXGetNearestSmallerPrimeNumberBruteForce(n), largest) << n;
    }
  }
}

TEST(Primes, SizesOutsideTheTableGiveZero) {
  for (const unsigned n : {0u, 1u, 2u, 65537u, 65538u, 70000u, unsigned{INT_MAX}, UINT_MAX}) {
    EXPECT_EQ(QXGetHashSize(n), 0u) << n;
    EXPECT_EQ(QXGetNearestSmallerPrimeNumber(n), 0u) << n;
    EXPECT_EQ(QXGetNearestSmallerPrimeNumberBruteForce(n), n == 2 ? 2u : 0u) << n;
  }
}

}  // namespace
}  // namespace QXFingrix
