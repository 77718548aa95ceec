#pragma once

#include <string>
#include <string_view>

#include "QXChem/QXMolBase.h"

namespace QXChem {

// Reading gives a molecule with rings, aromaticity and hybridisation perceived. Explicit hydrogens stay atoms
// (see QXSuppressHydrogens). Drawn stereo and coordinates are not kept. The title is set where the input has
// one (first line of a block; the text after the SMILES is not taken) and otherwise cleared.
//
// Refused with a reason: what the syntax or the valence model does not allow, bytes that are not UTF-8 text,
// embedded NULs, charges beyond 99 and isotopes beyond 999, and inputs over these limits, which keep a
// hostile line from exhausting the stack or the day: a SMILES of 1,000,000 bytes, 100,000 atoms, or 2,000
// open parentheses.
//
// The QXParse functions report one Warning with the reason, the QXRead functions are silent and hand it out.
// Both return false and leave the molecule invalid and empty on failure. They never throw and print nothing
// else. Threads: safe on different molecules.

QX_API bool QXParseSmiles(QXMolBase& mol, std::string_view smiles);
/// An MDL mol block, V2000 or V3000; what follows "M  END" is not looked at.
QX_API bool QXParseMolBlock(QXMolBase& mol, std::string_view block);
/// One Tripos "@<TRIPOS>MOLECULE" block.
QX_API bool QXParseMol2(QXMolBase& mol, std::string_view block);

QX_API bool QXReadSmiles(QXMolBase& mol, std::string_view smiles, std::string& reason);
QX_API bool QXReadMolBlock(QXMolBase& mol, std::string_view block, std::string& reason);
QX_API bool QXReadMol2(QXMolBase& mol, std::string_view block, std::string& reason);

/// Canonical SMILES without stereo, isotopes and map numbers included; empty for an invalid or empty molecule
/// and for one that cannot be written. Cost     tens of microseconds.
QX_API std::string QXCreateSmiles(const QXMolBase& mol);

}  // namespace QXChem
