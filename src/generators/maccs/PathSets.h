#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace QXFingrix {

/// The atoms of paths that may go on for `numMore` atoms, as sets. Of all sets added only so many are kept
/// that nothing is lost: whichever atoms a path goes on with, if a set without these was added, one is here.
/// Cost     at most (size + numMore) over numMore sets are kept; adding one takes size ^ numMore steps.
/// Source   Monien, Ann. Discrete Math. 1985, 25, 239; the number of sets: Bollobás, Acta Math. Acad. Sci.
///          Hungar. 1965, 16, 447.
class PathSets {
 public:
  static constexpr unsigned maxSize = 8;
  using Set = std::array<unsigned, maxSize>;  // the first `size` count

  bool IsEmpty() const { return sets_.empty(); }
  std::span<const Set> Sets() const { return sets_; }
  void Clear() { sets_.clear(); }

  /// `size` and `numMore` are the same for all sets between two calls of Clear.
  void Add(const Set& set, unsigned size, unsigned numMore) {
    if (sets_.size() < MaxSets(size, numMore) && IsNeeded(std::span(set).first(size), numMore, 0)) {
      sets_.push_back(set);
    }
  }

 private:
  static constexpr std::size_t MaxSets(unsigned size, unsigned numMore) {
    std::size_t count = 1;
    for (unsigned i = 1; i <= numMore; ++i) count = count * (size + i) / i;
    return count;
  }

  // Whether a path can go on with atoms outside this set, after those taken so far, that meet every kept set.
  bool IsNeeded(std::span<const unsigned> set, unsigned numMore, unsigned numTaken) {
    const auto isAmong = [](std::span<const unsigned> atoms, unsigned atom) {
      return std::ranges::find(atoms, atom) != atoms.end();
    };
    const auto taken = std::span<const unsigned>(taken_).first(numTaken);
    for (const Set& kept : sets_) {
      const auto atoms = std::span(kept).first(set.size());
      if (std::ranges::any_of(atoms, [&](unsigned atom) { return isAmong(taken, atom); })) continue;
      if (numMore == 0) return false;
      return std::ranges::any_of(atoms, [&](unsigned atom) {
        taken_[numTaken] = atom;
        return !isAmong(set, atom) && IsNeeded(set, numMore - 1, numTaken + 1);
      });
    }
    return true;
  }

  std::vector<Set> sets_;
  Set taken_{};  // kept here to spare the stack
};

}  // namespace QXFingrix
