#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qxfp {

/// Control characters (line ends, tabs, escape sequences) become blanks, everything else stays byte for byte.
std::string WithoutControls(std::string_view text);

/// Valid UTF-8: every byte that is not part of a well-formed character becomes U+FFFD.
std::string ToUtf8(std::string_view text);

/// What a terminal can be trusted with: valid UTF-8 without control characters, those above U+007F included.
std::string ForTerminal(std::string_view text);

/// Columns that valid UTF-8 text takes, one per code point.
std::size_t DisplayWidth(std::string_view text);

/// A field of a comma-separated file, quoted where it has to be (RFC 4180).
std::string ToCsv(std::string_view text);

/// A JSON string with its quotes (RFC 8259); invalid UTF-8 is replaced.
std::string ToJson(std::string_view text);

}  // namespace qxfp
