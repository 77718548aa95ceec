#pragma once

#include <string>

namespace qxfp {

inline constexpr const char* kNotANumber = "nan";

/// A number with a fixed number of decimals, whatever the locale; or kNotANumber.
std::string FormatFixed(double value, unsigned decimals);

}  // namespace qxfp
