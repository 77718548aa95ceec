#pragma once

#include <cstdint>
#include <limits>
#include <vector>

namespace QXChem {

/// What a pattern can ask of an atom, as a number. Yes-or-no questions are asked of the count behind them.
enum class AtomProperty : std::uint8_t {
  Type,  // element, plus aromaticOffset when aromatic
  Element,
  Aromatic,
  Charge,
  Isotope,
  Hydrogens,
  ImplicitHydrogens,
  Degree,
  TotalDegree,
  Valence,
  Hybridization,
  RingBonds,
  RingCount,     // rings of the symmetrised smallest set
  SmallestRing,  // its size, 0 outside rings
  HeteroNeighbors,
  AliphaticHeteroNeighbors
};

constexpr int aromaticOffset = 1000;
/// Hybridisations for which the graph has no code of its own: a lone s orbital, and none at all.
constexpr int hybridizationS = 6;
constexpr int hybridizationNone = 7;

/// One condition on an atom as it was written, or several joined.
struct AtomExpression {
  enum class Kind : std::uint8_t { Any, Range, Recursive, And, Or };

  static constexpr int lowest = std::numeric_limits<int>::min();
  static constexpr int highest = std::numeric_limits<int>::max();

  Kind kind = Kind::Any;
  bool negated = false;
  AtomProperty property = AtomProperty::Element;  // of a range: low <= value <= high
  int low = lowest;
  int high = highest;
  unsigned recursive = 0;  // index into Query::recursive
  std::vector<AtomExpression> children;
};

/// Bonds fall into classes, one bit each: seven types outside rings, then the same inside.
enum BondClass : std::uint16_t {
  singleBond = 1,
  doubleBond = 2,
  tripleBond = 4,
  quadrupleBond = 8,
  aromaticBond = 16,
  dativeBond = 32,
  otherBond = 64,
  chainBonds = 0x7F,
  ringBonds = 0x3F80,
  allBonds = 0x3FFF
};
constexpr unsigned ringBondShift = 7;
constexpr unsigned numBondClasses = 2 * ringBondShift;

constexpr std::uint16_t InAndOutOfRings(unsigned types) {
  return static_cast<std::uint16_t>(types | types << ringBondShift);
}

struct QueryBond {
  unsigned begin;
  unsigned end;
  std::uint16_t classes;  // accepted ones
  bool dative;            // written as an arrow: donor and acceptor must fit
};

/// A pattern as it was written, free of the library that read it.
struct Query {
  std::vector<AtomExpression> atoms;
  std::vector<QueryBond> bonds;
  std::vector<Query> recursive;
};

}  // namespace QXChem
