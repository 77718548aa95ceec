#pragma once

#include <array>
#include <cstdint>

namespace QXFingrix {

/// The keys that are set, 1 to 166, in the bit order of the fingerprint.
class KeySet {
 public:
  void Set(unsigned key) { words_[(key - 1) / 64] |= std::uint64_t{1} << ((key - 1) % 64); }
  bool Has(unsigned key) const { return (words_[(key - 1) / 64] >> ((key - 1) % 64) & 1) != 0; }
  const std::array<std::uint64_t, 3>& Words() const { return words_; }
  bool operator==(const KeySet&) const = default;

 private:
  std::array<std::uint64_t, 3> words_{};
};

}  // namespace QXFingrix
