#include "chem/database/SmilesLine.h"

#include <algorithm>
#include <cstring>

#include "chem/database/TextScan.h"
#include "chem/database/Utf8.h"

namespace QXChem {

SmilesLine SplitSmilesLine(std::string_view line) {
  const auto white = std::find_if(line.begin(), line.end(), IsWhiteSpace);
  const auto end = static_cast<std::size_t>(white - line.begin());
  std::string_view title = Trim(line.substr(end));
  if (title.starts_with('|')) {
    const std::size_t close = title.find('|', 1);
    if (close != std::string_view::npos) title = Trim(title.substr(close + 1));
  }
  return {line.substr(0, end), title};
}

std::string FindLineFault(std::string_view line) {
  // Readers of C strings stop at a NUL and would take the rest of the line for read.
  if (!line.empty()) {
    if (const void* nul = std::memchr(line.data(), '\0', line.size())) {
      return "NUL in column " + std::to_string(static_cast<const char*>(nul) - line.data() + 1);
    }
  }
  if (const std::size_t bad = FindInvalidUtf8(line); bad != line.size()) {
    return "not UTF-8 in column " + std::to_string(bad + 1);
  }
  if (IsBlank(line)) return "empty line";
  if (IsWhiteSpace(line.front())) return "no SMILES before the first white space";
  return {};
}

}  // namespace QXChem
