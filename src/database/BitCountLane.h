#pragma once

#include <bit>

namespace QXFingrix {

/// The lane of entries with so many bits set: counts in one lane differ by an eighth at most.
constexpr unsigned BitCountLane(unsigned bitCount) {
  const auto width = static_cast<unsigned>(std::bit_width(bitCount));
  return width <= 4 ? bitCount : (width - 3) * 8 + (bitCount >> (width - 4)) % 8;
}

/// The smallest bit count of a lane.
constexpr unsigned FirstBitCount(unsigned lane) {
  return lane < 16 ? lane : (8 + lane % 8) << (lane / 8 - 1);
}

static_assert(BitCountLane(15) == 15 && BitCountLane(16) == 16 && BitCountLane(4294967295U) < 256);
static_assert(FirstBitCount(BitCountLane(352)) == 352 && BitCountLane(351) + 1 == BitCountLane(352));

}  // namespace QXFingrix
