#include "Numbers.h"

#include <charconv>

namespace qxfp {

std::string FormatFixed(double value, unsigned decimals) {
  char text[400];  // the largest double has 309 digits before the point
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, static_cast<int>(decimals));
  return std::string(text, end.ptr);
}

}  // namespace qxfp
