// What a text must satisfy before the parser sees it. The parser takes numbers that do not fit their fields modulo
// the field's size ([C-200] would be +56), stops at a NUL as if the text ended there, and has no limits.

#include "chem/SmilesGuard.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "chem/database/Utf8.h"

namespace QXChem {
namespace {

constexpr std::size_t maxBytes = 1000000;
constexpr std::size_t maxAtoms = 100000;
constexpr std::size_t maxOpenParentheses = 2000;
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

namespace {

bool IsSafeText(std::string_view text, std::string& reason) {
  if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) {
    reason = "NUL" + AtByte(nul);
    return false;
  }
  if (const std::size_t bad = FindInvalidUtf8(text); bad != text.size()) {
    reason = "not UTF-8" + AtByte(bad);
    return false;
  }
  return true;
}

// Whether the number behind blanks at the start of the text, if there is one, is at most limit in size.
bool NumberFits(std::string_view text, int limit) {
  const std::size_t start = text.find_first_not_of(' ');
  if (start == std::string_view::npos) return true;
  int value = 0;
  const auto [end, error] = std::from_chars(text.data() + start, text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) return false;
  return error != std::errc() || (value <= limit && value >= -limit);
}

// "M  CHG  n aaa vvv ...": every second of the blank-separated numbers behind the count.
bool ChargeLineFits(std::string_view line) {
  bool isValue = false;
  bool isCount = true;
  while (!line.empty()) {
    const std::size_t start = line.find_first_not_of(" \r");
    if (start == std::string_view::npos) return true;
    line.remove_prefix(start);
    const std::size_t size = std::min(line.find_first_of(" \r"), line.size());
    if (isValue && !NumberFits(line.substr(0, size), maxCharge)) return false;
    if (!isCount) isValue = !isValue;
    isCount = false;
    line.remove_prefix(size);
  }
  return true;
}

bool FieldFits(std::string_view block, std::string_view field, int limit) {
  for (std::size_t at = block.find(field); at != std::string_view::npos; at = block.find(field, at + 1)) {
    if (!NumberFits(block.substr(at + field.size()), limit)) return false;
  }
  return true;
}

}  // namespace

bool IsSafeMolBlock(std::string_view block, std::string& reason) {
  if (!IsSafeText(block, reason)) return false;
  constexpr std::string_view chargeLine = "\nM  CHG";
  bool chargesFit = FieldFits(block, " CHG=", maxCharge);
  for (std::size_t at = block.find(chargeLine); at != std::string_view::npos;
       at = block.find(chargeLine, at + 1)) {
    const std::size_t start = at + chargeLine.size();
    chargesFit = chargesFit && ChargeLineFits(block.substr(start, block.find('\n', start) - start));
  }
  if (!chargesFit) {
    reason = "charge above " + std::to_string(maxCharge);
    return false;
  }
  if (FieldFits(block, " MASS=", maxIsotope)) return true;
  reason = "isotope above " + std::to_string(maxIsotope);
  return false;
}

namespace {

// Takes the next line off the text.
std::string_view NextLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// Takes the next number off the line; what is no number counts as 0, which no field allows.
unsigned NextNumber(std::string_view& line) {
  constexpr std::string_view blanks = " \t\r";
  line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
  unsigned value = 0;
  std::from_chars(line.data(), line.data() + line.size(), value);
  line.remove_prefix(std::min(line.find_first_of(blanks), line.size()));
  return value;
}

}  // namespace

// The parser trusts the bonds' atom numbers.
bool IsSafeMol2(std::string_view block, std::string& reason) {
  if (!IsSafeText(block, reason)) return false;
  constexpr std::string_view moleculeTag = "@<TRIPOS>MOLECULE";
  constexpr std::string_view bondTag = "@<TRIPOS>BOND";
  const std::size_t start = block.find(moleculeTag);
  if (start == std::string_view::npos) {
    reason = "no @<TRIPOS>MOLECULE";
    return false;
  }
  block.remove_prefix(start);
  const auto numLines = static_cast<std::size_t>(std::count(block.begin(), block.end(), '\n'));
  NextLine(block);  // the tag
  NextLine(block);  // the title
  std::string_view counts = NextLine(block);
  const unsigned numAtoms = NextNumber(counts);
  const unsigned numBonds = NextNumber(counts);
  if (numAtoms > numLines || numBonds > numLines) {
    reason = "more atoms or bonds announced than there are lines";
    return false;
  }
  const std::size_t bonds = block.find(bondTag);
  if (bonds == std::string_view::npos) return true;  // fine without bonds, and the parser sees to the rest
  block.remove_prefix(bonds);
  NextLine(block);
  for (unsigned i = 1; i <= numBonds; ++i) {
    std::string_view line = NextLine(block);
    NextNumber(line);  // the bond's own
    const unsigned bgn = NextNumber(line);
    const unsigned end = NextNumber(line);
    if (bgn >= 1 && bgn <= numAtoms && end >= 1 && end <= numAtoms) continue;
    reason = "bond " + std::to_string(i) + " does not join two of the " + std::to_string(numAtoms) + " atoms";
    return false;
  }
  return true;
}

}  // namespace QXChem
