#pragma once

#include <cstddef>
#include <string_view>

namespace QXChem {

// The offset of the first byte that is not part of well-formed UTF-8 (no overlong forms, no surrogates,
// nothing above U+10FFFF), or the text's size. Plain ASCII is passed over eight bytes at a time.
std::size_t FindInvalidUtf8(std::string_view text);

}  // namespace QXChem
