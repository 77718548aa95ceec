#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace QXChem {

// Line numbers of a text: how many lines end before each 64 KiB page, so that a lookup counts within one
// page. Made once, immutable; without it a file full of unreadable records would be counted from its start
// for each of them.
class LineTable {
 public:
  LineTable() = default;
  explicit LineTable(std::string_view text);
  // The line, from 1, that holds the byte at `offset`, which must be inside the text.
  std::uint64_t GetLine(std::size_t offset) const;

 private:
  std::string_view text_;
  std::vector<std::uint64_t> linesBefore_;
};

}  // namespace QXChem
