#include "generators/maccs/ChainKeys.h"

#include <array>
#include <bit>

#include "generators/maccs/DistinctSets.h"
#include "generators/maccs/KeyRules.h"
#include "generators/maccs/PathSearch.h"

namespace QXFingrix {
namespace {

using QXChem::QXMolBase;
using QXChem::QXNeighbor;
namespace Class = AtomClass;

constexpr unsigned maxBonds = 4;
constexpr Class::Word endClasses = Class::N | Class::O | Class::QH | Class::CH3;

// Walks all chains of two to four bonds from the atoms that a rule starts at, and gathers by length and by the
// class of the first atom what stands at the other end. Gives up where that takes too many steps.
class ChainWalk {
 public:
  ChainWalk(const QXMolBase& mol, std::span<const AtomFacts> atoms)
      : mol_(mol), atoms_(atoms), numStepsLeft_(maxStepsPerAtom * atoms.size()) {}

  void WalkFrom(unsigned start) {
    chain_[0] = start;
    for (const QXNeighbor& next : mol_.Neighbors(start)) {
      chain_[1] = next.atom;
      Lengthen(1);
    }
  }

  void SetKeys(KeySet& keys) const {
    for (const ChainRule& rule : GetChainRules()) {
      if (ends_[rule.numBonds][BitOf(rule.first)] & rule.second) keys.Set(rule.key);
    }
    if (methylenePairs_.AreTwo()) keys.Set(twoMethylenePairsKey);
  }
  bool HasGivenUp() const { return numStepsLeft_ == 0; }

 private:
  static unsigned BitOf(Class::Word word) { return static_cast<unsigned>(std::countr_zero(word)); }
  bool Is(unsigned atom, Class::Word word) const { return (atoms_[atom].word & word) != 0; }

  bool IsInChain(unsigned atom, unsigned numBonds) const {
    for (unsigned i = 0; i <= numBonds; ++i) {
      if (chain_[i] == atom) return true;
    }
    return false;
  }

  void Lengthen(unsigned numBonds) {
    for (const QXNeighbor& next : mol_.Neighbors(chain_[numBonds])) {
      if (HasGivenUp()) return;
      --numStepsLeft_;
      if (IsInChain(next.atom, numBonds)) continue;
      chain_[numBonds + 1] = next.atom;
      Gather(numBonds + 1);
      if (numBonds + 1 < maxBonds) Lengthen(numBonds + 1);
    }
  }

  void Gather(unsigned numBonds) {
    const unsigned end = chain_[numBonds];
    const Class::Word startWord = atoms_[chain_[0]].word;
    Class::Word endWord = atoms_[end].word & endClasses;
    if (Is(end, Class::CH2)) {
      if (HasTail(end, numBonds)) endWord |= Class::CH2;
      if (startWord & Class::CH2) GatherMethylenes(numBonds);
    }
    for (Class::Word bits = startWord & endClasses; bits != 0; bits &= bits - 1) {
      ends_[numBonds][BitOf(bits)] |= endWord;
    }
  }

  // Calls use(atom) for every neighbour of an end of the chain that is not part of it.
  template <class Use>
  void ForEachTail(unsigned atom, unsigned numBonds, Use use) {
    for (const QXNeighbor& neighbor : mol_.Neighbors(atom)) {
      if (HasGivenUp()) return;
      --numStepsLeft_;
      if (!IsInChain(neighbor.atom, numBonds)) use(neighbor.atom);
    }
  }

  bool HasTail(unsigned atom, unsigned numBonds) {
    bool hasTail = false;
    ForEachTail(atom, numBonds, [&](unsigned) { hasTail = true; });
    return hasTail;
  }

  // Of a chain between two CH2: whether they have a tail each, which must not be the same atom.
  void GatherMethylenes(unsigned numBonds) {
    const unsigned end = chain_[numBonds];
    ForEachTail(chain_[0], numBonds, [&](unsigned tail) {
      if (numBonds == 2) methylenePairs_.Add({chain_[0], tail, chain_[1], end});
      ForEachTail(end, numBonds, [&](unsigned otherTail) {
        if (tail != otherTail) ends_[numBonds][Class::carbonH2Bit] |= Class::CH2;
      });
    });
  }

  const QXMolBase& mol_;
  std::span<const AtomFacts> atoms_;
  std::array<unsigned, maxBonds + 1> chain_{};
  std::array<std::array<Class::Word, Class::numCountedBits>, maxBonds + 1> ends_{};
  DistinctSets<4> methylenePairs_;
  std::size_t numStepsLeft_;
};

PathPattern ToPattern(const ChainRule& rule) {
  PathPattern pattern(PathPattern::anyBonds);
  if (rule.first == Class::CH2) pattern.Add(Class::any);  // tail
  pattern.Add(rule.first);
  for (unsigned i = 1; i < rule.numBonds; ++i) pattern.Add(Class::any);
  pattern.Add(rule.second);
  if (rule.second == Class::CH2) pattern.Add(Class::any);
  return pattern;
}

void SearchChainKeys(KeySet& keys, PathSearch search) {
  for (const ChainRule& rule : GetChainRules()) {
    if (!keys.Has(rule.key) && search.Find(ToPattern(rule))) keys.Set(rule.key);
  }
  if (!keys.Has(twoMethylenePairsKey) &&
      search.FindTwo({PathPattern::anyBonds, {Class::any, Class::CH2, Class::any, Class::CH2}})) {
    keys.Set(twoMethylenePairsKey);
  }
}

}  // namespace

void FindChainKeys(KeySet& keys, const QXMolBase& mol, std::span<const AtomFacts> atoms,
                   std::span<const std::uint8_t> bondKinds) {
  ChainWalk walk(mol, atoms);
  for (unsigned i = 0; i < atoms.size(); ++i) {
    if (atoms[i].word & (endClasses | Class::CH2)) walk.WalkFrom(i);
  }
  walk.SetKeys(keys);
  if (walk.HasGivenUp()) SearchChainKeys(keys, PathSearch(mol, atoms, bondKinds));
}

}  // namespace QXFingrix
