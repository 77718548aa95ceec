#pragma once

#include <bit>
#include <cstdint>

namespace QXFingrix {

/// The mixing that makes identifiers of substructures: the hash of a row of 32-bit words, taken one by one.
/// Frozen: fingerprint bits follow from it. Arithmetic wraps at 32 bits.
/// Cost     two multiplications for each word, no memory.
/// Source   MurmurHash3_x86_32 by Austin Appleby (public domain), over words instead of bytes.
class IdentifierHash {
 public:
  explicit constexpr IdentifierHash(std::uint32_t seed) : state_(seed) {}

  constexpr void Add(std::uint32_t word) {
    word *= 0xcc9e2d51;
    word = std::rotl(word, 15);
    word *= 0x1b873593;
    state_ = std::rotl(state_ ^ word, 13) * 5 + 0xe6546b64;
    ++numWords_;
  }

  /// The hash of the words added so far.
  constexpr std::uint32_t Get() const {
    std::uint32_t hash = state_ ^ (4 * numWords_);
    hash = (hash ^ (hash >> 16)) * 0x85ebca6b;
    hash = (hash ^ (hash >> 13)) * 0xc2b2ae35;
    return hash ^ (hash >> 16);
  }

 private:
  std::uint32_t state_;
  std::uint32_t numWords_ = 0;
};

}  // namespace QXFingrix
