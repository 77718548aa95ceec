// Backtracking over the steps of a pattern. An atom comes into question when its word has none of the
// forbidden bits, which costs one instruction; bonds to atoms placed earlier are checked at once. What a
// recursive pattern says about an atom does not depend on where it is asked: it is found when first asked and
// kept for the whole search, so that patterns in each other cost no more than patterns beside each other.
//
// Matches that are like one found or refuted before are left out in two ways. Where one of each set of atoms
// is wanted, those that a symmetry of the pattern turns into each other are told apart by bounds: some atoms
// must have larger indices than others. Where one is wanted, twin atoms of the molecule are taken in the order
// of their indices: exchanging an atom for a smaller twin that is free gives a match just as good, and if that
// one is out of bounds, a symmetry of what has not been placed yet brings it back.

#include "chem/subsearch/Search.h"

#include <algorithm>

namespace QXChem {

bool CanMatch(const Pattern& pattern, const Target& target) {
  if (pattern.numAtoms > target.NumAtoms() || pattern.bonds.size() > target.NumBonds()) return false;
  for (const std::uint64_t elements : pattern.neededElements) {
    if ((elements & target.GetPresent()) == 0) return false;
  }
  for (const std::uint16_t classes : pattern.neededBonds) {
    if ((classes & target.GetPresentBonds()) == 0) return false;
  }
  for (const Pattern::Need& need : pattern.needs) {
    const std::uint64_t* words = target.Words();
    const auto passes = [&](std::uint64_t word) { return (word & need.forbidden) == 0; };
    if (std::count_if(words, words + target.NumAtoms(), passes) < need.count) return false;
  }
  return true;
}

void Search::Start(const Pattern& pattern, const Target& target, Wanted wanted) {
  isPrepared_ = false;
  hasMatch_ = false;
  isOver_ = !CanMatch(pattern, target);
  if (isOver_) return;
  Prepare(pattern, target, wanted);
  StartAt(0, target.NumAtoms());
}

void Search::Prepare(const Pattern& pattern, const Target& target, Wanted wanted) {
  pattern_ = &pattern;
  target_ = &target;
  usesBounds_ = wanted != Wanted::All;
  twins_ = wanted == Wanted::One && !pattern.asksRingCounts ? target.Twins() : nullptr;
  hasMatch_ = false;
  used_.assign(target.NumAtoms(), 0);
  if (places_.size() < pattern.steps.size()) places_.resize(pattern.steps.size());
  if (!pattern.recursive.empty()) {
    if (recursive_.size() < pattern.recursive.size()) recursive_.resize(pattern.recursive.size());
    for (Search& search : recursive_) search.isPrepared_ = false;
    known_.assign(pattern.recursive.size() * target.NumAtoms(), Known::Nothing);
  }
  isPrepared_ = true;
}

// The first step's atom is one of firstAtom up to endAtom.
void Search::StartAt(unsigned firstAtom, unsigned endAtom) {
  if (hasMatch_) {
    for (unsigned depth = 0; depth + 1 < pattern_->numAtoms; ++depth) used_[places_[depth].atom] = 0;
  }
  hasMatch_ = false;
  isOver_ = false;
  places_[0] = {firstAtom, endAtom, firstAtom, 0};
}

bool Search::Next() {
  if (isOver_) return false;
  const SearchStep* steps = pattern_->steps.data();
  const unsigned last = pattern_->numAtoms - 1;
  unsigned depth = hasMatch_ ? last : 0;
  for (;;) {
    if (Advance(steps[depth], places_[depth])) {
      if (depth == last) break;
      used_[places_[depth].atom] = 1;
      Enter(++depth);
    } else {
      if (depth == 0) {
        hasMatch_ = false;
        isOver_ = true;
        return false;
      }
      used_[places_[--depth].atom] = 0;
    }
  }
  hasMatch_ = true;
  return true;
}

void Search::Enter(unsigned depth) {
  const SearchStep& step = pattern_->steps[depth];
  Place& place = places_[depth];
  place.lowest = 0;
  if (usesBounds_) {
    for (unsigned i = 0; i < step.numBounds; ++i) {
      place.lowest = std::max(place.lowest, places_[pattern_->bounds[step.firstBound + i]].atom + 1);
    }
  }
  if (step.isRoot) {
    place.next = place.lowest;
    place.end = target_->NumAtoms();
    return;
  }
  const std::uint32_t* range = target_->Offsets() + places_[step.link.depth].atom;
  place.next = range[0];
  place.end = range[1];
}

bool Search::IsFree(const Place& place, unsigned atom) const {
  if (used_[atom]) return false;
  if (!twins_) return true;
  for (unsigned twin = twins_[atom]; twin != Target::noTwin && twin >= place.lowest; twin = twins_[twin]) {
    if (!used_[twin]) return false;
  }
  return true;
}

bool Search::Advance(const SearchStep& step, Place& place) {
  const std::uint64_t* words = target_->Words();
  const std::uint64_t forbidden = step.forbidden;
  if (step.isRoot) {
    while (place.next < place.end) {
      const std::uint32_t atom = place.next++;
      if ((words[atom] & forbidden) != 0 || !IsFree(place, atom) || !Takes(step, atom)) continue;
      place.atom = atom;
      return true;
    }
    return false;
  }
  const Target::Neighbor* neighbors = target_->Neighbors();
  while (place.next < place.end) {
    const Target::Neighbor neighbor = neighbors[place.next++];
    if ((neighbor.bondClass & step.link.classes) == 0 || (words[neighbor.atom] & forbidden) != 0) continue;
    if (neighbor.atom < place.lowest || !IsFree(place, neighbor.atom) || !Takes(step, neighbor.atom))
      continue;
    if (step.link.dative && !GoesRightWay(step.link, places_[step.link.depth].atom, neighbor.atom)) continue;
    place.atom = neighbor.atom;
    return true;
  }
  return false;
}

// What remains to be asked of an atom that passes the mask.
bool Search::Takes(const SearchStep& step, unsigned atom) {
  if (step.numClosures != 0 && !HasClosures(step, atom)) return false;
  return !step.hasTest || Passes(pattern_->tests[step.test], atom);
}

bool Search::HasClosures(const SearchStep& step, unsigned atom) const {
  const Target::Neighbor* first = target_->Neighbors() + target_->Offsets()[atom];
  const Target::Neighbor* end = target_->Neighbors() + target_->Offsets()[atom + 1];
  for (unsigned i = 0; i < step.numClosures; ++i) {
    const BondStep& closure = pattern_->closures[step.firstClosure + i];
    const unsigned placed = places_[closure.depth].atom;
    const auto* bond = std::find_if(first, end, [&](const Target::Neighbor& n) { return n.atom == placed; });
    if (bond == end || (bond->bondClass & closure.classes) == 0) return false;
    if (closure.dative && !GoesRightWay(closure, placed, atom)) return false;
  }
  return true;
}

bool Search::GoesRightWay(const BondStep& bond, unsigned placed, unsigned atom) const {
  const QXBondBase* found = target_->GetMol().GetBond(placed, atom);
  return !found->IsDative() || (found->GetBgnIdx() == placed) == bond.placedIsDonor;
}

bool Search::Passes(const AtomTest& test, unsigned atom) {
  if ((target_->Words()[atom] & test.forbidden) != 0) return false;
  const AtomTest* children = pattern_->tests.data() + test.firstChild;
  const auto passes = [&](const AtomTest& child) { return Passes(child, atom); };
  switch (test.kind) {
    case AtomTest::Kind::Mask:
      return true;
    case AtomTest::Kind::Range: {
      const int value = target_->GetValue(test.property, atom);
      return (value >= test.low && value <= test.high) != test.negated;
    }
    case AtomTest::Kind::Recursive:
      return MatchesRecursive(test.recursive, atom) != test.negated;
    case AtomTest::Kind::And:
      return std::all_of(children, children + test.numChildren, passes);
    case AtomTest::Kind::Or:
      return std::any_of(children, children + test.numChildren, passes);
  }
  return false;
}

bool Search::MatchesRecursive(unsigned recursive, unsigned atom) {
  Known& known = known_[std::size_t{recursive} * target_->NumAtoms() + atom];
  if (known == Known::Nothing) {
    Search& search = recursive_[recursive];
    if (!search.isPrepared_) search.Prepare(pattern_->recursive[recursive], *target_, Wanted::One);
    search.StartAt(atom, atom + 1);
    known = search.Next() ? Known::Yes : Known::No;
  }
  return known == Known::Yes;
}

void Search::GetMatch(QXAtomBondSet& match) {
  atoms_.resize(pattern_->numAtoms);
  for (unsigned depth = 0; depth < pattern_->numAtoms; ++depth) {
    atoms_[pattern_->steps[depth].atom] = places_[depth].atom;
  }
  match.Clear();
  for (const unsigned atom : atoms_) match.AddAtom(atom);
  for (const Pattern::Bond& bond : pattern_->bonds) {
    match.AddBond(target_->GetMol().GetBond(atoms_[bond.begin], atoms_[bond.end])->GetIdx());
  }
}

}  // namespace QXChem
