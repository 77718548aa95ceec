#pragma once

#include <string>
#include <string_view>

namespace QXChem {

/// Whether a SMARTS may be handed to the parser: printable ASCII with brackets and parentheses in pairs and
/// within the limits of length, recursive patterns and conditions on an atom or a bond. Says nothing about its
/// syntax otherwise.
bool IsSafeSmarts(std::string_view smarts, std::string& reason);

}  // namespace QXChem
