#pragma once

#include <cstdint>
#include <vector>

#include "fastfp/SortedScan.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// A query in the form that searches of an index read: prepared once for all threads, which then scan superblocks with
/// SortedScan::Scan().
struct SlicedQuery {
  SlicedQuery(const SlicedIndex& index, const QueryBits& query, const Scorer& scorer, bool descending);

  std::vector<std::uint16_t> bits;       // rarest first
  std::vector<std::uint32_t> bestFirst;  // superblocks by the best score that their bit counts allow
};

/// Whether a search may use an index: the better a score is, the more bits are shared.
bool CanSearchSlices(const QXFPDatabaseOptions& options);

}  // namespace QXFingrix
