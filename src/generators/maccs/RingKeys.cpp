#include "generators/maccs/RingKeys.h"

#include <algorithm>
#include <array>
#include <bit>

#include "generators/maccs/DistinctSets.h"
#include "generators/maccs/KeyRules.h"
#include "generators/maccs/PathSearch.h"

namespace QXFingrix {
namespace {

using QXChem::QXMolBase;
using QXChem::QXNeighbor;

constexpr unsigned minSize = 3;
constexpr unsigned maxSize = 7;
constexpr unsigned countedSize = 6;
constexpr unsigned longChain = 8;

// What is still to be found, by ring size: rings, those with an atom Q, and two different ones.
class Wanted {
 public:
  explicit Wanted(bool hasHetero) : hasHetero_(hasHetero) {
    for (const RingRule& rule : GetRingRules())
      (rule.atom == AtomClass::Q ? hetero_ : any_) |= 1U << rule.size;
  }

  void Drop(unsigned size, bool hasHetero) {
    any_ &= ~(1U << size);
    if (hasHetero) hetero_ &= ~(1U << size);
  }
  void DropTwo() { two_ = 0; }

  bool Has(const RingRule& rule) const {
    return ((rule.atom == AtomClass::Q ? hetero_ : any_) >> rule.size & 1) != 0;
  }
  // Where rings have been looked for, one with Q needs to be a ring.
  bool MayBe(const RingRule& rule) const {
    return Has(rule) && (rule.atom != AtomClass::Q || (hasHetero_ && !(any_ >> rule.size & 1)));
  }
  bool HasTwo() const { return two_ != 0; }
  // Of what there may be; 0 when nothing is left.
  unsigned LargestSize() const {
    const unsigned sizes = any_ | (hasHetero_ ? hetero_ : 0) | two_;
    return sizes == 0 ? 0 : static_cast<unsigned>(std::bit_width(sizes)) - 1;
  }

 private:
  bool hasHetero_;  // in any ring
  unsigned any_ = 0;
  unsigned hetero_ = 0;
  unsigned two_ = 1U << countedSize;
};

// Walks along ring bonds until all is found, or until that takes too many steps.
class RingWalk {
 public:
  RingWalk(const QXMolBase& mol, std::span<const AtomFacts> atoms, std::span<const std::uint8_t> bondKinds)
      : mol_(mol), atoms_(atoms), bondKinds_(bondKinds) {}

  // Every ring is found from its lowest atom, once in each direction.
  Wanted FindRings() {
    Start();
    for (unsigned i = 0; i < atoms_.size() && largestSize_ != 0; ++i) {
      if (!IsRingAtom(i)) continue;
      chain_[0] = i;
      Lengthen(1, IsHetero(i));
    }
    return wanted_;
  }

  bool HasLongChain() {
    Start();
    for (unsigned i = 0; i < atoms_.size(); ++i) {
      if (!IsRingAtom(i)) continue;
      chain_[0] = i;
      if (CanReachLongChain(1)) return true;
    }
    return false;
  }

  bool HasGivenUp() const { return numStepsLeft_ == 0; }

 private:
  void Start() { numStepsLeft_ = maxStepsPerAtom * atoms_.size(); }
  bool IsRingAtom(unsigned atom) const { return (atoms_[atom].word & AtomClass::ring1) != 0; }
  bool IsHetero(unsigned atom) const { return (atoms_[atom].word & AtomClass::Q) != 0; }
  bool IsRingBond(unsigned bond) const { return bondKinds_[bond] >= BondKind::ringShift; }
  bool HasRingHetero() const {
    return std::ranges::any_of(atoms_, [](const AtomFacts& atom) {
      return (atom.word & AtomClass::Q) != 0 && (atom.word & AtomClass::ring1) != 0;
    });
  }

  bool IsInChain(unsigned atom, unsigned numAtoms) const {
    for (unsigned i = 0; i < numAtoms; ++i) {
      if (chain_[i] == atom) return true;
    }
    return false;
  }

