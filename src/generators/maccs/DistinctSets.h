#pragma once

#include <algorithm>
#include <array>

namespace QXFingrix {

/// Tells whether different sets of N atoms have been seen.
template <std::size_t N>
class DistinctSets {
 public:
  void Add(std::array<unsigned, N> atoms) {
    if (areTwo_) return;
    std::ranges::sort(atoms);
    areTwo_ = hasFirst_ && atoms != first_;
    if (!hasFirst_) first_ = atoms;
    hasFirst_ = true;
  }
  bool AreTwo() const { return areTwo_; }

 private:
  std::array<unsigned, N> first_{};
  bool hasFirst_ = false;
  bool areTwo_ = false;
};

}  // namespace QXFingrix
