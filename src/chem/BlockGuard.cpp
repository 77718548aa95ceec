// Mol and mol2 blocks before the parser sees them. It stores charges and isotopes modulo the size of their
// fields, stops at a NUL as if the text ended there, and trusts the atom numbers in the bonds of a mol2
// block. A field is found here wherever the parser would find it: by columns in a V2000 block, in any case
// and over continuation lines in a V3000 block.

#include "chem/BlockGuard.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "chem/database/Utf8.h"

namespace QXChem {
namespace {

constexpr int maxCharge = 99;
constexpr int maxIsotope = 65535;

std::string AtByte(std::size_t position) {
  return " at byte " + std::to_string(position + 1);
}

bool HasNoNul(std::string_view text, std::string& reason) {
  const std::size_t nul = text.find('\0');
  if (nul == std::string_view::npos) return true;
  reason = "NUL" + AtByte(nul);
  return false;
}

bool IsUtf8From(std::size_t start, std::string_view text, std::string& reason) {
  const std::size_t bad = start + FindInvalidUtf8(text.substr(start));
  if (bad == text.size()) return true;
  reason = "not UTF-8" + AtByte(bad);
  return false;
}

// Whether the number at the start of the text, blanks and a sign before it, is at most limit in size. Text
// without a number fits: it is the parser's to refuse.
bool NumberFits(std::string_view text, int limit) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) return false;
  return error != std::errc() || std::abs(value) <= limit;
}

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

// The number in a field of three columns; 0 when there is none.
unsigned ColumnNumber(std::string_view line, std::size_t column) {
  if (line.size() < column + 3) return 0;
  line = line.substr(column, 3);
  return NextNumber(line);
}

bool AreAtoms(unsigned bgn, unsigned end, unsigned numAtoms) {
  return bgn >= 1 && bgn <= numAtoms && end >= 1 && end <= numAtoms;
}

std::string NoSuchAtoms(unsigned bond, unsigned numAtoms) {
  return "bond " + std::to_string(bond) + " does not join two of the " + std::to_string(numAtoms) + " atoms";
}

bool ChargeFits(std::string_view text, int limit, std::string& reason) {
  if (NumberFits(text, limit)) return true;
  reason = "charge above " + std::to_string(maxCharge);
  return false;
}

// The atom lines of a V2000 block: three columns for the charge, 4 - charge in fact.
bool AtomLinesFit(std::string_view& block, unsigned numAtoms, std::string& reason) {
  constexpr std::size_t chargeColumn = 36;
  for (unsigned i = 0; i < numAtoms; ++i) {
    const std::string_view line = NextLine(block);
    if (line.size() <= chargeColumn) continue;
    if (!ChargeFits(line.substr(chargeColumn, 3), maxCharge - 4, reason)) return false;
  }
  return true;
}

// Whether the bonds of a V2000 block join atoms that it has. The parser notices when they do not, but keeps
// the molecule it has begun for good.
bool BondLinesFit(std::string_view& block, unsigned numBonds, unsigned numAtoms, std::string& reason) {
  for (unsigned i = 1; i <= numBonds; ++i) {
    const std::string_view line = NextLine(block);
    if (AreAtoms(ColumnNumber(line, 0), ColumnNumber(line, 3), numAtoms)) continue;
    reason = NoSuchAtoms(i, numAtoms);
    return false;
  }
  return true;
}

// "M  CHG" and its like: a count of three columns, then an atom and a charge of four columns each, again and
// again. An isotope of four columns fits always.
bool ChargeLinesFit(std::string_view block, std::string& reason) {
  constexpr std::size_t firstPair = 9;
  while (!block.empty()) {
    const std::string_view line = NextLine(block);
    if (!line.starts_with("M  CHG") && !line.starts_with("M  ZCH")) continue;
    for (std::size_t column = firstPair + 4; column < line.size(); column += 8) {
      if (!ChargeFits(line.substr(column, 4), maxCharge, reason)) return false;
    }
  }
  return true;
}

bool IsV2000Safe(std::string_view counts, std::string_view block, std::string& reason) {
  const unsigned numAtoms = ColumnNumber(counts, 0);
  return AtomLinesFit(block, numAtoms, reason) &&
         BondLinesFit(block, ColumnNumber(counts, 3), numAtoms, reason) && ChargeLinesFit(block, reason);
}

bool FieldFits(std::string_view line, std::string_view field, int limit) {
  for (std::size_t at = line.find(field); at != std::string_view::npos; at = line.find(field, at + 1)) {
    if (!NumberFits(line.substr(at + field.size()), limit)) return false;
  }
  return true;
}

// The next line behind the prefix of a V3000 block in upper case, with its continuation lines.
std::string NextV3000Line(std::string_view& block) {
  constexpr std::string_view prefix = "M  V30 ";
  std::string joined;
  while (!block.empty()) {
    std::string_view line = NextLine(block);
    if (!line.starts_with(prefix)) break;
    line.remove_prefix(prefix.size());
    if (line.ends_with('\r')) line.remove_suffix(1);
    const bool continues = line.ends_with('-');
    if (continues) line.remove_suffix(1);
    joined += line;
    if (!continues) break;
  }
  for (char& c : joined) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return joined;
}

bool IsV3000Safe(std::string_view block, std::string& reason) {
  bool inAtoms = false;  // elsewhere the words may be data
  while (!block.empty()) {
    const std::string line = NextV3000Line(block);
    if (line.starts_with("BEGIN ATOM")) inAtoms = true;
    if (line.starts_with("END ATOM")) inAtoms = false;
    if (!inAtoms) continue;
    if (!FieldFits(line, "CHG=", maxCharge)) {
      reason = "charge above " + std::to_string(maxCharge);
      return false;
    }
    if (!FieldFits(line, "MASS=", maxIsotope)) {
      reason = "isotope above " + std::to_string(maxIsotope);
      return false;
    }
  }
  return true;
}

}  // namespace

bool IsSafeMolBlock(std::string_view block, std::string& reason) {
  std::string_view rest = block;
  for (int i = 0; i < 3; ++i) NextLine(rest);  // title and comments, in whatever encoding
  if (!HasNoNul(block, reason) || !IsUtf8From(block.size() - rest.size(), block, reason)) return false;
  const std::string_view counts = NextLine(rest);
  constexpr std::size_t versionColumn = 34;
  const bool isV3000 = counts.size() > versionColumn && counts.substr(versionColumn).starts_with("V3000");
  return isV3000 ? IsV3000Safe(rest, reason) : IsV2000Safe(counts, rest, reason);
}

bool IsSafeMol2(std::string_view block, std::string& reason) {
  if (!HasNoNul(block, reason) || !IsUtf8From(0, block, reason)) return false;
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
    if (AreAtoms(bgn, end, numAtoms)) continue;
    reason = NoSuchAtoms(i, numAtoms);
    return false;
  }
  return true;
}

}  // namespace QXChem
