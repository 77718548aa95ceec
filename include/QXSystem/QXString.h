#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// Replaces `out` by the pieces of `text` between any of the characters of `separators`. With `dropEmpty`
/// empty pieces are left out, without it they are kept: "a,,b" gives "a", "", "b" and "," gives "", "". An
/// empty text has no pieces either way.
QX_API void QXStringTokenize(std::vector<std::string>& out, const std::string& text,
                             const std::string& separators, bool dropEmpty);

/// Reads a number that fills the whole text: no white space, no prefix, no trailing characters, digits of a
/// base from 2 to 36. Numbers of unsigned types take no sign.
/// Errors   false with `out` untouched when the text is anything else or its value does not fit; no report.
QX_API bool QXStringToNumber(const std::string& text, unsigned& out, unsigned base = 10);
QX_API bool QXStringToNumber(const std::string& text, std::uint64_t& out, unsigned base = 10);
/// The same in base 10 with an optional sign.
QX_API bool QXStringToNumber(const std::string& text, int& out);
/// The same for decimal fractions with an optional sign and exponent; finite ones only.
QX_API bool QXStringToNumber(const std::string& text, float& out);
QX_API bool QXStringToNumber(const std::string& text, double& out);

/// Replaces `out` by the digits of `value`, lower case; nothing but "" for a base outside 2 to 36.
QX_API void QXNumberToString(unsigned value, std::string& out, unsigned base = 10);

/// What follows the last dot of the file's name, its case kept: "a/b.fpbin" gives "fpbin"; "" when the name
/// has no dot or only a leading one.
QX_API std::string QXFileExtension(const std::string& path);

}  // namespace QXSystem
