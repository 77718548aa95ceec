#pragma once

#include <cstdint>

namespace QXFingrix {

/// The parameters of a graph fingerprint; a kind that has no number of bits leaves it 0.
struct TypeParams {
  unsigned numbits = 0;
  unsigned minDistance = 0;
  unsigned maxDistance = 0;
  unsigned atype = 0;
  unsigned btype = 0;

  bool operator==(const TypeParams&) const = default;
};

/// Bits of an identifier that no parameter uses.
inline constexpr std::uint64_t reservedHashedBits = 0xf0000f0000000000;
inline constexpr std::uint64_t reservedUnhashedBits = 0xffffff0000000000;

/// Packs by plain addition: what is too wide for its field spills into the next one. Identifiers that were
/// written to files depend on it, so the fields must not be masked.
constexpr std::uint64_t PackTypeId(const TypeParams& params) {
  return (std::uint64_t{params.numbits} << 44) + (std::uint64_t{params.atype} << 24) +
         (std::uint64_t{params.btype} << 16) + (std::uint64_t{params.minDistance} << 8) + params.maxDistance;
}

constexpr TypeParams UnpackTypeId(std::uint64_t id) {
  return {.numbits = static_cast<unsigned>((id >> 44) & 0xffff),
          .minDistance = static_cast<unsigned>((id >> 8) & 0xff),
          .maxDistance = static_cast<unsigned>(id & 0xff),
          .atype = static_cast<unsigned>((id >> 24) & 0xffff),
          .btype = static_cast<unsigned>((id >> 16) & 0xff)};
}

}  // namespace QXFingrix
