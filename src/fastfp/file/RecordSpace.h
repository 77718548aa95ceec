#pragma once

#include <cstdint>

#include "QXFingrix/QXFastFPDatabaseParams.h"

namespace QXFingrix {

/// What a file has behind its header, beside what the header says. The header is not trusted: its numbers
/// enter no product that could overflow.
struct RecordSpace {
  explicit RecordSpace(const QXFastFPDatabaseParams& params);

  const char* problem = nullptr;  ///< why these are not the header's records, or null
  bool isShort = false;           ///< the problem is that records are missing
  std::uint64_t numWhole = 0;     ///< records in the file
  std::uint64_t numLeft = 0;      ///< bytes behind them
};

/// Whether a header is the one that was read: the records are read through another opening of the file.
bool IsHeaderOf(const QXFastFPDatabaseParams& params, const std::uint64_t* header);
inline constexpr const char* replacedFile = "the file was replaced while it was opened";

}  // namespace QXFingrix
