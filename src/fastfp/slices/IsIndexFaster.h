#pragma once

#include <span>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "fastfp/scan/RecordScan.h"

namespace QXFingrix {

/// Whether a search for some queries at once through an index is expected to take less time than a scan of the
/// records, from what is known beforehand: sizes, the bits set in the queries and what is asked for. Queries of one
/// call go the same way, that of most of them.
/// Cost     a few operations for each query.
bool IsIndexFaster(const RecordTable& records, std::span<const QueryBits> queries,
                   const QXFPDatabaseOptions& options);

}  // namespace QXFingrix
