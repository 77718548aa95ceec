#pragma once

#include <cstdint>
#include <span>

#include "generators/FastModulus.h"

namespace QXFingrix {

/// The bits of a fingerprint as identifiers set them.
class HashedBits {
 public:
  /// Shape    words: at least hashSize bits; hashSize above 0.
  HashedBits(std::span<std::uint64_t> words, unsigned hashSize) : words_(words.data()), modulus_(hashSize) {}

  /// Sets bit (id mod hashSize).
  void Set(unsigned id) {
    const unsigned bit = modulus_(id);
    words_[bit / 64] |= std::uint64_t{1} << (bit % 64);
  }

 private:
  std::uint64_t* words_;
  FastModulus modulus_;
};

}  // namespace QXFingrix