  void Lengthen(unsigned numAtoms, bool hasHetero) {
    for (const QXNeighbor& next : mol_.Neighbors(chain_[numAtoms - 1])) {
      if (HasGivenUp()) return;
      --numStepsLeft_;
      if (next.atom <= chain_[0]) {
        if (next.atom == chain_[0] && numAtoms >= minSize) Close(numAtoms, hasHetero);
        continue;
      }
      if (numAtoms >= largestSize_ || !IsRingBond(next.bond) || IsInChain(next.atom, numAtoms)) continue;
      chain_[numAtoms] = next.atom;
      Lengthen(numAtoms + 1, hasHetero || IsHetero(next.atom));
    }
  }

  void Close(unsigned size, bool hasHetero) {
    wanted_.Drop(size, hasHetero);
    if (size == countedSize) {
      sixRings_.Add({chain_[0], chain_[1], chain_[2], chain_[3], chain_[4], chain_[5]});
      if (sixRings_.AreTwo()) wanted_.DropTwo();
    }
    largestSize_ = wanted_.LargestSize();
  }

  bool CanReachLongChain(unsigned numAtoms) {
    if (numAtoms == longChain) return true;
    for (const QXNeighbor& next : mol_.Neighbors(chain_[numAtoms - 1])) {
      if (HasGivenUp()) return false;
      --numStepsLeft_;
      if (!IsRingBond(next.bond) || IsInChain(next.atom, numAtoms)) continue;
      chain_[numAtoms] = next.atom;
      if (CanReachLongChain(numAtoms + 1)) return true;
    }
    return false;
  }

  const QXMolBase& mol_;
  std::span<const AtomFacts> atoms_;
  std::span<const std::uint8_t> bondKinds_;
  std::array<unsigned, longChain> chain_{};
  Wanted wanted_{HasRingHetero()};
  unsigned largestSize_ = wanted_.LargestSize();
  DistinctSets<countedSize> sixRings_;
  std::size_t numStepsLeft_ = 0;
};

PathPattern Pattern(PathPattern::Kind kind, AtomClass::Word first, unsigned numAtoms) {
  PathPattern pattern(kind, {first});
  while (pattern.numAtoms < numAtoms) pattern.Add(AtomClass::any);
  return pattern;
}

Wanted SearchRings(Wanted wanted, PathSearch search) {
  const auto tryRules = [&](AtomClass::Word atom) {
    for (const RingRule& rule : GetRingRules()) {
      if (rule.atom == atom && wanted.MayBe(rule) &&
          search.Find(Pattern(PathPattern::closed, atom, rule.size))) {
        wanted.Drop(rule.size, atom == AtomClass::Q);
      }
    }
  };
  tryRules(AtomClass::any);
  tryRules(AtomClass::Q);
  if (wanted.HasTwo() && search.FindTwo(Pattern(PathPattern::closed, AtomClass::any, countedSize))) {
    wanted.DropTwo();
  }
  return wanted;
}

}  // namespace

void FindRingKeys(KeySet& keys, const QXMolBase& mol, std::span<const AtomFacts> atoms,
                  std::span<const std::uint8_t> bondKinds) {
  const auto search = [&] { return PathSearch(mol, atoms, bondKinds); };
  RingWalk walk(mol, atoms, bondKinds);
  Wanted missing = walk.FindRings();
  if (walk.HasGivenUp()) missing = SearchRings(missing, search());
  bool hasLongChain = walk.HasLongChain();
  if (walk.HasGivenUp() && !hasLongChain) {
    hasLongChain = search().Find(Pattern(PathPattern::ringBonds, AtomClass::any, longChain));
  }
  for (const RingRule& rule : GetRingRules()) {
    if (!missing.Has(rule)) keys.Set(rule.key);
  }
  if (!missing.HasTwo()) keys.Set(twoSixRingsKey);
  if (hasLongChain) keys.Set(longRingChainKey);
}

}  // namespace QXFingrix
