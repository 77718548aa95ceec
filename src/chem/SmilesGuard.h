#pragma once

#include <string>
#include <string_view>

namespace QXChem {

/// The SMILES of a line: what stands before the first white space.
std::string_view SmilesToken(std::string_view text);

/// Whether a SMILES may be handed to the parser: printable ASCII, numbers that fit their fields, within the
/// limits of length, atoms and nesting. Says nothing about its syntax otherwise. One pass, no allocation on
/// success.
bool IsSafeSmiles(std::string_view smiles, std::string& reason);

/// Why the parser may have refused a SMILES: the first unbalanced bracket, parenthesis or ring bond, or no
/// more than that the syntax is wrong.
std::string ExplainSyntaxError(std::string_view smiles);

}  // namespace QXChem
