#pragma once

#include <string>

namespace qxfp {

/// A number with a fixed number of decimals, whatever the locale.
std::string FormatFixed(double value, unsigned decimals);

}  // namespace qxfp
