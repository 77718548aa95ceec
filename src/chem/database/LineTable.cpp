#include "chem/database/LineTable.h"

#include <cstring>

namespace QXChem {
namespace {

constexpr std::size_t kPageSize = 64 * 1024;

std::uint64_t CountLineFeeds(std::string_view text) {
  std::uint64_t count = 0;
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at != end; ++count) {
    const void* feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (!feed) break;
    at = static_cast<const char*>(feed) + 1;
  }
  return count;
}

}  // namespace

LineTable::LineTable(std::string_view text) : text_(text) {
  linesBefore_.reserve(text.size() / kPageSize + 1);
  std::uint64_t lines = 0;
  for (std::size_t start = 0; start < text.size(); start += kPageSize) {
    linesBefore_.push_back(lines);
    lines += CountLineFeeds(text.substr(start, kPageSize));
  }
}

std::uint64_t LineTable::GetLine(std::size_t offset) const {
  const std::size_t page = offset / kPageSize;
  const std::size_t start = page * kPageSize;
  return linesBefore_[page] + CountLineFeeds(text_.substr(start, offset - start)) + 1;
}

}  // namespace QXChem
