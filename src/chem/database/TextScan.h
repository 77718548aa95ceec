#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace QXChem {

// What separates words in molecule files, whatever the locale.
inline bool IsWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool IsBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsWhiteSpace);
}

// The offset just behind the line feed that ends the line at `pos`; the text's size when none follows.
inline std::size_t FindNextLine(std::string_view text, std::size_t pos) {
  const void* feed = pos < text.size() ? std::memchr(text.data() + pos, '\n', text.size() - pos) : nullptr;
  return feed ? static_cast<std::size_t>(static_cast<const char*>(feed) - text.data()) + 1 : text.size();
}

// The offset of the first line at or behind `pos` that starts with `tag`; the text's size when there is none.
// `pos` need not be the start of a line. Looks for the tag's first character, which must be rare in such
// files.
inline std::size_t FindTaggedLine(std::string_view text, std::size_t pos, std::string_view tag) {
  while (pos < text.size()) {
    const void* hit = std::memchr(text.data() + pos, tag.front(), text.size() - pos);
    if (!hit) break;
    pos = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
    if ((pos == 0 || text[pos - 1] == '\n') && text.substr(pos).starts_with(tag)) return pos;
    ++pos;
  }
  return text.size();
}

inline std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace QXChem
