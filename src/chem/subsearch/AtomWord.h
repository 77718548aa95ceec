#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "chem/subsearch/Query.h"

namespace QXChem {

// What patterns ask most often about an atom, packed into one word: for every property a field with one bit
// per value, of which exactly one is set. A set of accepted values is then a set of bits, and a conjunction of
// conditions on any number of properties is one test: `(word & forbidden) == 0`, where `forbidden` holds the
// bits of all values that are not accepted. Behind the fields stand bits for what the atom's neighbourhood
// lacks, so that a pattern can also forbid the lack of a neighbour or a bond that it is going to need.

/// The element field. Elements without a bin of their own share one.
enum ElementBin : unsigned {
  binH,
  binB,
  binC,
  binN,
  binO,
  binF,
  binSi,
  binP,
  binS,
  binCl,
  binBr,
  binI,
  binOther,
  binAromaticC,
  binAromaticN,
  binAromaticO,
  binAromaticS,
  binAromaticOther,
  numElementBins
};

unsigned GetElementBin(unsigned element, bool aromatic);

/// A field of values from `lowest` on; the last bin stands for all larger ones too, and the first one for all
/// smaller ones where values can be smaller.
struct WordField {
  AtomProperty property;
  int lowest;
  unsigned shift;
  unsigned numBins;
  bool openBelow = false;

  constexpr unsigned GetBin(int value) const {
    if (value <= lowest) return 0;
    const unsigned above = static_cast<unsigned>(value) - static_cast<unsigned>(lowest);
    return above < numBins ? above : numBins - 1;
  }
  constexpr std::uint64_t GetBit(int value) const { return std::uint64_t{1} << (shift + GetBin(value)); }
  constexpr std::uint64_t GetMask() const { return ((std::uint64_t{1} << numBins) - 1) << shift; }
};

constexpr WordField elementField = {AtomProperty::Type, 0, 0, numElementBins};
constexpr WordField ringBondField = {AtomProperty::RingBonds, 0, 18, 5};
constexpr WordField hydrogenField = {AtomProperty::Hydrogens, 0, 23, 5};
constexpr WordField degreeField = {AtomProperty::Degree, 0, 28, 6};
constexpr WordField totalDegreeField = {AtomProperty::TotalDegree, 0, 34, 7};
constexpr WordField chargeField = {AtomProperty::Charge, -2, 41, 5, true};
static_assert(chargeField.GetBin(AtomExpression::highest) == 4);
constexpr WordField isotopeField = {AtomProperty::Isotope, 0, 46, 2};
constexpr WordField hybridizationField = {AtomProperty::Hybridization, 1, 48, 4};
constexpr std::array<WordField, 8> wordFields = {elementField, ringBondField,     hydrogenField,
                                                 degreeField,  totalDegreeField,  chargeField,
                                                 isotopeField, hybridizationField};

enum Lack : std::uint64_t {
  lacksSingle = std::uint64_t{1} << 52,
  lacksDouble = std::uint64_t{1} << 53,
  lacksTriple = std::uint64_t{1} << 54,
  lacksAromatic = std::uint64_t{1} << 55,
  lacksChainBond = std::uint64_t{1} << 56,
  lacksCarbon = std::uint64_t{1} << 57,
  lacksNitrogen = std::uint64_t{1} << 58,
  lacksOxygen = std::uint64_t{1} << 59,
  lacksSulfur = std::uint64_t{1} << 60,
  lacksHalogen = std::uint64_t{1} << 61,
  lacksHetero = std::uint64_t{1} << 62,  // a neighbour that is neither carbon nor hydrogen
  allLacks = std::uint64_t{0x7FF} << 52
};

/// The lacks that a neighbour of this element bin makes good.
constexpr std::array<std::uint64_t, numElementBins> lacksMetByNeighbor = [] {
  std::array<std::uint64_t, numElementBins> lacks{};
  lacks.fill(lacksHetero);
  lacks[binH] = 0;
  lacks[binC] = lacks[binAromaticC] = lacksCarbon;
  lacks[binN] = lacks[binAromaticN] = lacksNitrogen | lacksHetero;
  lacks[binO] = lacks[binAromaticO] = lacksOxygen | lacksHetero;
  lacks[binS] = lacks[binAromaticS] = lacksSulfur | lacksHetero;
  lacks[binF] = lacks[binCl] = lacks[binBr] = lacks[binI] = lacksHalogen | lacksHetero;
  return lacks;
}();

/// The lacks that a bond of this class (the position of its bit) makes good.
constexpr std::array<std::uint64_t, numBondClasses> lacksMetByBond = [] {
  std::array<std::uint64_t, numBondClasses> lacks{};
  for (unsigned i = 0; i < numBondClasses; ++i) {
    const unsigned bondClass = 1U << i;
    if (bondClass & InAndOutOfRings(singleBond)) lacks[i] |= lacksSingle;
    if (bondClass & InAndOutOfRings(doubleBond)) lacks[i] |= lacksDouble;
    if (bondClass & InAndOutOfRings(tripleBond)) lacks[i] |= lacksTriple;
    if (bondClass & InAndOutOfRings(aromaticBond)) lacks[i] |= lacksAromatic;
    if (bondClass & chainBonds) lacks[i] |= lacksChainBond;
  }
  return lacks;
}();

/// Whether no atom can pass: some field has all its values forbidden.
bool IsImpossible(std::uint64_t forbidden);

/// Roughly the share of atoms in organic molecules that pass.
double EstimateShare(std::uint64_t forbidden);

}  // namespace QXChem
