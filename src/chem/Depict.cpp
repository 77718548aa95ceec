#include "QXChem/QXDepict.h"

#include <algorithm>

#include "QXSystem/QXErrorHandler.h"
#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

constexpr std::size_t maxDepictions = 20;
constexpr unsigned maxAtomsToDraw = 500;
constexpr unsigned minPixels = 50;
constexpr unsigned maxPixels = 5000;

std::string DescribeSize(unsigned width, unsigned height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels (from " +
         std::to_string(minPixels) + " to " + std::to_string(maxPixels) + " each way)";
}

bool IsPanelSize(unsigned pixels) {
  return pixels >= minPixels && pixels <= maxPixels;
}

// Why the molecule cannot be drawn; empty when it can.
std::string FindFault(const QXDepiction& depiction) {
  const QXMolBase* const mol = depiction.mol;
  if (!mol || !mol->IsValid() || mol->NumAtoms() == 0) return "no molecule";
  if (mol->NumAtoms() > maxAtomsToDraw) {
    return std::to_string(mol->NumAtoms()) + " atoms (at most " + std::to_string(maxAtomsToDraw) + ")";
  }
  const auto isBelow = [](unsigned limit) { return [limit](unsigned idx) { return idx < limit; }; };
  if (!std::ranges::all_of(depiction.highlight.Atoms(), isBelow(mol->NumAtoms())) ||
      !std::ranges::all_of(depiction.highlight.Bonds(), isBelow(mol->NumBonds()))) {
    return "a highlighted atom or bond that is not there";
  }
  return {};
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
