#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// Bit vectors as lists of the bits that are set: the queries of a comparison with many records, see
/// QXBitCountKernel::countLists. Vectors are cut into slices, so that a bit's number within its slice is short.
class QX_API QXBitLists {
 public:
  static constexpr std::size_t sliceWords = 32;
  /// Lists are filled up to a multiple of this many bits, with sliceBits, the number of no bit.
  static constexpr std::size_t padding = 8;
  static constexpr std::uint16_t sliceBits = 64 * sliceWords;
  /// Words of a column, see QXBitCountKernel::makeColumns: one bit for each record of a block.
  static constexpr std::size_t columnWords = 8;

  QXBitLists() = default;
  /// Shape    num vectors of numWords words each, stride words apart.
  /// Cost     O(num numWords + bits set); 2 bytes for each bit set.
  /// Errors   std::bad_alloc.
  QXBitLists(const std::uint64_t* vectors, std::size_t stride, std::size_t num, std::size_t numWords);

  std::size_t NumVectors() const { return num_; }
  std::size_t NumWords() const { return numWords_; }
  std::size_t NumSlices() const { return numSlices_; }

  /// The bits of a vector within a slice, ascending, then the padding.
  std::span<const std::uint16_t> Bits(std::size_t vector, std::size_t slice) const {
    const std::size_t list = vector * numSlices_ + slice;
    return {bits_.data() + ends_[list], bits_.data() + ends_[list + 1]};
  }

 private:
  std::size_t num_ = 0;
  std::size_t numWords_ = 0;
  std::size_t numSlices_ = 0;
  std::vector<std::uint16_t> bits_;
  std::vector<std::size_t> ends_;  // of each list and, before the first, 0
};

}  // namespace QXSystem
