#pragma once

#include <span>
#include <vector>

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "QXFingrix/QXSimScore.h"
#include "fastfp/scan/RecordScan.h"

namespace QXFingrix {

/// The hits of each query, best first, found on the threads that the options ask for. Records are counted
/// against many queries while the caches hold them.
/// Errors   std::bad_alloc.
std::vector<std::vector<QXSimScore>> BatchScan(const RecordTable& records, std::span<const QueryBits> queries,
                                               const QXFPDatabaseOptions& options);

}  // namespace QXFingrix
