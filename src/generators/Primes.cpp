// The modulus of a fingerprint is the largest prime that does not exceed its size: it is looked up in a table
// of all primes up to 2^16 + 1, which the compiler sieves.

#include "QXFingrix/QXPrimes.h"

#include "generators/PrimeTable.h"

namespace QXFingrix {
namespace {

constexpr unsigned largestPrime = 65537;

constexpr auto SievePrimes() {
  std::array<bool, largestPrime + 1> isComposite{};
  std::array<unsigned, numPrimes + 1> primes{};
  unsigned count = 0;
  for (unsigned n = 2; n <= largestPrime; ++n) {
    if (isComposite[n]) continue;
    primes[count++] = n;
    for (unsigned multiple = 2 * n; multiple <= largestPrime; multiple += n) isComposite[multiple] = true;
  }
  return primes;
}

struct CommonSize {
  unsigned numbits;
  unsigned hashSize;
};

// The fast answers; each is what the search below finds too.
constexpr CommonSize commonSizes[] = {{64, 61},     {128, 127},   {256, 251},   {512, 509},    {1024, 1021},
                                      {2048, 2039}, {4096, 4093}, {8192, 8191}, {16384, 16381}};

}  // namespace

constexpr std::array<unsigned, numPrimes + 1> PRIMES = SievePrimes();
static_assert(PRIMES[numPrimes - 1] == largestPrime && PRIMES[numPrimes] == 0);

unsigned QXGetHashSize(unsigned numbits) {
  for (const CommonSize& common : commonSizes) {
    if (numbits == common.numbits) return common.hashSize;
  }
  return QXGetNearestSmallerPrimeNumber(numbits);
}

unsigned QXGetNearestSmallerPrimeNumber(unsigned n) {
  // Outside this range the steps below would never meet.
  if (n < 3 || n >= largestPrime) return 0;
  int low = 0;
  int high = numPrimes;
  while (low < high) {
    const int mid = (low + high) / 2;
    if (n >= PRIMES[mid + 1]) {
      low = mid - 1;
    } else if (n < PRIMES[mid]) {
      high = mid + 1;
    } else {
      return PRIMES[mid];
    }
  }
  return 0;
}

unsigned QXGetNearestSmallerPrimeNumberBruteForce(unsigned n) {
  for (unsigned i = 0; i < numPrimes; ++i) {
    if (PRIMES[i] <= n && n < PRIMES[i + 1]) return PRIMES[i];
  }
  return 0;
}

}  // namespace QXFingrix
