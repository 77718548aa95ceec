#pragma once

#include <string>
#include <string_view>

namespace QXChem {

// The parts of one line of a SMILES file, without its line end: the SMILES up to the first white space, and
// the title behind it, trimmed. An extension block |...| at the head of the title belongs to neither; an
// unclosed one is title.
struct SmilesLine {
  std::string_view smiles;
  std::string_view title;
};
SmilesLine SplitSmilesLine(std::string_view line);

// Why a line cannot hold a molecule whatever its SMILES says; empty when nothing is wrong.
std::string FindLineFault(std::string_view line);

}  // namespace QXChem
