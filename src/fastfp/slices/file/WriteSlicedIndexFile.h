#pragma once

#include <string>

#include "fastfp/scan/RecordScan.h"
#include "fastfp/slices/file/SlicedIndexFileLayout.h"

namespace QXFingrix {

/// Makes the index of records straight into the file that belongs to a .fpbin file.
/// Shape    records: of the .fpbin file, for which an index is possible; stamp: taken before they were
///          opened.
/// Errors   false and the reason in words; then a file that was there before is still there. std::bad_alloc.
bool WriteSlicedIndexFile(const std::string& fpbinFile, const FpbinStamp& stamp, const RecordTable& records,
                          unsigned numThreads, std::string& reason);

}  // namespace QXFingrix
