#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXAtomBondSet.h"

namespace QXFingrix {

/// Remembers sets of atoms and bonds, one after the other in one block of memory.
/// Cost     at most 8 bytes for every atom and bond of a set, and 40 more.
class SeenSets {
 public:
  /// False when an equal set was added before. No atom or bond of the set is repeated.
  bool Add(const QXChem::QXAtomBondSet& set) {
    if (slots_.size() < 2 * starts_.size()) Grow();
    words_.push_back(set.NumAtoms());
    Append(set.Atoms());
    Append(set.Bonds());
    std::uint32_t& slot = FindSlot(std::span(words_).subspan(starts_.back()));
    if (slot != 0) {
      words_.resize(starts_.back());
      return false;
    }
    slot = static_cast<std::uint32_t>(starts_.size());
    starts_.push_back(words_.size());
    return true;
  }

 private:
  // Of the set with this number, counted from 1.
  std::span<const unsigned> Words(std::size_t number) const {
    return std::span(words_).subspan(starts_[number - 1], starts_[number] - starts_[number - 1]);
  }

  void Append(std::span<const unsigned> values) {
    const auto size = static_cast<std::ptrdiff_t>(words_.size());
    words_.insert(words_.end(), values.begin(), values.end());
    std::sort(words_.begin() + size, words_.end());
  }

  // Where the number of this set is, or 0 when it is new.
  std::uint32_t& FindSlot(std::span<const unsigned> words) {
    std::uint64_t hash = 0;
    for (const unsigned word : words) hash = (std::rotl(hash, 5) ^ word) * 0x9e3779b97f4a7c15;
    std::size_t at = (hash >> 32) % slots_.size();
    while (slots_[at] != 0 && !std::ranges::equal(words, Words(slots_[at]))) at = (at + 1) % slots_.size();
    return slots_[at];
  }

  void Grow() {
    slots_.assign(std::max<std::size_t>(64, 2 * slots_.size()), 0);
    for (std::size_t i = 1; i < starts_.size(); ++i) FindSlot(Words(i)) = static_cast<std::uint32_t>(i);
  }

  std::vector<unsigned> words_;         // of each set the number of atoms, the atoms and the bonds, sorted
  std::vector<std::size_t> starts_{0};  // of each set among the words, and where the next one goes
  std::vector<std::uint32_t> slots_;    // a hash table of numbers
};

}  // namespace QXFingrix
