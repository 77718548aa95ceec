// The bit-count routines of the fast fingerprint file: one portable, one on the POPCNT instruction. Both take
// four words a step, so fingerprints come in multiples of 256 bits. Scans over many records use the block
// kernels of QXSystem/QXBitCountKernel.h instead; these routines count one fingerprint at a time.

#include "QXFingrix/QXPopCount.h"

#include <cpuid.h>

namespace QXFingrix {

namespace {

constexpr unsigned methodNone = 0;
constexpr unsigned methodPortable = 1;
constexpr unsigned methodInstruction = 2;

constexpr unsigned bitsPerStep = 256;

unsigned long CountWord(unsigned long word) {
  word -= (word >> 1) & 0x5555555555555555UL;
  word = (word & 0x3333333333333333UL) + ((word >> 2) & 0x3333333333333333UL);
  word = (word + (word >> 4)) & 0x0f0f0f0f0f0f0f0fUL;
  return (word * 0x0101010101010101UL) >> 56;
}

}  // namespace

unsigned long QXPopCountBitCount(const unsigned long* words, unsigned long numWords) {
  unsigned long count = 0;
  for (unsigned long i = 0; i < numWords; i += 4) {
    count +=
        CountWord(words[i]) + CountWord(words[i + 1]) + CountWord(words[i + 2]) + CountWord(words[i + 3]);
  }
  return count;
}

[[gnu::target("popcnt")]] unsigned long QXPopCountPOPCNT(const unsigned long* words, unsigned long numWords) {
  unsigned long count = 0;
  for (unsigned long i = 0; i < numWords; i += 4) {
    count +=
        static_cast<unsigned long>(__builtin_popcountl(words[i]) + __builtin_popcountl(words[i + 1]) +
                                   __builtin_popcountl(words[i + 2]) + __builtin_popcountl(words[i + 3]));
  }
  return count;
}

unsigned QXGetPopCountMethod() {
  static const unsigned method = [] {
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    if (__get_cpuid_max(0, nullptr) < 1 || !__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return methodPortable;
    const bool hasSse42 = (ecx & bit_SSE4_2) != 0;
    const bool hasPopcnt = (ecx & bit_POPCNT) != 0;
    return hasSse42 && hasPopcnt ? methodInstruction : methodPortable;
  }();
  return method;
}

QXPopCountFunc QXGetPopCountFunc(unsigned method) {
  switch (method) {
    case methodPortable:
      return QXPopCountBitCount;
    case methodInstruction:
      return QXPopCountPOPCNT;
    default:
      return nullptr;
  }
}

unsigned QXGetPopCountFingerprintSizeUnit() {
  return bitsPerStep;
}

bool QXIsFastFPDatabaseReady() {
  return QXGetPopCountMethod() != methodNone;
}

}  // namespace QXFingrix
