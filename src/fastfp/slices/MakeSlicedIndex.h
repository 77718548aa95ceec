#pragma once

#include <memory>

#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/SlicedIndex.h"

namespace QXFingrix {

/// Makes the index of the records, in memory of its own. Null when they cannot be indexed: a record's bit
/// count or index is wrong, as in a damaged file, or there are too many bits or more than 2^32 - 1 records.
/// Errors   std::bad_alloc.
/// Cost     O(words of the records), about as many bytes as the records have.
std::unique_ptr<const SlicedIndex> MakeSlicedIndex(const RecordTable& records, unsigned numThreads);

}  // namespace QXFingrix
