#include "chem/subsearch/UniqueMatches.h"

#include <algorithm>

namespace QXChem {
namespace {

std::uint64_t Hash(std::span<const unsigned> key) {
  std::uint64_t hash = 0x9E3779B97F4A7C15;
  for (const unsigned value : key) {
    hash = (hash ^ value) * 0xBF58476D1CE4E5B9;
    hash ^= hash >> 29;
  }
  return hash;
}

}  // namespace

void UniqueMatches::Clear() {
  keys_.clear();
  slots_.clear();
  numKeys_ = 0;
}

// The slot that holds the set, or the free one where it belongs.
std::size_t UniqueMatches::FindSlot(std::span<const unsigned> key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = Hash(key) & mask;
  while (slots_[slot] != 0 && !std::ranges::equal(GetKey(slots_[slot] - 1, key.size()), key)) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

void UniqueMatches::Grow(std::size_t size) {
  slots_.assign(std::max<std::size_t>(16, 2 * slots_.size()), 0);
  for (std::size_t i = 0; i < numKeys_; ++i) {
    slots_[FindSlot(GetKey(i, size))] = static_cast<std::uint32_t>(i + 1);
  }
}

bool UniqueMatches::Add(std::span<const unsigned> atoms) {
  sorted_.assign(atoms.begin(), atoms.end());
  std::ranges::sort(sorted_);
  if (2 * (numKeys_ + 1) > slots_.size()) Grow(sorted_.size());
  const std::size_t slot = FindSlot(sorted_);
  if (slots_[slot] != 0) return false;
  keys_.insert(keys_.end(), sorted_.begin(), sorted_.end());
  slots_[slot] = static_cast<std::uint32_t>(++numKeys_);
  return true;
}

}  // namespace QXChem
