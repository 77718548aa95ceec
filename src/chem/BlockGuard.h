#pragma once

#include <string>
#include <string_view>

namespace QXChem {

/// Whether charges and isotopes of a mol block (V2000 or V3000) fit an atom, V2000 bonds name atoms that it
/// has, and nothing in it is a NUL or, below the three header lines, not UTF-8.
bool IsSafeMolBlock(std::string_view block, std::string& reason);
/// Whether the bonds of a mol2 block name atoms that it has, and nothing in it is a NUL or not UTF-8.
bool IsSafeMol2(std::string_view block, std::string& reason);

}  // namespace QXChem
