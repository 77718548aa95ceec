#pragma once

#include <cstdint>

namespace QXFingrix {

/// What the key patterns ask of an atom: one bit each. The first ten are counted among the neighbours of an
/// atom too (see NeighborCounts). Q is any atom but carbon and hydrogen.
namespace AtomClass {
using Word = std::uint64_t;

enum Bit : unsigned {
  anyBit,
  carbonBit,
  nitrogenBit,
  oxygenBit,
  sulfurBit,
  heteroBit,    // Q
  heteroHBit,   // Q with one hydrogen
  halogenBit,   // F, Cl, Br, I
  carbonH2Bit,  // CH2
  carbonH3Bit,  // CH3
  numCountedBits
};

constexpr Word any = 1U << anyBit;
constexpr Word C = 1U << carbonBit;
constexpr Word N = 1U << nitrogenBit;
constexpr Word O = 1U << oxygenBit;
constexpr Word S = 1U << sulfurBit;
constexpr Word Q = 1U << heteroBit;
constexpr Word QH = 1U << heteroHBit;
constexpr Word halogen = 1U << halogenBit;
constexpr Word CH2 = 1U << carbonH2Bit;
constexpr Word CH3 = 1U << carbonH3Bit;

constexpr Word notC = 1U << 10;
constexpr Word clBrIN = 1U << 11;      // N, Cl, Br, I
constexpr Word ringHetero = 1U << 12;  // N, O, Si, S
constexpr Word aliphaticS = 1U << 13;
constexpr Word aliphaticCH2 = 1U << 14;
constexpr Word H1 = 1U << 15;  // exactly one hydrogen
constexpr Word H2 = 1U << 16;
constexpr Word X3 = 1U << 17;  // three connections, hydrogens included
constexpr Word X4 = 1U << 18;
constexpr Word charged = 1U << 19;
constexpr Word isotope = 1U << 20;
constexpr Word inRing = 1U << 21;
constexpr Word ring1 = 1U << 22;  // at least one ring bond
constexpr Word ring2 = 1U << 23;  // at least two
constexpr Word ring3 = 1U << 24;
constexpr Word branch = 1U << 25;         // ring1 and a bond outside rings
constexpr Word chain2 = 1U << 26;         // at least two bonds outside rings
constexpr Word aromaticBond = 1U << 27;   // at least one
constexpr Word cRing3 = 1U << 28;         // carbon and ring3
constexpr Word cQ2 = 1U << 29;            // carbon with at least two neighbours Q
constexpr Word cC3 = 1U << 30;            // carbon with at least three neighbours C
constexpr Word cDegree3 = Word{1} << 31;  // carbon with at least three neighbours
constexpr Word cN = Word{1} << 32;        // carbon with a neighbour N
constexpr unsigned numClassBits = 33;
}  // namespace AtomClass

/// How many neighbours of an atom are of each counted class: six bits a class, the highest of which stays
/// clear. From maxCount on they are not told apart.
namespace NeighborCounts {
using Word = std::uint64_t;

constexpr unsigned laneBits = 6;
constexpr unsigned maxCount = 31;

/// `count` neighbours of the class with this bit.
constexpr Word Of(unsigned bit, unsigned count = 1) {
  return Word{count} << (laneBits * bit);
}

constexpr Word guards = [] {
  Word word = 0;
  for (unsigned bit = 0; bit < AtomClass::numCountedBits; ++bit) word |= Of(bit, maxCount + 1);
  return word;
}();

/// Adds a neighbour, with at most 1 for every class.
constexpr Word Add(Word counts, Word neighbor) {
  const Word sum = counts + neighbor;
  return sum - ((sum & guards) >> (laneBits - 1));
}

/// Whether there are at least as many neighbours of every class as required.
constexpr bool Suffice(Word counts, Word required) {
  return (((counts | guards) - required) & guards) == guards;
}
}  // namespace NeighborCounts

}  // namespace QXFingrix
