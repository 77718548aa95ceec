#pragma once

#include <string>
#include <string_view>

namespace QXChem {

/// Whether a SMARTS may be handed to the parser: printable ASCII of bounded length and nesting. Says nothing
/// about its syntax otherwise.
bool IsSafeSmarts(std::string_view smarts, std::string& reason);

}  // namespace QXChem
