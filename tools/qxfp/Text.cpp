#include "Text.h"

#include <algorithm>
#include <cstdio>

namespace qxfp {

namespace {

bool IsControl(unsigned char c) {
  return c < 0x20 || c == 0x7f;
}

bool IsContinuation(unsigned char c) {
  return (c & 0xc0) == 0x80;
}

// Length of the well-formed character that begins the text, 0 when there is none. The bounds on the second
// byte shut out overlong forms, surrogates and values above U+10FFFF.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  if (first < 0xc2 || first > 0xf4) return 0;
  const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  if (text.size() < length) return 0;
  const unsigned char low = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
  const unsigned char high = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
  if (byte(1) < low || byte(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!IsContinuation(byte(i))) return 0;
  }
  return length;
}

}  // namespace

std::string WithoutControls(std::string_view text) {
  std::string result(text);
  std::ranges::replace_if(
      result, [](char c) { return IsControl(static_cast<unsigned char>(c)); }, ' ');
  return result;
}

std::string ToUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) {
      result += "\xef\xbf\xbd";
      text.remove_prefix(1);
    } else {
      result += text.substr(0, length);
      text.remove_prefix(length);
    }
  }
  return result;
}

std::string ForTerminal(std::string_view text) {
  std::string result = ToUtf8(WithoutControls(text));
  // U+0080 to U+009F; some terminals obey them. A byte 0xc2 only ever begins a character.
  for (std::size_t i = 0; i + 1 < result.size(); ++i) {
    if (result[i] == '\xc2' && static_cast<unsigned char>(result[i + 1]) < 0xa0) result.replace(i, 2, " ");
  }
  return result;
}

std::size_t DisplayWidth(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !IsContinuation(static_cast<unsigned char>(c)); }));
}

std::string ToCsv(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"') result += '"';
    result += c;
  }
  return result + '"';
}

std::string ToJson(std::string_view text) {
  std::string result = "\"";
  for (const char c : ToUtf8(text)) {
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (IsControl(static_cast<unsigned char>(c))) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      result += escape;
    } else {
      result += c;
    }
  }
  return result + '"';
}

}  // namespace qxfp
