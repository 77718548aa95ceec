#pragma once

#include <span>

#include "generators/maccs/AtomClass.h"

namespace QXFingrix {

// Most key patterns say no more than what one atom, one bond or one short chain is like. They are written
// down here in that form, beside the pattern that each stands for; tests hold every rule against its pattern.

/// Set by an atom that is in all of these classes and has at least these neighbours.
struct AtomRule {
  unsigned key;
  AtomClass::Word atom;
  NeighborCounts::Word neighbors = 0;
};

/// Kinds of bonds, one bit each.
namespace BondKind {
enum Bit : unsigned { single, twofold, threefold, aromatic, other, numTypes };
constexpr unsigned ringShift = numTypes;  // the same kinds in rings
constexpr unsigned numKinds = 2 * numTypes;

constexpr unsigned Type(unsigned bit) {
  return 1U << bit | 1U << (bit + ringShift);
}
constexpr unsigned all = (1U << numKinds) - 1;
constexpr unsigned ring = all & ~((1U << numTypes) - 1);
constexpr unsigned chain = all & ~ring;
constexpr unsigned notAromatic = all & ~Type(aromatic);
}  // namespace BondKind

/// Set by a bond of one of these kinds between an atom of the class with bit `first` and one of the class
/// `second`.
struct BondRule {
  unsigned key;
  AtomClass::Word first;
  unsigned bonds;
  AtomClass::Word second;
};

/// Set by two atoms of these classes with a chain of `numBonds` bonds between them. A carbon with two
/// hydrogens at the end of a chain (tail) needs a further neighbour that is not part of the chain.
struct ChainRule {
  unsigned key;
  AtomClass::Word first;
  unsigned numBonds;
  AtomClass::Word second;
};

/// Set by a ring of so many atoms, one of which is of the class, whether or not bonds cross the ring.
struct RingRule {
  unsigned key;
  AtomClass::Word atom;
  unsigned size;
};

/// Set by so many atoms of a class, wherever they are.
struct CountRule {
  unsigned key;
  AtomClass::Word atom;
  unsigned count;
};

std::span<const AtomRule> GetAtomRules();
std::span<const BondRule> GetBondRules();
std::span<const ChainRule> GetChainRules();
std::span<const RingRule> GetRingRules();
std::span<const CountRule> GetCountRules();

/// Keys of patterns that are no such rule.
inline constexpr unsigned longRingChainKey = 101;            // *@*@*@*@*@*@*@*
inline constexpr unsigned twoMethylenePairsKey = 118;        // [#6H2](~*)~*~[#6H2], twice
inline constexpr unsigned twoRingHeteroBondsKey = 120;       // [#7,#8,#14,#16]@*, twice
inline constexpr unsigned twoHeteroBondsKey = 130;           // [!#6;!#1]~[!#6;!#1], twice
inline constexpr unsigned twoHeteroMethylenesKey = 138;      // [#6H2](~[!#6;!#1])~*, twice
inline constexpr unsigned substitutedAromaticBondKey = 144;  // *!:*:*!:*
inline constexpr unsigned twoSixRingsKey = 145;              // *~1~*~*~*~*~*~1, twice

}  // namespace QXFingrix
