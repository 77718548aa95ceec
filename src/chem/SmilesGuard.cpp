// What a text must satisfy before the parser sees it. The parser takes numbers that do not fit their fields
// modulo the field's size ([C-200] would be +56), stops at a NUL as if the text ended there, and has no
// limits.

#include "chem/SmilesGuard.h"

#include <array>
#include <charconv>
#include <limits>

namespace QXChem {
namespace {

constexpr std::size_t maxBytes = 1000000;
constexpr std::size_t maxAtoms = 100000;
constexpr std::size_t maxOpenParentheses = 2000;
constexpr std::size_t maxRingBonds = 10000;  // the parser's time grows with the cube, about 4 seconds
constexpr unsigned maxCharge = 99;
constexpr unsigned maxIsotope = 65535;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsPrintable(char c) {
  return c > ' ' && c <= '~';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string AtByte(std::size_t position) {
  return " at byte " + std::to_string(position + 1);
}

struct NumberField {
  char before;  // the character before the number, inside brackets
  unsigned limit;
  const char* what;
};

constexpr std::array<NumberField, 5> numberFields = {{{'[', maxIsotope, "isotope"},
                                                      {'+', maxCharge, "charge"},
                                                      {'-', maxCharge, "charge"},
                                                      {'H', 99, "hydrogen count"},
                                                      {':', 999999999, "atom map number"}}};

// Checks the number that starts at position inside brackets; moves position to its last digit.
bool CheckNumber(std::string_view smiles, std::size_t& position, std::string& reason) {
  const char before = smiles[position - 1];
  unsigned value = 0;
  const char* last = smiles.data() + smiles.size();
  const auto [end, error] = std::from_chars(smiles.data() + position, last, value);
  for (const NumberField& field : numberFields) {
    if (field.before != before || (error == std::errc() && value <= field.limit)) continue;
    reason = std::string(field.what) + " above " + std::to_string(field.limit) + AtByte(position);
    return false;
  }
  position = static_cast<std::size_t>(end - smiles.data()) - 1;
  return true;
}

}  // namespace

std::string_view SmilesToken(std::string_view text) {
  return text.substr(0, text.find_first_of(" \t\r\n\v\f"));
}

bool IsSafeSmiles(std::string_view smiles, std::string& reason) {
  if (smiles.empty()) {
    reason = "no SMILES";
    return false;
  }
  if (smiles.size() > maxBytes) {
    reason = "longer than " + std::to_string(maxBytes) + " bytes";
    return false;
  }
  std::size_t letters = 0;  // outside brackets no more atoms than letters
  std::size_t ringDigits = 0;
  std::size_t open = 0;
  bool inBracket = false;
  for (std::size_t i = 0; i < smiles.size(); ++i) {
    const char c = smiles[i];
    if (!IsPrintable(c)) {
      reason =
          "byte " + std::to_string(static_cast<unsigned char>(c)) + " is not a SMILES character" + AtByte(i);
      return false;
    }
    if (inBracket) {
      if (IsDigit(c) && !CheckNumber(smiles, i, reason)) return false;
      inBracket = c != ']';
      continue;
    }
    inBracket = c == '[';
    letters += inBracket || c == '*' || IsLetter(c);
    if (IsDigit(c) && ++ringDigits > 2 * maxRingBonds) {
      reason = "more than " + std::to_string(maxRingBonds) + " ring bonds" + AtByte(i);
      return false;
    }
    if (c == '%' && i + 1 < smiles.size() && IsDigit(smiles[i + 1])) ++i;  // two digits for one end
    if (c == '(' && ++open > maxOpenParentheses) {
      reason = "more than " + std::to_string(maxOpenParentheses) + " open parentheses" + AtByte(i);
      return false;
    }
    if (c == ')' && open > 0) --open;
  }
  if (letters <= maxAtoms) return true;
  reason = "more than " + std::to_string(maxAtoms) + " atoms";
  return false;
}

std::string ExplainSyntaxError(std::string_view smiles) {
  std::array<std::size_t, 100> ringOpenedAt;
  constexpr std::size_t closed = std::numeric_limits<std::size_t>::max();
  ringOpenedAt.fill(closed);
  std::size_t open = 0;
  for (std::size_t i = 0; i < smiles.size(); ++i) {
    const char c = smiles[i];
    if (c == '[') {
      const std::size_t end = smiles.find(']', i);
      if (end == std::string_view::npos) return "unclosed bracket" + AtByte(i);
      i = end;
      continue;
    }
    if (c == '(') ++open;
    if (c == ')' && open-- == 0) return "unopened parenthesis" + AtByte(i);
    const std::size_t start = i;
    std::size_t ring = closed;
    if (IsDigit(c)) ring = static_cast<std::size_t>(c - '0');
    if (c == '%' && i + 2 < smiles.size() && IsDigit(smiles[i + 1]) && IsDigit(smiles[i + 2])) {
      ring = static_cast<std::size_t>(10 * (smiles[i + 1] - '0') + smiles[i + 2] - '0');
      i += 2;
    }
    if (ring != closed) ringOpenedAt[ring] = ringOpenedAt[ring] == closed ? start : closed;
  }
  if (open > 0) return "unclosed parenthesis";
  for (std::size_t ring = 0; ring < ringOpenedAt.size(); ++ring) {
    if (ringOpenedAt[ring] != closed)
      return "unclosed ring bond " + std::to_string(ring) + AtByte(ringOpenedAt[ring]);
  }
  return "not a SMILES";
}

}  // namespace QXChem
