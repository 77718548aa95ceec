#include "QXChem/QXDepict.h"

#include <algorithm>
#include <string_view>

#include "QXSystem/QXErrorHandler.h"
#include "chem/database/Utf8.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

constexpr std::size_t maxDepictions = 20;
constexpr unsigned maxAtomsToDraw = 500;
constexpr unsigned maxBondsToDraw = 1000;
constexpr unsigned minPixels = 50;
constexpr unsigned maxPixels = 5000;

std::string DescribeSize(unsigned width, unsigned height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels (from " +
         std::to_string(minPixels) + " to " + std::to_string(maxPixels) + " each way)";
}

bool IsPanelSize(unsigned pixels) {
  return pixels >= minPixels && pixels <= maxPixels;
}

// What XML has no place for in a legend; empty when there is nothing.
std::string FindFaultyText(std::string_view legend) {
  const std::size_t invalid = FindInvalidUtf8(legend);
  if (invalid < legend.size()) {
    return "a legend that is not UTF-8 at byte " + std::to_string(invalid);
  }
  for (std::size_t i = 0; i < legend.size(); ++i) {
    const unsigned value = static_cast<unsigned char>(legend[i]);
    if (value >= 0x20) continue;
    return "a legend with the control character " + std::to_string(value) + " at byte " + std::to_string(i);
  }
  for (const std::string_view noncharacter : {"\xef\xbf\xbe", "\xef\xbf\xbf"}) {
    const std::size_t at = legend.find(noncharacter);
    if (at != std::string_view::npos) return "a legend with a noncharacter at byte " + std::to_string(at);
  }
  return {};
}

// Why the molecule cannot be drawn; empty when it can.
std::string FindFault(const QXDepiction& depiction) {
  const QXMolBase* const mol = depiction.mol;
  if (!mol || !mol->IsValid() || mol->NumAtoms() == 0) return "no molecule";
  if (mol->NumAtoms() > maxAtomsToDraw) {
    return std::to_string(mol->NumAtoms()) + " atoms (at most " + std::to_string(maxAtomsToDraw) + ")";
  }
  if (mol->NumBonds() > maxBondsToDraw) {
    return std::to_string(mol->NumBonds()) + " bonds (at most " + std::to_string(maxBondsToDraw) + ")";
  }
  const auto isBelow = [](unsigned limit) { return [limit](unsigned idx) { return idx < limit; }; };
  if (!std::ranges::all_of(depiction.highlight.Atoms(), isBelow(mol->NumAtoms())) ||
      !std::ranges::all_of(depiction.highlight.Bonds(), isBelow(mol->NumBonds()))) {
    return "a highlighted atom or bond that is not there";
  }
  return FindFaultyText(depiction.legend);
}

std::string Refuse(const std::string& reason) {
  QXSystem::QXThrow.Warning("QXDepictSVG() : cannot draw %s!", reason.c_str());
  return {};
}

}  // namespace

std::string QXDepictSVG(std::span<const QXDepiction> depictions, unsigned width, unsigned height) {
  if (!IsPanelSize(width) || !IsPanelSize(height)) return Refuse(DescribeSize(width, height));
  if (depictions.empty()) return Refuse("no molecule");
  if (depictions.size() > maxDepictions) {
    return Refuse(std::to_string(depictions.size()) + " molecules (at most " + std::to_string(maxDepictions) +
                  ")");
  }
  for (const QXDepiction& depiction : depictions) {
    const std::string fault = FindFault(depiction);
    if (!fault.empty()) return Refuse(fault);
  }
  std::string reason;
  std::string svg = DrawWithRDKit(depictions, width, height, reason);
  return reason.empty() ? svg : Refuse("the molecule: " + reason);
}

}  // namespace QXChem
