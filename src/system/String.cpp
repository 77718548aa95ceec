#include "QXSystem/QXString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace QXSystem {

namespace {

bool IsBase(unsigned base) {
  return base >= 2 && base <= 36;
}

// std::from_chars over the whole text; the further arguments are its base, or nothing.
template <class Number, class... Format>
bool ReadWhole(std::string_view text, Number& out, Format... format) {
  Number value{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, format...);
  if (error != std::errc() || stop != end) return false;
  out = value;
  return true;
}

// std::from_chars knows no plus sign.
std::string_view WithoutPlus(std::string_view text) {
  const bool hasPlus = text.starts_with('+') && !text.starts_with("+-");
  return hasPlus ? text.substr(1) : text;
}

template <class Number>
bool ReadFinite(std::string_view text, Number& out) {
  Number value{};
  if (!ReadWhole(WithoutPlus(text), value) || !std::isfinite(value)) return false;
  out = value;
  return true;
}

}  // namespace

void QXStringTokenize(std::vector<std::string>& out, const std::string& text, const std::string& separators,
                      bool dropEmpty) {
  std::vector<std::string> pieces;  // `text` may be an element of `out`
  std::size_t begin = 0;
  while (!text.empty() && begin <= text.size()) {
    const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
    if (end > begin || !dropEmpty) pieces.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  out = std::move(pieces);
}

bool QXStringToNumber(const std::string& text, unsigned& out, unsigned base) {
  return IsBase(base) && ReadWhole(text, out, static_cast<int>(base));
}

bool QXStringToNumber(const std::string& text, std::uint64_t& out, unsigned base) {
  return IsBase(base) && ReadWhole(text, out, static_cast<int>(base));
}

bool QXStringToNumber(const std::string& text, int& out) {
  return ReadWhole(WithoutPlus(text), out);
}

bool QXStringToNumber(const std::string& text, float& out) {
  return ReadFinite(text, out);
}

bool QXStringToNumber(const std::string& text, double& out) {
  return ReadFinite(text, out);
}

void QXNumberToString(unsigned value, std::string& out, unsigned base) {
  out.clear();
  if (!IsBase(base)) return;
  std::array<char, std::numeric_limits<unsigned>::digits> digits;
  const auto result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, static_cast<int>(base));
  out.assign(digits.data(), result.ptr);
}

std::string QXFileExtension(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::size_t nameBegin = slash == std::string::npos ? 0 : slash + 1;
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos || dot <= nameBegin) return {};
  return path.substr(dot + 1);
}

}  // namespace QXSystem
