#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace QXChem {

constexpr std::size_t lingoLength = 4;

/// The four characters at a place as one number; 0 only for four zero bytes.
inline std::uint32_t LoadLingo(const char* place) {
  std::uint32_t lingo;
  std::memcpy(&lingo, place, lingoLength);
  return lingo;
}

/// Gives every Lingo of a profile a slot, 0 to n - 1, and all other Lingos some slot or other.
///
/// Lingos are hashed by a multiplication. Up to maxPerfect of them, multipliers are tried until each Lingo
/// has a bucket of its own: a lookup is then one load without a branch, which is what makes counting fast.
/// Larger profiles are rare; their Lingos are searched in ascending order, which no choice of Lingos can make
/// slow.
class LingoTable {
 public:
  /// An empty bucket has the Lingo 0 and one of the spare slots n to n + numSpareSlots - 1. There are several
  /// of them because a write to the slot of the last Lingo would hold up the next one.
  struct Bucket {
    std::uint32_t lingo;
    std::uint32_t slot;
  };
  static constexpr unsigned numSpareSlots = 16;
  static constexpr unsigned maxPerfect = 256;

  /// What a lookup needs, to be copied out of the reach of the loop's writes.
  struct View {
    std::span<const Bucket> buckets;
    std::uint32_t factor;
    unsigned shift;

    std::size_t Place(std::uint32_t lingo) const { return (lingo * factor) >> shift; }
    /// The bucket that holds the Lingo, or one that does not when the table has none. isPerfect is that of
    /// the table.
    template <bool isPerfect>
    Bucket Find(std::uint32_t lingo) const {
      if constexpr (isPerfect) return buckets[Place(lingo)];
      return *std::ranges::lower_bound(buckets.first(buckets.size() - 1), lingo, {}, &Bucket::lingo);
    }
  };

  LingoTable() = default;
  /// Slots are the places of the Lingos, which are ascending, distinct and not 0.
  explicit LingoTable(std::span<const std::uint32_t> lingos);

  bool IsPerfect() const { return isPerfect_; }
  View GetView() const { return {buckets_, factor_, shift_}; }

 private:
  bool FindPerfectFactor(std::span<const std::uint32_t> lingos);

  // When perfect, by place; else ascending, and a last one that is none.
  std::vector<Bucket> buckets_;
  std::uint32_t factor_ = 0;
  unsigned shift_ = 0;
  bool isPerfect_ = false;
};

}  // namespace QXChem
