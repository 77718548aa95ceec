#pragma once

#include "QXFingrix/QXFPDatabaseOptions.h"
#include "fastfp/SimSearchResultImpl.h"
#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// Searches the index of the records on the threads that the options ask for and merges what they find into
/// the result, whose histogram it leaves empty.
/// Errors   std::bad_alloc when a thread ran out of memory; the result is then incomplete.
void ThreadedSlicedSearch(const SlicedIndex& index, const RecordTable& records, const QueryBits& query,
                          const QXFPDatabaseOptions& options, QXSimSearchResultImpl& result);

}  // namespace QXFingrix
