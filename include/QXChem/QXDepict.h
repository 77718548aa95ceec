#pragma once

#include <span>
#include <string>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXMolBase.h"

namespace QXChem {

/// A molecule to draw.
struct QXDepiction {
  const QXMolBase* mol = nullptr;
  QXAtomBondSet highlight;  ///< atoms and bonds on a coloured ground, by index
  std::string legend;       ///< a line of text under the molecule, in UTF-8
};

/// Draws molecules side by side as an SVG image, XML in UTF-8, with coordinates and drawing by RDKit. The same
/// molecules give the same text. Letters are text elements, which the viewer's font draws.
/// Shape    at most 20 molecules, each of at most 500 atoms and 1,000 bonds; a panel of width x height for each.
/// Units    pixels, 50 to 5,000.
/// Errors   an empty text and one Warning: no molecule, one that is invalid or empty, anything over these
///          limits, a highlighted index that is not there, a legend that is not UTF-8 or has control
///          characters, a molecule that RDKit cannot draw.
/// Threads  safe.
/// Cost     about a millisecond for a drug-like molecule; up to seconds for the largest cages.
QX_API std::string QXDepictSVG(std::span<const QXDepiction> depictions, unsigned width = 450,
                               unsigned height = 350);

}  // namespace QXChem
