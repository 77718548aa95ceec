#pragma once

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "fastfp/RecordScan.h"

namespace QXFingrix {

/// Whether a search through an index is expected to take less time than a scan of the records, from what is
/// known beforehand: sizes, the bits set in the query and what is asked for.
/// Cost     a few operations.
bool IsIndexFaster(const RecordTable& records, const QueryBits& query, const QXFPDatabaseOptions& options);

}  // namespace QXFingrix
