#include "chem/LingoTable.h"

#include <bit>
#include <random>
#include <utility>

namespace QXChem {
namespace {

constexpr unsigned lingoBits = 32;
constexpr unsigned bucketsPerLingo = 8;
constexpr unsigned maxBucketsPerLingo = 64;

}  // namespace

LingoTable::LingoTable(std::span<const std::uint32_t> lingos)
    : isPerfect_(lingos.size() <= maxPerfect && FindPerfectFactor(lingos)) {
  const auto numLingos = static_cast<std::uint32_t>(lingos.size());
  buckets_.resize(isPerfect_ ? std::size_t{1} << (lingoBits - shift_) : lingos.size() + 1);
  for (std::uint32_t i = 0; i < buckets_.size(); ++i) {
    buckets_[i] = {0, numLingos + i % numSpareSlots};
  }
  const View view = GetView();
  for (std::uint32_t slot = 0; slot < numLingos; ++slot) {
    buckets_[isPerfect_ ? view.Place(lingos[slot]) : slot] = {lingos[slot], slot};
  }
}

// With 8 buckets for each of 40 Lingos about one factor in ten is free of collisions.
bool LingoTable::FindPerfectFactor(std::span<const std::uint32_t> lingos) {
  constexpr unsigned triesPerSize = 64;
  std::minstd_rand random;
  std::vector<std::uint8_t> lastTry;  // of each bucket, which spares clearing
  for (auto bits = static_cast<unsigned>(std::bit_width(lingos.size() * bucketsPerLingo));
       (std::size_t{1} << bits) <= lingos.size() * maxBucketsPerLingo; ++bits) {
    shift_ = lingoBits - bits;
    lastTry.assign(std::size_t{1} << bits, 0);
    for (std::uint8_t attempt = 1; attempt <= triesPerSize; ++attempt) {
      factor_ = static_cast<std::uint32_t>(random()) * 2 + 1;
      bool isFree = true;
      for (std::size_t i = 0; isFree && i < lingos.size(); ++i) {
        isFree = std::exchange(lastTry[(lingos[i] * factor_) >> shift_], attempt) != attempt;
      }
      if (isFree) return true;
    }
  }
  return false;
}

}  // namespace QXChem
