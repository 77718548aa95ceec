#pragma once

#include <string>
#include <string_view>

#include "chem/database/TempFile.h"

namespace QXChem {

// Whether the data starts with the two bytes that mark a gzip file.
bool IsGzip(std::string_view data);

// Appends the inflated data to a temporary file. Several gzip members in a row, as left by concatenating
// files or by parallel compressors, give one text; NULs behind the last one are padding. Memory stays below a
// megabyte whatever the data inflates to. On failure gives the reason: corrupt or cut data, or no room.
bool Gunzip(std::string_view data, TempFile& out, std::string& reason);

}  // namespace QXChem
