// Mol and mol2 blocks before the parser sees them. It stores charges and isotopes modulo the size of their
// fields, stops at a NUL as if the text ended there, and trusts the atom numbers in the bonds of a mol2
// block.

#include "chem/BlockGuard.h"

#include <algorithm>
#include <charconv>

#include "chem/database/Utf8.h"

namespace QXChem {
namespace {

constexpr int maxCharge = 99;
constexpr int maxIsotope = 65535;

std::string AtByte(std::size_t position) {
  return " at byte " + std::to_string(position + 1);
}

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

// Whether the bonds of a V2000 block join atoms that it has. The parser notices when they do not, but keeps the
// molecule it has begun for good.
bool BondsFit(std::string_view block, std::string& reason) {
  for (int i = 0; i < 3; ++i) NextLine(block);
  const std::string_view counts = NextLine(block);
  if (counts.find("V3000") != std::string_view::npos) return true;
  const unsigned numAtoms = ColumnNumber(counts, 0);
  const unsigned numBonds = ColumnNumber(counts, 3);
  for (unsigned i = 0; i < numAtoms; ++i) NextLine(block);
  for (unsigned i = 1; i <= numBonds; ++i) {
    const std::string_view line = NextLine(block);
    if (AreAtoms(ColumnNumber(line, 0), ColumnNumber(line, 3), numAtoms)) continue;
    reason = NoSuchAtoms(i, numAtoms);
    return false;
  }
  return true;
}

}  // namespace

bool IsSafeMolBlock(std::string_view block, std::string& reason) {
  if (!IsSafeText(block, reason) || !BondsFit(block, reason)) return false;
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
    if (AreAtoms(bgn, end, numAtoms)) continue;
    reason = NoSuchAtoms(i, numAtoms);
    return false;
  }
  return true;
}

}  // namespace QXChem
