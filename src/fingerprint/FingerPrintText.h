#pragma once

#include <climits>
#include <cstddef>
#include <string_view>

#include "QXFingrix/QXFingerPrint.h"

namespace QXFingrix {

/// The longest text that fits a bit vector together with a zero byte.
inline constexpr std::size_t maxFPTextSize = INT_MAX / CHAR_BIT - 1;

/// The error "Max size for an QXBitVector is INT_MAX".
void ReportFPTextTooLong();

/// Stores a text and a zero byte as the bytes of the bit vector, 8 (length + 1) bits.
/// Errors   false and ReportFPTextTooLong() when they do not fit; std::bad_alloc
///          when there is no memory. The bits are untouched then.
bool SetFPText(QXFingerPrint& fp, std::string_view text);

/// Whether fingerprints of a kind hold tokens instead of bits.
constexpr bool IsUnhashedType(unsigned type) {
  return type == QXFPType::UHPath || type == QXFPType::UHCircular || type == QXFPType::UHTree;
}

}  // namespace QXFingrix
