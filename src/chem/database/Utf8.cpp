#include "chem/database/Utf8.h"

#include <cstdint>
#include <cstring>

namespace QXChem {
namespace {

// One row per form of a multi-byte character: its first byte's range, its length, and the range of its second
// byte, which is where overlong forms, surrogates and too large values show. Unicode Standard, table 3-7.
struct Form {
  unsigned char firstLow, firstHigh;
  unsigned length;
  unsigned char secondLow, secondHigh;
};
constexpr Form kForms[] = {
    {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF}, {0xE1, 0xEC, 3, 0x80, 0xBF},
    {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF}, {0xF0, 0xF0, 4, 0x90, 0xBF},
    {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};

// The length of the character at the start of `text`; 0 when it is malformed.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return 1;
  for (const Form& form : kForms) {
    if (byte(0) < form.firstLow || byte(0) > form.firstHigh) continue;
    if (text.size() < form.length || byte(1) < form.secondLow || byte(1) > form.secondHigh) return 0;
    for (std::size_t i = 2; i < form.length; ++i) {
      if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    return form.length;
  }
  return 0;
}

}  // namespace

std::size_t FindInvalidUtf8(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  std::size_t pos = 0;
  while (pos < text.size()) {
    std::uint64_t word = 0;
    if (text.size() - pos >= sizeof word) {
      std::memcpy(&word, text.data() + pos, sizeof word);
      if ((word & kHighBits) == 0) {
        pos += sizeof word;
        continue;
      }
    }
    const std::size_t length = CharacterLength(text.substr(pos));
    if (length == 0) return pos;
    pos += length;
  }
  return pos;
}

}  // namespace QXChem
