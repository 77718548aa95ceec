#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "QXFingrix/QXFastFPDatabaseParams.h"

namespace QXFingrix {

/// The records of a file, laid out as in the file. The file is closed again.
/// Errors   null, with the reason reported in the caller's name. Nothing is allocated for records that the file does not hold.
std::unique_ptr<std::uint64_t[]> ReadRecords(const std::string& fpbinFile,
                                             const QXFastFPDatabaseParams& params, const char* caller);

}  // namespace QXFingrix
