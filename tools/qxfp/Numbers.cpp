#include "Numbers.h"

#include <charconv>
#include <cmath>

namespace qxfp {

std::string FormatFixed(double value, unsigned decimals) {
  if (std::isnan(value)) return kNotANumber;  // its sign means nothing
  char text[400];                             // the largest double has 309 digits before the point
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, static_cast<int>(decimals));
  return std::string(text, end.ptr);
}

}  // namespace qxfp
