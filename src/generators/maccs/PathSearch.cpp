// Paths grow atom by atom, all of one length at a time. What a path can still become depends on the atom at its
// end and on the set of those behind it, not on their order, and of these sets a few per atom are enough
// (PathSets): where all paths together are too many to walk, their representatives are not. A ring is a path
// that ends beside the atom where it began; it is looked for from every atom, which is out of question for
// later rings once it has been refuted. Atoms with many bonds come first: little is left after them.

#include "generators/maccs/PathSearch.h"

#include <algorithm>
#include <functional>

#include "generators/maccs/KeyRules.h"

namespace QXFingrix {

using QXChem::QXMolBase;
using QXChem::QXNeighbor;

void PathSearch::Layer::Clear() {
  for (const unsigned atom : reached) paths[atom].Clear();
  reached.clear();
}

void PathSearch::Layer::Add(unsigned atom, const PathSets::Set& set, unsigned size, unsigned numMore) {
  if (paths[atom].IsEmpty()) reached.push_back(atom);
  paths[atom].Add(set, size, numMore);
}

PathSearch::PathSearch(const QXMolBase& mol, std::span<const AtomFacts> atoms,
                       std::span<const std::uint8_t> bondKinds)
    : mol_(mol),
      atoms_(atoms),
      bondKinds_(bondKinds),
      excluded_(atoms.size(), 0),
      from_(atoms.size()),
      to_(atoms.size()) {}

bool PathSearch::Find(const PathPattern& pattern) {
  return pattern.kind == PathPattern::closed ? FindRing(pattern) : FindChain(pattern);
}

// Another set of as many atoms lacks one of the first.
bool PathSearch::FindTwo(const PathPattern& pattern) {
  if (!Find(pattern)) return false;
  const std::vector<unsigned> first = match_;
  return std::ranges::any_of(first, [&](unsigned atom) {
    excluded_[atom] = 1;
    const bool isFound = Find(pattern);
    excluded_[atom] = 0;
    return isFound;
  });
}

bool PathSearch::IsUsable(const PathPattern& pattern, unsigned bond) const {
  return pattern.kind == PathPattern::anyBonds || bondKinds_[bond] >= BondKind::ringShift;
}

bool PathSearch::FindChain(const PathPattern& pattern) {
  from_.Clear();
  for (unsigned i = 0; i < atoms_.size(); ++i) {
    if (CanBe(i, pattern.atoms[0])) from_.Add(i, {}, 0, pattern.numAtoms - 1);
  }
  return Lengthen(pattern);
}

bool PathSearch::FindRing(const PathPattern& pattern) {
  const std::vector<char> excluded = excluded_;
  std::vector<unsigned> starts;
  for (unsigned i = 0; i < atoms_.size(); ++i) {
    if (CanBe(i, pattern.atoms[0]) && (atoms_[i].word & AtomClass::ring2)) starts.push_back(i);
  }
  std::ranges::stable_sort(starts, std::greater(), [&](unsigned i) { return mol_.Neighbors(i).size(); });
  bool isFound = false;
  for (std::size_t i = 0; i < starts.size() && !isFound; ++i) {
    from_.Clear();
    from_.Add(starts[i], {}, 0, pattern.numAtoms - 1);
    isFound = Lengthen(pattern);
    excluded_[starts[i]] = 1;
  }
  excluded_ = excluded;
  return isFound;
}

// Goes on from the atoms of the first layer.
bool PathSearch::Lengthen(const PathPattern& pattern) {
  const bool isClosed = pattern.kind == PathPattern::closed;
  for (unsigned numAtoms = 1; numAtoms < pattern.numAtoms; ++numAtoms) {
    const bool isLast = numAtoms + 1 == pattern.numAtoms;
    to_.Clear();
    for (const unsigned end : from_.reached) {
      for (const QXNeighbor& next : mol_.Neighbors(end)) {
        if (!IsUsable(pattern, next.bond) || !CanBe(next.atom, pattern.atoms[numAtoms])) continue;
        for (PathSets::Set set : from_.paths[end].Sets()) {
          const auto others = std::span(set).first(numAtoms - 1);
          if (std::ranges::find(others, next.atom) != others.end()) continue;
          set[numAtoms - 1] = end;
          if (isLast && (!isClosed || mol_.GetBond(next.atom, set[0]))) {
            return TakeMatch(pattern, next.atom, set);
          }
          if (!isLast) to_.Add(next.atom, set, numAtoms, pattern.numAtoms - numAtoms - 1);
        }
      }
    }
    std::swap(from_, to_);
  }
  return false;
}

bool PathSearch::TakeMatch(const PathPattern& pattern, unsigned last, const PathSets::Set& others) {
  match_.assign(others.begin(), others.begin() + pattern.numAtoms - 1);
  match_.push_back(last);
  return true;
}

}  // namespace QXFingrix
