#pragma once

#include <string>
#include <string_view>

namespace QXChem {

/// The SMILES of a line: what stands before the first white space.
std::string_view SmilesToken(std::string_view text);

/// Whether a SMILES may be handed to the parser: printable ASCII, numbers that fit their fields, within the limits of
/// length, atoms and nesting. Says nothing about its syntax otherwise. One pass, no allocation on success.
bool IsSafeSmiles(std::string_view smiles, std::string& reason);

/// Why the parser may have refused a SMILES: the first unbalanced bracket, parenthesis or ring bond, or no more than
/// that the syntax is wrong.
std::string ExplainSyntaxError(std::string_view smiles);

/// Whether charges and isotopes of a mol block (V2000 or V3000) fit an atom, and nothing in it is a NUL or not UTF-8.
bool IsSafeMolBlock(std::string_view block, std::string& reason);
/// Whether the bonds of a mol2 block name atoms that it has, and nothing in it is a NUL or not UTF-8.
bool IsSafeMol2(std::string_view block, std::string& reason);

}  // namespace QXChem
