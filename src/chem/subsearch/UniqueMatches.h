#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace QXChem {

/// The sets of atoms found so far.
/// Memory   four bytes for every atom of a set and about eight for a set.
class UniqueMatches {
 public:
  /// Whether the set is a new one; all sets have the same number of atoms.
  bool Add(std::span<const unsigned> atoms);
  void Clear();

 private:
  std::size_t FindSlot(std::span<const unsigned> key) const;
  std::span<const unsigned> GetKey(std::size_t index, std::size_t size) const {
    return std::span(keys_).subspan(index * size, size);
  }
  void Grow(std::size_t size);

  std::vector<unsigned> sorted_;      // the set being added
  std::vector<unsigned> keys_;        // one set after the other, each sorted
  std::vector<std::uint32_t> slots_;  // 1 + number of a set, 0 when free; a power of two of them
  std::size_t numKeys_ = 0;
};

}  // namespace QXChem
