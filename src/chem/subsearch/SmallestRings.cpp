// A breadth-first search from the atom over ring bonds, each atom reached carrying the branch (first bond) it
// was reached by. The first bond that joins two branches closes a shortest ring through the atom: of
// distance(a) + distance(b) + 1 bonds.

#include "chem/subsearch/SmallestRings.h"

#include <algorithm>
#include <limits>

namespace QXChem {
namespace {

class RingSearch {
 public:
  explicit RingSearch(const QXMolBase& mol) : mol_(mol), reached_(mol.NumAtoms()) {}

  unsigned Run(unsigned start) {
    queue_.assign(1, start);
    reached_[start] = {start, none_, 0};
    unsigned smallest = none_;
    for (std::size_t head = 0; head < queue_.size(); ++head) {
      const unsigned atom = queue_[head];
      if (2 * reached_[atom].distance + 1 >= smallest) break;
      for (const QXNeighbor& step : mol_.Neighbors(atom)) {
        if (mol_.Bonds()[step.bond].IsInRing()) Follow(start, atom, step.atom, smallest);
      }
    }
    return smallest == none_ ? 0 : smallest;  // flags set by hand need no ring
  }

 private:
  struct Reached {
    unsigned from = none_;  // the start of the search that the rest belongs to
    unsigned branch = 0;
    unsigned distance = 0;
  };

  void Follow(unsigned start, unsigned from, unsigned to, unsigned& smallest) {
    if (to == start) return;
    const unsigned branch = from == start ? to : reached_[from].branch;
    const unsigned distance = reached_[from].distance + 1;
    Reached& there = reached_[to];
    if (there.from != start) {
      there = {start, branch, distance};
      queue_.push_back(to);
    } else if (there.branch != branch) {
      smallest = std::min(smallest, there.distance + distance);
    }
  }

  static constexpr unsigned none_ = std::numeric_limits<unsigned>::max();

  const QXMolBase& mol_;
  std::vector<Reached> reached_;
  std::vector<unsigned> queue_;
};

// The only other ring bond of an atom with two of them, null for an atom with more.
const QXNeighbor* GetOtherRingBond(const QXMolBase& mol, unsigned atom, unsigned bond) {
  const QXNeighbor* other = nullptr;
  for (const QXNeighbor& step : mol.Neighbors(atom)) {
    if (step.bond == bond || !mol.Bonds()[step.bond].IsInRing()) continue;
    if (other) return nullptr;
    other = &step;
  }
  return other;
}

// Atoms between branches of a ring system lie in the same rings.
void SetAlongChain(const QXMolBase& mol, QXNeighbor step, unsigned size, std::vector<unsigned>& sizes) {
  while (sizes[step.atom] == 0) {
    const QXNeighbor* next = GetOtherRingBond(mol, step.atom, step.bond);
    if (!next) return;
    sizes[step.atom] = size;
    step = *next;
  }
}

}  // namespace

void GetSmallestRings(const QXMolBase& mol, std::vector<unsigned>& sizes) {
  sizes.assign(mol.NumAtoms(), 0);
  RingSearch search(mol);
  for (const QXAtomBase& atom : mol.Atoms()) {
    const unsigned idx = atom.GetIdx();
    if (!atom.IsInRing() || sizes[idx] != 0) continue;
    sizes[idx] = search.Run(idx);
    for (const QXNeighbor& step : mol.Neighbors(idx)) {
      if (!mol.Bonds()[step.bond].IsInRing()) continue;
      if (GetOtherRingBond(mol, idx, step.bond)) SetAlongChain(mol, step, sizes[idx], sizes);
    }
  }
}

}  // namespace QXChem
