#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fastfp/slices/SlicedIndexLayout.h"

// What stands in the file of an index, FILE.fpbin.slices, and where; docs/IndexFile.md. Frozen: files hold
// it.

namespace QXFingrix {

static_assert(std::endian::native == std::endian::little, "index files are little-endian");

/// What tells whether a .fpbin file is still the one that an index was made for.
struct FpbinStamp {
  std::uint64_t size = 0;            // bytes
  std::uint64_t modified = 0;        // nanoseconds since 1970
  std::uint64_t headerChecksum = 0;  // of its 800 bytes

  bool operator==(const FpbinStamp&) const = default;

  /// The stamp of a file as it is now; one that no file has when it cannot be read. Silent.
  static FpbinStamp Of(const std::string& fpbinFile);
  /// The same, once the file is older than a tick of the clock that times of files are taken from: what is written
  /// to it later has another time. Waits a few hundredths of a second at most, unless the file is written to all
  /// the time.
  static FpbinStamp OfSettled(const std::string& fpbinFile);
};

struct SlicedIndexHeader {
  static constexpr std::uint64_t magicValue = 0x0a1a0a0d4c535851;  // "QXSL\r\n\x1a\n"
  static constexpr std::uint64_t versionValue = 1;

  std::uint64_t magic = magicValue;
  std::uint64_t version = versionValue;
  std::uint64_t fileSize = 0;  // of the index file itself
  FpbinStamp fpbin;
  std::uint64_t numRecords = 0;
  std::uint64_t numBits = 0;
  std::uint64_t tableChecksum = 0;   // of what stands between header and body
  std::uint64_t headerChecksum = 0;  // of the fields before this one
};
static_assert(sizeof(SlicedIndexHeader) == 80);

/// Where the parts of the file stand. Behind the header there is a table of checksums, one for the columns of
/// each block and one for the orders; then zeros up to a whole page; then the body, laid out as in memory.
struct SlicedIndexFileLayout {
  static constexpr std::size_t pageBytes = 4096;
  static constexpr std::size_t tableAt = sizeof(SlicedIndexHeader);

  SlicedIndexLayout body;

  std::size_t TableSize() const { return body.NumBlocks() + 1; }
  std::size_t BodyAt() const {
    const std::size_t end = tableAt + TableSize() * sizeof(std::uint64_t);
    return (end + pageBytes - 1) / pageBytes * pageBytes;
  }
  std::size_t BlockAt(std::size_t block) const { return BodyAt() + block * body.BlockBytes(); }
  std::size_t OrdersAt() const { return BodyAt() + body.ColumnBytes(); }
  std::size_t FileSize() const { return BodyAt() + body.NumBytes(); }
};

/// XXH3, 64 bits, without a seed.
std::uint64_t Checksum(const void* first, std::size_t numBytes);
std::uint64_t ChecksumOf(const SlicedIndexHeader& header);

}  // namespace QXFingrix
