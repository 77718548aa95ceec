#include "chem/subsearch/AtomWord.h"

namespace QXChem {
namespace {

constexpr std::size_t numElements = 256;  // all values of a byte

constexpr std::array<std::uint8_t, numElements> MakeBins(bool aromatic) {
  struct Entry {
    unsigned element;
    ElementBin bin;
    ElementBin aromaticBin;
  };
  constexpr Entry entries[] = {
      {1, binH, binAromaticOther},   {5, binB, binAromaticOther},   {6, binC, binAromaticC},
      {7, binN, binAromaticN},       {8, binO, binAromaticO},       {9, binF, binAromaticOther},
      {14, binSi, binAromaticOther}, {15, binP, binAromaticOther},  {16, binS, binAromaticS},
      {17, binCl, binAromaticOther}, {35, binBr, binAromaticOther}, {53, binI, binAromaticOther},
  };
  std::array<std::uint8_t, numElements> bins{};
  bins.fill(aromatic ? binAromaticOther : binOther);
  for (const Entry& entry : entries) {
    bins[entry.element] = static_cast<std::uint8_t>(aromatic ? entry.aromaticBin : entry.bin);
  }
  return bins;
}

constexpr std::array<std::array<std::uint8_t, numElements>, 2> elementBins = {MakeBins(false),
                                                                              MakeBins(true)};

// Per cent of the atoms, for every value of every field and for every bit that says what is lacking. Only
// the order in which a pattern is searched depends on them.
constexpr std::array<std::uint8_t, 63> percentages = {
    1,  1,  36, 6,  11, 2,  1, 1, 1, 1, 1, 1, 1, 30, 4, 1, 1, 1,  // elements
    45, 1,  44, 10, 1,                                            // ring bonds
    48, 33, 13, 6,  1,                                            // hydrogens
    1,  18, 46, 33, 3,  1,                                        // degree
    1,  7,  12, 50, 30, 1,  1,                                    // total degree
    1,  1,  97, 1,  1,                                            // charge
    99, 1,                                                        // isotope
    2,  64, 33, 1,                                                // hybridisation
    30, 85, 99, 60, 30,                                           // lacks bonds
    5,  75, 75, 96, 97, 50,                                       // lacks neighbours
};

double SharePassing(std::uint64_t forbidden, const WordField& field) {
  double all = 0;
  double passing = 0;
  for (unsigned bit = field.shift; bit < field.shift + field.numBins; ++bit) {
    all += percentages[bit];
    if ((forbidden >> bit & 1) == 0) passing += percentages[bit];
  }
  return passing / all;
}

}  // namespace

unsigned GetElementBin(unsigned element, bool aromatic) {
  return elementBins[aromatic][element];
}

bool IsImpossible(std::uint64_t forbidden) {
  for (const WordField& field : wordFields) {
    if ((forbidden & field.GetMask()) == field.GetMask()) return true;
  }
  return false;
}

double EstimateShare(std::uint64_t forbidden) {
  double share = 1;
  for (const WordField& field : wordFields) share *= SharePassing(forbidden, field);
  for (std::uint64_t lacks = forbidden & allLacks; lacks != 0; lacks &= lacks - 1) {
    share *= 1 - percentages[static_cast<unsigned>(std::countr_zero(lacks))] / 100.0;
  }
  return share;
}

}  // namespace QXChem
