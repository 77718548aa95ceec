#pragma once

#include <cstddef>
#include <cstdint>

// Where things stand in a .fpbin file, in 64-bit words; docs/FileFormat.md. Frozen: files hold it.

namespace QXFingrix::FileLayout {

inline constexpr std::size_t wordBytes = 8;
inline constexpr std::size_t headerWords = 100;
inline constexpr std::size_t headerBytes = headerWords * wordBytes;
inline constexpr std::size_t textBytes = 784;           // header: room for its lines
inline constexpr std::size_t numWordsSlot = 98;         // header: words per fingerprint
inline constexpr std::size_t numFingerPrintsSlot = 99;  // header: records in the file

inline constexpr std::size_t indexSlot = 0;     // record: molecule index
inline constexpr std::size_t bitCountSlot = 1;  // record: number of bits set
inline constexpr std::size_t dataSlot = 2;      // record: first word of the fingerprint

inline constexpr std::uint64_t RecordWords(std::uint64_t numWords) {
  return numWords + dataSlot;
}

}  // namespace QXFingrix::FileLayout
