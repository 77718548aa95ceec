#include "QXFingrix/QXFPVersion.h"

#include <array>
#include <optional>

#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "fingerprint/SplitText.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {
namespace {

// Codes of fingerprints that are no longer made.
constexpr unsigned firstLegacyCode = 1;
constexpr unsigned lastLegacyCode = 3;

using VersionNumbers = std::array<unsigned, 3>;  // major, minor, build

std::optional<VersionNumbers> ReadVersion(const std::string& text) {
  std::vector<std::string> parts;
  if (!SplitExactly(parts, text, '.', 3)) return std::nullopt;
  VersionNumbers numbers;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!QXSystem::QXStringToNumber(parts[i], numbers[i])) return std::nullopt;
  }
  return numbers;
}

}  // namespace

unsigned QXGetFingerPrintVersion(unsigned type) {
  if (const TypeRow* row = FindTypeRow(type)) return row->version;
  if (type < firstLegacyCode || type > lastLegacyCode) {
    QXSystem::QXThrow.Warning("%s : unknown fingerprint type!", "QXGetFingerPrintVersion");
  }
  return 0;
}

bool QXIsValidFingerPrintVersion(const std::string& text) {
  const auto numbers = ReadVersion(text);
  // Only the major number is bounded: texts with a large minor or build number have always been accepted.
  return numbers && (*numbers)[0] <= 14;
}

unsigned QXGetFingerPrintVersion(const std::string& text) {
  const auto numbers = ReadVersion(text);
  if (!numbers) return 0;
  const auto [major, minor, build] = *numbers;
  return (major << 12) + (minor << 4) + build;
}

std::string QXGetFingerPrintVersionString(unsigned short version) {
  return std::to_string(version >> 12) + '.' + std::to_string((version >> 4) & 255) + '.' +
         std::to_string(version & 15);
}

}  // namespace QXFingrix
