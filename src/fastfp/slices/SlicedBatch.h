#pragma once

#include <span>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimScore.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// The hits of each query, best first, from the index of the records, on the threads that the options ask
/// for. Blocks are searched for many queries while the caches hold them.
/// Errors   std::bad_alloc.
std::vector<std::vector<QXSimScore>> SlicedBatch(const SlicedIndex& index, const RecordTable& records,
                                                 std::span<const QueryBits> queries,
                                                 const QXFPDatabaseOptions& options);

}  // namespace QXFingrix
