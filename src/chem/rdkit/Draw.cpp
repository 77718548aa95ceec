#include "chem/rdkit/ToRDKit.h"  // first, for RDKit's configuration

#include <GraphMol/Depictor/RDDepictor.h>
#include <GraphMol/MolDraw2D/MolDraw2DSVG.h>
#include <GraphMol/MolOps.h>

#include <algorithm>
#include <locale>
#include <new>
#include <sstream>

#include "chem/rdkit/Bridge.h"

namespace QXChem {
namespace {

// A molecule with coordinates, drawn with the Kekulé orders that the graph holds. Valences are not checked:
// what can be drawn need not make sense.
RDKit::RWMol Layout(const QXMolBase& mol) {
  RDKit::RWMol target = ToRDKit(mol);
  for (RDKit::Bond* bond : target.bonds()) {  // orders that RDKit has no name for
    if (bond->getBondType() == RDKit::Bond::OTHER) bond->setBondType(RDKit::Bond::ZERO);
  }
  for (RDKit::Atom* atom : target.atoms()) {
    atom->setNoImplicit(true);
    atom->calcExplicitValence(false);
    atom->calcImplicitValence(false);
  }
  RDKit::VECT_INT_VECT rings;
  RDKit::MolOps::symmetrizeSSSR(target, rings);
  RDKit::MolOps::setConjugation(target);
  RDKit::MolOps::setHybridization(target);
  RDDepict::compute2DCoords(target, nullptr, true);
  return target;
}

std::string EscapeForXML(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '<') {
      escaped += "&lt;";
    } else if (c == '&') {
      escaped += "&amp;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// RDKit writes a legend byte by byte and takes some words in angle brackets for orders, so it is given a blank
// that keeps the room, and the text is put there afterwards.
std::string WriteLegends(std::span<const QXDepiction> depictions, unsigned width, unsigned height) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  for (std::size_t i = 0; i < depictions.size(); ++i) {
    const std::string& legend = depictions[i].legend;
    if (legend.empty()) continue;
    text << "<text class='legend' x='" << (static_cast<double>(i) + 0.5) * width << "' y='" << 0.97 * height
         << "' style='font-size:" << std::min(16.0, 1.6 * width / static_cast<double>(legend.size()))
         << "px;font-family:sans-serif;text-anchor:middle;fill:#000000'>" << EscapeForXML(legend)
         << "</text>\n";
  }
  return text.str();
}

// Throws std::out_of_range when the part is not there.
void Replace(std::string& text, const std::string& part, const std::string& replacement) {
  text.replace(text.find(part), part.size(), replacement);
}

std::vector<int> Sorted(std::span<const unsigned> values) {
  std::vector<int> sorted(values.begin(), values.end());
  std::ranges::sort(sorted);
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  return sorted;
}

}  // namespace

std::string DrawWithRDKit(std::span<const QXDepiction> depictions, unsigned width, unsigned height,
                          std::string& reason) {
  reason.clear();
  try {
    std::vector<RDKit::RWMol> mols;
    std::vector<RDKit::ROMol*> pointers;
    std::vector<std::string> legends;
    std::vector<std::vector<int>> atoms;
    std::vector<std::vector<int>> bonds;
    mols.reserve(depictions.size());
    for (const QXDepiction& depiction : depictions) {
      mols.push_back(Layout(*depiction.mol));
      pointers.push_back(&mols.back());
      legends.emplace_back(depiction.legend.empty() ? "" : " ");
      atoms.push_back(Sorted(depiction.highlight.Atoms()));
      bonds.push_back(Sorted(depiction.highlight.Bonds()));
    }
    const auto panelWidth = static_cast<int>(width);
    const auto panelHeight = static_cast<int>(height);
    RDKit::MolDraw2DSVG drawer(panelWidth * static_cast<int>(depictions.size()), panelHeight, panelWidth,
                               panelHeight, true);
    drawer.drawOptions().prepareMolsBeforeDrawing = false;
    drawer.drawMolecules(pointers, &legends, &atoms, &bonds);
    drawer.finishDrawing();
    std::string svg = drawer.getDrawingText();
    Replace(svg, "iso-8859-1", "UTF-8");
    Replace(svg, "</svg>", WriteLegends(depictions, width, height) + "</svg>");
    return svg;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    reason = ToReason(error.what());
  } catch (...) {
    reason = ToReason(nullptr);
  }
  return {};
}

}  // namespace QXChem
