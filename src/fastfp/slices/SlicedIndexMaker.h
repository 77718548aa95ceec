#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndexLayout.h"

namespace QXFingrix {

/// Makes an index part by part, so that each can go where it belongs as soon as it is there: first the
/// records are sorted, then the blocks made, then the bits ordered.
/// Errors   the constructor throws std::bad_alloc; so does SortRecords.
class SlicedIndexMaker {
 public:
  /// Shape    records for which an index is possible; orders: room for theirs.
  SlicedIndexMaker(const RecordTable& records, const SlicedOrders& orders);

  /// Fills the places and bit counts; false when a record is unsound.
  bool SortRecords();

  /// Makes the columns of a block; false when a record of it is unsound.
  /// Shape    columns: the words of a block, aligned.
  /// Threads  safe for different blocks.
  bool MakeBlock(std::size_t block, std::uint64_t* columns);

  /// A record, if one was met, that does not say how many bits it has set, or whose index is not its place: hits
  /// are told by their places. The first one, unless SortRecords() and blocks of several threads passed others.
  std::optional<std::uint64_t> Unsound() const;

  /// Fills the order of the bits, when all blocks have been made.
  void OrderBits();

 private:
  static constexpr std::uint64_t noRecord = ~std::uint64_t{0};

  const RecordTable& records_;
  const SlicedOrders orders_;
  const std::size_t step_;                               // between blocks whose bits are counted
  std::vector<std::atomic<std::uint32_t>> frequencies_;  // of the bits, there
  std::atomic<std::uint64_t> unsound_{noRecord};
};

}  // namespace QXFingrix
