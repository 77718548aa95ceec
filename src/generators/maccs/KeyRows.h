#pragma once

#include <iterator>
#include <span>

namespace QXFingrix {

/// One row of the table of key patterns.
struct KeyRow {
  unsigned key;  ///< 1 to 166
  const char* smarts;
  unsigned repeatKey = 0;  ///< of a counting row: the key that two different matches set instead
};

/// The rows in ascending order of their keys. Frozen: they decide the bits of stored fingerprints.
std::span<const KeyRow> GetKeyRows();

/// The key that an atom of an element sets, by atomic number from 0 to 112; 0 for none. Frozen.
extern const unsigned AtomicNumBit[113];

/// The same for any atomic number: beyond the table there is no key.
inline unsigned KeyOfElement(unsigned atomicNum) {
  return atomicNum < std::size(AtomicNumBit) ? AtomicNumBit[atomicNum] : 0;
}

/// Keys that no pattern decides.
inline constexpr unsigned twoAromaticSystemsKey = 125;
inline constexpr unsigned aromaticSystemKey = 162;
inline constexpr unsigned twoComponentsKey = 166;
/// Of the row with the pattern of row 146, [#8].[#8].
inline constexpr unsigned sameAsRow146 = 159;
inline constexpr unsigned numMACCSKeys = 166;

}  // namespace QXFingrix
