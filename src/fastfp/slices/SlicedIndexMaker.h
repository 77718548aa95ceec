#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "fastfp/RecordScan.h"
#include "fastfp/slices/SlicedIndexLayout.h"

namespace QXFingrix {

/// Makes an index part by part, so that each can go where it belongs as soon as it is there: first the
/// records are sorted, then the blocks made, then the bits ordered.
/// Errors   the constructor throws std::bad_alloc; so does SortRecords.
class SlicedIndexMaker {
 public:
  /// Shape    records for which an index is possible; orders: room for theirs.
  SlicedIndexMaker(const RecordTable& records, const SlicedOrders& orders);

  /// Fills the places and bit counts. The answer is the first record that counts more bits than it can have,
  /// if any.
  std::optional<std::uint64_t> SortRecords();

  /// Makes the columns of a block.
  /// Shape    columns: the words of a block, aligned.
  /// Threads  safe for different blocks.
  void MakeBlock(std::size_t block, std::uint64_t* columns);

  /// Fills the order of the bits, when all blocks have been made.
  void OrderBits();

 private:
  const RecordTable& records_;
  const SlicedOrders orders_;
  const std::size_t step_;                               // between blocks whose bits are counted
  std::vector<std::atomic<std::uint32_t>> frequencies_;  // of the bits, there
};

}  // namespace QXFingrix
